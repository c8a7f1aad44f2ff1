// SPDX-License-Identifier: BSD-3-Clause
#include "DumpSet.h"
#include "DumpWriter.h"
#include "klv/KLVScanner.h"

#include <QUIRE/MXF/Dump.h>
#include <QUIRE/MXF/FileStructure.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

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

void DescribeIndex(const IndexTable& index, ui32_t body_sid, DumpNode& group) {
  group.AddNumber("BodySID", body_sid);
  group.AddText("EditRate",
                std::to_string(index.EditRate().Numerator) + '/' + std::to_string(index.EditRate().Denominator));
  group.AddNumber("EditUnitByteCount", index.EditUnitByteCount());
  group.AddNumber("Duration", index.Duration());
  if (index.EditUnitByteCount() != 0) return;
  IndexEntry entry;
  if (index.Lookup(0, entry).Success()) group.AddNumber("FirstOffset", entry.StreamOffset);
  if (index.Lookup(index.Duration() - 1, entry).Success()) group.AddNumber("LastOffset", entry.StreamOffset);
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

/// Describes one file, part by part: a made-up file has tens of thousands of partitions.
class FileDescriber {
 public:
  FileDescriber(const Ferro::FileReader& file, DumpForm form) : m_File(file), m_Out(form) {}

  Result_t Describe() {
    const Result_t result = m_Structure.ReadHeader(m_File);
    if (result.Failure()) return result;
    Note("partitions", m_Structure.ReadPartitions(m_File));
    AddNumber("Size", m_File.Size());
    AddNumber("RunIn", m_Structure.RunIn);
    DescribePartitions();
    AddNumber("PrimerEntries", m_Structure.Header.Primer.Entries().size());
    m_Out.BeginList("HeaderMetadata");
    for (const auto& object : m_Structure.Header.Objects())
      AddItem("Set", [&](DumpNode& group) { DescribeSet(*object, &m_Structure.Header.Primer, group); });
    m_Out.EndList();
    DescribeStreams();
    DumpNode problems{Kind::List, "Problems", {}, {}};
    if (m_LeftOut != 0) Problem("left out: " + std::to_string(m_LeftOut) + " more entries");
    for (const std::string& problem : m_Problems) problems.AddText("", problem);
    m_Out.Add(problems);
    return Ferro::RESULT_OK;
  }

  std::string TakeText() { return m_Out.Finish(); }

 private:
  void AddNumber(const char* name, ui64_t value) { m_Out.Add({Kind::Word, name, std::to_string(value), {}}); }

  // Calls describe(group) for the next item of a list, while there is room for it.
  template <class Describe>
  void AddItem(const char* name, const Describe& describe) {
    if (m_Out.IsFull()) {
      ++m_LeftOut;
      return;
    }
    DumpNode group{Kind::Group, name, {}, {}};
    describe(group);
    m_Out.AddItem(group);
  }

  void DescribePartitions() {
    m_Out.BeginList("Partitions");
    for (const Partition& partition : m_Structure.Partitions)
      AddItem("Partition", [&](DumpNode& group) { DescribePartition(partition, group); });
    m_Out.EndList();
    m_Out.BeginList("RandomIndexPack");
    for (const RIP::Pair& pair : m_Structure.RandomIndex.PairArray)
      AddItem("Partition", [&](DumpNode& group) {
        group.AddNumber("BodySID", pair.BodySID);
        group.AddNumber("ByteOffset", pair.ByteOffset);
      });
    m_Out.EndList();
  }

  void DescribeStreams() {
    const std::set<ui32_t> streams = Streams();
    const std::set<ui32_t> indexed = IndexedStreams();
    m_Out.BeginList("Index");
    for (const ui32_t stream : streams) {
      if (!indexed.contains(stream)) continue;
      IndexTable index;
      Note("index of stream " + std::to_string(stream), m_Structure.ReadIndex(m_File, stream, index));
      if (!index.IsEmpty()) AddItem("Stream", [&](DumpNode& group) { DescribeIndex(index, stream, group); });
    }
    m_Out.EndList();
    m_Out.BeginList("Essence");
    for (const ui32_t stream : streams) {
      std::vector<EssenceRun> runs;
      Note("essence of stream " + std::to_string(stream), m_Structure.ReadEssenceRuns(m_File, stream, runs));
      for (const EssenceRun& run : runs) AddItem("Run", [&](DumpNode& group) { DescribeRun(run, stream, group); });
    }
    m_Out.EndList();
  }

  std::set<ui32_t> Streams() {
    std::set<ui32_t> streams;
    for (const Partition& partition : m_Structure.Partitions)
      if (partition.BodySID != 0 && streams.size() < MaxStreams) streams.insert(partition.BodySID);
    if (streams.size() == MaxStreams) Problem("more streams than are shown");
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
    if (at != run.FileOffset + run.Length) Problem("essence stops making sense at offset " + std::to_string(at));
    DescribeElements(sums, group.Add("Elements", Kind::List));
  }

  void Note(const std::string& what, const Result_t& result) {
    if (result.Failure()) Problem(what + ": " + result.Label());
  }
  void Problem(std::string problem) {
    if (m_Problems.size() < MaxProblems) m_Problems.push_back(std::move(problem));
  }

  // What a hostile file can make us look at. Track files have one container of one or two keys and one index; each
  // resource of timed text is a stream.
  static constexpr size_t MaxKeys = 64;
  static constexpr size_t MaxStreams = 8192;
  static constexpr size_t MaxIndexedStreams = 16;
  static constexpr size_t MaxProblems = 1024;

  const Ferro::FileReader& m_File;
  DumpWriter m_Out;
  FileStructure m_Structure;
  std::vector<std::string> m_Problems;
  size_t m_LeftOut = 0;  // items of lists
};

}  // namespace

Result_t DumpFile(const Ferro::FileReader& file, DumpForm form, std::string& out) {
  FileDescriber describer(file, form);
  const Result_t result = describer.Describe();
  if (result.Success()) out = describer.TakeText();
  return result;
}

}  // namespace QUIRE::MXF
