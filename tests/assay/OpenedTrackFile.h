// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace testsupport {

/// A track file in a folder as its header tells of it.
template <class ReaderT, class FillT>
Assay::TrackFile OpenedTrackFile(const std::string& folder, const std::string& name, const FillT& fill) {
  Assay::TrackFile file;
  file.Package = folder;
  file.Path = name;
  std::error_code error;
  file.Size = std::filesystem::file_size(folder + '/' + name, error);
  ReaderT reader;
  file.Opened = reader.OpenRead(folder + '/' + name);
  EXPECT_EQ(file.Opened, Ferro::RESULT_OK);
  EXPECT_EQ(reader.FillWriterInfo(file.Info), Ferro::RESULT_OK);
  file.ID = file.Info.AssetUUID;
  fill(reader, file);
  return file;
}

inline Assay::TrackFile OpenedPicture(const std::string& folder, const std::string& name) {
  return OpenedTrackFile<QUIRE::JP2K::MXFSReader>(folder, name, [](const auto& reader, Assay::TrackFile& file) {
    QUIRE::JP2K::PictureDescriptor picture;
    EXPECT_EQ(reader.FillPictureDescriptor(picture), Ferro::RESULT_OK);
    file.EditRate = picture.EditRate;
    file.Duration = picture.ContainerDuration;
    file.Essence = picture;
  });
}

inline Assay::TrackFile OpenedText(const std::string& folder, const std::string& name) {
  return OpenedTrackFile<QUIRE::TimedText::MXFReader>(folder, name, [](const auto& reader, Assay::TrackFile& file) {
    QUIRE::TimedText::TimedTextDescriptor text;
    EXPECT_EQ(reader.FillTimedTextDescriptor(text), Ferro::RESULT_OK);
    file.EditRate = text.EditRate;
    file.Duration = text.ContainerDuration;
    file.Essence = text;
  });
}

}  // namespace testsupport
