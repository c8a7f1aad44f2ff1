// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "HeaderBuilder.h"
#include "base/ResultOf.h"
#include "crypto/EncryptedTriplet.h"

#include <QUIRE/FrameBuffer.h>
#include <QUIRE/MXF/IndexTableSegment.h>
#include <QUIRE/MXF/RIP.h>
#include <QUIRE/WriterOptions.h>

#include <Ferro/FileWriter.h>
#include <Ferro/ILogSink.h>

#include <optional>
#include <string>
#include <utility>

namespace QUIRE {

/// Writes one track file of any kind: header, essence elements or encrypted triplets, generic streams, footer with the
/// index, random index pack; at the end the header again, with what is known by then.
///
///   header | body pack | element element ... | stream pack | data ... | footer pack | index | random index pack
///
/// An Interop file has no body pack: its essence follows the header metadata. A failure of the system while writing
/// abandons the file; every call after that is RESULT_STATE.
class h__Writer {
 public:
  /// One edit unit's place in the index, apart from its offset.
  struct EntryFacts {
    ui8_t Flags = 0x80;  // random access
    i8_t KeyFrameOffset = 0;
  };

  /// Checks the facts, creates the file and writes the header. Logs what is wrong.
  [[nodiscard]] Result_t Open(const std::string& filename, EssenceType_t type, const WriterInfo& info,
                              const Rational& edit_rate, const WriterOptions& options, DescriptorMaker descriptor);

  /// Every edit unit will have the size of the first; the index then lists none of them. Before Open.
  void UseConstantSize() { m_IsConstantSize = true; }
  /// Writes the element that begins an edit unit, and notes it in the index.
  [[nodiscard]] Result_t WriteEditUnit(std::span<const ui8_t> source, ui64_t plaintext_offset, const EntryFacts& facts,
                                       AESEncContext* encryption, HMACContext* integrity);
  [[nodiscard]] Result_t WriteEditUnit(const FrameBuffer& frame, const EntryFacts& facts, AESEncContext* encryption,
                                       HMACContext* integrity) {
    return WriteEditUnit(std::span(frame.RoData(), frame.Size()), frame.PlaintextOffset(), facts, encryption,
                         integrity);
  }
  /// Writes an element that continues the edit unit (the right eye).
  [[nodiscard]] Result_t WriteElement(std::span<const ui8_t> source, ui64_t plaintext_offset, AESEncContext* encryption,
                                      HMACContext* integrity);
  /// Writes a generic stream partition with one data element (ST 410; ST 429-5).
  [[nodiscard]] Result_t WriteGenericStream(ui32_t sid, std::span<const ui8_t> source, AESEncContext* encryption,
                                            HMACContext* integrity);

  /// Entries so far, for kinds that complete them later.
  [[nodiscard]] std::vector<MXF::IndexEntry>& Entries() { return m_Entries; }
  [[nodiscard]] ui32_t EditUnitCount() const { return m_EditUnitCount; }

  /// Completes the file for `duration` edit units; it then stands under its name.
  [[nodiscard]] Result_t Finalize(ui32_t duration);
  /// As TrackFileWriter::FailureReason.
  [[nodiscard]] const std::string& FailureReason() const { return m_FailureReason; }

 private:
  [[nodiscard]] Result_t ReserveHeader(ui32_t wanted_size);
  [[nodiscard]] Result_t MakeHeader(ui32_t duration, MXF::PartitionStatus status, ui64_t footer,
                                    std::vector<ui8_t>& out) const;
  [[nodiscard]] Result_t WritePartition(MXF::Partition& pack);
  [[nodiscard]] Result_t WriteKLV(const UL& key, std::span<const ui8_t> source, ui64_t plaintext_offset,
                                  AESEncContext* encryption, HMACContext* integrity);
  [[nodiscard]] Result_t WriteTriplet(const UL& key, std::span<const ui8_t> source, ui64_t plaintext_offset,
                                      AESEncContext& encryption, HMACContext* integrity);
  [[nodiscard]] Result_t CheckContexts(const AESEncContext* encryption, const HMACContext* integrity) const;
  [[nodiscard]] std::vector<ui8_t> MakeIndex() const;
  [[nodiscard]] MXF::IndexTableSegment MakeSegment(IdentifierSource& identifiers) const;
  [[nodiscard]] MXF::Partition NewPack(MXF::PartitionKind kind) const;
  [[nodiscard]] MXF::IndexTags IndexTags() const;
  [[nodiscard]] Result_t Write(std::span<const ui8_t> bytes);
  [[nodiscard]] Result_t AppendEditUnit(std::span<const ui8_t> source, ui64_t plaintext_offset, const EntryFacts& facts,
                                        AESEncContext* encryption, HMACContext* integrity);
  [[nodiscard]] Result_t AppendGenericStream(ui32_t sid, std::span<const ui8_t> source, AESEncContext* encryption,
                                             HMACContext* integrity);
  [[nodiscard]] Result_t Complete(ui32_t duration);
  void TellFailure(const std::string& what);
  [[nodiscard]] std::string ReasonOf(const Result_t& result) const;
  /// The result of `work`; RESULT_ALLOC where it runs out of memory. A file that it changed by then is given up.
  template <class Work>
  [[nodiscard]] Result_t Guard(const Work& work);

  HeaderPlan m_Plan;
  DescriptorMaker m_Descriptor;
  std::string m_Filename;
  Ferro::FileWriter m_File;
  std::string m_FailureReason;
  std::optional<IdentifierSource> m_IVecs;
  ui64_t m_HeaderByteCount = 0;
  ui64_t m_EssenceStart = 0;  // of the first element's key
  ui64_t m_LastPartition = 0;
  MXF::RIP m_RIP;
  bool m_IsConstantSize = false;
  ui32_t m_EditUnitByteCount = 0;
  ui32_t m_EditUnitCount = 0;
  std::vector<MXF::IndexEntry> m_Entries;
  ui64_t m_SequenceNumber = 0;  // of the last triplet
  std::vector<ui8_t> m_Triplet;
};

/// Logs why a file cannot be written, and keeps it.
inline void TellWriteFailure(const std::string& filename, std::string what, std::string& reason) {
  Ferro::DefaultLogSink().Error("%s: %s\n", filename.c_str(), what.c_str());
  reason = std::move(what);
}

/// Opens a writer whose descriptor `make` builds of copies of `facts`, what all kinds' OpenWrite have in common.
/// @param reason  receives why that failed.
/// @return what h__Writer::Open returns; RESULT_STATE when `writer` is set; RESULT_ALLOC.
template <class... Facts>
[[nodiscard]] Result_t OpenWriter(Ferro::mem_ptr<h__Writer>& writer, std::string& reason, const std::string& filename,
                                  EssenceType_t type, const WriterInfo& info, const Rational& edit_rate,
                                  const WriterOptions& options, bool is_constant_size,
                                  MXF::FileDescriptor& (*make)(SetFactory&, const Facts&...), const Facts&... facts) {
  if (writer) return Ferro::RESULT_STATE;
  return ResultOf([&] {
    reason.clear();
    Ferro::mem_ptr<h__Writer> opened(new h__Writer);
    if (is_constant_size) opened->UseConstantSize();
    const Result_t result =
        opened->Open(filename, type, info, edit_rate, options,
                     [make, facts...](SetFactory& sets) -> MXF::FileDescriptor& { return make(sets, facts...); });
    if (result.Success())
      writer = std::move(opened);
    else
      reason = opened->FailureReason();
    return result;
  });
}

}  // namespace QUIRE
