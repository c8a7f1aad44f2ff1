// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The track-file readers, each with what it reads into (FrameBufferT), what it says of its essence (DescriptorT), and the
// capacity in bytes of each buffer of its reader thread (FrameBufferSize). The capacity bounds the frame that can be
// played: 250 Mbit/s at 24 frames per second are 1.3 MB a frame.

#include "TimelineElements/PCMReaderWrapper.h"

#include <Strata/Types.h>

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>

namespace Strata {

/// A stereoscopic frame: the left and the right eye's codestream of one edit unit.
class SFrameBuffer : public QUIRE::JP2K::SFrameBuffer {};

/// Of every kind but sound; of each eye of a stereoscopic frame.
inline constexpr ui32_t MaxFrameBytes = 0x400000;

class JP2KReaderWrapper : public QUIRE::JP2K::MXFReader {
 public:
  using FrameBufferT = QUIRE::JP2K::FrameBuffer;
  using DescriptorT = QUIRE::JP2K::PictureDescriptor;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }
  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillPictureDescriptor(out); }
};

class JP2KSReaderWrapper : public QUIRE::JP2K::MXFSReader {
 public:
  using FrameBufferT = SFrameBuffer;
  using DescriptorT = QUIRE::JP2K::PictureDescriptor;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }
  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillPictureDescriptor(out); }
};

class MPEGReaderWrapper : public QUIRE::MPEG2::MXFReader {
 public:
  using FrameBufferT = QUIRE::MPEG2::FrameBuffer;
  using DescriptorT = QUIRE::MPEG2::VideoDescriptor;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }
  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillVideoDescriptor(out); }
};

class DCDataReaderWrapper : public QUIRE::DCData::MXFReader {
 public:
  using FrameBufferT = QUIRE::DCData::FrameBuffer;
  using DescriptorT = QUIRE::DCData::DCDataDescriptor;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }
  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillDCDataDescriptor(out); }
};

class AtmosReaderWrapper : public QUIRE::ATMOS::MXFReader {
 public:
  using FrameBufferT = QUIRE::DCData::FrameBuffer;
  using DescriptorT = QUIRE::ATMOS::AtmosDescriptor;
  [[nodiscard]] ui32_t FrameBufferSize() const { return MaxFrameBytes; }
  [[nodiscard]] QUIRE::Result_t FillDescriptor(DescriptorT& out) const { return FillAtmosDescriptor(out); }
};

}  // namespace Strata
