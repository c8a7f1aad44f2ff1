// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Dice.h"
#include "PackageFiles.h"

#include <string>

namespace testsupport {

/// What was done to a package.
struct Damage {
  std::string Path;  ///< of the file
  FileKind Kind = FileKind::AssetMap;
  std::string Text;  ///< "element Duration removed", "8 bytes changed from 1234 on"

  /// "CPL.xml: element Duration removed".
  [[nodiscard]] std::string Line() const { return Path + ": " + Text; }
};

/// Damages one file of that kind, of which the package has some; which, and in what way, follows from the seed. The files
/// are others afterwards.
[[nodiscard]] Damage DamagePackage(PackageFiles& files, FileKind kind, uint32_t seed);

// What they are done with. Each returns what it did; empty, and nothing done, where there is nothing to do it to.

/// An XML document: elements, values, attributes, characters.
[[nodiscard]] std::string DamageDocument(std::string& xml, Dice& dice);
/// A track file: lengths, header metadata, index, frames.
[[nodiscard]] std::string DamageTrackFile(std::string& bytes, Dice& dice);
/// Any file: bytes, ranges, its length.
[[nodiscard]] std::string DamageBytes(std::string& bytes, Dice& dice);

/// Makes sizes and digests that packing list and composition give those of the files as they are now, and signs anew
/// what was signed, so that contents alone are damaged.
/// @param original  the package before it was damaged
void RecomputeDigests(PackageFiles& files, const PackageFiles& original);

}  // namespace testsupport
