// SPDX-License-Identifier: BSD-3-Clause
#include "FrameSource.h"

#include "FileFrames.h"
#include "ShowFrames.h"
#include "show/InfoKinds.h"
#include "show/Paths.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"
#include "terminal/ReasonText.h"

#include <Cairn/InspectFile.h>
#include <Ferro/FileReader.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/FileStructure.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <algorithm>
#include <string_view>

namespace Tool {

FrameSource::~FrameSource() = default;

std::string FrameChannel::Name() const {
  constexpr const char* Names[] = {"picture", "sound", "subtitle", "caption", "data"};
  return Names[Type] + (Number == 0 ? "" : ' ' + std::to_string(Number + 1));
}

namespace {

// What is wrong is told by its result, not line by line.
Ferro::Result_t LookInto(const std::string& name, Cairn::FileContent& content) {
  const QuietLog log;
  return Cairn::InspectFile(name, content);
}

/// True for MXF that may have been a track file.
bool HasDamagedHeader(const std::string& name, const Cairn::FileContent& content) {
  if (content.Type != Cairn::FT_MXF) return false;
  const QuietLog log;
  Ferro::FileReader file;
  QUIRE::MXF::FileStructure structure;
  return file.OpenRead(name).Success() && structure.ReadHeader(file).Failure();
}

/// Throws CommandError for MXF files without frames that a reader could find.
void RefuseOtherMXF(const std::string& name) {
  const QuietLog log;
  QUIRE::TrackFileIdentity identity;
  if (QUIRE::IdentifyTrackFile(name, identity).Failure() || identity.Fault == QUIRE::TrackFileFault::None) return;
  throw CommandError(ExitCode::Usage,
                     name + ": this is " + identity.EncodeString() + ". No frames are taken out of it.");
}

}  // namespace

std::unique_ptr<FrameSource> OpenFrameSource(const InputOptions& options, TrackKeys& keys) {
  if (options.Names.size() == 1 && IsRegularFile(options.Names.front())) {
    const std::string& name = options.Names.front();
    Cairn::FileContent content;
    if (const Ferro::Result_t result = LookInto(name, content); result.Failure())
      throw CommandError(ExitCode::NotPlayable, name + ": the file cannot be read: " + ReasonText(result));
    if (HasDamagedHeader(name, content))
      throw CommandError(ExitCode::NotPlayable,
                         name + ": the header of this MXF file is damaged: copy the file again.");
    if (IsMXF(content.Type)) RefuseOtherMXF(name);
    if (auto file = OpenTrackFile(name, content.Type, keys.Of(name))) return file;
    if (content.Type == Cairn::FT_UNKNOWN || content.Type == Cairn::FT_XML)
      throw CommandError(ExitCode::Usage,
                         name + ": this is no track file of digital cinema, no composition and no show playlist.");
  }
  return std::make_unique<ShowFrames>(options, keys);
}

std::string ResourceName(const Ferro::UUID& id, const std::vector<Ferro::ui8_t>& bytes) {
  using namespace std::string_view_literals;
  const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const char* extension = content.starts_with("\x89PNG"sv)    ? ".png"
                          : content.starts_with("OTTO"sv)     ? ".otf"
                          : content.starts_with("\0\1\0\0"sv) ? ".ttf"
                          : content.starts_with("true"sv)     ? ".ttf"
                                                              : ".bin";
  return id.EncodeString() + extension;
}

PictureColour ColourOfTrackFile(const std::string& filename) {
  QUIRE::JP2K::MXFSReader reader;
  if (reader.OpenRead(filename).Failure()) return PictureColour::Unknown;
  const auto* picture =
      dynamic_cast<const QUIRE::MXF::GenericPictureEssenceDescriptor*>(reader.OP1aHeader().EssenceDescriptor());
  if (picture == nullptr) return PictureColour::Unknown;
  const auto agrees = [](const std::optional<QUIRE::UL>& label, QUIRE::MDD_t meant) {
    return label && label->MatchIgnoringVersion(QUIRE::DefaultSMPTEDict().ul(meant));
  };
  if (agrees(picture->CaptureGamma, QUIRE::MDD_TransferCharacteristic_DCDM) ||
      agrees(picture->ColorPrimaries, QUIRE::MDD_ColorPrimaries_DCDM))
    return PictureColour::XYZ;
  return picture->CaptureGamma || picture->ColorPrimaries ? PictureColour::RGB : PictureColour::Unknown;
}

}  // namespace Tool
