// SPDX-License-Identifier: BSD-3-Clause
#include "PackageFacts.h"

#include "picture/PictureDecoder.h"

#include <Cairn/AssetStore.h>
#include <Cairn/TimedText.h>
#include <Ferro/FileText.h>
#include <Ferro/SHA1Digest.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>
#include <Strata/IPlaylist.h>
#include <Strata/ITimelineTrack.h>
#include <Strata/PlayedSpan.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

namespace testsupport {
namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;
using Kind = TrackFacts::Kind;

constexpr ui32_t Capacity = 4 * 1024 * 1024;  // bytes; more than any frame of a small sample

std::string DigestOf(const void* bytes, size_t size) {
  return Ferro::DigestText({static_cast<const char*>(bytes), size}).EncodeHex();
}
std::string DigestOf(const QUIRE::FrameBuffer& frame) {
  return DigestOf(frame.RoData(), frame.Size());
}

/// The decoded picture, or why there is none.
std::string MeaningOfPicture(const QUIRE::FrameBuffer& frame) {
  try {
    const Tool::DecodedPicture picture = Tool::DecodePicture({frame.RoData(), frame.Size()});
    return DigestOf(picture.Pixels.data(), picture.Pixels.size() * sizeof picture.Pixels[0]);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

void Add(std::ostream& out, const Cairn::TextPlace& place) {
  out << static_cast<int>(place.Halign.Value) << ' ' << place.Hposition.Value << ' '
      << static_cast<int>(place.Valign.Value) << ' ' << place.Vposition.Value << ' ' << place.Zposition.Value << '\n';
}

void Add(std::ostream& out, const Cairn::TextFont& font) {
  out << font.LoadFont.Value << ' ' << font.Size.Value << ' ' << font.Color.Value << ' '
      << static_cast<int>(font.Effect.Value) << ' ' << static_cast<int>(font.Italic.Value) << ' ' << font.IsBold.Value
      << ' ' << font.Spacing.Value << ' ' << font.AspectAdjust.Value << '\n';
}

/// What of a text is on the screen when, where and how.
std::string MeaningOfText(const std::string& xml) {
  Cairn::TimedText text;
  const Ferro::Result_t result = text.DecodeXML(xml);
  if (result.Failure()) return result.Label();
  std::ostringstream out;
  for (const Cairn::TextInstance& instance : text.InstanceList) {
    out << instance.TimeIn.Value - text.Origin << ' ' << instance.TimeOut.Value - text.Origin << " of "
        << text.UnitRate() << ", " << instance.FadeUpTime.Value << ' ' << instance.FadeDownTime.Value << '\n';
    for (const Cairn::TextLine& line : instance.TextList) {
      out << line.Characters() << '\n';
      Add(out, line.Place);
      for (const Cairn::TextRun& run : line.RunList) Add(out, text.FontList.at(run.Font));
    }
    for (const Cairn::TextImage& image : instance.ImageList) {
      out << image.Resource.ID.EncodeString() << image.Resource.Path << '\n';
      Add(out, image.Place);
    }
  }
  return out.str();
}

class PackageReading {
 public:
  explicit PackageReading(const PackageFacts* known) {
    if (known == nullptr) return;
    for (const TrackFacts& track : known->Tracks)
      for (const UnitFacts& unit : track.Units) m_Known[unit.Bytes] = unit.Meaning;
  }

  PackageFacts Read(const std::string& folder) {
    if (m_Store.Open().Failure() || m_Store.AddFolder(folder).Failure()) return {"no store", {}};
    for (const Cairn::AssetRecord& record : m_Store.Assets())
      if (record.Info.FileType == Cairn::FT_CPL) ReadComposition(record.Info.ID);
    return m_Facts;
  }

 private:
  void ReadComposition(const Cairn::UUID& id) {
    Ferro::mem_ptr<Strata::IPlaylist> playlist;
    Cairn::UUIDList ids;
    ids.push_back(id);
    Ferro::Result_t result = Strata::NewPlaylist(playlist);
    if (result.Success()) result = playlist->InitWithUUIDList(ids, m_Store, {});
    m_Facts.Timeline += "composition " + id.EncodeString() + ": " + result.Label() + '\n';
    if (result.Failure()) return;
    AddExports(*playlist);
    ui32_t position = 0;
    while (position < playlist->GetDuration()) position += ReadReel(*playlist, position);
  }

  /// What is exported, without what is new in each export.
  void AddExports(const Strata::IPlaylist& playlist) {
    std::string document;
    static_cast<void>(playlist.GetShowPlaylistForTimeline(document));
    for (const char* name : {"Id", "IssueDate"}) {
      const size_t at = document.find(std::string("<") + name + '>');
      if (at != document.npos) document.erase(at, document.find('\n', at) - at);
    }
    m_Facts.Timeline += document;
    ui32_t playout = 0;
    document.clear();
    static_cast<void>(playlist.GetPresentationListForTimeline("", document, playout));
    const std::string number = std::to_string(playout);
    for (size_t at = document.find(number); at != document.npos; at = document.find(number, at))
      document.erase(at, number.size());
    m_Facts.Timeline += document;
    Cairn::UUIDList keys;
    playlist.GetKeyIDList(keys);
    for (const Cairn::UUID& key : keys) m_Facts.Timeline += "key " + key.EncodeString() + '\n';
  }

  /// Returns how long the reel is.
  ui32_t ReadReel(const Strata::IPlaylist& playlist, ui32_t position) {
    ui32_t reel_position = 0;
    ui32_t number = 0;
    ui32_t duration = 0;
    Strata::UUID composition;
    QUIRE::Rational rate;
    bool is_distinct = false;
    playlist.TranslateReelPosition(position, reel_position, number, duration, composition, rate, is_distinct);
    m_Facts.Timeline += "reel of " + std::to_string(duration) + " at " + rate.EncodeString() + '\n';
    for (ui32_t type = 0; type < Strata::TRKT_MAX; ++type) {
      const auto track_type = static_cast<Strata::TrackType_t>(type);
      const ui32_t count = playlist.GetChannelCountForType(track_type, position);
      for (ui32_t channel = 0; channel < count; ++channel)
        if (const Strata::ITimelineTrack* track = playlist.GetReaderForChannel(track_type, channel, position))
          ReadTrack(*track, duration);
    }
    return std::max(1U, duration);
  }

  void ReadTrack(const Strata::ITimelineTrack& track, ui32_t reel_duration) {
    m_Facts.Timeline += track.AssetName() + ' ' + track.AssetID().EncodeString() + " from " +
                        std::to_string(track.EntryPoint()) + ", " + std::to_string(track.Duration()) + " of " +
                        std::to_string(track.IntrinsicDuration()) + ", " + track.Language() + ", " +
                        std::to_string(track.ChannelCount()) + " channels " + track.MCALabelString() + ", " +
                        std::to_string(track.ImageWidth()) + 'x' + std::to_string(track.ImageHeight()) +
                        (track.HasStereoImage() ? " stereoscopic" : "") + '\n';
    Cairn::AssetInfo info;
    if (!(m_Store.GetInfoForAssetID(track.AssetID(), info, true) == Ferro::RESULT_OK)) return;
    m_Played.assign(Strata::PlayedDuration(track.Duration(), reel_duration), 0);
    for (size_t i = 0; i < m_Played.size(); ++i) m_Played[i] = track.EntryPoint() + static_cast<ui32_t>(i);
    TrackFacts& facts = m_Facts.Tracks.emplace_back();
    switch (info.FileType) {
      case Cairn::FT_QUIRE_JP2K_J2C:
        return ReadFrames<QUIRE::JP2K::MXFReader, QUIRE::JP2K::FrameBuffer>(info.RealFilename, Kind::Picture, facts);
      case Cairn::FT_QUIRE_JP2K_J2C_S:
        return ReadStereoscopic(info.RealFilename, facts);
      case Cairn::FT_QUIRE_PCM:
        return ReadFrames<QUIRE::PCM::MXFReader, QUIRE::PCM::FrameBuffer>(info.RealFilename, Kind::Sound, facts);
      case Cairn::FT_QUIRE_ATMOS:
        return ReadFrames<QUIRE::ATMOS::MXFReader, QUIRE::DCData::FrameBuffer>(info.RealFilename, Kind::Data, facts);
      case Cairn::FT_QUIRE_DCDATA:
        return ReadFrames<QUIRE::DCData::MXFReader, QUIRE::DCData::FrameBuffer>(info.RealFilename, Kind::Data, facts);
      case Cairn::FT_QUIRE_TIMED_TEXT:
        return ReadText(info.RealFilename, facts);
      default:
        return ReadDocument(info.RealFilename, facts);
    }
  }

  template <class ReaderT, class BufferT>
  void ReadFrames(const std::string& filename, Kind kind, TrackFacts& facts) {
    facts.What = kind;
    ReaderT reader;
    BufferT frame;
    Ferro::Result_t result = frame.Capacity(Capacity);
    if (result.Success()) result = reader.OpenRead(filename);
    for (const ui32_t number : m_Played) {
      const Ferro::Result_t read = result.Failure() ? result : reader.ReadFrame(number, frame);
      facts.Units.push_back(read.Failure() ? UnitFacts{read.Label(), read.Label()} : UnitOf(frame, kind));
    }
  }

  void ReadStereoscopic(const std::string& filename, TrackFacts& facts) {
    facts.What = Kind::Picture;
    QUIRE::JP2K::MXFSReader reader;
    QUIRE::JP2K::SFrameBuffer frame;
    Ferro::Result_t result = frame.Left.Capacity(Capacity);
    if (result.Success()) result = frame.Right.Capacity(Capacity);
    if (result.Success()) result = reader.OpenRead(filename);
    for (const ui32_t number : m_Played) {
      const Ferro::Result_t read = result.Failure() ? result : reader.ReadFrame(number, frame);
      for (const QUIRE::FrameBuffer* eye : {&frame.Left, &frame.Right})
        facts.Units.push_back(read.Failure() ? UnitFacts{read.Label(), read.Label()} : UnitOf(*eye, Kind::Picture));
    }
  }

  UnitFacts UnitOf(const QUIRE::FrameBuffer& frame, Kind kind) {
    UnitFacts unit = {DigestOf(frame), ""};
    if (kind != Kind::Picture || frame.SourceLength() != 0) {
      unit.Meaning = unit.Bytes;  // encrypted pictures are compared as they are
    } else {
      const auto [known, is_new] = m_Known.try_emplace(unit.Bytes);
      if (is_new) known->second = MeaningOfPicture(frame);
      unit.Meaning = known->second;
    }
    return unit;
  }

  void ReadText(const std::string& filename, TrackFacts& facts) {
    facts.What = Kind::Text;
    QUIRE::TimedText::MXFReader reader;
    QUIRE::TimedText::TimedTextDescriptor descriptor;
    std::string text;
    Ferro::Result_t result = reader.OpenRead(filename);
    if (result.Success()) result = reader.FillTimedTextDescriptor(descriptor);
    if (result.Success()) result = reader.ReadTimedTextResource(text);
    AddText(result, text, facts);
    for (const auto& resource : descriptor.ResourceList) {
      QUIRE::TimedText::FrameBuffer frame;
      const Ferro::Result_t read = reader.ReadAncillaryResource(resource.ResourceID, frame);
      facts.Resources.push_back(read.Failure() ? read.Label() : DigestOf(frame));
    }
  }

  /// An Interop document with the files beside it.
  static void ReadDocument(const std::string& filename, TrackFacts& facts) {
    facts.What = Kind::Text;
    std::string text;
    AddText(Ferro::ReadFileIntoString(filename, text), text, facts);
    std::map<std::string, std::string> beside;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(filename).parent_path())) {
      std::string bytes;
      if (entry.path().extension() != ".xml" && Ferro::ReadFileIntoString(entry.path(), bytes).Success())
        beside[entry.path().filename()] = DigestOf(bytes.data(), bytes.size());
    }
    for (const auto& [name, digest] : beside) facts.Resources.push_back(name + ' ' + digest);
  }

  static void AddText(const Ferro::Result_t& result, const std::string& text, TrackFacts& facts) {
    UnitFacts& unit = facts.Units.emplace_back();
    if (result.Failure()) {
      unit.Bytes = unit.Meaning = result.Label();
      return;
    }
    unit.Bytes = DigestOf(text.data(), text.size());
    unit.Meaning = MeaningOfText(text);
  }

  Cairn::AssetStore m_Store;
  PackageFacts m_Facts;
  std::vector<ui32_t> m_Played;                // edit units of the file
  std::map<std::string, std::string> m_Known;  // what pictures of these bytes mean
};

/// The differences of two tracks of the same kind.
void Compare(const TrackFacts& one, const TrackFacts& other, std::set<Difference>& differences) {
  if (one.Resources != other.Resources) differences.insert(Difference::Resource);
  bool has_other_bytes = one.Units.size() != other.Units.size();
  bool has_other_meaning = has_other_bytes;
  for (size_t i = 0; i < std::min(one.Units.size(), other.Units.size()); ++i) {
    has_other_bytes |= one.Units[i].Bytes != other.Units[i].Bytes;
    has_other_meaning |= one.Units[i].Meaning != other.Units[i].Meaning;
  }
  if (!has_other_bytes) return;
  switch (one.What) {
    case Kind::Picture:
      differences.insert(has_other_meaning ? Difference::Picture : Difference::PictureBytes);
      break;
    case Kind::Sound:
      differences.insert(Difference::Sound);
      break;
    case Kind::Text:
      differences.insert(has_other_meaning ? Difference::Text : Difference::TextBytes);
      break;
    case Kind::Data:
      differences.insert(Difference::Data);
      break;
  }
}

}  // namespace

const char* DifferenceName(Difference difference) {
  static constexpr const char* Names[] = {"timeline", "picture",    "picture bytes", "sound",
                                          "text",     "text bytes", "resource",      "data"};
  return Names[static_cast<size_t>(difference)];
}

PackageFacts FactsOf(const std::string& folder, const PackageFacts* known) {
  return PackageReading(known).Read(folder);
}

std::set<Difference> DifferencesOf(const PackageFacts& one, const PackageFacts& other) {
  std::set<Difference> differences;
  if (one.Timeline != other.Timeline) differences.insert(Difference::Timeline);
  if (one.Tracks.size() != other.Tracks.size()) return differences;  // which the timeline tells
  for (size_t i = 0; i < one.Tracks.size(); ++i)
    if (one.Tracks[i].What == other.Tracks[i].What)
      Compare(one.Tracks[i], other.Tracks[i], differences);
    else
      differences.insert(Difference::Timeline);
  return differences;
}

}  // namespace testsupport
