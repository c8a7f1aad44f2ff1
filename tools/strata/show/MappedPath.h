// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetRecord.h>

#include <map>
#include <string>

namespace Tool {

/// Where asset maps say that files lie. Reads each package's map once.
class MappedPaths {
 public:
  /// The path of an asset's file; the package's folder where the map does not say.
  [[nodiscard]] std::string Of(const Cairn::AssetRecord& record);

 private:
  std::map<std::string, std::map<Cairn::UUID, std::string>> m_Packages;  // by folder
};

}  // namespace Tool
