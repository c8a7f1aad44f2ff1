// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ChannelReader.h"

#include <Cairn/AssetStore.h>

#include <map>
#include <memory>

/// Compares delivered frames with what a second reader takes from the same file.
class FrameVerifier {
 public:
  explicit FrameVerifier(const Cairn::AssetStore& store);
  ~FrameVerifier();

  /// Counts the frame, and whether it is what the file holds.
  void Inspect(const DeliveredFrame& frame);

  [[nodiscard]] Ferro::ui64_t Compared() const { return m_Compared; }
  [[nodiscard]] Ferro::ui64_t Different() const { return m_Different; }

 private:
  class Source;
  template <class Reader, class Buffer>
  class SourceOf;
  class StereoSource;

  Source* SourceFor(const Strata::ITimelineTrack& track);
  [[nodiscard]] std::unique_ptr<Source> Open(const Strata::ITimelineTrack& track) const;

  static constexpr size_t MostOpen = 32;  // files; beyond that all are closed

  const Cairn::AssetStore& m_Store;
  std::map<Cairn::UUID, std::unique_ptr<Source>> m_Sources;  // null: no file, nothing to compare with
  Ferro::ui64_t m_Compared = 0;
  Ferro::ui64_t m_Different = 0;
};
