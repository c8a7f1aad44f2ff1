// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Codestream.h>
#include <QUIRE/WAVReader.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

void Require(bool condition) {
  if (!condition) abort();
}

void ReadJPEG2000(std::span<const QUIRE::ui8_t> bytes) {
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (QUIRE::JP2K::ParseCodestream(bytes, descriptor).Failure()) return;
  Require(descriptor.StoredWidth > 0 && descriptor.StoredHeight > 0);
  Require(descriptor.PictureComponentSizing.size() == descriptor.Csiz);
  Require(descriptor.CodingStyleDefault.size() + descriptor.QuantizationDefault.size() < bytes.size());
}

void ReadMPEG2(std::span<const QUIRE::ui8_t> bytes) {
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (QUIRE::MPEG2::ParseSequence(bytes, descriptor).Success()) {
    Require(descriptor.EditRate.Numerator > 0 && descriptor.EditRate.Denominator > 0);
  }
  size_t length = 0;
  while (QUIRE::MPEG2::FindAccessUnit(bytes, length).Success()) {
    Require(length > 0 && length <= bytes.size());
    QUIRE::MPEG2::PictureHeader header;
    (void)QUIRE::MPEG2::ParsePicture(bytes.first(length), header);
    bytes = bytes.subspan(length);
  }
}

void ReadWAV(const QUIRE::ui8_t* data, size_t size) {
  static const int file = memfd_create("fuzz", 0);
  static const std::string name = "/proc/self/fd/" + std::to_string(file);
  Require(ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
  for (const QUIRE::Rational& rate : {QUIRE::EditRate_24, QUIRE::Rational(30000, 1001)}) {
    QUIRE::PCM::WAVReader reader;
    QUIRE::PCM::AudioDescriptor descriptor;
    if (reader.OpenRead(name, rate).Failure() || reader.FillAudioDescriptor(descriptor).Failure()) continue;
    QUIRE::PCM::FrameBuffer frame;
    Require(frame.Capacity(1 << 20).Success());
    for (QUIRE::ui32_t i = 0; i < std::min<QUIRE::ui32_t>(descriptor.ContainerDuration, 8); ++i) {
      const Ferro::Result_t result = reader.ReadFrame(i, frame);
      Require(result.Success() || result == Ferro::RESULT_SMALLBUF);
    }
    Require(reader.ReadFrame(descriptor.ContainerDuration, frame) == QUIRE::RESULT_RANGE);
  }
}

}  // namespace

// Raw essence of every kind: what was understood makes sense, and whatever was not leads nowhere else.
extern "C" int LLVMFuzzerTestOneInput(const QUIRE::ui8_t* data, size_t size) {
  ReadJPEG2000(std::span(data, size));
  ReadMPEG2(std::span(data, size));
  ReadWAV(data, size);
  return 0;
}
