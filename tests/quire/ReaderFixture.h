// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/LogCapture.h"
#include "../support/MxfBuilder.h"
#include "../support/TemporaryFile.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <gtest/gtest.h>

namespace testsupport {

/// Frames of different sizes whose bytes tell the frame.
inline std::vector<Bytes> MakeFrames(size_t count, size_t size = 100, size_t step = 7) {
  std::vector<Bytes> frames;
  for (size_t i = 0; i < count; ++i) {
    Bytes frame(size + step * i);
    for (size_t at = 0; at < frame.size(); ++at) frame[at] = static_cast<ui8_t>(31 * i + at + 1);
    frames.push_back(std::move(frame));
  }
  return frames;
}

/// A builder with `count` frames; sound frames are all of one size.
inline MxfBuilder MakeBuilder(MxfBuilder::Kind_t kind, size_t count) {
  MxfBuilder builder(kind);
  builder.Frames = kind == MxfBuilder::PCM ? MakeFrames(count, 12000, 0) : MakeFrames(count);
  return builder;
}

inline Bytes Content(const QUIRE::FrameBuffer& frame) {
  return Bytes(frame.RoData(), frame.RoData() + frame.Size());
}

/// The bytes of one frame, read into a buffer of 64 KiB; empty on failure.
template <class Reader, class Buffer = QUIRE::JP2K::FrameBuffer>
Bytes ReadBytes(Reader& reader, ui32_t number) {
  Buffer frame;
  EXPECT_EQ(frame.Capacity(65536), Ferro::RESULT_OK);
  const QUIRE::Result_t result = reader.ReadFrame(number, frame);
  EXPECT_EQ(result.Symbol(), std::string("OK")) << "frame " << number;
  return Content(frame);
}

inline Bytes ReadSound(QUIRE::PCM::MXFReader& reader, ui32_t number) {
  return ReadBytes<QUIRE::PCM::MXFReader, QUIRE::PCM::FrameBuffer>(reader, number);
}

/// The bytes of a 16-byte identifier.
template <class T>
Bytes Raw(const T& identifier) {
  return Bytes(identifier.Bytes().begin(), identifier.Bytes().end());
}

}  // namespace testsupport
