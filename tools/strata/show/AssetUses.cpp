// SPDX-License-Identifier: BSD-3-Clause
#include "AssetUses.h"

#include "terminal/LogView.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>

namespace Tool {

namespace {

void AddUses(const Cairn::CompositionPlaylist& composition, std::map<Cairn::UUID, AssetUse>& uses) {
  AssetUse use;
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

}  // namespace

const AssetUse* AssetUses::Find(const Cairn::UUID& id) {
  if (!m_IsRead) {
    m_IsRead = true;
    const QuietLog log;  // what cannot be read has findings of its own
    for (const Cairn::AssetRecord& record : m_Store.Assets()) {
      Cairn::CompositionPlaylist composition;
      if (record.Info.FileType == Cairn::FT_CPL && !record.Info.RealFilename.empty() &&
          Cairn::InitObjectWithFile(composition, record.Info.RealFilename).Success())
        AddUses(composition, m_Uses);
    }
  }
  const auto use = m_Uses.find(id);
  return use == m_Uses.end() ? nullptr : &use->second;
}

}  // namespace Tool
