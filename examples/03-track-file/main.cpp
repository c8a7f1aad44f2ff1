// SPDX-License-Identifier: BSD-3-Clause
// QUIRE alone: what a picture track file holds, and one of its pictures as a JPEG 2000 codestream.
//
//   track-file <file.mxf>                       describes the file
//   track-file <file.mxf> <frame> <out.j2c>     writes the codestream of one edit unit, counted from 0
#include <Ferro/FileWriter.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KReader.h>

#include <cstdio>
#include <cstdlib>

namespace {

/// Larger than any picture of the 2K and 4K profiles; the reader never makes a buffer grow.
constexpr QUIRE::ui32_t PictureCapacity = 4 * 1024 * 1024;

/// Prints what the header says. A file that was opened has a descriptor and writer information.
QUIRE::Result_t Describe(const QUIRE::JP2K::MXFReader& reader) {
  QUIRE::JP2K::PictureDescriptor picture;
  QUIRE::WriterInfo info;
  QUIRE::Result_t result = reader.FillPictureDescriptor(picture);
  if (result.Success()) result = reader.FillWriterInfo(info);
  if (result.Failure()) return result;

  std::printf("asset      %s\n", info.AssetUUID.EncodeString().c_str());
  std::printf("made by    %s\n", info.ProductName.c_str());
  std::printf("picture    %u x %u%s\n", picture.StoredWidth, picture.StoredHeight,
              picture.Stereoscopic ? ", stereoscopic" : "");
  std::printf("edit rate  %d/%d\n", picture.EditRate.Numerator, picture.EditRate.Denominator);
  std::printf("duration   %u edit units\n", picture.ContainerDuration);
  std::printf("encrypted  %s\n", info.EncryptedEssence ? info.CryptographicKeyID.EncodeString().c_str() : "no");
  return result;
}

/// Writes the codestream as it lies in the file: of an encrypted file that is ciphertext, for nobody gave a key.
QUIRE::Result_t Extract(QUIRE::JP2K::MXFReader& reader, QUIRE::ui32_t frame_number, const char* filename) {
  QUIRE::JP2K::FrameBuffer frame;
  QUIRE::Result_t result = frame.Capacity(PictureCapacity);
  if (result.Success()) result = reader.ReadFrame(frame_number, frame);
  Ferro::FileWriter out;
  if (result.Success()) result = out.OpenWrite(filename);
  if (result.Success()) result = out.Write({frame.Data(), frame.Size()});
  if (result.Success()) result = out.Commit();  // the file appears under its name when it is whole
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  char* end = nullptr;
  const unsigned long frame_number = argc == 4 ? std::strtoul(argv[2], &end, 10) : 0;
  if ((argc != 2 && argc != 4) || (end != nullptr && (end == argv[2] || *end != 0)) || frame_number >= QUIRE::NoFrame) {
    std::fprintf(stderr, "usage: %s <file.mxf> [<frame> <out.j2c>]\n", argv[0]);
    return 2;
  }
  QUIRE::EssenceType_t type = QUIRE::ESS_UNKNOWN;
  QUIRE::Result_t result = QUIRE::EssenceType(argv[1], type);
  if (result.Success() && type != QUIRE::ESS_JPEG_2000 && type != QUIRE::ESS_JPEG_2000_S) {
    std::fprintf(stderr, "%s: no JPEG 2000 track file\n", argv[1]);
    return 1;
  }
  QUIRE::JP2K::MXFReader reader;
  if (result.Success()) result = reader.OpenRead(argv[1]);
  if (result.Success() && argc == 2) result = Describe(reader);
  if (result.Success() && argc == 4) result = Extract(reader, static_cast<QUIRE::ui32_t>(frame_number), argv[3]);
  if (result.Failure()) {
    std::fprintf(stderr, "%s: %s\n", argv[1], result.Label());
    return 1;
  }
  return 0;
}
