// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ShowOutline.h"

#include <map>
#include <optional>
#include <string>

namespace Tool {

/// Where a composition uses an asset, or a show playlist a composition.
struct AssetUse {
  Cairn::UUID CompositionID;
  std::string Composition;        ///< its title, or its identifier
  Ferro::ui32_t Reel = 0;         ///< from 1; 0 for the composition itself
  std::optional<AssetKind> Kind;  ///< no value: it is the composition itself

  /// "Feature, reel 2, sound", "Feature, composition".
  [[nodiscard]] std::string Text() const;
};

/// What the compositions and show playlists of a store use, to give missing files a name. They are read when first asked.
class AssetUses {
 public:
  explicit AssetUses(const Cairn::AssetStore& store) : m_Store(store) {}
  /// The first use of an asset; null where nothing that can be read uses it.
  [[nodiscard]] const AssetUse* Find(const Cairn::UUID& id);

 private:
  const Cairn::AssetStore& m_Store;
  bool m_IsRead = false;
  std::map<Cairn::UUID, AssetUse> m_Uses;
};

}  // namespace Tool
