// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ShowOutline.h"

#include <map>

namespace Tool {

/// Where a composition uses an asset.
struct AssetUse {
  std::string Composition;  ///< its title, or its identifier
  Ferro::ui32_t Reel = 0;   ///< from 1
  AssetKind Kind = AssetKind::Picture;
};

/// What the compositions of a store use, to give missing files a name. They are read when first asked.
class AssetUses {
 public:
  explicit AssetUses(const Cairn::AssetStore& store) : m_Store(store) {}
  /// The first use of an asset; null where no composition that can be read uses it.
  [[nodiscard]] const AssetUse* Find(const Cairn::UUID& id);

 private:
  const Cairn::AssetStore& m_Store;
  bool m_IsRead = false;
  std::map<Cairn::UUID, AssetUse> m_Uses;
};

}  // namespace Tool
