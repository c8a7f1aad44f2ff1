// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <variant>

namespace Assay {

/// The reader of a track file's kind.
class TrackReader {
 public:
  /// Opens a file that was opened before. @return as QUIRE::TrackFileReader::OpenRead.
  [[nodiscard]] QUIRE::Result_t Open(const TrackFile& file) {
    if (file.As<QUIRE::JP2K::PictureDescriptor>() != nullptr) return Open<QUIRE::JP2K::MXFSReader>(file);
    if (file.As<QUIRE::MPEG2::VideoDescriptor>() != nullptr) return Open<QUIRE::MPEG2::MXFReader>(file);
    if (file.As<SoundHeader>() != nullptr) return Open<QUIRE::PCM::MXFReader>(file);
    if (file.As<QUIRE::ATMOS::AtmosDescriptor>() != nullptr) return Open<QUIRE::ATMOS::MXFReader>(file);
    if (file.As<QUIRE::TimedText::TimedTextDescriptor>() != nullptr) return Open<QUIRE::TimedText::MXFReader>(file);
    return Open<QUIRE::DCData::MXFReader>(file);
  }
  [[nodiscard]] QUIRE::TrackFileReader& Reader() { return *m_Opened; }

 private:
  template <class ReaderT>
  [[nodiscard]] QUIRE::Result_t Open(const TrackFile& file) {
    ReaderT& reader = m_Readers.emplace<ReaderT>();
    m_Opened = &reader;
    return reader.OpenRead(file.FullPath());
  }

  std::variant<std::monostate, QUIRE::JP2K::MXFSReader, QUIRE::MPEG2::MXFReader, QUIRE::PCM::MXFReader,
               QUIRE::ATMOS::MXFReader, QUIRE::DCData::MXFReader, QUIRE::TimedText::MXFReader>
      m_Readers;
  QUIRE::TrackFileReader* m_Opened = nullptr;
};

}  // namespace Assay
