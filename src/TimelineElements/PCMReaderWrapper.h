// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Types.h>

#include <QUIRE/PCMReader.h>
#include <QUIRE/UL.h>

#include <string>

namespace Strata {

/// The sound reader with its buffers' capacity and with what its file says of the use of its channels.
class PCMReaderWrapper : public QUIRE::PCM::MXFReader {
 public:
  using FrameBufferT = QUIRE::PCM::FrameBuffer;
  using DescriptorT = QUIRE::PCM::AudioDescriptor;
  /// In bytes: one edit unit of 16 channels, 24 bits and 96 kHz at 24 per second takes 192,000.
  static constexpr ui32_t MaxFrameBytes = 0x80000;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }

  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillAudioDescriptor(out); }

  /// Opens the file and sets the members below from its wave audio descriptor (ST 382).
  /// @return the reader's result; the failure of the look-up when the header has no wave audio descriptor.
  [[nodiscard]] QUIRE::Result_t OpenRead(const std::string& filename);
  /// The second half of OpenRead: sets the members from `header`, which is that of `filename`.
  [[nodiscard]] QUIRE::Result_t InitChannels(QUIRE::MXF::OP1aHeader& header, const std::string& filename);

  QUIRE::UL m_ChannelAssignment;  ///< no value when the file gives none
  std::string m_MCALabelString;   ///< sound configuration in its parenthesised form
};

}  // namespace Strata
