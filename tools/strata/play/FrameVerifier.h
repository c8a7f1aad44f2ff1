// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ChannelReader.h"
#include "keys/KeyOpening.h"

#include <Cairn/AssetStore.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tool {

/// A frame that is not what its file holds.
struct FrameDifference {
  std::string Channel;         ///< as ChannelStatistics::Name
  Ferro::ui32_t ShowPosition;  ///< edit units of the show
  Ferro::ui32_t FilePosition;  ///< edit units of the track file
  Cairn::UUID AssetID;
};

/// What came of comparing frames with their files.
struct Verification {
  Ferro::ui64_t Compared = 0;                ///< frames
  Ferro::ui64_t Different = 0;               ///< of these
  std::vector<FrameDifference> Differences;  ///< the first hundred
  Ferro::ui64_t Decrypted = 0;               ///< encrypted frames whose integrity was verified, with keys
  Ferro::ui64_t Altered = 0;                 ///< of these
};

/// Compares delivered frames with what a second reader takes from the same file.
class FrameVerifier {
 public:
  /// @param keys  that open encrypted frames; both outlive this.
  FrameVerifier(const Cairn::AssetStore& store, const Sigil::KeyRing& keys);
  ~FrameVerifier();

  /// Counts the frame, and whether it is what the file holds.
  /// Returns false when it is not.
  bool Inspect(const DeliveredFrame& frame);

  /// Counts the frame where it is encrypted and its key is there, and verifies its integrity. Returns why it does not hold;
  /// RESULT_OK also where nothing was verified.
  Ferro::Result_t VerifyIntegrity(const DeliveredFrame& frame);

  [[nodiscard]] const Verification& Outcome() const { return m_Outcome; }

 private:
  class Source;
  template <class Reader, class Buffer>
  class SourceOf;
  class StereoSource;
  class TextSource;
  class DocumentSource;

  Source* SourceFor(const Strata::ITimelineTrack& track);
  [[nodiscard]] std::unique_ptr<Source> Open(const Strata::ITimelineTrack& track) const;

  static constexpr size_t MostOpen = 32;  // files; beyond that all are closed
  static constexpr size_t MostDifferences = 100;

  TrackKey* KeyFor(const Strata::ITimelineTrack& track);

  const Cairn::AssetStore& m_Store;
  TrackKeys m_Keys;
  std::map<Cairn::UUID, TrackKey*> m_TrackKeys;              // null: nothing to open it with
  std::map<Cairn::UUID, std::unique_ptr<Source>> m_Sources;  // null: no file, nothing to compare with
  Verification m_Outcome;
};

}  // namespace Tool
