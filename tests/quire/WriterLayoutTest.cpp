// SPDX-License-Identifier: BSD-3-Clause
//
// Files are laid out as those in SMPTE and Interop packages are: which partitions, where, what they say, the sizes and
// the order of the header metadata, the form of the index.
#include "FileBytes.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace testsupport;
using QUIRE::MXF::KLVPacket;

class WriterLayout : public testing::Test {
 protected:
  // Writes a file and takes it apart.
  void Make(TrackKind kind, const TrackFileSpec& spec) {
    const std::string path = m_Folder.Path("file.mxf");
    ASSERT_EQ(MakeTrackFile(kind, path, spec), Ferro::RESULT_OK);
    m_Bytes = ReadFileBytes(path);
    m_Packets = ReadKLVs(m_Bytes);
  }
  // The tails of the packets' keys (their last eight bytes) with the offsets: partitions, index, random index pack.
  std::vector<std::pair<std::string, size_t>> Packs() const {
    std::vector<std::pair<std::string, size_t>> packs;
    for (const auto& packet : m_Packets) {
      const std::string key = packet.Key.EncodeHex();
      if (key.compare(8, 16, "020501010d010201") != 0 && key.compare(8, 16, "025301010d010201") != 0) continue;
      packs.emplace_back(key.substr(24), packet.Offset);
    }
    return packs;
  }
  // Value lengths of the sets, in file order, named by the two significant bytes of their keys.
  std::vector<std::pair<std::string, size_t>> Sets() const {
    std::vector<std::pair<std::string, size_t>> sets;
    for (const auto& packet : m_Packets) {
      const std::string key = packet.Key.EncodeHex();
      if (key.compare(8, 4, "0253") == 0 && key.compare(16, 8, "0d010201") != 0) {
        sets.emplace_back(key.substr(26, 4), packet.ValueLength);
      }
    }
    return sets;
  }
  size_t PrimerEntries() const {
    for (const auto& packet : m_Packets) {
      if (packet.Key.EncodeHex() == "060e2b34020501010d01020101050100") return (packet.ValueLength - 8) / 18;
    }
    return 0;
  }
  std::string HexAt(size_t offset, size_t length) const { return Hex(m_Bytes, offset, length); }
  // The index segment's value.
  std::string Index() const {
    for (const auto& packet : m_Packets) {
      if (packet.Key.EncodeHex() == "060e2b34025301010d01020101100100")
        return HexAt(packet.ValueOffset(), packet.ValueLength);
    }
    return "none";
  }

  TemporaryFolder m_Folder;
  Bytes m_Bytes;
  std::vector<KLVPacket> m_Packets;
};

using Packs_t = std::vector<std::pair<std::string, size_t>>;

TEST_F(WriterLayout, SMPTESoundHasHeaderBodyFooter) {
  TrackFileSpec spec;
  spec.Duration = 3;
  Make(TrackKind::Sound, spec);
  const size_t footer = 16524 + 3 * 36020;
  EXPECT_EQ(Packs(), (Packs_t{{"01020400", 0},
                              {"01050100", 140},
                              {"01030400", 16384},
                              {"01040400", footer},
                              {"01100100", footer + 140},
                              {"01110100", footer + 262}}));
  EXPECT_EQ(m_Bytes.size(), footer + 322);
  EXPECT_EQ(HexAt(0, 140),
            "060e2b34020501010d01020101020400"
            "83000078"
            "0001"
            "0002"
            "00000001"
            "0000000000000000"
            "0000000000000000"
            "000000000001e6a8"
            "0000000000003f74"
            "0000000000000000"
            "00000000"
            "0000000000000000"
            "00000000"
            "060e2b34040101020d01020110000000"
            "0000000200000010"
            "060e2b34040101030d010301027f0100"
            "060e2b34040101010d01030102060100");
  EXPECT_EQ(HexAt(16384 + 20, 64),
            "0001"
            "0002"
            "00000001"
            "0000000000004000"
            "0000000000000000"
            "0000000000000000"
            "0000000000000000"
            "0000000000000000"
            "00000000"
            "0000000000000000"
            "00000001");
  EXPECT_EQ(HexAt(footer + 20, 64),
            "0001"
            "0002"
            "00000001"
            "000000000001e6a8"
            "0000000000004000"
            "000000000001e6a8"
            "0000000000000000"
            "000000000000007a"
            "00000081"
            "0000000000000000"
            "00000000");
  EXPECT_EQ(HexAt(16524, 20),
            "060e2b34010201010d01030116010101"
            "83008ca0");
  EXPECT_EQ(HexAt(footer + 262, 60),
            "060e2b34020501010d01020101110100"
            "83000028"
            "00000000"
            "0000000000000000"
            "00000001"
            "0000000000004000"
            "00000000"
            "000000000001e6a8"
            "0000003c");
}

TEST_F(WriterLayout, InteropSoundHasItsEssenceBehindTheHeader) {
  TrackFileSpec spec;
  spec.Duration = 3;
  spec.LabelSet = QUIRE::LS_MXF_INTEROP;
  Make(TrackKind::Sound, spec);
  const size_t footer = 16384 + 3 * 36020;
  EXPECT_EQ(Packs(), (Packs_t{{"01020400", 0},
                              {"01050100", 140},
                              {"01040400", footer},
                              {"01100100", footer + 140},
                              {"01110100", footer + 262}}));
  EXPECT_EQ(m_Bytes.size(), footer + 310);
  EXPECT_EQ(HexAt(80, 20),
            "00000001"
            "060e2b34040101010d01020110000000");         // BodySID, operational pattern
  EXPECT_EQ(HexAt(footer + 36, 8), "0000000000000000");  // PreviousPartition
  EXPECT_EQ(HexAt(footer + 262 + 16, 4), "8300001c");
  EXPECT_EQ(HexAt(footer + 262 + 20, 12),
            "00000001"
            "0000000000000000");
}

TEST_F(WriterLayout, EncryptedSoundHasTripletsOfTheExpectedSize) {
  TrackFileSpec spec;
  spec.Duration = 3;
  spec.Key = TrackFileKey{};
  Make(TrackKind::Sound, spec);
  EXPECT_EQ(m_Bytes.size(), size_t{16524 + 3 * 36192 + 322});
  EXPECT_EQ(HexAt(16524, 16), "060e2b34020401010d010301027e0100");
  EXPECT_EQ(HexAt(124, 16), "060e2b34040101070d010301020b0100");  // the header pack's second container label
  spec.LabelSet = QUIRE::LS_MXF_INTEROP;
  Make(TrackKind::Sound, spec);
  EXPECT_EQ(m_Bytes.size(), size_t{16384 + 3 * 36192 + 310});
  EXPECT_EQ(HexAt(16384, 16), "060e2b34020401070d010301027e0100");
}

TEST_F(WriterLayout, TripletsWithoutIntegrityEndAfterTheEncryptedValue) {
  TrackFileSpec spec;
  spec.Duration = 3;
  spec.Key = TrackFileKey{};
  spec.Key->UsesHMAC = false;
  Make(TrackKind::Sound, spec);
  EXPECT_EQ(m_Bytes.size(), size_t{16524 + 3 * (36192 - 56) + 322});
}

TEST_F(WriterLayout, TimedTextHasAPartitionForEachResource) {
  TrackFileSpec spec;
  spec.FontSizes = {383804};
  const size_t document = MakeText(spec).size();
  Make(TrackKind::Text, spec);
  const size_t stream = 16518 + 140 + 20 + document;
  const size_t footer = stream + 124 + 20 + 383804;
  EXPECT_EQ(Packs(), (Packs_t{{"01020400", 0},
                              {"01050100", 140},
                              {"01030400", 16518},
                              {"01031100", stream},
                              {"01040400", footer},
                              {"01100100", footer + 140},
                              {"01110100", footer + 291}}));
  EXPECT_EQ(m_Bytes.size(), footer + 315 + 12 * 4);
  EXPECT_EQ(HexAt(52, 8), "0000000000003ffa");  // HeaderByteCount 16378
  EXPECT_EQ(HexAt(stream + 20 + 16, 16),
            "0000000000004086"
            "0000000000000000");  // previous partition, footer
  EXPECT_EQ(HexAt(stream + 20 + 60, 44),
            "0000000a"
            "060e2b34040101010d01020101010100"
            "0000000100000010"
            "060e2b34010201010d01030117010b01");
  EXPECT_EQ(HexAt(stream + 124, 16), "060e2b340101010c0d01050901000000");
  EXPECT_EQ(HexAt(stream + 144, 4), "4f54544f");
}

TEST_F(WriterLayout, EncryptedTimedTextCountsTripletsFromTheDocumentOn) {
  TrackFileSpec spec;
  spec.Key = TrackFileKey{};
  spec.FontSizes = {383804};
  const size_t document = 192 + MakeText(spec).size() / 16 * 16;
  Make(TrackKind::Text, spec);
  const size_t stream = 16518 + 140 + document;
  const size_t footer = stream + 124 + 192 + 383804 / 16 * 16;
  EXPECT_EQ(m_Bytes.size(), footer + 315 + 12 * 4);
  EXPECT_EQ(HexAt(stream - 32, 8), "0000000000000001");
  EXPECT_EQ(HexAt(footer - 32, 8), "0000000000000002");
  EXPECT_EQ(HexAt(stream + 124 + 56, 16), "060e2b340101010c0d01050901000000");  // the source key
}

TEST_F(WriterLayout, ResourceStreamsLeaveOutTheIndexID) {
  TrackFileSpec spec;
  spec.FontSizes.assign(121, 1);
  Make(TrackKind::Text, spec);
  std::vector<std::string> sids;
  for (const auto& [key, offset] : Packs()) {
    if (key == "01031100") sids.push_back(HexAt(offset + 80, 4));
  }
  ASSERT_EQ(sids.size(), 121u);
  EXPECT_EQ(sids.front(), "0000000a");
  EXPECT_EQ(sids[118], "00000080");
  EXPECT_EQ(sids[119], "00000082");
}

TEST_F(WriterLayout, AHeaderThatOutgrowsItsSpaceTakesTheNextMultiple) {
  TrackFileSpec spec;
  spec.FontSizes.assign(200, 1);
  Make(TrackKind::Text, spec);
  const auto packs = Packs();
  EXPECT_EQ(packs[2], (std::pair<std::string, size_t>("01030400", 32768)));
}

TEST_F(WriterLayout, SetsStandDepthFirstInTheirCustomarySizes) {
  Make(TrackKind::Sound, {});
  const size_t identification = 116 + 2 * (12 + 12 + 5 + 5);  // two bytes for each character of four texts
  EXPECT_EQ(Sets(), (Packs_t{{"012f", 190},
                             {"0130", identification},
                             {"0118", 92},
                             {"0123", 72},
                             {"0136", 160},
                             {"013b", 112},
                             {"010f", 80},
                             {"0114", 75},
                             {"013b", 106},
                             {"010f", 80},
                             {"0111", 108},
                             {"0137", 232},
                             {"013b", 112},
                             {"010f", 80},
                             {"0114", 75},
                             {"013b", 106},
                             {"010f", 80},
                             {"0111", 108},
                             {"0148", 154}}));
}

TEST_F(WriterLayout, PrimersListTheTagsInUse) {
  TrackFileSpec spec;
  spec.FontSizes = {1};
  const std::tuple<TrackKind, QUIRE::LabelSet_t, bool, size_t> cases[] = {
      {TrackKind::Sound, QUIRE::LS_MXF_SMPTE, false, 66}, {TrackKind::Sound, QUIRE::LS_MXF_INTEROP, false, 65},
      {TrackKind::Sound, QUIRE::LS_MXF_SMPTE, true, 75},  {TrackKind::Sound, QUIRE::LS_MXF_INTEROP, true, 74},
      {TrackKind::Text, QUIRE::LS_MXF_SMPTE, false, 64},  {TrackKind::Text, QUIRE::LS_MXF_SMPTE, true, 70},
      {TrackKind::Atmos, QUIRE::LS_MXF_SMPTE, false, 64},
  };
  for (const auto& [kind, label_set, is_encrypted, entries] : cases) {
    spec.LabelSet = label_set;
    spec.Key.reset();
    if (is_encrypted) spec.Key = TrackFileKey{};
    Make(kind, spec);
    EXPECT_EQ(PrimerEntries(), entries) << static_cast<int>(kind) << ' ' << label_set << ' ' << is_encrypted;
  }
}

TEST_F(WriterLayout, ConstantSizeIndexHasNoEntries) {
  Make(TrackKind::Sound, {});
  EXPECT_EQ(Index().substr(40),
            "3f0b0008"
            "0000001800000001"
            "3f0c0008"
            "0000000000000000"
            "3f0d0008"
            "0000000000000000"
            "3f050004"
            "00008cb4"
            "3f060004"
            "00000081"
            "3f070004"
            "00000001"
            "3f080001"
            "00"
            "3f0e0001"
            "00"
            "3f0a0008"
            "0000000000000000");
}

TEST_F(WriterLayout, TimedTextIndexIsAStub) {
  TrackFileSpec spec;
  spec.Duration = 240;
  Make(TrackKind::Text, spec);
  EXPECT_EQ(Index().substr(40),
            "3f0b0008"
            "0000001800000001"
            "3f0c0008"
            "0000000000000000"
            "3f0d0008"
            "0000000000000001"
            "3f050004"
            "00000000"
            "3f060004"
            "00000081"
            "3f070004"
            "00000001"
            "3f080001"
            "00"
            "3f0e0001"
            "00"
            "3f09000e"
            "00000001"
            "00000006"
            "ff0000000000"
            "3f0a0013"
            "00000001"
            "0000000b"
            "0000000000000000000000");
}

// Flags and offsets of the index entries of a segment with `count` of them.
std::vector<std::string> Entries(const std::string& index, size_t count) {
  std::vector<std::string> entries;
  for (size_t i = 0; i < count; ++i) entries.push_back(index.substr(index.size() - 22 * (count - i), 22));
  return entries;
}

TEST_F(WriterLayout, EachPictureHasAnEntryFromTheFirstKeyOn) {
  TrackFileSpec spec;
  spec.Duration = 3;
  Make(TrackKind::Picture, spec);
  const size_t second = 20 + MakeFrame(TrackKind::Picture, spec, 0).size();
  const size_t third = second + 20 + MakeFrame(TrackKind::Picture, spec, 1).size();
  const auto entry = [](size_t offset) {
    char text[40];
    std::snprintf(text, sizeof text, "000080%016zx", offset);
    return std::string(text);
  };
  EXPECT_EQ(Entries(Index(), 3), (std::vector<std::string>{entry(0), entry(second), entry(third)}));
}

TEST_F(WriterLayout, APairOfEyesHasOneEntryAtTheLeft) {
  TrackFileSpec spec;
  spec.Duration = 2;
  Make(TrackKind::StereoscopicPicture, spec);
  const size_t second = 40 + MakeFrame(TrackKind::StereoscopicPicture, spec, 0).size() +
                        MakeFrame(TrackKind::StereoscopicPicture, spec, 0, true).size();
  char text[40];
  std::snprintf(text, sizeof text, "000080%016zx", second);
  EXPECT_EQ(Entries(Index(), 2), (std::vector<std::string>{"0000800000000000000000", text}));
  EXPECT_NE(Index().find("3f0d0008"
                         "0000000000000002"),
            std::string::npos);
}

TEST_F(WriterLayout, ImmersiveAudioEntriesHaveNoFlags) {
  TrackFileSpec spec;
  spec.Duration = 1;
  Make(TrackKind::Atmos, spec);
  EXPECT_EQ(Entries(Index(), 1), std::vector<std::string>{"0000000000000000000000"});
}

TEST_F(WriterLayout, MPEG2EntriesTellTypesAndReordering) {
  TrackFileSpec spec;
  spec.Duration = 8;
  Make(TrackKind::MPEG2, spec);
  std::vector<std::string> facts;  // temporal offset, key frame offset, flags
  for (const auto& entry : Entries(Index(), 8)) facts.push_back(entry.substr(0, 6));
  // Stored I P B B P P I P; displayed I B B P P P I . and so on: of display position 1 the picture is stored at 2.
  EXPECT_EQ(facts,
            (std::vector<std::string>{"0000c0", "01ff22", "01fe33", "fefd33", "00fc22", "00fb22", "0000c0", "00ff22"}));
}

TEST_F(WriterLayout, LongIndexesContinueInFurtherSegments) {
  TrackFileSpec spec;
  spec.Duration = 10001;
  Make(TrackKind::Data, spec);
  std::vector<std::string> segments;  // start and duration
  for (const auto& [key, offset] : Packs()) {
    if (key == "01100100") segments.push_back(HexAt(offset + 20 + 36, 8) + ' ' + HexAt(offset + 20 + 48, 8));
  }
  EXPECT_EQ(segments,
            (std::vector<std::string>{"0000000000000000 0000000000001388", "0000000000001388 0000000000001388",
                                      "0000000000002710 0000000000000001"}));
}

TEST_F(WriterLayout, TwoRunsWriteTheSameBytes) {
  for (const auto kind : {TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::MPEG2, TrackKind::Sound,
                          TrackKind::Data, TrackKind::Atmos, TrackKind::Text}) {
    TrackFileSpec spec;
    spec.Key = TrackFileKey{};
    spec.ImageSizes = {100};
    Make(kind, spec);
    const Bytes first = m_Bytes;
    Make(kind, spec);
    EXPECT_EQ(m_Bytes, first) << static_cast<int>(kind);
  }
}

TEST_F(WriterLayout, AnEmptyFileIsComplete) {
  TrackFileSpec spec;
  spec.Duration = 0;
  Make(TrackKind::Picture, spec);
  EXPECT_EQ(Packs().size(), 6u);
  EXPECT_EQ(m_Bytes.size(), size_t{16524 + 140 + 140 + 60});
}

}  // namespace
