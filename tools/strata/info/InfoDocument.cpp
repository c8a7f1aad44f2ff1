// SPDX-License-Identifier: BSD-3-Clause
#include "InfoDocument.h"

#include "InfoElements.h"
#include "show/ShowOutline.h"
#include "terminal/TextForms.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/PackingList.h>
#include <Strata/ShowPlaylist.h>

namespace Tool {

namespace {

const char* FormatName(Cairn::DCPFormat_t format) {
  return format == Cairn::DFT_Interop ? "Interop" : "SMPTE";
}

Json AssetJson(const char* kind, const Cairn::GenericAsset& asset) {
  Json json{{"kind", kind}, {"id", asset.AssetID.EncodeString()}};
  json["entry_point"] = asset.EntryPoint;
  json["duration"] = asset.Duration;
  json["intrinsic_duration"] = asset.IntrinsicDuration;
  AddFact(json, "key_id", asset.KeyID);
  return json;
}

Json TextJson(const char* kind, const Cairn::TimedTextAsset& asset) {
  Json json = AssetJson(kind, asset);
  AddFact(json, "language", asset.Language);
  return json;
}

Json ReelJson(const Cairn::Reel& reel, bool stereoscopic) {
  Json json{{"id", reel.ID.EncodeString()}, {"duration", reel.MainPicture.Duration}};
  Json& assets = json["assets"] = Json::array();
  if (reel.MainPicture.AssetID.HasValue())
    assets.push_back(AssetJson(stereoscopic ? "stereoscopic picture" : "picture", reel.MainPicture));
  if (reel.MainSound.AssetID.HasValue()) {
    assets.push_back(AssetJson("sound", reel.MainSound));
    AddFact(assets.back(), "language", reel.MainSound.Language);
  }
  if (reel.MainSubtitle.AssetID.HasValue())
    assets.push_back(TextJson(AssetKindName(AssetKind::OnScreenText), reel.MainSubtitle));
  for (const auto& text : reel.OffScreenText) assets.push_back(TextJson(AssetKindName(AssetKind::OffScreenText), text));
  for (const auto& data : reel.AuxData) assets.push_back(AssetJson(AssetKindName(AssetKind::AuxData), data));
  Json& markers = json["markers"] = Json::array();
  for (const Cairn::Marker& marker : reel.MainMarkers.MarkerList)
    markers.push_back(Json{{"label", marker.Label}, {"offset", marker.Offset}});
  return json;
}

void Describe(const Cairn::CompositionPlaylist& cpl, Json& item) {
  AddFact(item, "id", cpl.ID);
  item["flavour"] = FormatName(cpl.DCPFormat);
  AddFact(item, "title", cpl.ContentTitle);
  AddFact(item, "annotation", cpl.Annotation);
  AddFact(item, "content_kind", cpl.ContentKindText);
  AddFact(item, "issue_date", cpl.IssueDate);
  AddFact(item, "issuer", cpl.Issuer);
  AddFact(item, "creator", cpl.Creator);
  item["signed"] = cpl.SignatureMode != Cairn::SM_NONE;
  Ferro::ui64_t duration = 0;
  for (const Cairn::Reel& reel : cpl.ReelList) duration += reel.MainPicture.Duration;
  const QUIRE::Rational rate = cpl.ReelList.empty() ? QUIRE::Rational() : cpl.ReelList.front().MainPicture.EditRate;
  if (rate.Denominator != 0) item["edit_rate"] = rate.EncodeString();
  AddDuration(item, duration, rate);
  item["ratings"] = Json::array();
  for (const Cairn::Rating& rating : cpl.RatingList) item["ratings"].push_back(rating.Agency + ' ' + rating.Label);
  item["reels"] = Json::array();
  for (const Cairn::Reel& reel : cpl.ReelList) item["reels"].push_back(ReelJson(reel, cpl.StereoscopicImage));
}

void Describe(const Cairn::PackingList& pkl, Json& item) {
  AddFact(item, "id", pkl.ID);
  item["flavour"] = FormatName(pkl.DCPFormat);
  AddFact(item, "annotation", pkl.Annotation);
  AddFact(item, "issue_date", pkl.IssueDate);
  AddFact(item, "issuer", pkl.Issuer);
  AddFact(item, "creator", pkl.Creator);
  item["signed"] = pkl.SignatureMode != Cairn::SM_NONE;
  Ferro::ui64_t size = 0;
  for (const auto& asset : pkl.AssetList) size += asset.Size;
  item["total_size"] = size;
  item["total_size_text"] = BytesText(size);
  item["assets"] = Json::array();
  for (const auto& asset : pkl.AssetList) {
    Json json{{"id", asset.ID.EncodeString()}, {"size", asset.Size}, {"type", asset.Type}};
    AddFact(json, "file", asset.OriginalFileName);
    item["assets"].push_back(json);
  }
}

void Describe(const Cairn::AssetMap& map, Json& item) {
  AddFact(item, "id", map.ID);
  item["flavour"] = FormatName(map.DCPFormat);
  AddFact(item, "annotation", map.Annotation);
  AddFact(item, "issue_date", map.IssueDate);
  AddFact(item, "issuer", map.Issuer);
  AddFact(item, "creator", map.Creator);
  item["volumes"] = map.VolumeCount;
  item["assets"] = Json::array();
  for (const auto& asset : map.AssetList) {
    Json json{{"id", asset.ID.EncodeString()}};
    if (!asset.ChunkList.empty()) AddFact(json, "file", asset.ChunkList.front().Path);
    if (asset.IsPackingList) json["type"] = "packing list";
    item["assets"].push_back(json);
  }
}

void Describe(const Cairn::VolumeIndex& volume, Json& item) {
  item["flavour"] = FormatName(volume.DCPFormat);
  item["volume"] = volume.Index;
}

Json SequenceItemJson(const Strata::ShowPlaylist::ShowItem& item) {
  using Strata::ShowPlaylist;
  if (const auto* composition = dynamic_cast<const ShowPlaylist::CompositionItem*>(&item)) {
    Json json{{"kind", "composition"}, {"id", composition->ID.EncodeString()}};
    AddFact(json, "title", composition->Annotation);
    json["duration"] = composition->Duration;
    json["markers"] = Json::array();
    for (const auto& marker : composition->MarkerList)
      json["markers"].push_back(Json{{"label", marker.Label}, {"offset", marker.Offset}});
    return json;
  }
  if (const auto* show = dynamic_cast<const ShowPlaylist::ShowPlaylistItem*>(&item))
    return Json{{"kind", "show playlist"},
                {"id", Cairn::UUID::FromURN(show->URI).value_or(Cairn::UUID()).EncodeString()}};
  if (const auto* marker = dynamic_cast<const ShowPlaylist::MarkerItem*>(&item))
    return Json{{"kind", "marker"}, {"label", marker->Label}};
  return Json{{"kind", "unknown"}};
}

void Describe(const Strata::ShowPlaylist& spl, Json& item) {
  AddFact(item, "id", spl.ID);
  AddFact(item, "title", spl.ShowTitle);
  AddFact(item, "annotation", spl.Annotation);
  if (spl.IssueDate.HasValue()) item["issue_date"] = spl.IssueDate.EncodeString();
  AddFact(item, "issuer", spl.Issuer);
  AddFact(item, "creator", spl.Creator);
  item["signed"] = spl.SignatureMode != Cairn::SM_NONE;
  item["duration_seconds"] = spl.GetDurationSeconds();
  item["sequence"] = Json::array();
  for (const auto& entry : spl.ShowSequence) item["sequence"].push_back(SequenceItemJson(*entry));
}

void Describe(const Cairn::DCSubtitle& subtitle, Json& item) {
  AddFact(item, "id", subtitle.SubtitleID);
  item["flavour"] = "Interop";
  AddFact(item, "title", subtitle.MovieTitle);
  AddFact(item, "language", subtitle.Language);
  item["reel_number"] = subtitle.ReelNumber;
  item["spots"] = subtitle.SpotList.size();
  item["files"] = subtitle.AncillaryNames();
}

template <class T>
void DescribeFile(const std::string& path, Json& item) {
  T document;
  const auto result = Cairn::InitObjectWithFile(document, path);
  if (result.Failure()) AddProblem(item, std::string("The document cannot be read in full: ") + result.Label() + '.');
  Describe(document, item);
}

}  // namespace

void DescribeDocument(const std::string& path, Cairn::FileType_t type, Json& item) {
  switch (type) {
    case Cairn::FT_CPL:
      return DescribeFile<Cairn::CompositionPlaylist>(path, item);
    case Cairn::FT_PKL:
      return DescribeFile<Cairn::PackingList>(path, item);
    case Cairn::FT_ASSETMAP:
      return DescribeFile<Cairn::AssetMap>(path, item);
    case Cairn::FT_VOLINDEX:
      return DescribeFile<Cairn::VolumeIndex>(path, item);
    case Cairn::FT_SHOW:
      return DescribeFile<Strata::ShowPlaylist>(path, item);
    case Cairn::FT_TI_SUBTITLE:
      return DescribeFile<Cairn::DCSubtitle>(path, item);
    case Cairn::FT_RPL:
    case Cairn::FT_DCST:
      return DescribeByElements(path, item);
    default:
      return;
  }
}

}  // namespace Tool
