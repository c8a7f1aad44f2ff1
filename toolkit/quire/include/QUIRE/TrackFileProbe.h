// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AtmosDescriptor.h>
#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/TrackFileReader.h>
#include <QUIRE/VideoDescriptor.h>

namespace QUIRE {

/// Opens a track file of any kind, and tells what its header and its index say: for who has to look at many files and reads
/// no frame.
class QUIRE_API TrackFileProbe : public TrackFileReader {
 public:
  TrackFileProbe();

  /// What the open file holds; ESS_UNKNOWN when none is open.
  [[nodiscard]] EssenceType_t Type() const;
  /// What IdentifyTrackFile tells, but for system items, which are not looked for.
  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillIdentity(TrackFileIdentity& identity) const;

  // As the readers of the kinds fill them. RESULT_FORMAT for a file of another kind.
  [[nodiscard]] Result_t FillDescriptor(JP2K::PictureDescriptor& descriptor) const;
  [[nodiscard]] Result_t FillDescriptor(MPEG2::VideoDescriptor& descriptor) const;
  [[nodiscard]] Result_t FillDescriptor(PCM::AudioDescriptor& descriptor) const;
  [[nodiscard]] Result_t FillDescriptor(TimedText::TimedTextDescriptor& descriptor) const;
  [[nodiscard]] Result_t FillDescriptor(DCData::DCDataDescriptor& descriptor) const;
  [[nodiscard]] Result_t FillDescriptor(ATMOS::AtmosDescriptor& descriptor) const;
  /// The multichannel labels of sound, as PCM::MXFReader fills them; none in files of another kind.
  [[nodiscard]] Result_t FillMCALabels(PCM::MCALabelList& labels) const;

  /// Looks an edit unit up in the index and the keys and lengths of its elements in the file; of timed text, whose edit
  /// units are no places in the file, the document.
  /// @return RESULT_OK where its bytes are there, whatever they are; else what ReadFrame returns: RESULT_RANGE, RESULT_CUT,
  /// RESULT_FORMAT, RESULT_READFAIL, RESULT_INIT.
  [[nodiscard]] Result_t FindEditUnit(ui32_t number);
  /// Looks the keys and lengths of all resources of timed text up; in files of other kinds there is nothing to find.
  /// @param missing  receives the identifier of the first that is not there.
  /// @return RESULT_OK where the bytes of all are there; else RESULT_NOT_FOUND, RESULT_FORMAT, RESULT_READFAIL, RESULT_INIT.
  [[nodiscard]] Result_t FindResources(Ferro::UUID& missing);
  /// Looks for the partition that ends the file, with the index that it announces.
  /// @return RESULT_OK; RESULT_CUT where it is not there as a whole; RESULT_FORMAT, RESULT_READFAIL, RESULT_INIT.
  [[nodiscard]] Result_t FindFooter();
};

}  // namespace QUIRE
