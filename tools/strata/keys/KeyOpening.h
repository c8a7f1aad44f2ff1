// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KeyOptions.h"

#include <QUIRE/FrameDecryption.h>
#include <Sigil/KeyRing.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tool {

/// The keys that the options open, with the messages of the store. None where no option names any. Throws CommandError.
[[nodiscard]] Sigil::KeyRing OpenKeys(const KeyOptions& options, const Sigil::KeyMessageStore& messages);
/// The same with the messages that the options name, and those that lie in `folders`.
[[nodiscard]] Sigil::KeyRing OpenKeys(const KeyOptions& options, const std::vector<std::string>& folders);

/// What opens one track file.
struct TrackKey {
  QUIRE::TrackEncryption Track;
  QUIRE::FrameContexts Contexts;
};

/// The keys of track files, made ready when they are first asked for. One thread at a time.
class TrackKeys {
 public:
  explicit TrackKeys(const Sigil::KeyRing& keys) : m_Keys(keys) {}

  /// What opens the file; null where it is not encrypted, cannot be opened, or its key is not there.
  [[nodiscard]] TrackKey* Of(const std::string& filename);

 private:
  const Sigil::KeyRing& m_Keys;
  std::map<std::string, std::unique_ptr<TrackKey>> m_Files;
};

}  // namespace Tool
