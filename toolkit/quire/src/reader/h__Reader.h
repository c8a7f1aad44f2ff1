// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ElementReader.h"
#include "essence/TrackFacts.h"

#include <QUIRE/FrameDecryption.h>
#include <QUIRE/MXF/FileStructure.h>
#include <QUIRE/TrackFileReader.h>
#include <QUIRE/WriterInfo.h>

#include <optional>
#include <string>
#include <vector>

namespace QUIRE {

struct EyeNumbers;

/// An open track file: what the readers of all kinds share. Partitions and index are read when they are first needed.
class h__Reader {
 public:
  /// Opens the file and reads its header; checks that it is of a kind which readers of `kind` read, or, for ESS_UNKNOWN,
  /// of any kind that is known.
  [[nodiscard]] static Result_t Open(const std::string& filename, EssenceType_t kind,
                                     Ferro::mem_ptr<h__Reader>& reader);

  [[nodiscard]] MXF::OP1aHeader& Header() { return m_Structure.Header; }
  [[nodiscard]] const TrackFacts& Facts() const { return m_Facts; }
  [[nodiscard]] const WriterInfo& Info() const { return m_Info; }
  [[nodiscard]] MXF::RIP& RIP();
  /// Edit units: as the header says, or as many as the file has where the header does not say.
  [[nodiscard]] ui32_t ContainerDuration();

  [[nodiscard]] Result_t ReadFrame(ui32_t frame_number, const CryptoContexts& contexts, FrameBuffer& frame);
  [[nodiscard]] Result_t ReadPair(ui32_t frame_number, const CryptoContexts& contexts, JP2K::SFrameBuffer& frame);
  /// Finds the element of one eye; RESULT_NOT_FOUND where there is no right one.
  [[nodiscard]] Result_t LocateFrame(ui32_t frame_number, Eye eye, ElementPlace& place);
  /// Finds the elements of an edit unit in the file, of timed text those of its document.
  [[nodiscard]] Result_t LocateEditUnit(ui32_t frame_number);
  /// Finds the elements of a stream of timed text in the file: the document or a resource.
  [[nodiscard]] Result_t LocateStream(ui32_t body_sid);
  /// Finds the file's footer; RESULT_CUT where there is none, or not all of it.
  [[nodiscard]] Result_t LocateFooter();
  /// What there is to be known to decrypt the file's frames. Finds out by what rule a stereoscopic file is numbered.
  [[nodiscard]] Result_t FillTrackEncryption(TrackEncryption& encryption);
  /// The index entry of a frame that was read; all zero where the index was of constant size.
  [[nodiscard]] MXF::IndexEntry Entry(ui32_t frame_number) const;

  /// Reads a stream's only element into a buffer that grows as needed. Makes one of all elements where a generic stream was
  /// divided among several partitions (ST 410).
  [[nodiscard]] Result_t ReadStream(ui32_t body_sid, Sequence sequence, const CryptoContexts& contexts,
                                    FrameBuffer& frame);

 private:
  struct Range {
    ui64_t Position = 0;
    ui64_t Limit = 0;
  };

  h__Reader() = default;
  [[nodiscard]] Result_t ReadPartitions();
  [[nodiscard]] Result_t ReadIndex();
  [[nodiscard]] Result_t LoadIndex();
  [[nodiscard]] Result_t TryFrame(ui32_t frame_number, const CryptoContexts& contexts, FrameBuffer& frame);
  [[nodiscard]] Result_t TryStream(ui32_t body_sid, Sequence sequence, const CryptoContexts& contexts,
                                   FrameBuffer& frame);
  void CountEditUnits();
  void DropCutEditUnits();
  void WarnOfMissingEditUnits() const;
  /// RESULT_ALGORITHM when a context is of no use, because the file uses other algorithms than the known ones.
  [[nodiscard]] Result_t CheckAlgorithms(const CryptoContexts& contexts) const;
  [[nodiscard]] Result_t FindEditUnit(ui32_t frame_number, Range& range);
  [[nodiscard]] ui64_t RunEnd(ui64_t position) const;
  [[nodiscard]] Result_t ReadSingle(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                                    JP2K::SFrameBuffer& frame);
  [[nodiscard]] Result_t ReadEyes(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                                  JP2K::SFrameBuffer& frame);
  [[nodiscard]] Result_t ReadLeftEye(ui32_t frame_number, const Range& range, const CryptoContexts& contexts,
                                     FrameBuffer& frame);
  [[nodiscard]] Result_t CheckEyeIsNotMissing(ui32_t frame_number) const;
  /// The numbers of an edit unit's triplets as they stand there; one triplet alone counts for both eyes.
  [[nodiscard]] Result_t ReadNumbers(ui32_t frame_number, EyeNumbers& numbers);
  [[nodiscard]] Result_t FindSequenceRule();
  [[nodiscard]] Result_t FindElements(ui32_t body_sid, std::vector<ElementPlace>& elements);
  [[nodiscard]] Result_t JoinElements(const std::vector<ElementPlace>& elements, FrameBuffer& frame) const;

  Ferro::FileReader m_File;
  MXF::FileStructure m_Structure;
  TrackFacts m_Facts;
  WriterInfo m_Info;
  std::optional<ElementReader> m_Elements;

  std::optional<Result_t> m_PartitionsResult;  // of reading them, once they were
  std::optional<Result_t> m_IndexResult;
  std::vector<MXF::EssenceRun> m_Runs;
  MXF::IndexTable m_Index;
  ui64_t m_EditUnits = 0;
  ui32_t m_EntriesPerEditUnit = 1;
  TrackEncryption m_Encryption;
  bool m_KnowsSequenceRule = false;  // m_Encryption.Sequence was looked for in the file, or needs not be
  MXF::RIP m_BuiltRIP;               // stands in where the file has none
};

}  // namespace QUIRE
