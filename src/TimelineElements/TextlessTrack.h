// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITimelineTrack.h>

#include <string>

namespace Strata {

/// A track without text: what serves timed text answers nothing and leaves its output.
class TextlessTrack : public ITimelineTrack {
 public:
  Cairn::DCPFormat_t TextEssenceFormat() const final { return Cairn::DFT_NONE; }
  bool GetTimedTextData(QUIRE::TimedText::FrameBuffer&) const final { return false; }
  bool AncillaryResourceIDList(UUIDList&) const final { return false; }
  bool AncillaryResourceNameList(Ferro::ArchivableList<Ferro::ArchivableString>&) const final { return false; }
  bool GetTimedTextResourceByID(const UUID&, QUIRE::TimedText::FrameBuffer&) const final { return false; }
  bool GetTimedTextResourceByName(const std::string&, QUIRE::TimedText::FrameBuffer&) const final { return false; }
};

}  // namespace Strata
