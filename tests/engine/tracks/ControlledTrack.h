// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ControlledReader.h"
#include "TimelineElements/TrackFileElements.h"

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/WriterInfo.h>

#include <string>

namespace testsupport {

/// What the controlled track file below says of itself, and what its operations return.
struct FileFacts {
  Ferro::Result_t OpenResult = Ferro::RESULT_OK;
  Ferro::Result_t InfoResult = Ferro::RESULT_OK;
  Ferro::Result_t DescriptorResult = Ferro::RESULT_OK;
  QUIRE::WriterInfo Info;
  QUIRE::PCM::AudioDescriptor Descriptor;
  ui32_t Capacity = 256;
  std::string OpenedName;
  int OpenCount = 0;
  Ferro::Event* OpenBegun = nullptr;  ///< when set, opening posts it and pends on OpenLetGo
  Ferro::Event* OpenLetGo = nullptr;
};

/// A controlled reader that can be opened like a track file of sound.
class ControlledFile : public ControlledReader {
 public:
  using FrameBufferT = QUIRE::PCM::FrameBuffer;
  using DescriptorT = QUIRE::PCM::AudioDescriptor;
  static inline FileFacts Facts;  ///< of all files; a test sets it anew

  QUIRE::UL m_ChannelAssignment;
  std::string m_MCALabelString = "label";

  Ferro::Result_t OpenRead(const std::string& filename) {
    Facts.OpenedName = filename;
    ++Facts.OpenCount;
    if (Facts.OpenBegun != nullptr) {
      Facts.OpenBegun->Post();
      Facts.OpenLetGo->Pend();
    }
    return Facts.OpenResult;
  }
  Ferro::Result_t FillWriterInfo(QUIRE::WriterInfo& info) const {
    info = Facts.Info;
    return Facts.InfoResult;
  }
  Ferro::Result_t FillDescriptor(QUIRE::PCM::AudioDescriptor& descriptor) const {
    descriptor = Facts.Descriptor;
    return Facts.DescriptorResult;
  }
  [[nodiscard]] ui32_t FrameBufferSize() const { return Facts.Capacity; }
};

/// A sound track on such a file, open to tests.
class ControlledTrack final : public Strata::TrackFileElement<ControlledFile> {
 public:
  using TimelineTrack::m_ReaderThread;
  using TimelineTrack::m_TrackFile;
};

}  // namespace testsupport
