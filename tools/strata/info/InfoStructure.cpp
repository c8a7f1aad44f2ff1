// SPDX-License-Identifier: BSD-3-Clause
#include "InfoStructure.h"

#include <Ferro/FileReader.h>
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

const char* PartitionName(PartitionKind kind) {
  switch (kind) {
    case PartitionKind::Header:
      return "header";
    case PartitionKind::Body:
      return "body";
    case PartitionKind::Footer:
      return "footer";
    case PartitionKind::GenericStream:
      return "generic stream";
  }
  return "unknown";
}

Json PartitionJson(const Partition& partition) {
  Json json{{"kind", PartitionName(partition.Kind)}, {"offset", partition.FileOffset}};
  if (partition.BodySID != 0) json["body_sid"] = partition.BodySID;
  if (partition.IndexSID != 0) json["index_sid"] = partition.IndexSID;
  return json;
}

/// Where the random index pack says that partitions lie, against where they are.
void CheckRandomIndex(const FileStructure& structure, Json& item) {
  const auto& pairs = structure.RandomIndex.PairArray;
  if (pairs.empty()) return AddProblem(item, "There is no random index pack: the file may be cut off.");
  const auto is_there = [&](const QUIRE::MXF::RIP::Pair& pair) {
    return std::any_of(structure.Partitions.begin(), structure.Partitions.end(), [&](const Partition& partition) {
      return partition.FileOffset == pair.ByteOffset + structure.RunIn && partition.BodySID == pair.BodySID;
    });
  };
  const auto wrong = std::count_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return !is_there(pair); });
  if (wrong > 0 || pairs.size() != structure.Partitions.size())
    AddProblem(item, "The random index pack does not name the partitions that are there.");
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
    // Edit units of constant size may begin with another item than essence, but each with the same.
    if (number == 0) first_key = packet.Key;
    if (index.EditUnitByteCount() == 0 ? !QUIRE::MXF::IsEssenceKey(packet.Key) : packet.Key != first_key) return number;
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

void CheckIndex(const Ferro::FileReader& file, const FileStructure& structure, bool stereoscopic, Json& item) {
  const QUIRE::ui32_t stream = EssenceStream(structure);
  const auto duration = item.value("duration", Ferro::ui64_t{0});
  std::vector<EssenceRun> runs;
  QUIRE::MXF::IndexTable index;
  if (stream == 0 || structure.ReadEssenceRuns(file, stream, runs).Failure() || runs.empty())
    return AddProblem(item, "There is no essence in this file.");
  const auto result = structure.ReadIndex(file, stream, index);
  Json& health = item["index"] = Json{{"health", "good"}};
  if (result.Failure() || index.IsEmpty()) {
    health["health"] = "missing";
    AddProblem(item, "There is no usable index: frames are found by reading through the whole file.");
    const Ferro::ui64_t there = CountEditUnits(file, structure, runs, stream, stereoscopic);
    if (there < duration)
      AddProblem(item, "The file holds " + std::to_string(there) + " of " + std::to_string(duration) + " edit units.");
    return;
  }
  const Ferro::ui64_t covered = index.Duration() == 0 ? duration : index.Duration();
  health["covers"] = covered;
  if (index.EditUnitByteCount() != 0) health["edit_unit_bytes"] = index.EditUnitByteCount();
  const auto fail = [&](const std::string& sentence) {
    health["health"] = "damaged";
    AddProblem(item, sentence);
  };
  if (covered < duration)
    fail("The index covers " + std::to_string(covered) + " of " + std::to_string(duration) + " edit units.");
  if (const auto lost = FirstLost(file, runs, index, std::min(covered, duration)))
    fail("Edit unit " + std::to_string(*lost) + " is not where the index says, or the file ends before it does.");
}

}  // namespace

void DescribeStructure(const std::string& path, QUIRE::EssenceType_t essence, Json& item) {
  Ferro::FileReader file;
  FileStructure structure;
  if (file.OpenRead(path).Failure()) return;
  if (structure.ReadHeader(file).Failure())
    return AddProblem(item, "The header of this MXF file is damaged: copy the file again.");
  Json& facts = item["structure"] = Json::object();
  if (structure.ReadPartitions(file).Failure())
    return AddProblem(item, "The partitions of this MXF file cannot be found: copy the file again.");
  if (!structure.Partitions.empty())
    facts["operational_pattern"] = structure.Partitions.front().OperationalPattern.EncodeString();
  facts["partitions"] = Json::array();
  for (const Partition& partition : structure.Partitions) facts["partitions"].push_back(PartitionJson(partition));
  CheckRandomIndex(structure, item);
  // Timed text lies in one piece and needs no index.
  if (essence != QUIRE::ESS_TIMED_TEXT && essence != QUIRE::ESS_MXF_OTHER)
    CheckIndex(file, structure, essence == QUIRE::ESS_JPEG_2000_S, item);
}

}  // namespace Tool
