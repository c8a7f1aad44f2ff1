// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>
#include <Assay/Types.h>

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/DCDataDescriptor.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/VideoDescriptor.h>
#include <QUIRE/WriterInfo.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Assay {

/// What a sound track file's header tells of its channels.
struct SoundHeader {
  QUIRE::PCM::AudioDescriptor Descriptor;
  QUIRE::PCM::MCALabelList Labels;  ///< of channels and groups; empty where the file has none
};

/// A track file as its header tells of it. A plain value; it holds nothing open.
struct TrackFile {
  std::string Package;  ///< folder of the package that it lies in; empty where the store has it
  std::string Path;     ///< from the package's folder on; a whole path where Package is empty
  UUID ID;              ///< by which asset maps and compositions name it
  ui64_t Size = 0;      ///< bytes

  SHA1 Listed;  ///< digest by its packing list; no value where none lists it

  QUIRE::TrackFileIdentity Identity;  ///< what it is, also where no reader opens it
  /// Why no reader opens it; RESULT_INIT before it was read. With RESULT_OK there is what follows.
  QUIRE::Result_t Opened = Ferro::RESULT_INIT;
  QUIRE::WriterInfo Info;  ///< flavour, asset identifier, encryption and key
  QUIRE::Rational EditRate;
  ui32_t Duration = 0;  ///< edit units, as the header says; 0 where it does not say and the index cannot be read
  std::variant<std::monostate, QUIRE::JP2K::PictureDescriptor, QUIRE::MPEG2::VideoDescriptor, SoundHeader,
               QUIRE::TimedText::TimedTextDescriptor, QUIRE::DCData::DCDataDescriptor, QUIRE::ATMOS::AtmosDescriptor>
      Essence;

  /// The first edit unit that was tried and is not there, and why: the first one of the file and the last one that is
  /// played. Of text the document is tried. No frame is read.
  std::optional<ui32_t> BadUnit;
  QUIRE::Result_t BadReason = Ferro::RESULT_OK;
  std::optional<UUID> BadResource;  ///< of text, the first font or image that was tried and is not there
  bool IsIncomplete = false;        ///< what is played is there, the last edit unit is not
  bool HasNoFooter = false;         ///< all edit units are there, the file's end is not

  [[nodiscard]] bool IsOpen() const { return Opened.Success() && Essence.index() != 0; }
  /// What to open.
  [[nodiscard]] std::string FullPath() const;
  /// A place in it.
  [[nodiscard]] FindingPlace At() const;
  /// What its header tells, as that kind; null where it is another.
  template <class EssenceT>
  [[nodiscard]] const EssenceT* As() const {
    return std::get_if<EssenceT>(&Essence);
  }
};

}  // namespace Assay
