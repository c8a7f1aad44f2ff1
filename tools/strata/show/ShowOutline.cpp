// SPDX-License-Identifier: BSD-3-Clause
#include "ShowOutline.h"

#include "DocumentFault.h"
#include "Paths.h"
#include "terminal/LogView.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>
#include <Ferro/CheckedMath.h>
#include <Ferro/Path.h>
#include <Strata/ShowPlaylist.h>

#include <algorithm>

namespace Tool {

namespace {

constexpr unsigned MostShows = 10'000;  // the engine takes no more

/// What the store knows of a file, best as a part of a package that lists it.
std::optional<Cairn::AssetRecord> RecordOfFile(const Cairn::AssetStore& store, const std::string& path) {
  const std::vector<Cairn::AssetRecord> places = store.FindFile(path);
  const auto is_listed = [](const Cairn::AssetRecord& place) { return (place.Problems & Cairn::AP_NOT_LISTED) == 0; };
  const auto listed = std::find_if(places.begin(), places.end(), is_listed);
  if (listed != places.end()) return *listed;
  return places.empty() ? std::nullopt : std::optional(places.front());
}

const Cairn::AssetRecord* Usable(const std::vector<Cairn::AssetRecord>& places) {
  return places.empty() ? nullptr : &places.front();
}

}  // namespace

const char* AssetKindName(AssetKind kind) {
  switch (kind) {
    case AssetKind::Picture:
      return "picture";
    case AssetKind::Sound:
      return "sound";
    case AssetKind::OnScreenText:
      return "subtitle";
    case AssetKind::OffScreenText:
      return "closed caption";
    case AssetKind::AuxData:
      return "auxiliary data";
  }
  return "";
}

const OutlineAsset* OutlineReel::First(AssetKind kind) const {
  const auto found = std::find_if(Assets.begin(), Assets.end(), [&](const auto& asset) { return asset.Kind == kind; });
  return found == Assets.end() ? nullptr : &*found;
}

double SecondsOf(const OutlineComposition& composition) {
  const QUIRE::Rational& rate = composition.EditRate;
  const bool is_known = rate.Numerator > 0 && rate.Denominator > 0;
  return is_known ? double(composition.Duration) * rate.Denominator / rate.Numerator
                  : double(composition.Duration) / 24;
}

struct ShowOutline::ShowEntry {
  const Strata::ShowPlaylist::CompositionItem& Item;
};

ShowOutline::ShowOutline(const Inputs& inputs) : m_Inputs(inputs) {
  const QuietLog log;  // what cannot be read is told in Problems(), or found again by FindingsOf
  for (const Candidate& show : inputs.Shows()) {
    std::vector<std::string> paths{CanonicalPath(show.Path)};
    if (show.Type == Cairn::FT_SHOW)
      AddShow(show, paths);
    else
      AddComposition(show.ID, show.Path, nullptr);
  }
}

void ShowOutline::AddShow(const Candidate& show, std::vector<std::string>& paths) {
  Strata::ShowPlaylist spl;
  QuietLog log;
  if (const Strata::Result_t result = Cairn::InitObjectWithFile(spl, show.Path); result.Failure()) {
    m_Problems.push_back(
        {OutlineProblemKind::CannotBeRead, show.Path, DocumentFault(show.Path, result, log.Take()), {}});
    return;
  }
  const size_t index = m_Shows.size();
  m_Shows.push_back({spl.ID, spl.ShowTitle, show.Path, static_cast<unsigned>(paths.size() - 1), m_Duration, 0,
                     m_Compositions.size(), 0});
  for (const auto& item : spl.ShowSequence) {
    if (item->m_Type == Strata::ShowPlaylist::SIT_MARKER) {
      const auto& marker = static_cast<const Strata::ShowPlaylist::MarkerItem&>(*item);
      m_Markers.push_back({marker.Label, marker.Scope, m_Duration, m_Compositions.size()});
    } else if (item->m_Type == Strata::ShowPlaylist::SIT_SHOW) {
      AddNested(static_cast<const Strata::ShowPlaylist::ShowPlaylistItem&>(*item).URI, paths);
    } else if (item->m_Type == Strata::ShowPlaylist::SIT_CPL) {
      const ShowEntry entry{static_cast<const Strata::ShowPlaylist::CompositionItem&>(*item)};
      AddComposition(entry.Item.ID, "", &entry);
    }
  }
  m_Shows[index].Duration = m_Duration - m_Shows[index].Start;
  m_Shows[index].CompositionCount = m_Compositions.size() - m_Shows[index].FirstComposition;
}

void ShowOutline::AddNested(const std::string& uri, std::vector<std::string>& paths) {
  const auto id = Cairn::UUID::FromURN(uri);
  const auto places = id ? m_Inputs.Store().FindAsset(*id) : std::vector<Cairn::AssetRecord>();
  const Cairn::AssetRecord* place = Usable(places);
  if (place == nullptr || place->Info.FileType != Cairn::FT_SHOW) {
    m_MissingShows.push_back(uri);
    return;
  }
  const std::string path = place->Info.RealFilename;
  if (std::find(paths.begin(), paths.end(), path) != paths.end() || ++m_ShowCount > MostShows) {
    m_Problems.push_back({OutlineProblemKind::ContainsItself, path, "", {}});
    return;
  }
  paths.push_back(path);
  AddShow({Cairn::FT_SHOW, *id, "", path}, paths);
  paths.pop_back();
}

void ShowOutline::AddComposition(const Cairn::UUID& id, const std::string& given_path, const ShowEntry* entry) {
  OutlineComposition outline;
  outline.ID = id;
  outline.Path = given_path;
  outline.Start = m_Duration;
  if (!given_path.empty()) {
    outline.Found = RecordOfFile(m_Inputs.Store(), given_path);
    if (!id.HasValue() && outline.Found) outline.ID = outline.Found->Info.ID;
  } else if (const auto places = m_Inputs.Store().FindAsset(id); !places.empty()) {
    outline.Path = places.front().Info.RealFilename;
    outline.Found = places.front();
  }
  Cairn::CompositionPlaylist cpl;
  QuietLog log;
  if (outline.Path.empty()) {
    outline.Problem = outline.Found ? CompositionProblem::FileMissing : CompositionProblem::Missing;
  } else if (const Strata::Result_t result = Cairn::InitObjectWithFile(cpl, outline.Path); result.Failure()) {
    outline.Problem = CompositionProblem::CannotBeRead;
    outline.Reason = DocumentFault(outline.Path, result, log.Take());
  } else if (cpl.ReelList.empty()) {
    outline.Problem = CompositionProblem::HasNoReels;
  }
  outline.Title = cpl.ContentTitle;
  outline.Kind = cpl.ContentKindText;
  outline.Format = cpl.DCPFormat;
  outline.Stereoscopic = cpl.StereoscopicImage;
  if (outline.Problem == CompositionProblem::None) {
    if (!cpl.ReelList.empty()) outline.EditRate = cpl.ReelList.front().MainPicture.EditRate;
    for (const Cairn::Reel& reel : cpl.ReelList) AddReel(reel, outline);
  } else if (entry != nullptr) {
    if (outline.Title.empty()) outline.Title = entry->Item.Annotation;
    outline.EditRate = entry->Item.EditRate;
    outline.Duration = entry->Item.Duration;
  }
  if (outline.Title.empty() && outline.Problem == CompositionProblem::CannotBeRead)
    outline.Title = Ferro::PathBasename(outline.Path);
  if (!Ferro::CheckedAdd(m_Duration, outline.Duration)) {
    m_Problems.push_back({OutlineProblemKind::TooLong, "", "", outline.ID});
    return;
  }
  // A marker beyond the composition's end stands on its last edit unit, or on its start where it has none.
  const Ferro::ui32_t last = outline.Duration == 0 ? 0 : outline.Duration - 1;
  if (entry != nullptr)
    for (const auto& marker : entry->Item.MarkerList)
      m_Markers.push_back({marker.Label, marker.Scope,
                           m_Duration + std::min(static_cast<Ferro::ui32_t>(marker.Offset), last),
                           m_Compositions.size()});
  m_Duration += outline.Duration;
  m_Compositions.push_back(std::move(outline));
}

void ShowOutline::AddReel(const Cairn::Reel& reel, OutlineComposition& composition) const {
  if (!Ferro::CheckedAdd(composition.Duration, reel.MainPicture.Duration)) {
    composition.Problem = CompositionProblem::TooLong;
    return;
  }
  OutlineReel out;
  out.ID = reel.ID;
  out.Duration = reel.MainPicture.Duration;
  out.Markers = reel.MainMarkers;
  const auto add = [&](AssetKind kind, const Cairn::GenericAsset& asset, const std::string& language) {
    if (asset.AssetID.HasValue()) out.Assets.push_back(Resolve(kind, asset, language));
  };
  add(AssetKind::Picture, reel.MainPicture, "");
  add(AssetKind::Sound, reel.MainSound, reel.MainSound.Language);
  add(AssetKind::OnScreenText, reel.MainSubtitle, reel.MainSubtitle.Language);
  for (const auto& text : reel.OffScreenText) add(AssetKind::OffScreenText, text, text.Language);
  for (const auto& data : reel.AuxData) {
    if (!data.AssetID.HasValue()) continue;
    add(AssetKind::AuxData, data, "");
    out.Assets.back().DataType = data.DataType;
  }
  composition.Duration += out.Duration;
  composition.Reels.push_back(std::move(out));
}

OutlineAsset ShowOutline::Resolve(AssetKind kind, const Cairn::GenericAsset& asset, const std::string& language) const {
  OutlineAsset out{kind, asset, language, "", {}};
  const auto places = m_Inputs.Store().FindAsset(asset.AssetID);
  if (const Cairn::AssetRecord* place = Usable(places)) out.Found = *place;
  return out;
}

}  // namespace Tool
