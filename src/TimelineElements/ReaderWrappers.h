// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The track-file readers with the capacity that each buffer of their reader thread gets, in bytes. It bounds the frame
// that can be played: 250 Mbit/s at 24 frames per second are 1.3 MB a frame.

#include "TimelineElements/PCMReaderWrapper.h"

#include <Strata/Types.h>

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>

namespace Strata {

class JP2KReaderWrapper : public QUIRE::JP2K::MXFReader {
 public:
  [[nodiscard]] ui32_t FrameBufferSize() const { return 0x400000; }
};

class JP2KSReaderWrapper : public QUIRE::JP2K::MXFSReader {
 public:
  /// Of each eye.
  [[nodiscard]] ui32_t FrameBufferSize() const { return 0x400000; }
};

class MPEGReaderWrapper : public QUIRE::MPEG2::MXFReader {
 public:
  [[nodiscard]] ui32_t FrameBufferSize() const { return 0x400000; }
};

class DCDataReaderWrapper : public QUIRE::DCData::MXFReader {
 public:
  [[nodiscard]] ui32_t FrameBufferSize() const { return 0x400000; }
};

class AtmosReaderWrapper : public QUIRE::ATMOS::MXFReader {
 public:
  [[nodiscard]] ui32_t FrameBufferSize() const { return 0x400000; }
};

// One name for what each kind of reader calls differently.

inline QUIRE::Result_t FillDescriptor(const JP2KReaderWrapper& reader, QUIRE::JP2K::PictureDescriptor& descriptor) {
  return reader.FillPictureDescriptor(descriptor);
}
inline QUIRE::Result_t FillDescriptor(const JP2KSReaderWrapper& reader, QUIRE::JP2K::PictureDescriptor& descriptor) {
  return reader.FillPictureDescriptor(descriptor);
}
inline QUIRE::Result_t FillDescriptor(const MPEGReaderWrapper& reader, QUIRE::MPEG2::VideoDescriptor& descriptor) {
  return reader.FillVideoDescriptor(descriptor);
}
inline QUIRE::Result_t FillDescriptor(const PCMReaderWrapper& reader, QUIRE::PCM::AudioDescriptor& descriptor) {
  return reader.FillAudioDescriptor(descriptor);
}
inline QUIRE::Result_t FillDescriptor(const DCDataReaderWrapper& reader, QUIRE::DCData::DCDataDescriptor& descriptor) {
  return reader.FillDCDataDescriptor(descriptor);
}
inline QUIRE::Result_t FillDescriptor(const AtmosReaderWrapper& reader, QUIRE::ATMOS::AtmosDescriptor& descriptor) {
  return reader.FillAtmosDescriptor(descriptor);
}

}  // namespace Strata
