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

#include <string>
#include <variant>
#include <vector>

namespace Assay {

/// What a sound track file's header tells of its channels.
struct SoundHeader {
  QUIRE::PCM::AudioDescriptor Descriptor;
  std::vector<QUIRE::MCALabel> Labels;  ///< of channels and groups; empty where the file has none
};

/// A track file as its header tells of it. A plain value; it holds nothing open.
struct TrackFile {
  std::string Package;  ///< folder of the package that it lies in; empty where the store has it
  std::string Path;     ///< from the package's folder on; a whole path where Package is empty
  UUID ID;              ///< by which asset maps and compositions name it
  ui64_t Size = 0;      ///< bytes

  QUIRE::TrackFileIdentity Identity;
  QUIRE::Result_t Opened;  ///< why no reader opens it, or RESULT_OK; only then there is what follows
  QUIRE::WriterInfo Info;  ///< flavour, asset identifier, encryption and key
  QUIRE::Rational EditRate;
  ui32_t Duration = 0;  ///< edit units
  std::variant<std::monostate, QUIRE::JP2K::PictureDescriptor, QUIRE::MPEG2::VideoDescriptor, SoundHeader,
               QUIRE::TimedText::TimedTextDescriptor, QUIRE::DCData::DCDataDescriptor, QUIRE::ATMOS::AtmosDescriptor>
      Essence;

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
