// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetInfo.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <string>

namespace Cairn {

/// Resolves asset identifiers to files. Implemented by whoever has an asset store; AssetStore is the stock one. The
/// order of the virtual operations is fixed.
class CAIRN_API IAssetLookup {
 public:
  virtual ~IAssetLookup();
  /// Appends the identifiers of all assets known.
  [[nodiscard]] virtual Result_t GetAssetIDList(UUIDList& out) const = 0;
  /// Makes the file at `path` known, with the digest its packing list gives, and answers its record.
  [[nodiscard]] virtual Result_t RegisterAsset(const std::string& path, const SHA1& digest, AssetInfo& out) = 0;
  /// Answers one asset's record. `flag` is the implementation's to interpret; the engine always passes true.
  /// @return RESULT_OK; RESULT_FALSE or a failure when there is no such asset.
  [[nodiscard]] virtual Result_t GetInfoForAssetID(const UUID& id, AssetInfo& out, bool flag) const = 0;
  /// Appends the records of those assets of the list that are known.
  /// @return RESULT_OK when all are known; RESULT_FALSE when some are not; otherwise a failure.
  [[nodiscard]] virtual Result_t GetInfoForAssetIDList(const UUIDList& ids, AssetInfoList& out, bool flag) const = 0;

 protected:
  IAssetLookup() = default;
  IAssetLookup(const IAssetLookup&) = default;
  IAssetLookup& operator=(const IAssetLookup&) = default;
};

}  // namespace Cairn
