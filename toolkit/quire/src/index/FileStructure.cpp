// SPDX-License-Identifier: BSD-3-Clause
#include "base/FormatError.h"
#include "klv/KLVScanner.h"
#include "klv/ParsePartition.h"
#include "klv/PartitionBounds.h"

#include <QUIRE/MXF/FileStructure.h>

#include <Ferro/CheckedMath.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace QUIRE::MXF {
namespace {

// Holds an ordinary partition pack: 25 labels.
constexpr size_t PackRead = 512;
// No pack of a track file comes near.
constexpr ui64_t LargestPack = 65536;

// Reads the partition pack at `offset`, when there is one.
std::optional<Partition> ReadPack(const Ferro::FileReader& file, ui64_t offset) {
  if (offset >= file.Size()) return std::nullopt;
  std::vector<ui8_t> bytes(std::min<ui64_t>(PackRead, file.Size() - offset));
  if (file.ReadAt(offset, bytes).Failure()) return std::nullopt;
  const auto packet = ParseKLV(bytes, offset, file.Size());
  if (!packet || !IsPartitionKey(packet->Key)) return std::nullopt;
  const ui64_t length = packet->End() - offset;
  if (length > LargestPack) return std::nullopt;
  if (length > bytes.size()) {
    bytes.resize(length);
    if (file.ReadAt(offset, bytes).Failure()) return std::nullopt;
  }
  Partition partition;
  if (ParsePartition(bytes, offset, partition)) return std::nullopt;
  return partition;
}

// The better the metadata of a partition, the higher (ST 377-1, 7.1: later and closed metadata supersede earlier).
int MetadataRank(const Partition& partition) {
  if (partition.HeaderByteCount == 0) return 0;
  if (partition.Kind == PartitionKind::Footer) return 4;
  if (partition.Status == PartitionStatus::ClosedComplete) return 3;
  return partition.Status == PartitionStatus::ClosedIncomplete ? 2 : 1;
}

}  // namespace

Result_t FileStructure::ReadHeader(const Ferro::FileReader& file) {
  *this = FileStructure();
  Result_t result = Header.InitFromFile(file);
  if (result.Failure()) return result;
  RunIn = Header.HeaderPartition.FileOffset;
  Partitions = {Header.HeaderPartition};
  if (Header.HeaderPartition.Status != PartitionStatus::ClosedComplete || Header.First<Preface>() == nullptr) {
    result = PreferBetterMetadata(file);
    if (result.Failure()) return result;
  }
  return Header.First<Preface>() != nullptr ? Ferro::RESULT_OK
                                            : FormatError(RunIn, "no header metadata in any partition of the file");
}

Result_t FileStructure::PreferBetterMetadata(const Ferro::FileReader& file) {
  const Result_t result = ReadPartitions(file);
  if (result.Failure()) return result;
  const auto best = std::max_element(Partitions.begin(), Partitions.end(), [](const auto& lhs, const auto& rhs) {
    return MetadataRank(lhs) < MetadataRank(rhs);
  });
  if (best == Partitions.begin() || MetadataRank(*best) == 0) return Ferro::RESULT_OK;
  OP1aHeader better;
  if (better.InitFromPartition(file, *best).Success() && better.First<Preface>() != nullptr) Header = std::move(better);
  return Ferro::RESULT_OK;
}

// A file that was written to its end lists its partitions in the random index pack. One without it may have a footer that
// the header knows, from which each pack leads to the one before. A file that breaks off has neither: its KLVs are walked.
Result_t FileStructure::ReadPartitions(const Ferro::FileReader& file) {
  if (m_HasAllPartitions) return Ferro::RESULT_OK;
  Partitions.resize(1);
  const Result_t found = RandomIndex.ReadFromFile(file);
  if (found.Failure() && found != Ferro::RESULT_NOT_FOUND) return found;
  if (!ReadByRandomIndex(file) && !ReadByFooter(file)) {
    const Result_t result = Walk(file);
    if (result.Failure()) return result;
  }
  m_ByBodySID.resize(Partitions.size());
  std::iota(m_ByBodySID.begin(), m_ByBodySID.end(), 0);
  std::stable_sort(m_ByBodySID.begin(), m_ByBodySID.end(),
                   [this](ui32_t a, ui32_t b) { return Partitions[a].BodySID < Partitions[b].BodySID; });
  m_HasAllPartitions = true;
  return Ferro::RESULT_OK;
}

// Counts the labels of a partition that was found; false when there are more than any file needs.
bool FileStructure::TakeLabels(const Partition& partition, size_t& labels) {
  labels += partition.EssenceContainers.size();
  return labels <= MaxContainerLabels;
}

bool FileStructure::ReadByRandomIndex(const Ferro::FileReader& file) {
  const std::vector<RIP::Pair>& pairs = RandomIndex.PairArray;
  std::vector<Partition> found(Partitions.begin(), Partitions.begin() + 1);
  size_t labels = 0;
  bool proper = !pairs.empty() && pairs.size() <= MaxPartitions && pairs[0].ByteOffset == 0;
  for (size_t i = 1; proper && i < pairs.size(); ++i) {
    const auto offset = Ferro::CheckedAdd<ui64_t>(RunIn, pairs[i].ByteOffset);
    const auto partition = offset ? ReadPack(file, *offset) : std::nullopt;
    proper = partition && pairs[i].ByteOffset > pairs[i - 1].ByteOffset && TakeLabels(*partition, labels);
    if (proper) found.push_back(*partition);
  }
  if (proper)
    Partitions = std::move(found);
  else
    RandomIndex = RIP();
  return proper;
}

bool FileStructure::ReadByFooter(const Ferro::FileReader& file) {
  ui64_t place = Partitions[0].FooterPartition;
  std::vector<Partition> found;
  size_t labels = 0;
  while (place != 0) {
    const auto offset = Ferro::CheckedAdd<ui64_t>(RunIn, place);
    auto partition = offset ? ReadPack(file, *offset) : std::nullopt;
    if (!partition || partition->ThisPartition != place || partition->PreviousPartition >= place) return false;
    if (found.size() == MaxPartitions || !TakeLabels(*partition, labels)) return false;
    place = partition->PreviousPartition;
    found.push_back(std::move(*partition));
  }
  if (found.empty() || found.front().Kind != PartitionKind::Footer) return false;
  found.push_back(std::move(Partitions.front()));
  std::reverse(found.begin(), found.end());
  Partitions = std::move(found);
  return true;
}

Result_t FileStructure::Walk(const Ferro::FileReader& file) {
  KLVScanner scanner(file);
  size_t labels = 0;
  ui64_t at = ContentOf(scanner, Partitions[0], file.Size()).EssenceOffset;
  while (const auto packet = scanner.At(at, file.Size())) {
    at = packet->End();
    if (!IsPartitionKey(packet->Key)) continue;
    auto partition = ReadPack(file, packet->Offset);
    if (!partition) break;
    if (Partitions.size() == MaxPartitions || !TakeLabels(*partition, labels))
      return FormatError(packet->Offset, "too many partitions");
    at = ContentOf(scanner, *partition, file.Size()).EssenceOffset;
    Partitions.push_back(std::move(*partition));
  }
  return scanner.LastRead();
}

ui64_t FileStructure::EndOf(const Ferro::FileReader& file, size_t partition) const {
  if (partition + 1 < Partitions.size()) return Partitions[partition + 1].FileOffset;
  return file.Size() - RandomIndex.PackLength;
}

Result_t FileStructure::ReadEssenceRuns(const Ferro::FileReader& file, ui32_t body_sid,
                                        std::vector<EssenceRun>& runs) const {
  runs.clear();
  KLVScanner scanner(file);
  ui64_t stream_end = 0;
  if (body_sid == 0) return Ferro::RESULT_OK;
  const auto sid_of = [this](ui32_t partition) { return Partitions[partition].BodySID; };
  const auto first = std::lower_bound(m_ByBodySID.begin(), m_ByBodySID.end(), body_sid,
                                      [&](ui32_t partition, ui32_t sid) { return sid_of(partition) < sid; });
  for (auto next_place = first; next_place != m_ByBodySID.end() && sid_of(*next_place) == body_sid; ++next_place) {
    const size_t i = *next_place;
    const ui64_t end = EndOf(file, i);
    const ui64_t start = ContentOf(scanner, Partitions[i], end).EssenceOffset;
    if (scanner.LastRead().Failure()) return scanner.LastRead();
    if (start >= end) continue;
    // A writer that leaves the offset 0 in every partition means the pieces one after another.
    const ui64_t stream_offset = std::max(Partitions[i].BodyOffset, stream_end);
    const auto next = Ferro::CheckedAdd<ui64_t>(stream_offset, end - start);
    if (!next) return FormatError(Partitions[i].FileOffset, "partition with a body offset that cannot be");
    runs.push_back({stream_offset, start, end - start});
    stream_end = *next;
  }
  return Ferro::RESULT_OK;
}

std::optional<ui64_t> FilePosition(const std::vector<EssenceRun>& runs, ui64_t stream_offset) {
  auto run = std::upper_bound(runs.begin(), runs.end(), stream_offset,
                              [](ui64_t offset, const EssenceRun& other) { return offset < other.StreamOffset; });
  if (run == runs.begin()) return std::nullopt;
  --run;
  const ui64_t within = stream_offset - run->StreamOffset;
  if (within >= run->Length) return std::nullopt;
  return run->FileOffset + within;
}

}  // namespace QUIRE::MXF
