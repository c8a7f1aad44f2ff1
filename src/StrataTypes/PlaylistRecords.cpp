// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CompositionInfo.h>
#include <Strata/PlaylistEvent.h>
#include <Strata/PlaylistInfo.h>
#include <Strata/TimelinePosition.h>
#include <Strata/TransportException.h>

#include "StrataTypes/ReadEnum.h"

#include <Ferro/Assert.h>

// The records that a server sends about the playlist it plays: their archive forms and how they are printed.

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

bool PlaylistEvent::HasValue() const {
  return !Label.empty();
}

ui32_t PlaylistEvent::ArchiveLength() const {
  return 12 + static_cast<ui32_t>(Label.size() + LabelScope.size());
}

bool PlaylistEvent::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteString(Label) && Writer->WriteString(LabelScope) && Writer->WriteUi32BE(ShowPosition);
}

bool PlaylistEvent::Unarchive(Ferro::MemIOReader* Reader) {
  return Reader->ReadString(&Label) && Reader->ReadString(&LabelScope) && Reader->ReadUi32BE(&ShowPosition);
}

bool PlaylistInfo::HasValue() const {
  return ID.HasValue();
}

ui32_t PlaylistInfo::ArchiveLength() const {
  return 32 + static_cast<ui32_t>(Title.size() + Annotation.size());
}

bool PlaylistInfo::Archive(Ferro::MemIOWriter* Writer) const {
  return ID.Archive(Writer) && Writer->WriteString(Title) && Writer->WriteString(Annotation) &&
         Writer->WriteUi32BE(ContentKind) && Writer->WriteUi32BE(IsShowList ? 1 : 0);
}

bool PlaylistInfo::Unarchive(Ferro::MemIOReader* Reader) {
  ui32_t is_show_list = 0;
  if (!ID.Unarchive(Reader) || !Reader->ReadString(&Title) || !Reader->ReadString(&Annotation) ||
      !ReadEnum(*Reader, ContentKind) || !Reader->ReadUi32BE(&is_show_list))
    return false;
  IsShowList = is_show_list != 0;
  return true;
}

bool TimelinePosition::HasValue() const {
  return Duration != 0;
}

ui32_t TimelinePosition::ArchiveLength() const {
  return 24;
}

bool TimelinePosition::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteUi32BE(Duration) && Writer->WriteUi32BE(Position) && AssetID.Archive(Writer);
}

bool TimelinePosition::Unarchive(Ferro::MemIOReader* Reader) {
  return Reader->ReadUi32BE(&Duration) && Reader->ReadUi32BE(&Position) && AssetID.Unarchive(Reader);
}

bool TransportException::HasValue() const {
  return !Message.empty();
}

ui32_t TransportException::ArchiveLength() const {
  return 28 + static_cast<ui32_t>(Message.size());
}

bool TransportException::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer",
                  "virtual bool Strata::TransportException::Archive(Ferro::MemIOWriter*) const");
  return Writer->WriteUi32BE(Duration) && Writer->WriteUi32BE(Position) && CompositionID.Archive(Writer) &&
         Writer->WriteString(Message);
}

bool TransportException::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader",
                  "virtual bool Strata::TransportException::Unarchive(Ferro::MemIOReader*)");
  return Reader->ReadUi32BE(&Duration) && Reader->ReadUi32BE(&Position) && CompositionID.Unarchive(Reader) &&
         Reader->ReadString(&Message);
}

}  // namespace Strata
