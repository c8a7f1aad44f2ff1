// SPDX-License-Identifier: BSD-3-Clause
// Writes the seeds of the MXF fuzzers into the folder given: header metadata, packs, a whole small file. Each fuzzer makes
// what it can of all of them.
#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/IndexTableSegment.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/RIP.h>

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

using namespace QUIRE;
using namespace QUIRE::MXF;

namespace {

using Bytes = std::vector<ui8_t>;

Bytes Metadata() {
  OP1aHeader header;
  header.Add(std::make_unique<Preface>()).EssenceContainers = {DefaultSMPTEDict().ul(MDD_GCMulti)};
  header.Add(std::make_unique<Identification>()).CompanyName = "Company";
  auto& data = header.Add(std::make_unique<EssenceContainerData>());
  data.BodySID = 1;
  data.IndexSID = 129;
  auto& track = header.Add(std::make_unique<Track>());
  track.TrackName = "Track";
  track.EditRate = {24, 1};
  auto& sound = header.Add(std::make_unique<WaveAudioDescriptor>());
  sound.ChannelAssignment = DefaultSMPTEDict().ul(MDD_DCAudioChannelCfg_MCA);
  auto& group = header.Add(std::make_unique<SoundfieldGroupLabelSubDescriptor>());
  group.MCATagSymbol = "sg51";
  sound.SubDescriptors = {group.InstanceUID};
  auto& package = header.Add(std::make_unique<SourcePackage>());
  package.Descriptor = sound.InstanceUID;
  package.Tracks = {track.InstanceUID};
  Bytes bytes;
  if (header.WriteMetadata(IndexTags::VariableSize, 0, bytes).Failure()) bytes.clear();
  return bytes;
}

Bytes Segment() {
  IndexTableSegment segment;
  segment.IndexEditRate = {24, 1};
  segment.IndexSID = 129;
  segment.BodySID = 1;
  segment.IndexDuration = 2;
  segment.DeltaEntryArray = {{-1, 0, 0}};
  segment.IndexEntryArray = {{0, 0, 0, 0x80}, {30, 0, 0, 0x80}};
  Bytes bytes;
  segment.Write(bytes);
  return bytes;
}

void Append(Bytes& out, const Bytes& bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

Bytes Pack(PartitionKind kind, ui64_t offset) {
  Partition pack;
  pack.Kind = kind;
  pack.ThisPartition = offset;
  pack.EssenceContainers = {DefaultSMPTEDict().ul(MDD_GCMulti)};
  pack.BodySID = kind == PartitionKind::Body ? 1 : 0;
  pack.HeaderByteCount = kind == PartitionKind::Header ? Metadata().size() : 0;
  pack.IndexByteCount = kind == PartitionKind::Footer ? Segment().size() : 0;
  pack.IndexSID = kind == PartitionKind::Footer ? 129 : 0;
  Bytes bytes;
  pack.Write(bytes);
  return bytes;
}

Bytes RandomIndex(const std::vector<RIP::Pair>& pairs) {
  RIP index;
  index.PairArray = pairs;
  Bytes bytes;
  index.Write(bytes);
  return bytes;
}

Bytes WholeFile() {
  Bytes file = Pack(PartitionKind::Header, 0);
  Append(file, Metadata());
  const ui64_t body = file.size();
  Append(file, Pack(PartitionKind::Body, body));
  for (int i = 0; i < 2; ++i) {
    AppendKL(file, DefaultSMPTEDict().ul(MDD_WAVEssence), 10);
    file.resize(file.size() + 10);
  }
  const ui64_t footer = file.size();
  Append(file, Pack(PartitionKind::Footer, footer));
  Append(file, Segment());
  Append(file, RandomIndex({{0, 0}, {1, body}, {0, footer}}));
  return file;
}

// The bytes behind the selector of the packs' fuzzer.
Bytes Selected(ui8_t selector, const Bytes& bytes, size_t skip = 0) {
  Bytes seed = {selector};
  seed.insert(seed.end(), bytes.begin() + static_cast<std::ptrdiff_t>(skip), bytes.end());
  return seed;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Bytes segment = Segment();
  segment.erase(segment.begin(), segment.begin() + KLHeaderLength);
  Bytes counted = {static_cast<ui8_t>(segment.size() / 256), static_cast<ui8_t>(segment.size() % 256)};
  Append(counted, segment);
  const Bytes seeds[] = {Metadata(),
                         WholeFile(),
                         Selected(0, Pack(PartitionKind::Footer, 77)),
                         Selected(1, RandomIndex({{0, 0}, {1, 16384}})),
                         Selected(2, Metadata(), KLHeaderLength),
                         Selected(3, counted)};
  int number = 0;
  for (const Bytes& seed : seeds)
    if (Ferro::WriteStringIntoFile(Ferro::PathJoin(argv[1], std::to_string(number++)),
                                   std::string(seed.begin(), seed.end()))
            .Failure())
      return 1;
  return 0;
}
