// SPDX-License-Identifier: BSD-3-Clause
#include "h__Reader.h"

#include "base/FormatError.h"
#include "base/ResultOf.h"
#include "essence/ClipWrapping.h"
#include "essence/EssenceKind.h"

#include <QUIRE/Crypto.h>

#include <Ferro/CheckedMath.h>
#include <Ferro/ILogSink.h>

#include <algorithm>
#include <array>
#include <limits>

namespace QUIRE {

using Ferro::RESULT_OK;

namespace {

WriterInfo MakeWriterInfo(const MXF::OP1aHeader& header, const TrackFacts& facts) {
  WriterInfo info;
  for (const auto& object : header.Objects()) {  // the last application is the one that wrote the file
    const auto* identification = dynamic_cast<const MXF::Identification*>(object.get());
    if (identification == nullptr) continue;
    info.ProductUUID = identification->ProductUID;
    info.ProductVersion = identification->VersionString;
    info.CompanyName = identification->CompanyName;
    info.ProductName = identification->ProductName;
  }
  info.AssetUUID = facts.AssetID;
  info.LabelSetType = facts.LabelSet;
  info.EncryptedEssence = facts.Encrypted;
  if (facts.Encrypted && facts.Crypto != nullptr) {
    const auto mic = facts.Crypto->MICAlgorithm.Bytes();
    info.UsesHMAC = std::any_of(mic.begin(), mic.end(), [](ui8_t byte) { return byte != 0; });
    info.ContextID = facts.Crypto->ContextID;
    info.CryptographicKeyID = facts.Crypto->CryptographicKeyID;
  }
  return info;
}

TrackEncryption MakeTrackEncryption(const WriterInfo& info, const TrackFacts& facts) {
  TrackEncryption encryption;
  encryption.AssetID = info.AssetUUID;
  encryption.IsEncrypted = info.EncryptedEssence;
  encryption.KeyID = info.CryptographicKeyID;
  encryption.LabelSet = info.LabelSetType;
  encryption.UsesHMAC = info.UsesHMAC;
  encryption.Algorithms = facts.Algorithms;
  encryption.IsStereoscopic = facts.IsStereoscopic();
  if (encryption.IsStereoscopic) encryption.Sequence = SequenceRule::OnePerTriplet;
  return encryption;
}

ui64_t TotalLength(const std::vector<MXF::EssenceRun>& runs) {
  return runs.empty() ? 0 : runs.back().StreamOffset + runs.back().Length;
}

}  // namespace

Result_t h__Reader::Open(const std::string& filename, EssenceType_t kind, Ferro::mem_ptr<h__Reader>& reader) {
  Ferro::mem_ptr<h__Reader> opened(new h__Reader);
  Result_t result = opened->m_File.OpenRead(filename);
  if (result.Failure()) return result;
  const LogSubject subject(filename);
  result = opened->m_Structure.ReadHeader(opened->m_File);
  if (result.Failure()) return result;

  TrackFacts& facts = opened->m_Facts;
  TrackFileFault fault = GatherTrackFacts(opened->Header(), facts);
  if (fault == TrackFileFault::None && kind == ESS_UNKNOWN && facts.Type == ESS_MXF_OTHER)
    fault = TrackFileFault::UnknownEssence;
  if (fault != TrackFileFault::None) {
    Ferro::DefaultLogSink().Error("%s: cannot be read, %s\n", filename.c_str(), WordsOf(fault).Clause);
    return RESULT_FORMAT;
  }
  if (kind != ESS_UNKNOWN && !KindOf(kind).Reads(facts.Type)) {
    Ferro::DefaultLogSink().Error("%s: holds %s, not %s\n", filename.c_str(), EssenceTypeName(facts.Type),
                                  EssenceTypeName(kind));
    return RESULT_FORMAT;
  }
  if (!facts.Algorithms.KnowsCipher)
    Ferro::DefaultLogSink().Warn("%s: encrypted by an algorithm that is not known, %s\n", filename.c_str(),
                                 facts.Algorithms.CipherAlgorithm.EncodeString().c_str());
  if (!facts.Algorithms.KnowsMIC)
    Ferro::DefaultLogSink().Warn("%s: authenticated by an algorithm that is not known, %s\n", filename.c_str(),
                                 facts.Algorithms.MICAlgorithm.EncodeString().c_str());
  opened->m_Info = MakeWriterInfo(opened->Header(), facts);
  opened->m_Encryption = MakeTrackEncryption(opened->m_Info, facts);
  opened->m_KnowsSequenceRule = !facts.IsStereoscopic() || !opened->m_Info.UsesHMAC;
  opened->m_Elements.emplace(opened->m_File, facts.Type, facts.AssetID, opened->m_Info.UsesHMAC);
  reader = std::move(opened);
  return RESULT_OK;
}

Result_t h__Reader::ReadPartitions() {
  const LogSubject subject(m_File.Filename());
  if (m_PartitionsResult) return *m_PartitionsResult;
  const Result_t result = ResultOf([this] { return m_Structure.ReadPartitions(m_File); });
  if (result != Ferro::RESULT_ALLOC) m_PartitionsResult = result;  // memory may be there another time
  return result;
}

MXF::RIP& h__Reader::RIP() {
  const bool known = ReadPartitions().Success();
  if (!m_Structure.RandomIndex.PairArray.empty()) return m_Structure.RandomIndex;
  if (!known || !m_BuiltRIP.PairArray.empty()) return m_BuiltRIP;
  const Result_t built = ResultOf([this] {
    std::vector<MXF::RIP::Pair> pairs;
    for (const MXF::Partition& partition : m_Structure.Partitions)
      pairs.push_back({partition.BodySID, partition.FileOffset - m_Structure.RunIn});
    m_BuiltRIP.PairArray = std::move(pairs);
    return RESULT_OK;
  });
  static_cast<void>(built);  // without memory it stays empty
  return m_BuiltRIP;
}

ui32_t h__Reader::ContainerDuration() {
  ui64_t duration = m_Facts.Duration;
  if (duration == 0 && m_Facts.Type != ESS_TIMED_TEXT && ReadIndex().Success()) duration = m_EditUnits;
  return static_cast<ui32_t>(std::min<ui64_t>(duration, std::numeric_limits<ui32_t>::max()));
}

Result_t h__Reader::ReadIndex() {
  if (m_IndexResult) return *m_IndexResult;
  const Result_t result = ResultOf([this] { return LoadIndex(); });
  if (result != Ferro::RESULT_ALLOC) m_IndexResult = result;
  return result;
}

Result_t h__Reader::LoadIndex() {
  const LogSubject subject(m_File.Filename());
  Result_t result = ReadPartitions();
  if (result.Success()) result = m_Structure.ReadEssenceRuns(m_File, m_Facts.BodySID, m_Runs);
  if (result.Success()) {
    const ui32_t elements = KindOf(m_Facts.Type).ElementsPerEditUnit;
    result = m_Structure.ReadOrRebuildIndex(m_File, m_Runs, m_Facts.BodySID, elements, m_Index);
  }
  if (result.Failure()) return result;
  CountEditUnits();
  if (m_EditUnits == 1 && m_Facts.Duration > 1 && IsOneClip(m_File, m_Structure, m_Runs, m_Facts)) {
    Ferro::DefaultLogSink().Error("%s: cannot be read, %s\n", m_File.Filename().c_str(),
                                  WordsOf(TrackFileFault::ClipWrapped).Clause);
    return RESULT_FORMAT;
  }
  WarnOfMissingEditUnits();
  return RESULT_OK;
}

// How many edit units the index leads to. Tables with two entries for each edit unit and with one more that marks the end
// of the essence are met in the field.
void h__Reader::CountEditUnits() {
  const ui64_t declared = m_Facts.Duration;
  if (const ui32_t size = m_Index.EditUnitByteCount(); size != 0) {
    m_EditUnits = TotalLength(m_Runs) / size;
    if (m_Index.Duration() != 0) m_EditUnits = std::min(m_EditUnits, m_Index.Duration());
  } else {
    m_EditUnits = m_Index.Duration();
    MXF::IndexEntry last;
    const bool has_entries = m_EditUnits != 0 && m_Index.Lookup(m_EditUnits - 1, last).Success();
    if (has_entries && last.StreamOffset == TotalLength(m_Runs)) --m_EditUnits;
    if (declared != 0 && m_EditUnits / 2 == declared && m_EditUnits >= 2) {
      m_EntriesPerEditUnit = 2;
      m_EditUnits = declared;
    }
    DropCutEditUnits();
  }
}

void h__Reader::WarnOfMissingEditUnits() const {
  const ui64_t declared = m_Facts.Duration;
  if (m_EditUnits < declared)
    Ferro::DefaultLogSink().Warn("%s: cut off or incomplete, has %llu of %llu edit units\n", m_File.Filename().c_str(),
                                 static_cast<unsigned long long>(m_EditUnits),
                                 static_cast<unsigned long long>(declared));
}

// A file that breaks off before its footer may have an index, in its header, that knows more than there is.
void h__Reader::DropCutEditUnits() {
  if (m_Structure.Partitions.empty() || m_Structure.Partitions.back().Kind == MXF::PartitionKind::Footer) return;
  for (; m_EditUnits > 0; --m_EditUnits) {
    MXF::IndexEntry entry;
    std::array<ui8_t, 25> key_and_length;
    size_t count = 0;
    const bool found = m_Index.Lookup((m_EditUnits - 1) * m_EntriesPerEditUnit, entry).Success();
    const auto position = found ? MXF::FilePosition(m_Runs, entry.StreamOffset) : std::nullopt;
    if (position && m_File.ReadUpTo(*position, key_and_length, count).Success() &&
        MXF::ParseKLV(std::span(key_and_length).first(count), *position, m_File.Size()))
      return;
  }
}

ui64_t h__Reader::RunEnd(ui64_t position) const {
  if (m_Runs.size() == 1) return m_Runs.front().FileOffset + m_Runs.front().Length;
  const auto after = std::upper_bound(m_Runs.begin(), m_Runs.end(), position,
                                      [](ui64_t at, const MXF::EssenceRun& run) { return at < run.FileOffset; });
  return after == m_Runs.begin() ? position : std::prev(after)->FileOffset + std::prev(after)->Length;
}

MXF::IndexEntry h__Reader::Entry(ui32_t frame_number) const {
  MXF::IndexEntry entry;
  if (m_Index.EditUnitByteCount() == 0) (void)m_Index.Lookup(ui64_t{frame_number} * m_EntriesPerEditUnit, entry);
  return entry;
}

// The edit unit's first byte, and the first byte of what follows it: the next edit unit or the end of the partition.
//
//   edit unit ─► index ─► offset in the stream ─► run (partition) ─► place in the file
Result_t h__Reader::FindEditUnit(ui32_t frame_number, Range& range) {
  const Result_t result = ReadIndex();
  if (result.Failure()) return result;
  if (frame_number >= m_EditUnits) return frame_number < m_Facts.Duration ? RESULT_CUT : RESULT_RANGE;
  const ui64_t first = ui64_t{frame_number} * m_EntriesPerEditUnit;
  MXF::IndexEntry entry;
  if (const Result_t found = m_Index.Lookup(first, entry); found.Failure()) return found;
  const auto position = MXF::FilePosition(m_Runs, entry.StreamOffset);
  if (!position) {
    Ferro::DefaultLogSink().Error("%s: the index leads outside the essence, edit unit %u at stream offset %llu\n",
                                  m_File.Filename().c_str(), frame_number,
                                  static_cast<unsigned long long>(entry.StreamOffset));
    return RESULT_FORMAT;
  }
  range = {*position, RunEnd(*position)};
  if (frame_number + 1 < m_EditUnits && m_Index.Lookup(first + m_EntriesPerEditUnit, entry).Success()) {
    const auto next = MXF::FilePosition(m_Runs, entry.StreamOffset);
    if (next && *next > range.Position && *next < range.Limit) range.Limit = *next;
  }
  return RESULT_OK;
}

Result_t h__Reader::LocateStream(ui32_t body_sid) {
  return ResultOf([&] {
    const LogSubject subject(m_File.Filename());
    std::vector<ElementPlace> elements;
    return FindElements(body_sid, elements);
  });
}

// All of it: what is cut off may be the index that the footer announces. A random index pack behind it is optional.
Result_t h__Reader::LocateFooter() {
  const Result_t result = ReadPartitions();
  if (result.Failure()) return result;
  const MXF::Partition& last = m_Structure.Partitions.back();
  const auto length = Ferro::CheckedAdd<ui64_t>(last.HeaderByteCount, last.IndexByteCount);
  const ui64_t left = m_File.Size() - (last.FileOffset + last.PackLength);
  return last.Kind == MXF::PartitionKind::Footer && length && *length <= left ? RESULT_OK : RESULT_CUT;
}

Result_t h__Reader::LocateEditUnit(ui32_t frame_number) {
  if (m_Facts.Type == ESS_TIMED_TEXT) return LocateStream(m_Facts.BodySID);
  return ResultOf([&]() -> Result_t {
    const LogSubject subject(m_File.Filename());
    Range range;
    ElementPlace place;
    Result_t result = FindEditUnit(frame_number, range);
    if (result.Success()) result = m_Elements->Locate(range.Position, range.Limit, ElementKeys::Essence, place);
    if (result.Failure() || !m_Facts.IsStereoscopic()) return result;
    result = m_Elements->Locate(place.End, range.Limit, ElementKeys::Essence, place);
    return result == Ferro::RESULT_NOT_FOUND ? RESULT_OK : result;  // one codestream alone serves both eyes
  });
}

Result_t h__Reader::CheckAlgorithms(const CryptoContexts& contexts) const {
  const EncryptionInfo& algorithms = m_Facts.Algorithms;
  const bool can_decrypt = contexts.Decryption == nullptr || algorithms.KnowsCipher;
  const bool can_verify = contexts.Integrity == nullptr || algorithms.KnowsMIC;
  return can_decrypt && can_verify ? RESULT_OK : RESULT_ALGORITHM;
}

Result_t h__Reader::ReadFrame(ui32_t frame_number, const CryptoContexts& contexts, FrameBuffer& frame) {
  const Result_t result = ResultOf([&] { return TryFrame(frame_number, contexts, frame); });
  if (result == Ferro::RESULT_ALLOC) frame.Clear();
  return result;
}

Result_t h__Reader::TryFrame(ui32_t frame_number, const CryptoContexts& contexts, FrameBuffer& frame) {
  Range range;
  Result_t result = FindEditUnit(frame_number, range);
  if (result.Success()) result = CheckAlgorithms(contexts);
  if (result.Success()) {
    if (m_Facts.IsStereoscopic())
      result = ReadLeftEye(frame_number, range, contexts, frame);
    else
      result = m_Elements->ReadWhole(range.Position, range.Limit, m_Encryption.SequenceNumber(frame_number), contexts,
                                     frame);
  }
  if (result.Failure() && result != RESULT_RANGE && result != Ferro::RESULT_SMALLBUF) frame.Clear();
  if (result.Success()) frame.FrameNumber(frame_number);
  return result;
}

Result_t h__Reader::LocateFrame(ui32_t frame_number, Eye eye, ElementPlace& place) {
  Range range;
  Result_t result = FindEditUnit(frame_number, range);
  if (result.Failure()) return result;
  result = m_Elements->Locate(range.Position, range.Limit, ElementKeys::Essence, place);
  if (result == Ferro::RESULT_NOT_FOUND) return RESULT_CUT;
  if (result.Failure() || eye == Eye::Left) return result;
  if (!m_Facts.IsStereoscopic()) return Ferro::RESULT_NOT_FOUND;
  return m_Elements->Locate(place.End, range.Limit, ElementKeys::Essence, place);
}

// The elements of a stream. A later partition whose pack does not say where in the stream it goes on belongs to another
// stream that was given the same number; the first counts.
Result_t h__Reader::FindElements(ui32_t body_sid, std::vector<ElementPlace>& elements) {
  std::vector<MXF::EssenceRun> runs;
  Result_t result = ReadPartitions();
  if (result.Success()) result = m_Structure.ReadEssenceRuns(m_File, body_sid, runs);
  const ElementKeys keys = body_sid == m_Facts.BodySID ? ElementKeys::Essence : ElementKeys::GenericStream;
  for (const MXF::EssenceRun& run : runs) {
    const auto& partitions = m_Structure.Partitions;
    const auto after =
        std::upper_bound(partitions.begin(), partitions.end(), run.FileOffset,
                         [](ui64_t offset, const MXF::Partition& other) { return offset < other.FileOffset; });
    const bool goes_on = after != partitions.begin() && std::prev(after)->BodyOffset != 0;
    if (result.Failure() || (!elements.empty() && !goes_on)) break;
    result = m_Elements->Locate(run.FileOffset, run.FileOffset + run.Length, keys, elements.emplace_back());
  }
  if (result.Success() && elements.empty()) return Ferro::RESULT_NOT_FOUND;
  return result;
}

Result_t h__Reader::JoinElements(const std::vector<ElementPlace>& elements, FrameBuffer& frame) const {
  frame.Clear();
  size_t at = 0;
  for (const ElementPlace& element : elements) {
    if (element.Triplet) return FormatError(element.Position, "encrypted stream in several partitions");
    const std::span<ui8_t> out(frame.Data() + at, static_cast<size_t>(element.ValueLength));
    const Result_t result = m_File.ReadAt(element.ValueAt, out);
    if (result.Failure()) return result;
    at += out.size();
  }
  frame.Size(static_cast<ui32_t>(at));
  return RESULT_OK;
}

Result_t h__Reader::ReadStream(ui32_t body_sid, Sequence sequence, const CryptoContexts& contexts, FrameBuffer& frame) {
  return ResultOf([&] { return TryStream(body_sid, sequence, contexts, frame); });
}

Result_t h__Reader::TryStream(ui32_t body_sid, Sequence sequence, const CryptoContexts& contexts, FrameBuffer& frame) {
  const LogSubject subject(m_File.Filename());
  std::vector<ElementPlace> elements;
  Result_t result = CheckAlgorithms(contexts);
  if (result.Success()) result = FindElements(body_sid, elements);
  if (result.Failure()) return result;
  ui64_t total = 0;
  for (const ElementPlace& element : elements) total += element.DeliveredLength(contexts.Decryption != nullptr);
  if (total > std::numeric_limits<ui32_t>::max()) return Ferro::RESULT_TOOLARGE;
  if (total > frame.Capacity()) result = frame.Capacity(static_cast<ui32_t>(total));
  if (result.Failure()) return result;
  if (elements.size() > 1 && contexts.Integrity != nullptr && m_Info.UsesHMAC) {
    frame.Clear();
    return FormatError(elements[1].Position, "stream in several partitions of an encrypted file");
  }
  return elements.size() == 1 ? m_Elements->Read(elements[0], sequence, contexts, frame)
                              : JoinElements(elements, frame);
}

}  // namespace QUIRE
