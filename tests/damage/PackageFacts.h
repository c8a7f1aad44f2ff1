// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <set>
#include <string>
#include <vector>

namespace testsupport {

/// What is delivered of one edit unit, as a digest; of what cannot be read the reason.
struct UnitFacts {
  std::string Bytes;
  std::string Meaning;  ///< of a picture decoded, of a text as it is understood; else as Bytes
};

/// One track of one reel.
struct TrackFacts {
  enum class Kind { Picture, Sound, Text, Data };

  Kind What = Kind::Data;
  std::vector<UnitFacts> Units;        ///< in the order in which they play; of a text its document
  std::vector<std::string> Resources;  ///< fonts and images of a text, as digests
};

/// What an audience gets of a package, as the engine lays it out and the readers deliver it.
struct PackageFacts {
  std::string Timeline;  ///< as it is exported, and its tracks; or why it cannot be laid out
  std::vector<TrackFacts> Tracks;
};

/// Ways in which two packages can differ, worst first.
enum class Difference { Timeline, Picture, PictureBytes, Sound, Text, TextBytes, Resource, Data };
/// "timeline", "picture".
[[nodiscard]] const char* DifferenceName(Difference difference);

/// Looks at a package.
/// @param known  what of it need not be decoded again: units with the same bytes mean the same; may be null.
[[nodiscard]] PackageFacts FactsOf(const std::string& folder, const PackageFacts* known = nullptr);
/// PictureBytes and TextBytes only where they make no other difference.
[[nodiscard]] std::set<Difference> DifferencesOf(const PackageFacts& one, const PackageFacts& other);

}  // namespace testsupport
