// SPDX-License-Identifier: BSD-3-Clause
#include "InfoStructure.h"

#include <Ferro/FileReader.h>
#include <QUIRE/LabelMeaning.h>
#include <QUIRE/MXF/FileStructure.h>
#include <QUIRE/MXF/IndexTable.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/Preface.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace Tool {

namespace {

using QUIRE::MXF::EssenceRun;
using QUIRE::MXF::FileStructure;
using QUIRE::MXF::Partition;
using QUIRE::MXF::PartitionKind;

InfoFacts PartitionFacts(const Partition& partition) {
  InfoFacts facts;
  facts.Set("kind", QUIRE::MXF::PartitionKindName(partition.Kind));
  facts.Set("offset", partition.FileOffset);
  if (partition.BodySID != 0) facts.Set("body_sid", partition.BodySID);
  if (partition.IndexSID != 0) facts.Set("index_sid", partition.IndexSID);
  facts.Line = std::string(QUIRE::MXF::PartitionKindName(partition.Kind)) + " at byte " +
               std::to_string(partition.FileOffset) +
               (partition.BodySID == 0 ? "" : ", stream " + std::to_string(partition.BodySID)) +
               (partition.IndexSID == 0 ? "" : ", index stream " + std::to_string(partition.IndexSID));
  return facts;
}

/// Where the random index pack says that partitions lie, against where they are.
void CheckRandomIndex(const FileStructure& structure, InfoItem& item) {
  const auto& pairs = structure.RandomIndex.PairArray;
  if (pairs.empty()) return item.AddProblem("There is no random index pack: the file may be cut off.");
  const auto is_there = [&](const QUIRE::MXF::RIP::Pair& pair) {
    return std::any_of(structure.Partitions.begin(), structure.Partitions.end(), [&](const Partition& partition) {
      return partition.FileOffset == pair.ByteOffset + structure.RunIn && partition.BodySID == pair.BodySID;
    });
  };
  const auto wrong = std::count_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return !is_there(pair); });
  if (wrong > 0 || pairs.size() != structure.Partitions.size())
    item.AddProblem("The random index pack does not name the partitions that are there.");
}

/// The stream of the essence: that of the first partition that has one and is no generic stream.
QUIRE::ui32_t EssenceStream(const FileStructure& structure) {
  for (const Partition& partition : structure.Partitions)
    if (partition.BodySID != 0 && partition.Kind != PartitionKind::GenericStream) return partition.BodySID;
  return 0;
}

/// The first edit unit that the index does not lead to; no value when it leads to all.
std::optional<Ferro::ui64_t> FirstLost(const Ferro::FileReader& file, const std::vector<EssenceRun>& runs,
                                       const QUIRE::MXF::IndexTable& index, Ferro::ui64_t edit_units) {
  std::optional<Ferro::ui64_t> before;
  QUIRE::UL first_key;
  for (Ferro::ui64_t number = 0; number < edit_units; ++number) {
    QUIRE::MXF::IndexEntry entry;
    if (index.Lookup(number, entry).Failure()) return number;
    const auto position = QUIRE::MXF::FilePosition(runs, entry.StreamOffset);
    if (!position || (before && *position <= *before)) return number;
    QUIRE::MXF::KLVPacket packet;
    if (QUIRE::MXF::ReadKLV(file, *position, file.Size(), packet).Failure()) return number;
    // Edit units of constant size may begin with any item, but each with the same.
    if (number == 0) first_key = packet.Key;
    const bool is_item = QUIRE::MXF::IsEssenceKey(packet.Key) || QUIRE::MXF::IsSystemItemKey(packet.Key);
    if (index.EditUnitByteCount() == 0 ? !is_item : packet.Key != first_key) return number;
    before = position;
  }
  return std::nullopt;
}

/// How many edit units are in the file, found by reading through it; 0 when that fails.
Ferro::ui64_t CountEditUnits(const Ferro::FileReader& file, const FileStructure& structure,
                             const std::vector<EssenceRun>& runs, QUIRE::ui32_t stream, bool stereoscopic) {
  QUIRE::MXF::IndexTable rebuilt;
  const auto result = structure.ReadOrRebuildIndex(file, runs, stream, stereoscopic ? 2 : 1, rebuilt);
  return result.Success() ? rebuilt.Duration() : 0;
}

void CheckIndex(const Ferro::FileReader& file, const FileStructure& structure, bool stereoscopic, InfoItem& item) {
  const QUIRE::ui32_t stream = EssenceStream(structure);
  const Ferro::ui64_t duration = item.Duration.value_or(0);
  std::vector<EssenceRun> runs;
  QUIRE::MXF::IndexTable index;
  if (stream == 0 || structure.ReadEssenceRuns(file, stream, runs).Failure() || runs.empty())
    return item.AddProblem("There is no essence in this file.");
  const auto result = structure.ReadIndex(file, stream, index);
  if (result.Failure() || index.IsEmpty()) {
    item.Facts.Group("index").Set("health", "missing");
    item.AddProblem("There is no usable index: frames are found by reading through the whole file.");
    const Ferro::ui64_t there = CountEditUnits(file, structure, runs, stream, stereoscopic);
    if (there < duration)
      item.AddProblem("The file holds " + std::to_string(there) + " of " + std::to_string(duration) + " edit units.");
    return;
  }
  const Ferro::ui64_t covered = index.Duration() == 0 ? duration : index.Duration();
  const size_t problems = item.Problems.size();
  if (covered < duration)
    item.AddProblem("The index covers " + std::to_string(covered) + " of " + std::to_string(duration) + " edit units.");
  if (const auto lost = FirstLost(file, runs, index, std::min(covered, duration)))
    item.AddProblem("Edit unit " + std::to_string(*lost) +
                    " is not where the index says, or the file ends before it does.");
  InfoFacts& facts = item.Facts.Group("index");
  facts.Set("health", item.Problems.size() > problems ? "damaged" : "good");
  facts.Set("covers", covered).ShownAs(std::to_string(covered) + " edit units");
  if (index.EditUnitByteCount() != 0) facts.Set("edit_unit_bytes", index.EditUnitByteCount());
}

}  // namespace

bool DescribeStructure(const std::string& path, QUIRE::EssenceType_t essence, InfoItem& item) {
  Ferro::FileReader file;
  FileStructure structure;
  if (file.OpenRead(path).Failure()) return false;
  if (structure.ReadHeader(file).Failure()) {
    item.AddProblem("The header of this MXF file is damaged: copy the file again.");
    return false;
  }
  InfoFacts& facts = item.Facts.Group("structure");
  if (structure.ReadPartitions(file).Failure()) {
    item.AddProblem("The partitions of this MXF file cannot be found: copy the file again.");
    return true;
  }
  if (!structure.Partitions.empty())
    facts.Set("operational_pattern", {structure.Partitions.front().OperationalPattern.EncodeString(),
                                      QUIRE::LabelMeaning(structure.Partitions.front().OperationalPattern)});
  InfoList& partitions = facts.List("partitions");
  for (const Partition& partition : structure.Partitions) partitions.emplace_back(PartitionFacts(partition));
  CheckRandomIndex(structure, item);
  // Timed text lies in one piece and needs no index.
  if (essence != QUIRE::ESS_TIMED_TEXT && essence != QUIRE::ESS_MXF_OTHER)
    CheckIndex(file, structure, essence == QUIRE::ESS_JPEG_2000_S, item);
  return true;
}

}  // namespace Tool
