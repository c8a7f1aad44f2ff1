// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetInfo.h>
#include <Cairn/Export.h>
#include <Cairn/Types.h>

#include <string>
#include <vector>

namespace Cairn {

/// What can be wrong with an asset in a store; bits of AssetRecord::Problems.
enum AssetProblem_t : ui32_t {
  AP_MISSING_FILE = 1,     ///< the asset map or packing list names a file that is not there
  AP_WRONG_SIZE = 2,       ///< the file's size is not the one listed
  AP_DIGEST_MISMATCH = 4,  ///< the file's digest is not the one listed; known after verification only
  AP_NOT_PACKED = 8,       ///< in the packing list, not in the asset map
  AP_NOT_LISTED = 16,      ///< in the package, but in none of its packing lists
  AP_WRONG_ID = 32,        ///< the file says it is another asset; not fatal, since packages repaired by hand have that
  AP_BAD_PATH = 64,        ///< the asset map's path leaves the package or is no relative path
  AP_CHUNKED = 128,        ///< the asset is chunked: several files hold it, which is not supported
  AP_UNREADABLE = 256,     ///< the file could not be read, or the document not understood
  AP_PATH_CASE = 512,      ///< found only by disregarding the letter case of its path
  AP_OTHER_VOLUME = 1024,  ///< the asset map puts the file on another volume than the first, which is not supported
  AP_PARTIAL = 2048,       ///< the asset map gives the file an offset within the asset: what comes before is nowhere
  AP_READ_FAILED = 4096,   ///< the file could not be read to its end; known after verification only
  AP_LINK = 8192,          ///< the path is a symbolic link that leads out of the folder, or nowhere
  AP_NOT_A_FILE = 16384,   ///< a folder, pipe, socket or device stands at the path
};

/// Those problems with which an asset cannot be used.
inline constexpr ui32_t FatalAssetProblems = AP_MISSING_FILE | AP_WRONG_SIZE | AP_DIGEST_MISMATCH | AP_BAD_PATH |
                                             AP_CHUNKED | AP_UNREADABLE | AP_OTHER_VOLUME | AP_PARTIAL |
                                             AP_READ_FAILED | AP_LINK | AP_NOT_A_FILE;

/// One asset of a store: what it is, where it came from and what is wrong with it. A plain value.
struct AssetRecord {
  AssetInfo Info;       ///< Digest is the listed one; RealFilename is empty where no file could be found
  std::string Package;  ///< folder of the package, or of a loose file
  bool HasListedSize = false;
  fsize_t ListedSize = 0;       ///< bytes, as the packing list says
  bool DigestVerified = false;  ///< the present file's digest was computed and is the listed one
  UUID FileID;                  ///< what the file says that it is; no value where it says nothing, or cannot be read
  ui32_t Problems = 0;          ///< AssetProblem_t bits
  std::string OpenFailure;  ///< why the file cannot be opened: "Permission denied"; empty when it can, or is not known
  std::string ReadFailure;  ///< why the file could not be read to its end; known to the object that verified it

  /// One sentence per problem, for a user: "The file is missing." Empty when nothing is wrong.
  [[nodiscard]] CAIRN_API std::vector<std::string> Reasons() const;
};

/// What an entry of a folder is that a scan could not read.
enum UnreadableKind_t : ui32_t {
  UK_FILE = 1,    ///< a file that cannot be opened
  UK_FOLDER = 2,  ///< a folder that cannot be opened
  UK_LINK = 3,    ///< a symbolic link that leads nowhere
  UK_ENTRY = 4,   ///< an entry that the system tells nothing about
};

/// An entry of a folder whose contents a scan could not read. A plain value.
struct UnreadableEntry {
  std::string Path;
  UnreadableKind_t Kind = UK_FILE;
  std::string Reason;  ///< the system's: "Permission denied"
};

/// What can be wrong with a package as a whole. The values are kept in index files and never change.
enum PackageProblem_t : ui32_t {
  PP_NO_ASSET_MAP = 1,             ///< it has packing lists, but no asset map that can be read
  PP_NO_PACKING_LIST = 2,          ///< it has an asset map, but no packing list that can be read
  PP_ASSET_MAP_UNREADABLE = 3,     ///< the asset map at Path could not be understood
  PP_PACKING_LIST_UNREADABLE = 4,  ///< the packing list at Path could not be understood
  PP_SEVERAL_ASSET_MAPS = 5,       ///< the asset map at Path is one more; the one counts that leads to more files
  PP_LISTS_DISAGREE = 6,           ///< the packing list at Path gives another size or digest than one before it
  PP_REPEATED_ASSET = 7,           ///< the asset map names AssetID at several places
};

/// One thing that is wrong with a package. A plain value.
struct PackageFinding {
  PackageProblem_t Problem = PP_NO_ASSET_MAP;
  std::string Path;  ///< of the document concerned, from the package's folder on; empty where there is none
  UUID AssetID;      ///< the asset concerned; no value where there is none

  /// A sentence for a user, on one line: "ASSETMAP.xml: The asset map could not be understood."
  [[nodiscard]] CAIRN_API std::string Reason() const;
};

/// One package of a store. A plain value.
struct PackageRecord {
  std::string Folder;  ///< that holds the asset map or packing list
  UUID AssetMapID;     ///< no value where there is no readable asset map
  UUIDList PackingLists;
  std::vector<PackageFinding> Findings;

  [[nodiscard]] CAIRN_API bool Has(PackageProblem_t problem) const;
};

}  // namespace Cairn
