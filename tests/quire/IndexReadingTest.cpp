// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "MetadataBytes.h"
#include "ScratchFile.h"

#include <QUIRE/MXF/FileStructure.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::IsEmpty;

/// Puts a file together partition by partition, without a random index pack.
class FileAssembler {
 public:
  FileAssembler() {
    const Bytes metadata = ExampleMetadata();
    Begin(PartitionKind::Header, 0, metadata.size());
    Append(metadata);
  }
  void Begin(PartitionKind kind, ui32_t body_sid, ui64_t header_bytes = 0, const Bytes& index = {},
             ui64_t body_offset = 0) {
    Partition pack;
    pack.Kind = kind;
    pack.ThisPartition = File.size();
    pack.BodySID = body_sid;
    pack.BodyOffset = body_offset;
    pack.HeaderByteCount = header_bytes;
    pack.IndexByteCount = index.size();
    pack.IndexSID = index.empty() ? 0 : 129;
    pack.Write(File);
    Append(index);
  }
  /// A JPEG 2000 element of `size` bytes, key and length included.
  void Element(size_t size) {
    AppendKL(File, DefaultSMPTEDict().ul(MDD_JPEG2000Essence), size - 20);
    File.resize(File.size() + size - 20, 0x2a);
  }
  void Append(const Bytes& bytes) { File.insert(File.end(), bytes.begin(), bytes.end()); }

  Bytes File;
};

Bytes Segment(const std::vector<ui64_t>& offsets, ui32_t body_sid = 1, ui32_t index_sid = 129, i64_t start = 0) {
  IndexTableSegment segment;
  segment.IndexEditRate = {24, 1};
  segment.BodySID = body_sid;
  segment.IndexSID = index_sid;
  segment.IndexStartPosition = start;
  segment.IndexDuration = static_cast<i64_t>(offsets.size());
  for (const ui64_t offset : offsets) segment.IndexEntryArray.push_back({offset, 0, 0, 0x80});
  Bytes bytes;
  segment.Write(bytes);
  return bytes;
}

Bytes ConstantSegment(ui32_t size) {
  IndexTableSegment segment;
  segment.IndexEditRate = {24, 1};
  segment.BodySID = 1;
  segment.IndexSID = 129;
  segment.EditUnitByteCount = size;
  Bytes bytes;
  segment.Write(bytes);
  return bytes;
}

Bytes Joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

struct Opened {
  explicit Opened(const Bytes& bytes) : File(bytes) {
    EXPECT_EQ(Structure.ReadHeader(File.Reader), Ferro::RESULT_OK);
    EXPECT_EQ(Structure.ReadPartitions(File.Reader), Ferro::RESULT_OK);
    EXPECT_EQ(Structure.ReadEssenceRuns(File.Reader, 1, Runs), Ferro::RESULT_OK);
  }
  Result_t Read() { return Structure.ReadIndex(File.Reader, 1, Index); }
  Result_t ReadOrRebuild(ui32_t elements = 1) {
    return Structure.ReadOrRebuildIndex(File.Reader, Runs, 1, elements, Index);
  }
  std::vector<ui64_t> Offsets() const {
    std::vector<ui64_t> offsets;
    IndexEntry entry;
    while (Index.EditUnitByteCount() == 0 && Index.Lookup(offsets.size(), entry).Success())
      offsets.push_back(entry.StreamOffset);
    return offsets;
  }

  ScratchFile File;
  FileStructure Structure;
  std::vector<EssenceRun> Runs;
  IndexTable Index;
};

FileAssembler TwoElements(const Bytes& index) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  assembler.Element(100);
  assembler.Element(70);
  assembler.Begin(PartitionKind::Footer, 0, 0, index);
  return assembler;
}

TEST(EssenceRuns, EssenceFollowsTheBodyPack) {
  const Opened opened(ExampleFile());
  EXPECT_THAT(opened.Runs, ElementsAre(EssenceRun{0, 4197, 201}));
}

TEST(EssenceRuns, EssenceOfTheHeaderPartitionFollowsTheMetadata) {
  FileAssembler assembler;
  Bytes bytes = assembler.File;
  bytes[20 + 63] = 1;  // the header pack's BodySID
  const size_t start = bytes.size();
  AppendFill(bytes, 50);
  AppendKL(bytes, DefaultSMPTEDict().ul(MDD_WAVEssence), 10);
  bytes.resize(bytes.size() + 10);
  const Opened opened(bytes);
  EXPECT_THAT(opened.Runs, ElementsAre(EssenceRun{0, start + 50, 30}));
}

TEST(EssenceRuns, PartitionsOfOneStreamAreJoinedByTheirBodyOffset) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  const ui64_t first = assembler.File.size();
  assembler.Element(100);
  assembler.Begin(PartitionKind::GenericStream, 10);
  assembler.Element(500);
  assembler.Begin(PartitionKind::Body, 1, 0, {}, 100);
  const ui64_t second = assembler.File.size();
  assembler.Element(70);
  const Opened opened(assembler.File);
  EXPECT_THAT(opened.Runs, ElementsAre(EssenceRun{0, first, 100}, EssenceRun{100, second, 70}));
}

TEST(EssenceRuns, MissingBodyOffsetMeansTheNextPiece) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  assembler.Element(100);
  assembler.Begin(PartitionKind::Body, 1);
  const ui64_t second = assembler.File.size();
  assembler.Element(70);
  EXPECT_EQ(Opened(assembler.File).Runs.at(1), (EssenceRun{100, second, 70}));
}

TEST(EssenceRuns, BodyOffsetThatWouldWrapIsAFormatError) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1, 0, {}, ~ui64_t{0});
  assembler.Element(100);
  const ScratchFile file(assembler.File);
  FileStructure structure;
  std::vector<EssenceRun> runs;
  ASSERT_EQ(structure.ReadHeader(file.Reader), Ferro::RESULT_OK);
  ASSERT_EQ(structure.ReadPartitions(file.Reader), Ferro::RESULT_OK);
  const testsupport::LogCapture log;
  EXPECT_EQ(structure.ReadEssenceRuns(file.Reader, 1, runs), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: partition with a body offset that cannot be at offset 4025.\n"));
}

TEST(IndexReading, SegmentsOfAllPartitionsAreJoined) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1, 0, Segment({0}));
  assembler.Element(100);
  assembler.Element(70);
  assembler.Begin(PartitionKind::Footer, 0, 0, Joined(Segment({100}, 1, 129, 1), Segment({0})));
  Opened opened(assembler.File);
  ASSERT_EQ(opened.Read(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
  EXPECT_EQ(opened.Index.EditRate(), Rational(24, 1));
}

TEST(IndexReading, SegmentsOfOtherStreamsAreIgnored) {
  Opened opened(TwoElements(Joined(Segment({5}, 2), Joined(Segment({6}, 1, 130), Segment({0, 100})))).File);
  ASSERT_EQ(opened.Read(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
}

TEST(IndexReading, FillBetweenSegmentsIsSkipped) {
  Bytes index = Segment({0});
  AppendFill(index, 30);
  Opened opened(TwoElements(Joined(index, Segment({100}, 1, 129, 1))).File);
  ASSERT_EQ(opened.Read(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
}

TEST(IndexReading, LargerThanOneReadIsReadToItsEnd) {
  Bytes index;
  std::vector<ui64_t> all;
  for (i64_t start = 0; start < 150000; start += 5000) {
    std::vector<ui64_t> offsets(5000);
    for (size_t i = 0; i < offsets.size(); ++i) offsets[i] = (static_cast<ui64_t>(start) + i) * 3;
    index = Joined(std::move(index), Segment(offsets, 1, 129, start));
    all.insert(all.end(), offsets.begin(), offsets.end());
  }
  Opened opened(TwoElements(index).File);
  ASSERT_EQ(opened.Read(), Ferro::RESULT_OK);
  EXPECT_EQ(opened.Offsets(), all);
}

TEST(IndexReading, GarbageIsAFormatErrorWithItsOffset) {
  Opened opened(TwoElements(Joined(Segment({0}), Bytes(30, 0xff))).File);
  const testsupport::LogCapture log;
  EXPECT_EQ(opened.Read(), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: index with something that is no whole KLV at offset 4544.\n"));
  EXPECT_TRUE(opened.Index.IsEmpty());
}

TEST(IndexReading, ByteCountBeyondTheFileMeansNoIndex) {
  for (const ui64_t count : {ui64_t{152 + 61}, ui64_t{1} << 40, ~ui64_t{0}}) {
    Bytes bytes = ExampleFile();
    for (size_t i = 0; i < 8; ++i) bytes[4398 + 20 + 40 + i] = static_cast<ui8_t>(count >> (56 - 8 * i));
    Opened opened(bytes);
    EXPECT_EQ(opened.Read(), Ferro::RESULT_OK);
    EXPECT_TRUE(opened.Index.IsEmpty());
  }
}

TEST(IndexRebuilding, GoodIndexIsKept) {
  Opened opened(TwoElements(Segment({0, 100})).File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
}

TEST(IndexRebuilding, MissingIndexIsRebuiltFromTheElements) {
  Opened opened(TwoElements({}).File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
  EXPECT_EQ(opened.Index.Duration(), 2u);
}

TEST(IndexRebuilding, BrokenIndexIsReplacedAndTheFaultLogged) {
  const testsupport::LogCapture log;
  Opened opened(TwoElements(Joined(Segment({0}), Segment({100}, 1, 129, 5))).File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: index segments leave a gap at edit unit 5.\n"));
}

TEST(IndexRebuilding, IndexThatLeadsPastElementsIsReplaced) {
  for (const std::vector<ui64_t>& offsets : {std::vector<ui64_t>{0, 99}, {1, 100}, {0, ~ui64_t{0}}, {0, 170}}) {
    Opened opened(TwoElements(Segment(offsets)).File);
    ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
    EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
    EXPECT_EQ(opened.Index.EditRate(), Rational(24, 1));
  }
}

TEST(IndexRebuilding, OffsetsFromAnotherOriginAreMoved) {
  constexpr ui64_t body = 4025 + 108;
  Opened opened(TwoElements(Segment({body, body + 100})).File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
}

TEST(IndexRebuilding, ConstantSizeThatIsNotTrueIsReplaced) {
  Opened good(TwoElements(ConstantSegment(100)).File);
  ASSERT_EQ(good.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_EQ(good.Index.EditUnitByteCount(), 100u);
  Opened bad(TwoElements(ConstantSegment(99)).File);
  ASSERT_EQ(bad.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(bad.Offsets(), ElementsAre(0, 100));
}

TEST(IndexRebuilding, ElementsOfOneSizeMakeAConstantIndex) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  for (int i = 0; i < 5; ++i) assembler.Element(64);
  Opened opened(assembler.File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_EQ(opened.Index.EditUnitByteCount(), 64u);
  EXPECT_EQ(opened.Index.Duration(), 5u);
}

TEST(IndexRebuilding, TwoElementsMakeAStereoscopicEditUnit) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  for (const size_t size : {100U, 90U, 80U, 70U, 60U}) assembler.Element(size);
  Opened opened(assembler.File);
  ASSERT_EQ(opened.ReadOrRebuild(2), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 190));  // the fifth has no partner
}

TEST(IndexRebuilding, CutElementIsDropped) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  for (const size_t size : {100U, 90U, 80U}) assembler.Element(size);
  assembler.File.pop_back();
  Opened opened(assembler.File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 100));
}

TEST(IndexRebuilding, FillBetweenElementsCounts) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  assembler.Element(100);
  AppendFill(assembler.File, 28);
  assembler.Element(90);
  Opened opened(assembler.File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_THAT(opened.Offsets(), ElementsAre(0, 128));
}

TEST(IndexRebuilding, WithoutEssenceTheIndexIsEmpty) {
  FileAssembler assembler;
  assembler.Begin(PartitionKind::Body, 1);
  Opened opened(assembler.File);
  ASSERT_EQ(opened.ReadOrRebuild(), Ferro::RESULT_OK);
  EXPECT_TRUE(opened.Index.IsEmpty());
}

// Reads all there is of a file; what it returns must be success or a format error.
void ReadEverything(const Bytes& bytes) {
  const testsupport::LogCapture log;
  const ScratchFile file(bytes);
  FileStructure structure;
  const auto proper = [](const Result_t& result) { return result == Ferro::RESULT_OK || result == RESULT_FORMAT; };
  Result_t result = structure.ReadHeader(file.Reader);
  ASSERT_TRUE(proper(result)) << result.Label();
  if (result.Failure()) return;
  result = structure.ReadPartitions(file.Reader);
  ASSERT_TRUE(proper(result)) << result.Label();
  std::vector<EssenceRun> runs;
  result = structure.ReadEssenceRuns(file.Reader, 1, runs);
  ASSERT_TRUE(proper(result)) << result.Label();
  IndexTable index;
  result = structure.ReadOrRebuildIndex(file.Reader, runs, 1, 1, index);
  ASSERT_TRUE(proper(result)) << result.Label();
  if (index.EditUnitByteCount() == 0) {
    ASSERT_LE(index.Duration(), bytes.size());
  }
}

TEST(HostileFile, CutAtEveryByteIsReadOrRefused) {
  const Bytes bytes = ExampleFile();
  for (size_t length = 0; length < bytes.size(); ++length)
    ReadEverything(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
}

TEST(HostileFile, EveryByteAtItsExtremesIsReadOrRefused) {
  const Bytes bytes = ExampleFile();
  for (size_t at = 0; at < bytes.size(); ++at) {
    for (const int value : {0x00, 0xff}) {
      Bytes changed = bytes;
      changed[at] = static_cast<ui8_t>(value);
      ReadEverything(changed);
    }
  }
}

TEST(HostileFile, EveryFieldOfThePacksAtItsExtremesIsReadOrRefused) {
  for (const size_t pack : {0U, 4057U, 4398U}) {
    for (size_t at = pack + 20; at + 8 <= pack + 140; at += 4) {
      for (const ui64_t value : {ui64_t{0}, ui64_t{1}, ~ui64_t{0} >> 1, ~ui64_t{0}}) {
        Bytes changed = ExampleFile();
        for (size_t i = 0; i < 8; ++i) changed[at + i] = static_cast<ui8_t>(value >> (56 - 8 * i));
        ReadEverything(changed);
      }
    }
  }
}

TEST(HostileFile, RandomDamageIsReadOrRefused) {
  std::mt19937 random(20240102);
  for (int round = 0; round < 3000; ++round) {
    Bytes changed = ExampleFile();
    for (int i = 0; i < 8; ++i) changed[random() % changed.size()] = static_cast<ui8_t>(random());
    ReadEverything(changed);
  }
}

}  // namespace
}  // namespace QUIRE::MXF
