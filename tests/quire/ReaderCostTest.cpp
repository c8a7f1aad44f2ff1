// SPDX-License-Identifier: BSD-3-Clause
#include "AllocationCount.h"
#include "ReaderFixture.h"

#include <QUIRE/EssenceType.h>
#include <QUIRE/FrameDecryption.h>
#include <QUIRE/MXF/Dump.h>
#include <QUIRE/MXF/IndexTableSegment.h>

#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <utility>

// What opening and reading may cost in bytes read, memory and allocations.

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

struct Calls {
  long long Bytes = 0;
  long long Reads = 0;
};

// What the process has read so far, by the system's own count; reading the count adds to it.
Calls SystemCount() {
  std::ifstream file("/proc/self/io");
  Calls calls;
  std::string name;
  long long value = 0;
  while (file >> name >> value) {
    if (name == "rchar:") calls.Bytes = value;
    if (name == "syscr:") calls.Reads = value;
  }
  return calls;
}

template <class F>
Calls CostOf(const F& work) {
  const Calls idle_from = SystemCount();
  const Calls from = SystemCount();
  work();
  const Calls to = SystemCount();
  return {to.Bytes - from.Bytes - (from.Bytes - idle_from.Bytes),
          to.Reads - from.Reads - (from.Reads - idle_from.Reads)};
}

TEST(ReaderCost, OpeningReadsLittleMoreThanTheHeader) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3000);
  builder.HeaderFill = 12000;
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  JP2K::PictureDescriptor descriptor;
  const Calls cost = CostOf([&] {
    ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    ASSERT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
  });
  EXPECT_LE(cost.Bytes, static_cast<long long>(builder.HeaderEnd) * 12 / 10);
  EXPECT_LE(cost.Reads, 2);
}

TEST(ReaderCost, FrameIsOneReadOfItsOwnBytes) {
  for (auto kind : {MxfBuilder::JP2K, MxfBuilder::PCM}) {
    for (const Bytes& key : {Bytes(), Bytes(16, 3)}) {
      MxfBuilder builder = MakeBuilder(kind, 50);
      builder.Key = key;
      const TemporaryFile file(builder.Build());
      JP2K::MXFReader picture;
      PCM::MXFReader sound;
      JP2K::FrameBuffer picture_frame;
      PCM::FrameBuffer sound_frame;
      ASSERT_EQ(picture_frame.Capacity(20000), RESULT_OK);
      ASSERT_EQ(sound_frame.Capacity(20000), RESULT_OK);
      const auto read = [&](ui32_t i) {
        return kind == MxfBuilder::JP2K ? picture.ReadFrame(i, picture_frame) : sound.ReadFrame(i, sound_frame);
      };
      LogCapture log;
      ASSERT_EQ(kind == MxfBuilder::JP2K ? picture.OpenRead(file.Name()) : sound.OpenRead(file.Name()), RESULT_OK);
      ASSERT_EQ(read(7), RESULT_OK);
      for (ui32_t i : {8u, 3u, 49u, 0u}) {
        const Calls cost = CostOf([&] { ASSERT_EQ(read(i), RESULT_OK); });
        EXPECT_EQ(cost.Reads, 1);
        const size_t end = i < 49 ? builder.ElementAt[i + 1] : builder.EssenceEnd;
        EXPECT_LE(cost.Bytes, static_cast<long long>(end - builder.ElementAt[i]));
      }
    }
  }
}

TEST(ReaderCost, FrameIsReadWithoutAllocation) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 50);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  JP2K::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(20000), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(0, frame), RESULT_OK);
  const size_t before = Allocations;
  for (ui32_t i = 0; i < 50; ++i) ASSERT_EQ(reader.ReadFrame(49 - i, frame), RESULT_OK);
  EXPECT_EQ(Allocations, before);
}

TEST(ReaderCost, OpenReaderHoldsAtMost180KiBAnd12BytesPerIndexedEditUnit) {
  // Two files of different length show what an entry takes.
  size_t held[2] = {};
  const size_t counts[2] = {1000, 21000};
  for (int i = 0; i < 2; ++i) {
    MxfBuilder builder(MxfBuilder::JP2K);
    builder.Frames = MakeFrames(counts[i], 10, 0);
    const TemporaryFile file(builder.Build());
    JP2K::FrameBuffer frame;
    ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
    const size_t before = HeldBytes;
    JP2K::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    ASSERT_EQ(reader.ReadFrame(5, frame), RESULT_OK);
    held[i] = HeldBytes - before;
  }
  EXPECT_LE(held[0], 180u * 1024 + 1000 * 12);
  EXPECT_LE(held[1] - held[0], (counts[1] - counts[0]) * 12 + 1024);
}

struct Effort {
  size_t FileSize = 0;
  size_t Peak = 0;         // bytes held at once
  size_t Allocations = 0;  // how often memory was asked for
  bool WasOpened = false;
};

// Opens the file, reads of it what a player reads, and asks what it is.
Effort EffortFor(MxfBuilder& builder) {
  const Bytes bytes = builder.Build();
  const TemporaryFile file(bytes);
  LogCapture log;
  const size_t held = PeakBytes = HeldBytes;
  const size_t allocations = Allocations;
  bool was_opened = false;
  {
    JP2K::MXFReader pictures;
    TimedText::MXFReader texts;
    JP2K::FrameBuffer frame;
    TimedText::FrameBuffer resource;
    TrackFileIdentity identity;
    if (builder.Kind == MxfBuilder::TimedText) {
      was_opened = texts.OpenRead(file.Name()).Success();
      if (was_opened) (void)texts.ReadTimedTextResource(resource);
    } else {
      was_opened = pictures.OpenRead(file.Name()).Success();
      if (was_opened) (void)pictures.ReadFrame(0, frame);
    }
    (void)pictures.Close();
    (void)texts.Close();
    EXPECT_EQ(IdentifyTrackFile(file.Name(), identity), RESULT_OK);
  }
  return {bytes.size(), PeakBytes - held, Allocations - allocations, was_opened};
}

constexpr size_t SixteenMiB = size_t{16} << 20;

Bytes SetOf(const char* key, const Bytes& items) {
  return Hex(key) + Hex("83") + BE(items.size(), 3) + items;
}
Bytes InstanceItem(ui64_t number) {
  return Hex("3c0a0010") + Bytes(8, 7) + BE64(number);
}

constexpr const char* RGBADescriptorKey = "060e2b34.02530101.0d010101.01012900";
constexpr const char* ContainerDataKey = "060e2b34.02530101.0d010101.01012300";
constexpr const char* UnknownKey = "060e2b34.02530101.0d010101.0101ff00";

TEST(ReaderCost, MadeUpSetsTakeAtMost16MiBAboveTheFile) {
  for (const char* key : {RGBADescriptorKey, ContainerDataKey, UnknownKey}) {
    for (const size_t count : {5800U, 53000U}) {
      for (const bool first : {false, true}) {
        MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
        Bytes& sets = first ? builder.BeforeSets : builder.ExtraSets;
        for (size_t i = 0; i < count; ++i) sets += SetOf(key, InstanceItem(i));
        const Effort effort = EffortFor(builder);
        EXPECT_LE(effort.Peak, effort.FileSize + SixteenMiB) << key << ' ' << count << ' ' << first;
      }
    }
  }
}

TEST(ReaderCost, MadeUpItemsTakeAtMost16MiBAboveTheFile) {
  Bytes empty;
  for (size_t i = 0; i < 500000; ++i) empty += Hex("90000000");
  Bytes full;
  for (size_t i = 0; i < 250; ++i) full += Hex("9000fff0") + Bytes(0xfff0, 1);
  for (const Bytes& items : {empty, full}) {
    MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
    builder.ExtraSets = Hex(RGBADescriptorKey) + Hex("84") + BE32(items.size()) + items;
    const Effort effort = EffortFor(builder);
    EXPECT_LE(effort.Peak, effort.FileSize + SixteenMiB);
  }
}

TEST(ReaderCost, WorkGrowsWithTheNumberOfSets) {
  size_t allocations[2] = {};
  for (const size_t i : {0U, 1U}) {
    MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
    for (size_t n = 0; n < size_t{1000} << i; ++n) builder.ExtraSets += SetOf(RGBADescriptorKey, InstanceItem(n));
    allocations[i] = EffortFor(builder).Allocations;
  }
  EXPECT_LE(allocations[1], 2 * allocations[0] + 100);
  EXPECT_LE(allocations[0], 1000u * 2 * 6 + 1000);  // twice: reader and identity
}

TEST(ReaderCost, PartitionsTakeAtMost16MiBAboveTheFile) {
  for (const bool has_index : {true, false}) {
    for (const size_t count : {20000U, 60000U}) {
      MxfBuilder builder = MakeBuilder(MxfBuilder::TimedText, 1);
      builder.HasRIP = has_index;
      for (size_t i = 0; i < count; ++i) {
        Resource resource;
        resource.ID = Bytes(8, 9) + BE64(i);
        resource.Data = Bytes(4, 5);
        resource.SID = static_cast<ui32_t>(10 + i);
        resource.Listed = false;
        builder.Resources.push_back(resource);
      }
      const Effort effort = EffortFor(builder);
      EXPECT_LE(effort.Peak, effort.FileSize + SixteenMiB) << count << ' ' << has_index;
      EXPECT_TRUE(effort.WasOpened);
    }
  }
}

TEST(ReaderCost, DecryptingATakenFrameAllocatesNothing) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  builder.Key = Bytes(16, 3);
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  JP2K::FrameBuffer frame;
  TrackEncryption track;
  FrameContexts contexts;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  ASSERT_EQ(ReadTrackEncryption(file.Name(), track), RESULT_OK);
  ASSERT_EQ(contexts.InitKey(std::span<const ui8_t, KeyLen>(builder.Key.data(), KeyLen), track.LabelSet), RESULT_OK);
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(1, frame), RESULT_OK);
  Bytes plain(frame.SourceLength());
  const size_t before = Allocations;
  const Result_t result = VerifyAndDecrypt(track, frame, 2, &contexts, plain);
  EXPECT_EQ(Allocations, before);
  EXPECT_EQ(result, RESULT_OK);
  EXPECT_EQ(plain, builder.Frames[1]);
}

// Segments of `length` entries, up to `count` edit units; all but the first two lead to the start of the essence.
Bytes SegmentsOf(size_t count, size_t length) {
  Bytes bytes;
  for (size_t start = 2; start < count; start += length) {
    MXF::IndexTableSegment segment;
    segment.IndexEditRate = {24, 1};
    segment.IndexStartPosition = static_cast<i64_t>(start);
    segment.IndexDuration = static_cast<i64_t>(length);
    segment.IndexSID = 129;
    segment.BodySID = 1;
    segment.IndexEntryArray.resize(length);
    segment.Write(bytes);
  }
  return bytes;
}

TEST(ReaderCost, LongIndexTakesAtMost16MiBAboveTheFile) {
  struct Index {
    size_t EditUnits;
    size_t PerSegment;
    MxfBuilder::IndexPlace_t Place;
  };
  for (const Index& index : {Index{2'500'000, 5000, MxfBuilder::InFooter}, Index{2'500'000, 5000, MxfBuilder::InHeader},
                             Index{150'000, 1, MxfBuilder::InFooter}}) {
    MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
    builder.IndexPlace = index.Place;
    builder.ExtraSegments = SegmentsOf(index.EditUnits, index.PerSegment);
    const Effort effort = EffortFor(builder);
    EXPECT_LE(effort.Peak, effort.FileSize + SixteenMiB) << index.PerSegment;
    EXPECT_GE(effort.Peak, index.EditUnits * 11) << "not looked at";
    EXPECT_TRUE(effort.WasOpened);
  }
}

// Describes the file in both forms; answers the longer text.
std::string DumpWithin16MiB(MxfBuilder& builder) {
  const Bytes bytes = builder.Build();
  const TemporaryFile file(bytes);
  std::string longer;
  for (const MXF::DumpForm form : {MXF::DumpForm::Text, MXF::DumpForm::JSON}) {
    LogCapture log;
    std::string text;
    const size_t held = PeakBytes = HeldBytes;
    Ferro::FileReader reader;
    EXPECT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    (void)MXF::DumpFile(reader, form, text);
    EXPECT_LE(PeakBytes - held, bytes.size() + SixteenMiB);
    if (text.size() > longer.size()) longer = std::move(text);
  }
  return longer;
}

TEST(ReaderCost, DumpOfManyPartitionsTakesAtMost16MiBAboveTheFile) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::TimedText, 1);
  for (size_t i = 0; i < 30000; ++i) {
    Resource resource;
    resource.ID = Bytes(8, 9) + BE64(i);
    resource.Data = Bytes(4, 5);
    resource.SID = static_cast<ui32_t>(10 + i % 5000);
    resource.Listed = false;
    builder.Resources.push_back(resource);
  }
  const std::string text = DumpWithin16MiB(builder);
  EXPECT_THAT(text, testing::HasSubstr("left out: "));
  EXPECT_GE(text.size(), size_t{4} << 20);
}

TEST(ReaderCost, DumpOfMadeUpSetsTakesAtMost16MiBAboveTheFile) {
  for (const char* key : {RGBADescriptorKey, ContainerDataKey, UnknownKey}) {
    MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
    for (size_t i = 0; i < 8000; ++i) builder.ExtraSets += SetOf(key, InstanceItem(i));
    EXPECT_GE(DumpWithin16MiB(builder).size(), builder.ExtraSets.size()) << key;
  }
}

}  // namespace
