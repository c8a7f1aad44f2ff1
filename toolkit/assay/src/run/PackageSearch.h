// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Result.h>

#include <string>
#include <vector>

namespace Assay {

/// The packages in folders: each folder with an asset map, below the others; a folder without any is one package. Each once.
/// @return RESULT_OK; RESULT_NOT_FOUND for a folder that is not there.
[[nodiscard]] Result_t FindPackages(const std::vector<std::string>& folders, std::vector<std::string>& packages);

}  // namespace Assay
