// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetRecord.h>

#include <algorithm>
#include <array>
#include <string_view>

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
    Words{AP_CHUNKED, "The asset is chunked: several files hold it, which is not supported."},
    Words{AP_OTHER_VOLUME, "The asset map puts the file on another volume than the first, which is not supported."},
    Words{AP_PARTIAL, "The asset map says that the file holds the end of the asset alone."},
    Words{AP_LINK, "The file is a symbolic link that leads out of the folder, or nowhere."},
    Words{AP_NOT_A_FILE, "It is no regular file but a folder, a pipe, a socket or a device."},
    Words{AP_READ_FAILED, "The file could not be read to its end."},
    Words{AP_UNREADABLE, "The file could not be read or understood."},
    Words{AP_PATH_CASE, "The file's name differs from the asset map's path in upper and lower case."},
};

const char* SentenceFor(PackageProblem_t problem) {
  switch (problem) {
    case PP_NO_ASSET_MAP:
      return "The package has no asset map.";
    case PP_NO_PACKING_LIST:
      return "The package has no packing list.";
    case PP_ASSET_MAP_UNREADABLE:
      return "The asset map could not be understood.";
    case PP_PACKING_LIST_UNREADABLE:
      return "The packing list could not be understood.";
    case PP_SEVERAL_ASSET_MAPS:
      return "The package has several asset maps.";
    case PP_LISTS_DISAGREE:
      return "Packing lists disagree on an asset; the first counts.";
    case PP_REPEATED_ASSET:
      break;
  }
  return "The asset map names an asset more than once.";
}

// A "?" for each control character, those from U+0080 on included.
std::string Printable(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    const bool is_c1 = byte == 0xC2 && next >= 0x80 && next < 0xA0;
    out += byte < 0x20 || byte == 0x7F || is_c1 ? '?' : text[i];
    if (is_c1) ++i;
  }
  return out;
}

}  // namespace

std::string PackageFinding::Reason() const {
  if (Problem == PP_REPEATED_ASSET) return "The asset map names " + AssetID.EncodeString() + " more than once.";
  const char* sentence = SentenceFor(Problem);
  return Path.empty() ? sentence : Printable(Path) + ": " + sentence;
}

bool PackageRecord::Has(PackageProblem_t problem) const {
  return std::any_of(Findings.begin(), Findings.end(),
                     [&](const PackageFinding& finding) { return finding.Problem == problem; });
}

std::vector<std::string> AssetRecord::Reasons() const {
  std::vector<std::string> reasons;
  for (const Words& words : Sentences) {
    if ((Problems & words.Problem) == 0) continue;
    if (words.Problem == AP_UNREADABLE && !OpenFailure.empty())
      reasons.push_back("The file cannot be opened: " + OpenFailure + '.');
    else if (words.Problem == AP_READ_FAILED && !ReadFailure.empty())
      reasons.push_back("The file could not be read to its end: " + ReadFailure + '.');
    else
      reasons.emplace_back(words.Text);
  }
  return reasons;
}

}  // namespace Cairn
