// SPDX-License-Identifier: BSD-3-Clause
#include "AssetFindings.h"

#include <algorithm>
#include <array>

namespace Tool {

namespace {

struct ProblemFinding {
  Cairn::AssetProblem_t Problem;
  FindingID ID;
};

// Those that keep the asset from being used first.
constexpr std::array AssetProblems = {
    ProblemFinding{Cairn::AP_MISSING_FILE, FindingID::PklAssetMissing},
    ProblemFinding{Cairn::AP_BAD_PATH, FindingID::AmPath},
    ProblemFinding{Cairn::AP_CHUNKED, FindingID::AmChunks},
    ProblemFinding{Cairn::AP_OTHER_VOLUME, FindingID::AmChunks},
    ProblemFinding{Cairn::AP_PARTIAL, FindingID::AmChunks},
    ProblemFinding{Cairn::AP_LINK, FindingID::FileUnreadable},
    ProblemFinding{Cairn::AP_NOT_A_FILE, FindingID::FileUnreadable},
    ProblemFinding{Cairn::AP_READ_FAILED, FindingID::FileUnreadable},
    ProblemFinding{Cairn::AP_UNREADABLE, FindingID::FileDamaged},
    ProblemFinding{Cairn::AP_WRONG_SIZE, FindingID::PklAssetSize},
    ProblemFinding{Cairn::AP_DIGEST_MISMATCH, FindingID::PklAssetHash},
    ProblemFinding{Cairn::AP_WRONG_ID, FindingID::FileID},
    ProblemFinding{Cairn::AP_NOT_PACKED, FindingID::PklAssetUnmapped},
    ProblemFinding{Cairn::AP_NOT_LISTED, FindingID::PklUnlisted},
    ProblemFinding{Cairn::AP_PATH_CASE, FindingID::AmPathCase},
};

/// Problems of which the store has more to say than the finding's own sentence.
constexpr Ferro::ui32_t ToldInDetail = Cairn::AP_UNREADABLE | Cairn::AP_OTHER_VOLUME | Cairn::AP_PARTIAL |
                                       Cairn::AP_LINK | Cairn::AP_NOT_A_FILE | Cairn::AP_READ_FAILED;

FindingID IDOf(Cairn::PackageProblem_t problem) {
  switch (problem) {
    case Cairn::PP_NO_ASSET_MAP:
      return FindingID::AmMissing;
    case Cairn::PP_NO_PACKING_LIST:
      return FindingID::PklMissing;
    case Cairn::PP_ASSET_MAP_UNREADABLE:
      return FindingID::AmSchema;
    case Cairn::PP_PACKING_LIST_UNREADABLE:
      return FindingID::PklSchema;
    case Cairn::PP_SEVERAL_ASSET_MAPS:
      return FindingID::AmSeveral;
    case Cairn::PP_LISTS_DISAGREE:
      return FindingID::PklDisagree;
    case Cairn::PP_REPEATED_ASSET:
      return FindingID::AmDuplicateID;
  }
  return FindingID::AmSchema;
}

/// What keeps an entry from being read, before the system's reason.
const char* Unreadable(Cairn::UnreadableKind_t kind) {
  switch (kind) {
    case Cairn::UK_FOLDER:
      return "a folder that cannot be opened, ";
    case Cairn::UK_LINK:
      return "a symbolic link that leads nowhere, ";
    case Cairn::UK_FILE:
    case Cairn::UK_ENTRY:
      break;
  }
  return "";
}

/// Why the system, or the store, cannot use the file.
std::string ReasonOf(const Cairn::AssetRecord& record, Cairn::AssetProblem_t problem) {
  if (problem == Cairn::AP_UNREADABLE && !record.OpenFailure.empty()) return record.OpenFailure;
  if (problem == Cairn::AP_READ_FAILED && !record.ReadFailure.empty()) return record.ReadFailure;
  Cairn::AssetRecord alone;
  alone.Problems = problem;
  return WithoutFullStop(alone.Reasons().front());
}

Finding FindingOf(const Cairn::AssetRecord& record, const ProblemFinding& problem, MappedPaths& paths) {
  const bool cannot_open = problem.Problem == Cairn::AP_UNREADABLE && !record.OpenFailure.empty();
  Finding finding(cannot_open ? FindingID::FileUnreadable : problem.ID);
  finding.Place =
      PlaceOf(record.Info.RealFilename.empty() ? paths.Of(record) : record.Info.RealFilename, record.Package);
  finding.Place.Asset = record.Info.ID;
  finding.Place.Use = UseOf(record.Info.FileType);
  if ((problem.Problem & ToldInDetail) != 0) finding.Found = ReasonOf(record, problem.Problem);
  if (problem.Problem == Cairn::AP_WRONG_SIZE && record.HasListedSize) {
    finding.Expected = BytesCount(record.ListedSize);
    finding.Found = BytesCount(record.Info.FileSize);
  }
  return finding;
}

}  // namespace

FindingList FindingsOfAsset(const Cairn::AssetRecord& record, MappedPaths& paths) {
  FindingList findings;
  for (const ProblemFinding& problem : AssetProblems)
    if ((record.Problems & problem.Problem) != 0) findings.push_back(FindingOf(record, problem, paths));
  return findings;
}

FindingList FindingsOfPackage(const Cairn::PackageRecord& package) {
  FindingList findings;
  for (const Cairn::PackageFinding& problem : package.Findings) {
    const bool has_no_map = problem.Problem == Cairn::PP_NO_ASSET_MAP;
    if (has_no_map && package.Has(Cairn::PP_ASSET_MAP_UNREADABLE)) continue;
    Finding& finding = findings.emplace_back(IDOf(problem.Problem));
    finding.Place.Package = package.Folder;
    finding.Place.Document = problem.Path;
    finding.Place.Asset = problem.AssetID;
  }
  return findings;
}

Finding FindingOfUnreadable(const Cairn::UnreadableEntry& entry) {
  Finding finding(FindingID::FileUnreadable, FindingClass::Warning);
  finding.Place = PlaceOf(entry.Path);
  finding.Found = Unreadable(entry.Kind) + entry.Reason;
  return finding;
}

std::string WithoutFullStop(std::string text) {
  while (text.ends_with('.')) text.pop_back();
  return text;
}

std::string BytesCount(Ferro::ui64_t bytes) {
  return std::to_string(bytes) + " bytes";
}

}  // namespace Tool
