// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetRecord.h>

#include <array>

namespace Cairn {

namespace {

struct Words {
  AssetProblem_t Problem;
  const char* Text;
};

constexpr std::array Sentences = {
    Words{AP_MISSING_FILE, "The file is missing."},
    Words{AP_WRONG_SIZE, "The file does not have the size that the package lists."},
    Words{AP_DIGEST_MISMATCH, "The file was altered: its digest is not the one that the packing list gives."},
    Words{AP_NOT_PACKED, "The packing list names it, but the asset map does not."},
    Words{AP_NOT_LISTED, "It lies in the package, but no packing list names it."},
    Words{AP_WRONG_ID, "The file says that it is another asset."},
    Words{AP_BAD_PATH, "The asset map's path leaves the package."},
    Words{AP_SPLIT, "The asset is split into several files, which is not supported."},
    Words{AP_UNREADABLE, "The file could not be read or understood."},
    Words{AP_PATH_CASE, "The file's name differs from the asset map's path in upper and lower case."},
};

}  // namespace

std::vector<std::string> AssetRecord::Reasons() const {
  std::vector<std::string> reasons;
  for (const Words& words : Sentences) {
    if ((Problems & words.Problem) == 0) continue;
    if (words.Problem == AP_UNREADABLE && !OpenFailure.empty())
      reasons.push_back("The file cannot be opened: " + OpenFailure + '.');
    else
      reasons.emplace_back(words.Text);
  }
  return reasons;
}

}  // namespace Cairn
