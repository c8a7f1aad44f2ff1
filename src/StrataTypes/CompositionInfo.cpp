// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CompositionInfo.h>

#include "StrataTypes/ReadEnum.h"

#include <Ferro/Assert.h>

namespace Strata {
namespace {

const char* ImageFormatName(Cairn::FileType_t format) {
  switch (format) {
    case Cairn::FT_QUIRE_JP2K_J2C:
      return "JPEG 2000";
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return "Stereoscopic JPEG 2000";
    case Cairn::FT_QUIRE_MPEG2_VES:
      return "HD MPEG-2";
    default:
      return "unknown";
  }
}

}  // namespace

// Counts print as signed numbers; that is what readers of these lines expect.
void CompositionInfo::Dump(FILE* stream) const {
  if (stream == nullptr) stream = stderr;
  const auto number = [](ui32_t value) { return static_cast<i32_t>(value); };
  std::fprintf(stream, "         ID: %s\n", ID.EncodeString().c_str());
  std::fprintf(stream, "      Title: %s\n", Title.c_str());
  std::fprintf(stream, "   EditRate: %d/%d (%f)\n", EditRate.Numerator, EditRate.Denominator, EditRate.Quotient());
  std::fprintf(stream, "CurrentReel: %d\n", number(CurrentReel));
  std::fprintf(stream, " TotalReels: %d\n", number(TotalReels));
  std::fprintf(stream, "   Duration: %d\n", number(Duration));
  std::fprintf(stream, "ImageFormat: %s\n", ImageFormatName(ImageFormat));
  std::fprintf(stream, " ImageWidth: %d\n", number(ImageWidth));
  std::fprintf(stream, "ImageHeight: %d\n", number(ImageHeight));
  std::fprintf(stream, "SoundFormat: %d\n", number(SoundFormat));
}

bool CompositionInfo::HasValue() const {
  return ID.HasValue();
}

// 8 bytes less than Archive writes; see the class.
ui32_t CompositionInfo::ArchiveLength() const {
  return 48 + static_cast<ui32_t>(Title.size());
}

bool CompositionInfo::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer",
                  "virtual bool Strata::CompositionInfo::Archive(Ferro::MemIOWriter*) const");
  return ID.Archive(Writer) && Writer->WriteString(Title) && EditRate.Archive(Writer) &&
         Writer->WriteUi32BE(CurrentReel) && Writer->WriteUi32BE(TotalReels) && Writer->WriteUi32BE(Duration) &&
         Writer->WriteUi32BE(ImageFormat) && Writer->WriteUi32BE(ImageWidth) && Writer->WriteUi32BE(ImageHeight) &&
         Writer->WriteUi32BE(SoundFormat);
}

bool CompositionInfo::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::CompositionInfo::Unarchive(Ferro::MemIOReader*)");
  return ID.Unarchive(Reader) && Reader->ReadString(&Title) && EditRate.Unarchive(Reader) &&
         Reader->ReadUi32BE(&CurrentReel) && Reader->ReadUi32BE(&TotalReels) && Reader->ReadUi32BE(&Duration) &&
         ReadEnum(*Reader, ImageFormat) && Reader->ReadUi32BE(&ImageWidth) && Reader->ReadUi32BE(&ImageHeight) &&
         Reader->ReadUi32BE(&SoundFormat);
}

}  // namespace Strata
