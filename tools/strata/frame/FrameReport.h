// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <string>
#include <vector>

namespace Tool {

/// What `strata frame` wrote.
struct FrameReport {
  std::string Channel;             ///< "picture", "closed caption 2"
  Ferro::ui32_t Position = 0;      ///< edit units of what was named
  Ferro::ui32_t Count = 1;         ///< edit units
  std::string TimeCode;            ///< of the position
  std::string AssetID;             ///< of the track file; empty: silence that the show fills in
  Ferro::ui32_t FilePosition = 0;  ///< edit units of the track file
  std::string File;                ///< the track file; empty likewise
  bool Encrypted = false;          ///< ciphertext was written
  std::vector<std::string> Files;  ///< what was written, in order
  std::string Bytes;               ///< what the bytes of sound as stored are; empty for anything else
};

/// The report as lines of text.
[[nodiscard]] std::string FrameText(const FrameReport& report);
/// The report as JSON, schema strata-frame-1.
[[nodiscard]] std::string FrameJson(const FrameReport& report);

}  // namespace Tool
