// SPDX-License-Identifier: BSD-3-Clause
#include "AssetUses.h"

#include "terminal/LogView.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>
#include <Strata/ShowPlaylist.h>

namespace Tool {

namespace {

void AddUses(const Cairn::CompositionPlaylist& composition, std::map<Cairn::UUID, AssetUse>& uses) {
  AssetUse use;
  use.CompositionID = composition.ID;
  use.Composition = composition.ContentTitle.empty() ? composition.ID.EncodeString() : composition.ContentTitle;
  const auto add = [&](AssetKind kind, const Cairn::GenericAsset& asset) {
    use.Kind = kind;
    if (asset.AssetID.HasValue()) uses.try_emplace(asset.AssetID, use);
  };
  for (const Cairn::Reel& reel : composition.ReelList) {
    ++use.Reel;
    add(AssetKind::Picture, reel.MainPicture);
    add(AssetKind::Sound, reel.MainSound);
    add(AssetKind::OnScreenText, reel.MainSubtitle);
    for (const auto& text : reel.OffScreenText) add(AssetKind::OffScreenText, text);
    for (const auto& data : reel.AuxData) add(AssetKind::AuxData, data);
  }
}

void AddUses(const Strata::ShowPlaylist& show, std::map<Cairn::UUID, AssetUse>& uses) {
  for (const auto& item : show.ShowSequence)
    if (const auto* composition = dynamic_cast<const Strata::ShowPlaylist::CompositionItem*>(item.get()))
      uses.try_emplace(composition->ID, AssetUse{composition->ID,
                                                 composition->Annotation.empty() ? composition->ID.EncodeString()
                                                                                 : composition->Annotation,
                                                 0,
                                                 {}});
}

template <class Document>
void AddUsesOf(const Cairn::AssetInfo& info, std::map<Cairn::UUID, AssetUse>& uses) {
  Document document;
  if (Cairn::InitObjectWithFile(document, info.RealFilename).Success()) AddUses(document, uses);
}

}  // namespace

std::string AssetUse::Text() const {
  if (!Kind) return Composition + ", composition";
  return Composition + ", reel " + std::to_string(Reel) + ", " + AssetKindName(*Kind);
}

const AssetUse* AssetUses::Find(const Cairn::UUID& id) {
  if (!m_IsRead) {
    m_IsRead = true;
    const QuietLog log;  // what cannot be read has findings of its own
    for (const Cairn::AssetRecord& record : m_Store.Assets()) {
      if (record.Info.RealFilename.empty()) continue;
      if (record.Info.FileType == Cairn::FT_CPL) AddUsesOf<Cairn::CompositionPlaylist>(record.Info, m_Uses);
      if (record.Info.FileType == Cairn::FT_SHOW) AddUsesOf<Strata::ShowPlaylist>(record.Info, m_Uses);
    }
  }
  const auto use = m_Uses.find(id);
  return use == m_Uses.end() ? nullptr : &use->second;
}

}  // namespace Tool
