// SPDX-License-Identifier: BSD-3-Clause
#include "SampleShow.h"

#include "SampleFontFile.h"
#include "SamplePackage.h"
#include "SampleRequire.h"
#include "SampleSigner.h"
#include "SampleSound.h"
#include "SampleTrackFiles.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"

#include <Ferro/Path.h>
#include <Strata/ShowPlaylist.h>

#include <unistd.h>

#include <array>
#include <filesystem>
#include <utility>

namespace Tool {

namespace {

namespace fs = std::filesystem;
using Ferro::ui32_t;

struct Plan {
  const char* Folder;
  const char* Title;  ///< on the pictures
  Cairn::ContentKind_t Kind;
  ui32_t Reels;
  SamplePicture::Colour Background;
  bool HasText = false;
  bool Stereoscopic = false;
  bool Immersive = false;
  bool Encrypted = false;
};

constexpr Plan Trailer = {"Trailer", "TRAILER", Cairn::CK_TRAILER, 1, {900, 950, 1400}};
constexpr Plan Feature = {"Feature", "FEATURE", Cairn::CK_FEATURE, 3, {1000, 1000, 1000}, true};
constexpr Plan Stereo = {"Stereoscopic", "STEREO", Cairn::CK_SHORT, 1, {900, 1150, 900}, false, true};
constexpr Plan Immersive = {"Immersive", "IMMERSIVE", Cairn::CK_SHORT, 1, {1300, 1000, 900}, false, false, true};
constexpr Plan Encrypted = {"Encrypted", "ENCRYPTED", Cairn::CK_SHORT, 1, {1400, 1400, 500}, false, false, false, true};
constexpr std::array Plans = {Trailer, Feature, Stereo, Immersive, Encrypted};

/// A folder that is removed with all that is in it unless it was put in its place.
class UnfinishedFolder {
 public:
  explicit UnfinishedFolder(const std::string& target)
      : m_Target(target), m_Folder(target + ".unfinished-" + std::to_string(getpid())) {
    std::error_code error;
    if (m_Target.has_parent_path()) fs::create_directories(m_Target.parent_path(), error);
    if (!error) fs::create_directory(m_Folder, error);
    if (error) throw std::runtime_error(target + ": this folder cannot be made: " + error.message());
  }
  ~UnfinishedFolder() {
    std::error_code ignored;
    if (!m_Folder.empty()) fs::remove_all(m_Folder, ignored);
  }
  UnfinishedFolder(const UnfinishedFolder&) = delete;
  UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

  [[nodiscard]] std::string PathOf(const std::string& name) const { return (m_Folder / name).string(); }
  /// The name that a file in it has at the end; others stay as they are.
  [[nodiscard]] std::string NameAtTheEnd(const std::string& filename) const {
    const std::string folder = m_Folder.string();
    return filename.starts_with(folder) ? m_Target.string() + filename.substr(folder.size()) : filename;
  }
  void Finish() {
    fs::rename(m_Folder, m_Target);
    m_Folder.clear();
  }

 private:
  fs::path m_Target;
  fs::path m_Folder;
};

void WriteText(const std::string& filename, std::string_view text) {
  WriteSampleFile(filename, text);
}

void WriteBytes(const std::string& filename, const std::vector<Ferro::ui8_t>& bytes) {
  WriteText(filename, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool IsInterop(const SampleOptions& options) {
  return options.Flavour == Cairn::DFT_Interop;
}

/// Why a part is left out; empty: it is not.
std::string LeftOut(const SampleOptions& options, const Plan& plan) {
  if (plan.Immersive && IsInterop(options)) return "Interop has no immersive audio";
  if (plan.Stereoscopic && options.Rate > 30) return "few servers play stereoscopic pictures at this rate";
  return "";
}

bool HasPlan(const SampleOptions& options, const Plan& plan) {
  return LeftOut(options, plan).empty();
}

Ferro::ui64_t PictureCount(const SampleOptions& options) {
  Ferro::ui64_t count = 0;
  for (const Plan& plan : Plans)
    if (HasPlan(options, plan))
      count += Ferro::ui64_t{plan.Reels} * options.Seconds * options.Rate * (plan.Stereoscopic ? 2 : 1);
  return count;
}

class ShowMaker {
 public:
  ShowMaker(const SampleOptions& options, const UnfinishedFolder& folder, std::function<void()> on_picture)
      : m_Options(options), m_Seed(options), m_Files(options, std::move(on_picture)), m_Folder(folder) {}

  void MakePackage(const Plan& plan) const {
    SamplePackage package(m_Seed, m_Folder.PathOf(plan.Folder), plan.Title, m_Options.Flavour,
                          plan.Encrypted || !m_Options.Unsigned ? &m_Signer : nullptr);
    Cairn::CompositionPlaylist composition = Heading(plan);
    for (ui32_t number = 1; number <= plan.Reels; ++number)
      composition.ReelList.push_back(MakeReel(plan, number, package));
    if (!IsInterop(m_Options)) AddMarkers(plan, composition);
    package.AddComposition(composition, "CPL.xml");
    package.Finish();
    if (plan.Encrypted && !m_Options.Unsigned) WriteKeys(plan, composition);
  }

  void MakeShows() const {
    Strata::ShowPlaylist before = ShowHeading("Before the feature");
    before.ShowSequence.push_back(Item(Trailer));
    before.ShowSequence.push_back(Item(Encrypted));
    WriteShow(before, "before-the-feature.xml");

    Strata::ShowPlaylist show = ShowHeading("Sample show");
    show.ShowSequence.push_back(std::make_unique<Strata::ShowPlaylist::MarkerItem>(Marker("SHOW_START", 0)));
    auto nested = std::make_unique<Strata::ShowPlaylist::ShowPlaylistItem>();
    nested->URI = before.ID.EncodeURN();
    show.ShowSequence.push_back(std::move(nested));
    show.ShowSequence.push_back(std::make_unique<Strata::ShowPlaylist::MarkerItem>(Marker("LIGHTS_DOWN", 0)));
    auto feature = Item(Feature);
    feature->MarkerList.push_back(Marker("FEATURE_SECOND_1", m_Options.Rate));
    feature->MarkerList.push_back(Marker("CREDITS", m_Files.Duration() * Feature.Reels - m_Options.Rate));
    show.ShowSequence.push_back(std::move(feature));
    for (const Plan& plan : {Stereo, Immersive})
      if (HasPlan(m_Options, plan)) show.ShowSequence.push_back(Item(plan));
    WriteShow(show, "show.xml");
  }

 private:
  [[nodiscard]] Cairn::CompositionPlaylist Heading(const Plan& plan) const {
    Cairn::CompositionPlaylist composition;
    composition.ID = m_Seed.ID(std::string(plan.Title) + "/composition");
    composition.ContentTitle = composition.Annotation = std::string("Sample") + plan.Folder;
    composition.IssueDate = m_Seed.Date().EncodeString();
    composition.Issuer = composition.Creator = SampleIssuer;
    composition.ContentKind = plan.Kind;
    composition.ContentVersion = {m_Seed.ID(std::string(plan.Title) + "/version").EncodeURN(), "1"};
    composition.StereoscopicImage = plan.Stereoscopic;
    if (!IsInterop(m_Options)) composition.Metadata = Metadata(plan, composition.ContentTitle);
    return composition;
  }

  /// What equipment is told of the composition (ST 429-16), and that it follows RDD 52.
  [[nodiscard]] Cairn::CompositionMetadata Metadata(const Plan& plan, const std::string& title) const {
    Cairn::CompositionMetadata metadata;
    metadata.AssetID = m_Seed.ID(std::string(plan.Title) + "/metadata");
    metadata.EditRate = m_Files.EditRate();
    metadata.IntrinsicDuration = metadata.Duration = m_Files.Duration();
    metadata.FullContentTitle = title;
    metadata.FullContentTitleLanguage = "en";
    metadata.ReleaseTerritory = "001";  // the world (UN M.49)
    metadata.HasVersionNumber = true;
    metadata.MainSoundConfiguration = m_Files.SoundConfiguration();
    metadata.MainSoundSampleRate = {SampleSound::Rate, 1};
    metadata.MainPictureStoredArea = {m_Options.Width, m_Options.Height};
    metadata.MainPictureActiveArea = {m_Options.Width & ~1U, m_Options.Height & ~1U};
    if (plan.HasText) metadata.MainSubtitleLanguageList = {"en"};
    metadata.ExtensionMetadataList = {
        {"http://isdcf.com/ns/cplmd/app", "Application", {{"DCP Constraints Profile", "SMPTE-RDD-52:2020-Bv2.1"}}}};
    return metadata;
  }

  /// First and last picture of the content, and a feature's end and moving credits, in its last second.
  void AddMarkers(const Plan& plan, Cairn::CompositionPlaylist& composition) const {
    const ui32_t end = m_Files.Duration();
    Cairn::MarkerAsset& first = MarkersOf(composition.ReelList.front());
    first.MarkerList.push_back({"FFOC", "", "", 1});
    Cairn::MarkerAsset& last = MarkersOf(composition.ReelList.back());
    if (plan.Kind == Cairn::CK_FEATURE) {
      last.MarkerList.push_back({"FFEC", "", "", end - m_Options.Rate});
      last.MarkerList.push_back({"FFMC", "", "", end - m_Options.Rate / 2});
    }
    last.MarkerList.push_back({"LFOC", "", "", end - 1});
  }

  /// The markers of a reel, which are there from then on.
  Cairn::MarkerAsset& MarkersOf(Cairn::Reel& reel) const {
    Cairn::MarkerAsset& markers = reel.MainMarkers;
    markers.AssetID = m_Seed.ID(reel.ID.EncodeString() + "/markers");
    markers.EditRate = m_Files.EditRate();
    markers.IntrinsicDuration = markers.Duration = m_Files.Duration();
    return markers;
  }

  /// Fills in what is the same for every asset of a reel, and packs its file.
  void Describe(Cairn::GenericAsset& asset, const SampleTrackFiles::Reel& reel, const std::string& kind,
                const std::string& filename, Cairn::FileType_t type, SamplePackage& package) const {
    asset.AssetID = m_Seed.ID(reel.NameOf(kind));
    asset.EditRate = m_Files.EditRate();
    asset.IntrinsicDuration = asset.Duration = m_Files.Duration();
    if (reel.Encrypted) asset.KeyID = m_Seed.ID(reel.NameOf(kind + "-key"));
    asset.Digest = package.Add(asset.AssetID, filename, type);
  }

  [[nodiscard]] Cairn::Reel MakeReel(const Plan& plan, ui32_t number, SamplePackage& package) const {
    const SampleTrackFiles::Reel reel = {plan.Title, number, plan.Background, plan.Stereoscopic, plan.Encrypted};
    const std::string end = '-' + std::to_string(number) + ".mxf";
    Cairn::Reel result;
    result.ID = m_Seed.ID(reel.NameOf("reel"));

    m_Files.WritePicture(package.PathOf("picture" + end), reel);
    Describe(result.MainPicture, reel, "picture", "picture" + end,
             plan.Stereoscopic ? Cairn::FT_QUIRE_JP2K_J2C_S : Cairn::FT_QUIRE_JP2K_J2C, package);
    result.MainPicture.FrameRate = {m_Files.EditRate().Numerator * (plan.Stereoscopic ? 2 : 1), 1};
    result.MainPicture.ScreenAspectRatio = {static_cast<Ferro::i32_t>(m_Options.Width),
                                            static_cast<Ferro::i32_t>(m_Options.Height)};

    m_Files.WriteSound(package.PathOf("sound" + end), reel);
    Describe(result.MainSound, reel, "sound", "sound" + end, Cairn::FT_QUIRE_PCM, package);
    result.MainSound.Language = "en";
    if (plan.HasText) AddText(result, reel, package);
    if (plan.Immersive) {
      m_Files.WriteImmersive(package.PathOf("immersive" + end), reel);
      Cairn::AuxDataAsset& data = result.AuxData.emplace_back();
      Describe(data, reel, "immersive", "immersive" + end, Cairn::FT_QUIRE_ATMOS, package);
      data.DataType = "urn:smpte:ul:060e2b34.04010105.0e090604.00000000";
    }
    return result;
  }

  void WriteKeys(const Plan& plan, const Cairn::CompositionPlaylist& composition) const {
    std::vector<Sigil::ContentKey> keys;
    for (ui32_t number = 1; number <= plan.Reels; ++number) {
      const SampleTrackFiles::Reel reel = {plan.Title, number, plan.Background, plan.Stereoscopic, plan.Encrypted};
      for (const auto& [kind, type] : {std::pair("picture", "MDIK"), std::pair("sound", "MDAK")}) {
        Sigil::ContentKey& key = keys.emplace_back();
        key.Entry = {m_Seed.ID(reel.NameOf(std::string(kind) + "-key")), type, ""};
        SampleRequire(key.Key.Assign(m_Seed.Key(reel.NameOf(kind))) ? Ferro::RESULT_OK : Ferro::RESULT_ALLOC, "keys");
      }
    }
    WriteSampleKeys(m_Folder.PathOf("worthless-test-keys"),
                    m_Signer.MakeMessage(composition, std::move(keys), Ferro::Timestamp(), !IsInterop(m_Options)));
  }

  void AddText(Cairn::Reel& result, const SampleTrackFiles::Reel& reel, SamplePackage& package) const {
    DescribeText(result.MainSubtitle, reel, "subtitle", package);
    Cairn::TimedTextAsset& caption = result.OffScreenText.emplace_back();
    DescribeText(caption, reel, "caption", package);
    caption.Purpose = Cairn::TT_CAPTION;
  }

  void DescribeText(Cairn::TimedTextAsset& asset, const SampleTrackFiles::Reel& reel, const std::string& kind,
                    SamplePackage& package) const {
    const std::string name = kind + '-' + std::to_string(reel.Number);
    asset.Language = "en";
    if (!IsInterop(m_Options)) {
      m_Files.WriteText(package.PathOf(name + ".mxf"), reel, kind);
      return Describe(asset, reel, kind, name + ".mxf", Cairn::FT_QUIRE_TIMED_TEXT, package);
    }
    const SampleText text = m_Files.Text(reel, kind);
    fs::create_directory(package.PathOf(name));
    WriteBytes(package.PathOf(name + '/' + SampleText::FontName), MakeSampleFontFile());
    package.Add(m_Seed.ID(reel.NameOf(kind + "-font")), name + '/' + SampleText::FontName, Cairn::FT_TI_TRUETYPE);
    if (text.About().ImageID.HasValue()) {
      WriteBytes(package.PathOf(name + '/' + SampleText::ImageName), text.Image());
      package.Add(text.About().ImageID, name + '/' + SampleText::ImageName, Cairn::FT_TI_PNG);
    }
    WriteText(package.PathOf(name + "/text.xml"), text.InteropDocument());
    Describe(asset, reel, kind, name + "/text.xml", Cairn::FT_TI_SUBTITLE, package);
  }

  [[nodiscard]] Strata::ShowPlaylist ShowHeading(const std::string& title) const {
    Strata::ShowPlaylist show;
    show.ID = m_Seed.ID(title + "/show");
    show.ShowTitle = title;
    show.IssueDate = m_Seed.Date();
    show.Issuer = show.Creator = SampleIssuer;
    return show;
  }

  [[nodiscard]] std::unique_ptr<Strata::ShowPlaylist::CompositionItem> Item(const Plan& plan) const {
    auto item = std::make_unique<Strata::ShowPlaylist::CompositionItem>();
    item->ID = m_Seed.ID(std::string(plan.Title) + "/composition");
    item->Annotation = plan.Folder;
    item->EditRate = m_Files.EditRate();
    item->Duration = m_Files.Duration() * plan.Reels;
    return item;
  }

  [[nodiscard]] static Strata::ShowPlaylist::MarkerItem Marker(const std::string& label, ui32_t offset) {
    Strata::ShowPlaylist::MarkerItem marker;
    marker.Label = label;
    marker.Offset = static_cast<Ferro::i32_t>(offset);
    return marker;
  }

  void WriteShow(const Strata::ShowPlaylist& show, const std::string& filename) const {
    std::string text;
    SampleRequire(show.EncodeXML(text, m_Options.Flavour), filename);
    WriteText(m_Folder.PathOf(filename), text);
  }

  const SampleOptions& m_Options;
  SampleSeed m_Seed;
  SampleTrackFiles m_Files;
  SampleSigner m_Signer;
  const UnfinishedFolder& m_Folder;
};

}  // namespace

bool MakeSampleShow(const SampleOptions& options, const std::function<void(const std::string&)>& tell,
                    const std::function<void(Ferro::ui64_t, Ferro::ui64_t)>& progress) {
  UnfinishedFolder folder(Ferro::PathNormalize(options.Folder));
  Ferro::ui64_t done = 0;
  const ShowMaker maker(options, folder, [&, total = PictureCount(options)] { progress(++done, total); });
  const QuietLog log;  // what fails is told by what is thrown
  try {
    for (const Plan& plan : Plans) {
      if (const std::string reason = LeftOut(options, plan); !reason.empty()) {
        tell(std::string(plan.Folder) + ": left out, " + reason);
        continue;
      }
      tell(std::string(plan.Folder) + ": " + std::to_string(plan.Reels * options.Seconds) + " seconds");
      maker.MakePackage(plan);
    }
    maker.MakeShows();
    folder.Finish();
  } catch (const SampleStopped&) {
    return false;
  } catch (const fs::filesystem_error& error) {
    throw std::runtime_error(folder.NameAtTheEnd(error.path1().string()) + ": " + error.code().message());
  } catch (const SampleFailure& failure) {
    throw std::runtime_error(folder.NameAtTheEnd(failure.Thing()) + ": " + failure.what());
  }
  return true;
}

}  // namespace Tool
