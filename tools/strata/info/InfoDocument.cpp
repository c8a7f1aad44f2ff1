// SPDX-License-Identifier: BSD-3-Clause
#include "InfoDocument.h"

#include "InfoElements.h"
#include "show/Description.h"
#include "show/DocumentFault.h"
#include "show/ShowOutline.h"
#include "terminal/LogView.h"
#include "terminal/TextForms.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/PackingList.h>
#include <Strata/ShowPlaylist.h>

#include <utility>

namespace Tool {

namespace {

/// Empty where the document does not say.
const char* FormatName(Cairn::DCPFormat_t format) {
  switch (format) {
    case Cairn::DFT_Interop:
      return "Interop";
    case Cairn::DFT_DCI_SMPTE:
      return "SMPTE";
    case Cairn::DFT_IMF:
      return "IMF";
    default:
      return "";
  }
}

// A show playlist that says nothing of its date keeps the one that it has before reading, which is now by default.
template <class Document>
void ForgetDate(Document&) {}

void ForgetDate(Strata::ShowPlaylist& spl) {
  spl.IssueDate = Ferro::Timestamp(0);
}

InfoFacts AssetFacts(const char* kind, const Cairn::GenericAsset& asset, const std::string& language = "") {
  InfoFacts facts;
  facts.Set("kind", kind);
  facts.Set("id", asset.AssetID.EncodeString());
  facts.Set("entry_point", asset.EntryPoint);
  facts.Set("duration", asset.Duration);
  facts.Set("intrinsic_duration", asset.IntrinsicDuration);
  facts.Add("key_id", asset.KeyID);
  facts.Add("language", language);
  facts.Line = std::string(kind) + (language.empty() ? "" : ' ' + language) + ": plays " +
               std::to_string(asset.Duration) + " of " + std::to_string(asset.IntrinsicDuration) + " edit units" +
               (asset.EntryPoint == 0 ? "" : " from " + std::to_string(asset.EntryPoint) + " on") + ", " +
               asset.AssetID.EncodeString() +
               (asset.KeyID.HasValue() ? ", encrypted with key " + asset.KeyID.EncodeString() : "");
  return facts;
}

template <class MarkerList>
InfoList MarkersOf(const MarkerList& markers) {
  InfoList list;
  for (const auto& marker : markers) {
    InfoFacts facts;
    facts.Set("label", marker.Label);
    facts.Set("offset", marker.Offset);
    facts.Line = "marker " + marker.Label + " at edit unit " + std::to_string(marker.Offset);
    list.emplace_back(std::move(facts));
  }
  return list;
}

InfoFacts ReelFacts(const Cairn::Reel& reel, size_t number, bool stereoscopic) {
  InfoFacts facts;
  facts.Line = "reel " + std::to_string(number) + ": " + std::to_string(reel.MainPicture.Duration) + " edit units, " +
               reel.ID.EncodeString();
  facts.Set("id", reel.ID.EncodeString());
  facts.Set("duration", reel.MainPicture.Duration);
  InfoList assets;
  if (reel.MainPicture.AssetID.HasValue())
    assets.emplace_back(AssetFacts(stereoscopic ? "stereoscopic picture" : "picture", reel.MainPicture));
  if (reel.MainSound.AssetID.HasValue())
    assets.emplace_back(AssetFacts("sound", reel.MainSound, reel.MainSound.Language));
  const auto add_text = [&assets](AssetKind kind, const Cairn::TimedTextAsset& text) {
    assets.emplace_back(AssetFacts(AssetKindName(kind), text, text.Language));
  };
  if (reel.MainSubtitle.AssetID.HasValue()) add_text(AssetKind::OnScreenText, reel.MainSubtitle);
  for (const auto& text : reel.OffScreenText) add_text(AssetKind::OffScreenText, text);
  for (const auto& data : reel.AuxData) assets.emplace_back(AssetFacts(AssetKindName(AssetKind::AuxData), data));
  facts.Set("assets", std::move(assets));
  facts.Set("markers", MarkersOf(reel.MainMarkers.MarkerList));
  return facts;
}

void Describe(const Cairn::CompositionPlaylist& cpl, InfoItem& item) {
  item.Facts.Add("description", Describe(TraitsOf(cpl)));
  item.Facts.Add("id", cpl.ID);
  item.Facts.Add("flavour", FormatName(cpl.DCPFormat));
  item.Facts.Add("title", cpl.ContentTitle);
  item.Facts.Add("annotation", cpl.Annotation);
  item.Facts.Add("content_kind", cpl.ContentKindText);
  item.Facts.Add("issue_date", cpl.IssueDate);
  item.Facts.Add("issuer", cpl.Issuer);
  item.Facts.Add("creator", cpl.Creator);
  item.Facts.Set("signed", cpl.SignatureMode != Cairn::SM_NONE);
  Ferro::ui64_t duration = 0;
  for (const Cairn::Reel& reel : cpl.ReelList) duration += reel.MainPicture.Duration;
  const QUIRE::Rational rate = cpl.ReelList.empty() ? QUIRE::Rational() : cpl.ReelList.front().MainPicture.EditRate;
  item.AddEditRate(rate);
  item.AddDuration(duration, rate);
  InfoList& ratings = item.Facts.List("ratings");
  for (const Cairn::Rating& rating : cpl.RatingList) ratings.emplace_back(rating.Agency + ' ' + rating.Label);
  InfoList& reels = item.Facts.List("reels");
  for (const Cairn::Reel& reel : cpl.ReelList)
    reels.emplace_back(ReelFacts(reel, reels.size() + 1, cpl.StereoscopicImage));
}

/// What the document turned out to be instead, where that says more than a parser does; else empty.
template <class Document>
std::string WhatElse(const Document&) {
  return "";
}

std::string WhatElse(const Cairn::CompositionPlaylist& cpl) {
  return cpl.DCPFormat == Cairn::DFT_IMF ? IMFPackage : "";
}

void Describe(const Cairn::PackingList& pkl, InfoItem& item) {
  item.Facts.Add("id", pkl.ID);
  item.Facts.Add("flavour", FormatName(pkl.DCPFormat));
  item.Facts.Add("annotation", pkl.Annotation);
  item.Facts.Add("issue_date", pkl.IssueDate);
  item.Facts.Add("issuer", pkl.Issuer);
  item.Facts.Add("creator", pkl.Creator);
  item.Facts.Set("signed", pkl.SignatureMode != Cairn::SM_NONE);
  Ferro::ui64_t size = 0;
  for (const auto& asset : pkl.AssetList) size += asset.Size;
  item.Facts.Set("total_size", {size, BytesText(size)}).ShownAs(BytesText(size));
  InfoList& assets = item.Facts.List("assets");
  for (const auto& asset : pkl.AssetList) {
    InfoFacts facts;
    facts.Set("id", asset.ID.EncodeString());
    if (asset.Size != 0) facts.Set("size", asset.Size);
    facts.Set("type", asset.Type);
    facts.Add("file", asset.OriginalFileName);
    facts.Line = (asset.OriginalFileName.empty() ? "" : asset.OriginalFileName + ", ") + asset.Type + ", " +
                 (asset.Size == 0 ? "" : BytesText(asset.Size) + ", ") + asset.ID.EncodeString();
    assets.emplace_back(std::move(facts));
  }
}

void Describe(const Cairn::AssetMap& map, InfoItem& item) {
  item.Facts.Add("id", map.ID);
  item.Facts.Add("flavour", FormatName(map.DCPFormat));
  item.Facts.Add("annotation", map.Annotation);
  item.Facts.Add("issue_date", map.IssueDate);
  item.Facts.Add("issuer", map.Issuer);
  item.Facts.Add("creator", map.Creator);
  if (map.VolumeCount != 0) item.Facts.Set("volumes", map.VolumeCount);
  InfoList& assets = item.Facts.List("assets");
  for (const auto& asset : map.AssetList) {
    InfoFacts facts;
    facts.Set("id", asset.ID.EncodeString());
    if (!asset.ChunkList.empty()) facts.Add("file", asset.ChunkList.front().Path);
    if (asset.IsPackingList) facts.Set("type", "packing list");
    facts.Line = (asset.ChunkList.empty() ? "no file" : asset.ChunkList.front().Path) +
                 (asset.IsPackingList ? ", packing list, " : ", ") + asset.ID.EncodeString();
    assets.emplace_back(std::move(facts));
  }
}

void Describe(const Cairn::VolumeIndex& volume, InfoItem& item) {
  item.Facts.Add("flavour", FormatName(volume.DCPFormat));
  if (volume.Index != 0) item.Facts.Set("volume", volume.Index);
}

InfoFacts SequenceItemFacts(const Strata::ShowPlaylist::ShowItem& item) {
  using Strata::ShowPlaylist;
  InfoFacts facts;
  if (const auto* composition = dynamic_cast<const ShowPlaylist::CompositionItem*>(&item)) {
    facts.Set("kind", "composition");
    facts.Set("id", composition->ID.EncodeString());
    facts.Add("title", composition->Annotation);
    facts.Set("duration", composition->Duration);
    facts.Set("markers", MarkersOf(composition->MarkerList));
    facts.Line = "composition" + (composition->Annotation.empty() ? "" : " \"" + composition->Annotation + '"') + ": " +
                 std::to_string(composition->Duration) + " edit units, " + composition->ID.EncodeString();
  } else if (const auto* show = dynamic_cast<const ShowPlaylist::ShowPlaylistItem*>(&item)) {
    facts.Set("kind", "show playlist");
    facts.Set("id", Cairn::UUID::FromURN(show->URI).value_or(Cairn::UUID()).EncodeString());
    facts.Line = "show playlist " + show->URI;
  } else if (const auto* marker = dynamic_cast<const ShowPlaylist::MarkerItem*>(&item)) {
    facts.Set("kind", "marker");
    facts.Set("label", marker->Label);
    facts.Line = "marker " + marker->Label;
  } else {
    facts.Set("kind", "unknown");
  }
  return facts;
}

void Describe(const Strata::ShowPlaylist& spl, InfoItem& item) {
  item.Facts.Add("id", spl.ID);
  item.Facts.Add("title", spl.ShowTitle);
  item.Facts.Add("annotation", spl.Annotation);
  if (spl.IssueDate != Ferro::Timestamp(0)) item.Facts.Set("issue_date", spl.IssueDate.EncodeString());
  item.Facts.Add("issuer", spl.Issuer);
  item.Facts.Add("creator", spl.Creator);
  item.Facts.Set("signed", spl.SignatureMode != Cairn::SM_NONE);
  item.Facts.Tell("own duration", DurationText(spl.GetDurationSeconds()));
  item.Facts.Set("duration_seconds", spl.GetDurationSeconds()).ShownAs("");
  InfoList& sequence = item.Facts.List("sequence");
  for (const auto& entry : spl.ShowSequence) sequence.emplace_back(SequenceItemFacts(*entry));
}

void Describe(const Cairn::DCSubtitle& subtitle, InfoItem& item) {
  item.Facts.Add("id", subtitle.SubtitleID);
  item.Facts.Set("flavour", "Interop");
  item.Facts.Add("title", subtitle.MovieTitle);
  item.Facts.Add("language", subtitle.Language);
  if (subtitle.ReelNumber != 0) item.Facts.Set("reel_number", subtitle.ReelNumber);
  item.Facts.Set("spots", subtitle.SpotList.size());
  InfoList& files = item.Facts.List("files");
  for (const std::string& name : subtitle.AncillaryNames()) files.emplace_back(name);
}

template <class T>
void DescribeFile(const std::string& path, InfoItem& item) {
  T document;
  ForgetDate(document);
  QuietLog log;
  const auto result = Cairn::InitObjectWithFile(document, path);
  const std::string what_else = WhatElse(document);
  if (!what_else.empty()) return item.AddProblem(what_else);
  if (result.Failure())
    item.AddProblem("The document cannot be read in full: " + DocumentFault(path, result, log.Take()) + '.');
  Describe(document, item);
}

}  // namespace

void DescribeDocument(const std::string& path, Cairn::FileType_t type, InfoItem& item) {
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
