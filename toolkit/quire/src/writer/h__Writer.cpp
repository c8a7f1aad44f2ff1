// SPDX-License-Identifier: BSD-3-Clause
#include "h__Writer.h"

#include <QUIRE/MXF/KLV.h>
#include <QUIRE/TrackFileWriter.h>

#include <Ferro/ILogSink.h>

#include <algorithm>
#include <string>
#include <utility>

namespace QUIRE {

namespace {

constexpr ui64_t HeaderSizeStep = 16384;

// What is wrong with the facts a file is to be written from; null when nothing is.
const char* FindFault(const WriterInfo& info, const Rational& edit_rate) {
  if (!info.AssetUUID.HasValue()) return "the asset has no identifier";
  if (info.LabelSetType == LS_MXF_UNKNOWN) return "no label set was chosen";
  if (edit_rate.Numerator <= 0 || edit_rate.Denominator <= 0) return "the edit rate is not positive";
  if (info.UsesHMAC && !info.EncryptedEssence) return "integrity codes need encrypted essence";
  if (info.EncryptedEssence && !info.ContextID.HasValue()) return "the cryptographic context has no identifier";
  if (info.EncryptedEssence && !info.CryptographicKeyID.HasValue()) return "the key has no identifier";
  return nullptr;
}

}  // namespace

Result_t h__Writer::Open(const std::string& filename, EssenceType_t type, const WriterInfo& info,
                         const Rational& edit_rate, const WriterOptions& options, DescriptorMaker descriptor) {
  m_Filename = filename;
  if (const char* fault = FindFault(info, edit_rate)) {
    TellFailure(std::string("cannot write a track file: ") + fault + '.');
    return Ferro::RESULT_PARAM;
  }
  const Ferro::UUID seed = options.Seed.HasValue() ? options.Seed : Ferro::UUID::Random();
  if (!seed.HasValue()) {  // all identifiers and initialization vectors follow from it
    TellFailure("cannot write a track file: the system has no random numbers.");
    return Ferro::RESULT_FAIL;
  }
  const EssenceKind& kind = KindOf(type);
  m_Plan = {&kind, info, edit_rate, MXF::Timestamp(options.Date.value_or(Ferro::Timestamp())), seed};
  m_IVecs.emplace(m_Plan.Seed, "initialization vector");
  m_Descriptor = std::move(descriptor);

  std::vector<ui8_t> header;
  Result_t result = ReserveHeader(options.HeaderSize != 0 ? options.HeaderSize : kind.HeaderSize);
  if (result.Success()) result = MakeHeader(0, MXF::PartitionStatus::OpenIncomplete, 0, header);
  if (result.Success()) result = m_File.OpenWrite(filename);
  if (result.Failure()) {
    TellFailure("cannot write a track file: " + ReasonOf(result));
    return result;
  }
  result = Write(header);
  const bool has_body_partition = info.LabelSetType == LS_MXF_SMPTE;
  m_RIP.PairArray.push_back({has_body_partition ? 0 : EssenceBodySID, 0});
  if (result.Success() && has_body_partition) {
    MXF::Partition body = NewPack(MXF::PartitionKind::Body);
    body.BodySID = EssenceBodySID;
    result = WritePartition(body);
  }
  m_EssenceStart = m_File.Tell();
  return result;
}

// Settles how many bytes the header metadata will take; they must not outgrow them when they are written again.
Result_t h__Writer::ReserveHeader(ui32_t wanted_size) {
  ui64_t length = 0;
  MXF::OP1aHeader header = BuildHeader(m_Plan, 0, m_Descriptor);
  if (const Result_t result = header.MetadataLength(IndexTags(), length); result.Failure()) return result;
  const ui64_t pack = NewPack(MXF::PartitionKind::Header).ArchiveLength();
  const ui64_t needed = pack + length + MXF::SmallestFill;
  ui64_t size = wanted_size;
  if (size < needed) size = (needed + HeaderSizeStep - 1) / HeaderSizeStep * HeaderSizeStep;
  m_HeaderByteCount = size - pack;
  return Ferro::RESULT_OK;
}

Result_t h__Writer::MakeHeader(ui32_t duration, MXF::PartitionStatus status, ui64_t footer,
                               std::vector<ui8_t>& out) const {
  MXF::OP1aHeader header = BuildHeader(m_Plan, duration, m_Descriptor);
  MXF::Partition pack = NewPack(MXF::PartitionKind::Header);
  pack.Status = status;
  pack.FooterPartition = footer;
  pack.HeaderByteCount = m_HeaderByteCount;
  pack.BodySID = m_Plan.Info.LabelSetType == LS_MXF_SMPTE ? 0 : EssenceBodySID;
  pack.Write(out);
  return header.WriteMetadata(IndexTags(), m_HeaderByteCount, out);
}

MXF::Partition h__Writer::NewPack(MXF::PartitionKind kind) const {
  MXF::Partition pack;
  pack.Kind = kind;
  pack.OperationalPattern = DictionaryFor(m_Plan.Info.LabelSetType).ul(MDD_OPAtom);
  pack.EssenceContainers = ContainerLabels(m_Plan);
  return pack;
}

MXF::IndexTags h__Writer::IndexTags() const {
  return m_IsConstantSize ? MXF::IndexTags::ConstantSize : MXF::IndexTags::VariableSize;
}

Result_t h__Writer::WritePartition(MXF::Partition& pack) {
  pack.ThisPartition = m_File.Tell();
  pack.PreviousPartition = m_LastPartition;
  std::vector<ui8_t> bytes;
  pack.Write(bytes);
  const Result_t result = Write(bytes);
  if (result.Success()) {
    m_LastPartition = pack.ThisPartition;
    m_RIP.PairArray.push_back({pack.BodySID, pack.ThisPartition});
  }
  return result;
}

template <class Work>
Result_t h__Writer::Guard(const Work& work) {
  const ui64_t start = m_File.IsOpen() ? m_File.Tell() : 0;
  const Result_t result = ResultOf(work);
  if (result == Ferro::RESULT_ALLOC && m_File.IsOpen() && m_File.Tell() != start) m_File.Abandon();
  return result;
}

Result_t h__Writer::WriteEditUnit(std::span<const ui8_t> source, ui64_t plaintext_offset, const EntryFacts& facts,
                                  AESEncContext* encryption, HMACContext* integrity) {
  return Guard([&] { return AppendEditUnit(source, plaintext_offset, facts, encryption, integrity); });
}

Result_t h__Writer::AppendEditUnit(std::span<const ui8_t> source, ui64_t plaintext_offset, const EntryFacts& facts,
                                   AESEncContext* encryption, HMACContext* integrity) {
  if (m_EditUnitCount == NoFrame) return Ferro::RESULT_TOOLARGE;
  const ui64_t start = m_File.Tell();
  const Result_t result = WriteElement(source, plaintext_offset, encryption, integrity);
  if (result.Failure()) return result;
  ++m_EditUnitCount;
  if (m_IsConstantSize) {
    m_EditUnitByteCount = static_cast<ui32_t>(m_File.Tell() - start);
  } else {
    m_Entries.push_back({start - m_EssenceStart, 0, facts.KeyFrameOffset, facts.Flags});
  }
  return result;
}

Result_t h__Writer::WriteElement(std::span<const ui8_t> source, ui64_t plaintext_offset, AESEncContext* encryption,
                                 HMACContext* integrity) {
  return Guard([&] {
    return WriteKLV(DictionaryFor(m_Plan.Info.LabelSetType).ul(m_Plan.Kind->ElementKey), source, plaintext_offset,
                    encryption, integrity);
  });
}

Result_t h__Writer::WriteGenericStream(ui32_t sid, std::span<const ui8_t> source, AESEncContext* encryption,
                                       HMACContext* integrity) {
  return Guard([&] { return AppendGenericStream(sid, source, encryption, integrity); });
}

// The pack as track files in the field have it: the general pattern, and the element's key in place of a label.
Result_t h__Writer::AppendGenericStream(ui32_t sid, std::span<const ui8_t> source, AESEncContext* encryption,
                                        HMACContext* integrity) {
  if (const Result_t result = CheckContexts(encryption, integrity); result.Failure()) return result;
  const Dictionary& dict = DictionaryFor(m_Plan.Info.LabelSetType);
  MXF::Partition pack = NewPack(MXF::PartitionKind::GenericStream);
  pack.OperationalPattern = dict.ul(MDD_OP1a);
  pack.EssenceContainers = {dict.ul(m_Plan.Kind->ElementKey)};
  pack.BodySID = sid;
  if (const Result_t result = WritePartition(pack); result.Failure()) return result;
  return WriteKLV(dict.ul(MDD_GenericStream_DataElement), source, 0, encryption, integrity);
}

Result_t h__Writer::CheckContexts(const AESEncContext* encryption, const HMACContext* integrity) const {
  if (!m_File.IsOpen()) return Ferro::RESULT_STATE;
  if (m_Plan.Info.EncryptedEssence && !encryption) return RESULT_CRYPT_CTX;
  if (m_Plan.Info.UsesHMAC && !integrity) return RESULT_HMAC_CTX;
  if ((encryption && !m_Plan.Info.EncryptedEssence) || (integrity && !m_Plan.Info.UsesHMAC)) return Ferro::RESULT_PARAM;
  return Ferro::RESULT_OK;
}

Result_t h__Writer::WriteKLV(const UL& key, std::span<const ui8_t> source, ui64_t plaintext_offset,
                             AESEncContext* encryption, HMACContext* integrity) {
  if (const Result_t result = CheckContexts(encryption, integrity); result.Failure()) return result;
  if (encryption) return WriteTriplet(key, source, plaintext_offset, *encryption, integrity);
  std::vector<ui8_t> header;
  MXF::AppendKL(header, key, source.size(), source.size() > MXF::MaxBER4 ? MXF::BERLength8 : MXF::BERLength4);
  const Result_t result = Write(header);
  return result.Success() ? Write(source) : result;
}

Result_t h__Writer::WriteTriplet(const UL& key, std::span<const ui8_t> source, ui64_t plaintext_offset,
                                 AESEncContext& encryption, HMACContext* integrity) {
  TripletFacts facts;
  facts.Key = DictionaryFor(m_Plan.Info.LabelSetType).ul(MDD_CryptEssence);
  facts.ContextID = m_Plan.Info.ContextID;
  facts.SourceKey = key;
  facts.PlaintextOffset = plaintext_offset;
  facts.IVec = m_IVecs->NextBlock();
  facts.TrackFileID = m_Plan.Info.AssetUUID;
  facts.SequenceNumber = m_SequenceNumber + 1;
  if (const Result_t result = MakeTriplet(facts, source, encryption, integrity, m_Triplet); result.Failure()) {
    return result;
  }
  m_SequenceNumber = facts.SequenceNumber;
  return Write(m_Triplet);
}

MXF::IndexTableSegment h__Writer::MakeSegment(IdentifierSource& identifiers) const {
  MXF::IndexTableSegment segment;
  segment.InstanceUID = identifiers.Next();
  segment.IndexEditRate = m_Plan.EditRate;
  segment.IndexSID = EssenceIndexSID;
  segment.BodySID = EssenceBodySID;
  segment.EditUnitByteCount = m_EditUnitByteCount;
  if (!m_IsConstantSize) segment.DeltaEntryArray.push_back({-1, 0, 0});
  return segment;
}

// A constant size takes one segment without entries or duration; else one for every EntriesPerSegment edit units.
std::vector<ui8_t> h__Writer::MakeIndex() const {
  IdentifierSource identifiers(m_Plan.Seed, "index");
  std::vector<ui8_t> bytes;
  size_t start = 0;
  do {
    const size_t count = std::min<size_t>(m_Entries.size() - start, MXF::IndexTableSegment::EntriesPerSegment);
    MXF::IndexTableSegment segment = MakeSegment(identifiers);
    segment.IndexStartPosition = static_cast<i64_t>(start);
    segment.IndexDuration = static_cast<i64_t>(count);
    const auto first = m_Entries.begin() + static_cast<std::ptrdiff_t>(start);
    segment.IndexEntryArray.assign(first, first + static_cast<std::ptrdiff_t>(count));
    segment.Write(bytes);
    start += count;
  } while (start < m_Entries.size());
  return bytes;
}

Result_t h__Writer::Finalize(ui32_t duration) {
  return Guard([&] { return Complete(duration); });
}

// What comes last is written first: only when index and random index pack are on disk does the header say that the file
// is complete.
Result_t h__Writer::Complete(ui32_t duration) {
  if (!m_File.IsOpen()) return Ferro::RESULT_STATE;
  const std::vector<ui8_t> index = MakeIndex();
  MXF::Partition footer = NewPack(MXF::PartitionKind::Footer);
  footer.FooterPartition = m_File.Tell();
  footer.IndexByteCount = index.size();
  footer.IndexSID = EssenceIndexSID;

  std::vector<ui8_t> rip;
  std::vector<ui8_t> header;
  Result_t result = WritePartition(footer);
  m_RIP.Write(rip);
  if (result.Success()) result = Write(index);
  if (result.Success()) result = Write(rip);
  if (result.Success()) {
    result = MakeHeader(duration, MXF::PartitionStatus::ClosedComplete, footer.ThisPartition, header);
  }
  if (result.Success()) result = m_File.WriteAt(0, header);
  if (result.Success()) result = m_File.Commit();
  if (result.Failure()) {
    TellFailure("cannot complete the track file: " + ReasonOf(result));
    m_File.Abandon();
  }
  return result;
}

Result_t h__Writer::Write(std::span<const ui8_t> bytes) {
  const ui64_t position = m_File.Tell();
  const Result_t result = m_File.Write(bytes);
  if (result.Failure()) {
    TellFailure("cannot write " + std::to_string(bytes.size()) + " bytes at offset " + std::to_string(position) + ": " +
                ReasonOf(result));
    m_File.Abandon();
  }
  return result;
}

void h__Writer::TellFailure(const std::string& what) {
  TellWriteFailure(m_Filename, what, m_FailureReason);
}

// In the system's words where they say more than the result.
std::string h__Writer::ReasonOf(const Result_t& result) const {
  const std::string reason = m_File.FailureReason();
  return reason.empty() ? result.Label() : reason;
}

TrackFileWriter::TrackFileWriter() = default;
TrackFileWriter::~TrackFileWriter() = default;

ui32_t TrackFileWriter::EditUnitCount() const {
  return m_Writer ? m_Writer->EditUnitCount() : 0;
}

Result_t TrackFileWriter::Finalize() {
  return FinalizeWith(EditUnitCount());
}

Result_t TrackFileWriter::FinalizeWith(ui32_t duration) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  const auto writer = std::move(m_Writer);
  const Result_t result = writer->Finalize(duration);
  m_FailureReason = writer->FailureReason();
  return result;
}

std::string TrackFileWriter::FailureReason() const {
  return m_Writer ? m_Writer->FailureReason() : m_FailureReason;
}

void TrackFileWriter::Abandon() {
  m_FailureReason = FailureReason();
  m_Writer.set(nullptr);
}

}  // namespace QUIRE
