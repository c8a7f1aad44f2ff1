// SPDX-License-Identifier: BSD-3-Clause
#include "DumpSet.h"
#include "klv/KLVScanner.h"

#include <QUIRE/MXF/Dump.h>
#include <QUIRE/MXF/FileStructure.h>

#include <algorithm>
#include <map>
#include <set>

namespace QUIRE::MXF {
namespace {

using Kind = DumpNode::Kind;

const char* StatusName(PartitionStatus status) {
  switch (status) {
    case PartitionStatus::OpenIncomplete:
      return "open, incomplete";
    case PartitionStatus::ClosedIncomplete:
      return "closed, incomplete";
    case PartitionStatus::OpenComplete:
      return "open, complete";
    case PartitionStatus::ClosedComplete:
      return "closed, complete";
  }
  return "unknown";
}

void DescribePartition(const Partition& partition, DumpNode& group) {
  group.AddText("Kind", PartitionKindName(partition.Kind));
  group.AddText("Status", StatusName(partition.Status));
  group.AddNumber("Offset", partition.FileOffset);
  group.AddText("Version", std::to_string(partition.MajorVersion) + '.' + std::to_string(partition.MinorVersion));
  group.AddNumber("KAGSize", partition.KAGSize);
  group.AddNumber("ThisPartition", partition.ThisPartition);
  group.AddNumber("PreviousPartition", partition.PreviousPartition);
  group.AddNumber("FooterPartition", partition.FooterPartition);
  group.AddNumber("HeaderByteCount", partition.HeaderByteCount);
  group.AddNumber("IndexByteCount", partition.IndexByteCount);
  group.AddNumber("IndexSID", partition.IndexSID);
  group.AddNumber("BodyOffset", partition.BodyOffset);
  group.AddNumber("BodySID", partition.BodySID);
  group.AddText("OperationalPattern", DescribeLabel(partition.OperationalPattern));
  DumpNode& labels = group.Add("EssenceContainers", Kind::List);
  for (const UL& label : partition.EssenceContainers) labels.AddText("", DescribeLabel(label));
}

void DescribeRandomIndex(const RIP& index, DumpNode& list) {
  for (const RIP::Pair& pair : index.PairArray) {
    DumpNode& group = list.Add("Partition", Kind::Group);
    group.AddNumber("BodySID", pair.BodySID);
    group.AddNumber("ByteOffset", pair.ByteOffset);
  }
}

void DescribeIndex(const IndexTable& index, ui32_t body_sid, DumpNode& list) {
  DumpNode& group = list.Add("Stream", Kind::Group);
  group.AddNumber("BodySID", body_sid);
  group.AddText("EditRate",
                std::to_string(index.EditRate().Numerator) + '/' + std::to_string(index.EditRate().Denominator));
  group.AddNumber("EditUnitByteCount", index.EditUnitByteCount());
  group.AddNumber("Duration", index.Duration());
  if (index.Entries().empty()) return;
  group.AddNumber("FirstOffset", index.Entries().front().StreamOffset);
  group.AddNumber("LastOffset", index.Entries().back().StreamOffset);
}

struct ElementSum {
  ui64_t Count = 0;
  ui64_t Bytes = 0;
  ui64_t Smallest = ~ui64_t{0};
  ui64_t Largest = 0;
};

void DescribeElements(const std::map<UL, ElementSum>& sums, DumpNode& list) {
  for (const auto& [key, sum] : sums) {
    DumpNode& group = list.Add("Element", Kind::Group);
    group.AddText("Key", DescribeLabel(key));
    group.AddNumber("Count", sum.Count);
    group.AddNumber("ValueBytes", sum.Bytes);
    group.AddNumber("SmallestValue", sum.Smallest);
    group.AddNumber("LargestValue", sum.Largest);
  }
}

/// Builds the description of one file.
class FileDescriber {
 public:
  explicit FileDescriber(const Ferro::FileReader& file) : m_File(file) {}

  Result_t Describe() {
    const Result_t result = m_Structure.ReadHeader(m_File);
    if (result.Failure()) return result;
    Note("partitions", m_Structure.ReadPartitions(m_File));
    Root.AddNumber("Size", m_File.Size());
    Root.AddNumber("RunIn", m_Structure.RunIn);
    DumpNode& partitions = Root.Add("Partitions", Kind::List);
    for (const Partition& partition : m_Structure.Partitions)
      DescribePartition(partition, partitions.Add("Partition", Kind::Group));
    DescribeRandomIndex(m_Structure.RandomIndex, Root.Add("RandomIndexPack", Kind::List));
    Root.AddNumber("PrimerEntries", m_Structure.Header.Primer.Entries().size());
    DumpNode& sets = Root.Add("HeaderMetadata", Kind::List);
    for (const auto& object : m_Structure.Header.Objects())
      DescribeSet(*object, &m_Structure.Header.Primer, sets.Add("Set", Kind::Group));
    DescribeStreams();
    DumpNode& problems = Root.Add("Problems", Kind::List);
    for (const std::string& problem : m_Problems) problems.AddText("", problem);
    return Ferro::RESULT_OK;
  }

  DumpNode Root;

 private:
  void DescribeStreams() {
    const std::set<ui32_t> streams = Streams();
    const std::set<ui32_t> indexed = IndexedStreams();
    DumpNode indexes{Kind::List, "Index", {}, {}};
    DumpNode essence{Kind::List, "Essence", {}, {}};
    for (const ui32_t stream : streams) {
      const std::string name = "stream " + std::to_string(stream);
      if (indexed.contains(stream)) {
        IndexTable index;
        Note("index of " + name, m_Structure.ReadIndex(m_File, stream, index));
        if (!index.IsEmpty()) DescribeIndex(index, stream, indexes);
      }
      std::vector<EssenceRun> runs;
      Note("essence of " + name, m_Structure.ReadEssenceRuns(m_File, stream, runs));
      for (const EssenceRun& run : runs) DescribeRun(run, stream, essence.Add("Run", Kind::Group));
    }
    Root.Children.push_back(std::move(indexes));
    Root.Children.push_back(std::move(essence));
  }

  std::set<ui32_t> Streams() {
    std::set<ui32_t> streams;
    for (const Partition& partition : m_Structure.Partitions)
      if (partition.BodySID != 0 && streams.size() < MaxStreams) streams.insert(partition.BodySID);
    if (streams.size() == MaxStreams) m_Problems.push_back("more streams than are shown");
    return streams;
  }

  // The metadata name the streams that have an index; ancillary streams have none.
  std::set<ui32_t> IndexedStreams() const {
    std::set<ui32_t> streams;
    for (const auto& object : m_Structure.Header.Objects()) {
      const auto* data = dynamic_cast<const EssenceContainerData*>(object.get());
      if (data != nullptr && streams.size() < MaxIndexedStreams) streams.insert(data->BodySID);
    }
    return streams;
  }

  void DescribeRun(const EssenceRun& run, ui32_t stream, DumpNode& group) {
    group.AddNumber("BodySID", stream);
    group.AddNumber("Offset", run.FileOffset);
    group.AddNumber("StreamOffset", run.StreamOffset);
    group.AddNumber("Length", run.Length);
    KLVScanner scanner(m_File);
    std::map<UL, ElementSum> sums;
    ui64_t at = run.FileOffset;
    while (const auto packet = scanner.At(at, run.FileOffset + run.Length)) {
      ElementSum& sum = sums[packet->Key];
      ++sum.Count;
      sum.Bytes += packet->ValueLength;
      sum.Smallest = std::min(sum.Smallest, packet->ValueLength);
      sum.Largest = std::max(sum.Largest, packet->ValueLength);
      if (sums.size() > MaxKeys) break;
      at = packet->End();
    }
    if (at != run.FileOffset + run.Length) Problem("essence stops making sense", at);
    DescribeElements(sums, group.Add("Elements", Kind::List));
  }

  void Note(const std::string& what, const Result_t& result) {
    if (result.Failure()) m_Problems.push_back(what + ": " + result.Label());
  }
  void Problem(const std::string& what, ui64_t offset) {
    m_Problems.push_back(what + " at offset " + std::to_string(offset));
  }

  // What a hostile file can make us look at. Track files have one container of one or two keys and one index; each
  // resource of timed text is a stream.
  static constexpr size_t MaxKeys = 64;
  static constexpr size_t MaxStreams = 8192;
  static constexpr size_t MaxIndexedStreams = 16;

  const Ferro::FileReader& m_File;
  FileStructure m_Structure;
  std::vector<std::string> m_Problems;
};

}  // namespace

Result_t DumpFile(const Ferro::FileReader& file, DumpForm form, std::string& out) {
  FileDescriber describer(file);
  const Result_t result = describer.Describe();
  if (result.Success()) out = form == DumpForm::JSON ? describer.Root.AsJSON() : describer.Root.AsText();
  return result;
}

}  // namespace QUIRE::MXF
