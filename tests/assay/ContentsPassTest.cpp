// SPDX-License-Identifier: BSD-3-Clause
#include "../support/CinemaCodestream.h"
#include "../support/LogCapture.h"
#include "../support/MxfBuilder.h"
#include "../support/TemporaryFolder.h"
#include "../support/TrackFileMaker.h"
#include "FoundNames.h"
#include "OpenedTrackFile.h"
#include "frames/ContentsPass.h"
#include "run/Causes.h"

#include <Ferro/LogSink.h>
#include <Ferro/SHA1Digest.h>
#include <Sigil/KeyRing.h>

#include <fstream>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>
#include <utility>

namespace {

using namespace Assay;
using namespace testsupport;
using Names = std::vector<std::string>;

constexpr DepthSet Frames = {Depth::Frames};
constexpr DepthSet Hash = {Depth::Hash};
constexpr DepthSet Decode = {Depth::Decode};
constexpr DepthSet All = {Depth::Frames, Depth::Hash, Depth::Decode};

const testsupport::Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");

class ContentsPass : public ::testing::Test {
 protected:
  void Write(const std::string& name, const testsupport::Bytes& bytes) {
    m_Folder.Write(name, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    // As a file that has lain there for a while.
    std::filesystem::last_write_time(m_Folder.Path(name),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }

  /// A picture file of ten sound edit units.
  static MxfBuilder SoundPictures(MxfBuilder::Kind_t kind = MxfBuilder::JP2K) {
    MxfBuilder builder(kind);
    builder.Frames.assign(kind == MxfBuilder::JP2KS ? 20 : 10, CinemaCodestream().Make());
    return builder;
  }

  /// What comes of one track file.
  const PassFile& Pass(const TrackFile& track, const DepthSet& depths) {
    m_Track = track;
    PassFile file;
    file.Package = track.Package;
    file.Document = track.Path;
    file.Path = track.FullPath();
    file.Track = &m_Track;
    file.Size = track.Size;
    m_Files = {file};
    m_Request.Depths = depths;
    m_State = PassOver(m_Request, m_Files);
    return m_Files[0];
  }
  const PassFile& PassPictures(const testsupport::Bytes& bytes, const DepthSet& depths) {
    Write("picture.mxf", bytes);
    return Pass(OpenedPicture(m_Folder.Folder().string(), "picture.mxf"), depths);
  }
  [[nodiscard]] SHA1 DigestOf(const std::string& name) const {
    SHA1 digest;
    EXPECT_EQ(Ferro::DigestFile(m_Folder.Path(name), digest), Ferro::RESULT_OK);
    return digest;
  }
  /// A report of progress that answers as `answer` does once some megabytes are done, and else that all goes on.
  static std::function<bool(const PassProgress&)> OnceUnderWay(std::function<bool()> answer) {
    return [answer, is_over = false](const PassProgress& progress) mutable {
      if (is_over) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(110));  // the next report comes no sooner than that
      is_over = progress.BytesDone > 3'000'000;
      return is_over ? answer() : true;
    };
  }
  void GiveKey() {
    const auto id = UUID(std::span<const ui8_t, 16>(MxfBuilder::KeyID().data(), 16));
    ASSERT_TRUE(
        m_Keys.AddKey(id, std::span<const ui8_t, 16>(ContentKey.data(), 16), Ferro::DefaultLogSink()).Success());
    m_Request.Keys = &m_Keys;
  }

  TemporaryFolder m_Folder;
  LogCapture m_Log;
  Sigil::KeyRing m_Keys;
  PassRequest m_Request;
  TrackFile m_Track;
  std::vector<PassFile> m_Files;
  KeptState m_State = KeptState::None;
};

TEST_F(ContentsPass, LooksAtWhatIsAskedFor) {
  const testsupport::Bytes bytes = SoundPictures().Build();
  for (const DepthSet& depths : {Frames, Hash, DepthSet{Depth::Frames, Depth::Hash}}) {
    const PassFile& file = PassPictures(bytes, depths);
    EXPECT_EQ(file.LookedAt, depths);
    EXPECT_TRUE(file.Missing.IsEmpty());
    EXPECT_TRUE(file.Findings.empty());
    EXPECT_EQ(file.Digest, depths.Has(Depth::Hash) ? DigestOf("picture.mxf") : SHA1());
    EXPECT_EQ(file.Figures.has_value(), depths.Has(Depth::Frames));
  }
  ASSERT_EQ(PassPictures(bytes, Frames).Figures->Picture->Spans.size(), 10U);
}

TEST_F(ContentsPass, ReadsAFileOnce) {
  const auto read_bytes = [] {
    std::ifstream file("/proc/self/io");
    std::string name;
    ui64_t count = 0;
    file >> name >> count;
    return count;
  };
  MxfBuilder builder = SoundPictures();
  CinemaCodestream large;
  large.DataLengths = {200'000, 200'000, 200'000};
  builder.Frames.assign(10, large.Make());
  PassPictures(builder.Build(), All);
  const ui64_t before = read_bytes();
  if (before == 0) GTEST_SKIP() << "this system does not count what is read";
  Pass(m_Track, {Depth::Frames, Depth::Hash});
  EXPECT_LT(read_bytes() - before, m_Track.Size * 105 / 100);
}

TEST_F(ContentsPass, FindsWhatIsWrongWithFrames) {
  MxfBuilder builder = SoundPictures(MxfBuilder::JP2KS);
  CinemaCodestream other;
  other.HasTLM = false;
  builder.Frames[9] = builder.Frames[12] = other.Make();
  const PassFile& file = PassPictures(builder.Build(), {Depth::Frames, Depth::Hash});
  ASSERT_EQ(FoundNames(file.Findings), Names{"j2k-tile-parts"});
  EXPECT_EQ(file.Findings[0].Place.EditUnit, 4U);
  EXPECT_EQ(file.Findings[0].Place.Document, "picture.mxf");
  EXPECT_EQ(file.Findings[0].Found, "no TLM, edit unit 4, 1 more");
  EXPECT_EQ(file.Digest, DigestOf("picture.mxf"));
}

TEST_F(ContentsPass, AFrameThatIsNotInItsPlaceIsDamage) {
  MxfBuilder builder = SoundPictures();
  testsupport::Bytes bytes = builder.Build();
  bytes[builder.ElementAt[4]] ^= 0xff;
  const PassFile& file = PassPictures(bytes, {Depth::Frames, Depth::Hash});
  ASSERT_EQ(FoundNames(file.Findings), Names{"file-damaged"});
  EXPECT_EQ(file.Findings[0].Place.EditUnit, 4U);
  EXPECT_TRUE(file.Missing.IsEmpty());
  EXPECT_EQ(file.Figures->Picture->Spans.size(), 10U);
  EXPECT_EQ(file.Digest, DigestOf("picture.mxf"));
}

// An index that leads to one large frame again and again would make a small file read for hours.
TEST_F(ContentsPass, FramesOverEachOtherAreGivenUp) {
  MxfBuilder builder = SoundPictures();
  CinemaCodestream large;
  large.DataLengths = {100'000, 100'000, 100'000};
  builder.Frames[1] = large.Make();
  testsupport::Bytes bytes = builder.Build();
  const auto offset_of = [&](size_t frame) { return BE64(builder.ElementAt[frame] - builder.ElementAt[0]); };
  for (size_t frame = 2; frame < 10; ++frame) {
    const testsupport::Bytes offset = offset_of(frame);
    const auto at = std::search(bytes.begin() + static_cast<std::ptrdiff_t>(builder.IndexAt), bytes.end(),
                                offset.begin(), offset.end());
    ASSERT_NE(at, bytes.end());
    std::ranges::copy(offset_of(1), at);
  }
  const PassFile& file = PassPictures(bytes, {Depth::Frames, Depth::Hash});
  EXPECT_EQ(FoundNames(file.Findings), Names{"file-damaged"});
  EXPECT_EQ(file.Missing, Frames);
  EXPECT_EQ(file.Reason, LeftOutReason::Damaged);
  EXPECT_FALSE(file.Figures.has_value());
  EXPECT_EQ(file.Digest, DigestOf("picture.mxf"));
}

TEST_F(ContentsPass, WithoutAKeyFramesAreLeftOutAndTheDigestIsNot) {
  MxfBuilder builder = SoundPictures();
  builder.Key = ContentKey;
  const PassFile& file = PassPictures(builder.Build(), All);
  EXPECT_TRUE(file.Findings.empty());
  EXPECT_EQ(file.LookedAt, Hash);
  EXPECT_EQ(file.Missing, (DepthSet{Depth::Frames, Depth::Decode}));
  EXPECT_EQ(file.Reason, LeftOutReason::NoKey);
  EXPECT_EQ(file.Digest, DigestOf("picture.mxf"));
}

TEST_F(ContentsPass, WithAKeyEncryptedFramesAreLookedAt) {
  GiveKey();
  for (const auto kind : {MxfBuilder::JP2K, MxfBuilder::JP2KS}) {
    MxfBuilder builder = SoundPictures(kind);
    builder.Key = ContentKey;
    const PassFile* file = &PassPictures(builder.Build(), {Depth::Frames, Depth::Hash});
    EXPECT_TRUE(file->Findings.empty());
    EXPECT_EQ(file->LookedAt, (DepthSet{Depth::Frames, Depth::Hash}));
    EXPECT_EQ(file->Digest, DigestOf("picture.mxf"));

    CinemaCodestream other;
    other.HasTLM = false;
    builder.Frames[2] = other.Make();
    file = &PassPictures(builder.Build(), Frames);
    EXPECT_EQ(FoundNames(file->Findings), Names{"j2k-tile-parts"});
  }
}

TEST_F(ContentsPass, AnAlteredFrameIsFound) {
  GiveKey();
  MxfBuilder builder = SoundPictures();
  builder.Key = ContentKey;
  testsupport::Bytes bytes = builder.Build();
  bytes[builder.ElementAt[3] + 500] ^= 1;
  const PassFile& file = PassPictures(bytes, Frames);
  ASSERT_EQ(FoundNames(file.Findings), Names{"mic-invalid"});
  EXPECT_EQ(file.Findings[0].Place.EditUnit, 3U);
  EXPECT_EQ(file.Findings[0].Found, "altered, edit unit 3");
}

TEST_F(ContentsPass, AFrameFromAnotherPlaceIsFound) {
  GiveKey();
  MxfBuilder builder = SoundPictures();
  builder.Key = ContentKey;
  builder.SequenceNumbers = {1, 2, 4, 3, 5, 6, 7, 8, 9, 10};
  const PassFile& file = PassPictures(builder.Build(), Frames);
  ASSERT_EQ(FoundNames(file.Findings), Names{"mic-invalid"});
  EXPECT_EQ(file.Findings[0].Found, "out of place, edit unit 2, 1 more");
}

TEST_F(ContentsPass, OfTextsTheKeyIsAskedFor) {
  TrackFileSpec spec;
  spec.Key.emplace();
  ASSERT_EQ(MakeTrackFile(TrackKind::Text, m_Folder.Path("text.mxf"), spec), Ferro::RESULT_OK);
  const TrackFile track = OpenedText(m_Folder.Folder().string(), "text.mxf");
  EXPECT_EQ(Pass(track, Frames).Reason, LeftOutReason::NoKey);
  EXPECT_EQ(m_Files[0].Missing, Frames);
  ASSERT_TRUE(m_Keys.AddKey(spec.Key->KeyID, spec.Key->Key, Ferro::DefaultLogSink()).Success());
  m_Request.Keys = &m_Keys;
  EXPECT_TRUE(Pass(track, Frames).Findings.empty());
  EXPECT_EQ(m_Files[0].LookedAt, Frames);
}

/// Pictures that the decoder takes, small ones.
TEST_F(ContentsPass, PicturesThatCannotBeDecodedAreFound) {
  MxfBuilder builder(MxfBuilder::JP2K);
  for (ui32_t i = 0; i < 12; ++i) builder.Frames.push_back(MakeCodestream(64, 36, i));
  EXPECT_TRUE(PassPictures(builder.Build(), Decode).Findings.empty());
  EXPECT_EQ(m_Files[0].LookedAt, Decode);
  // Claims 65535 x 65535 pixels; refused before there is memory for them.
  for (const size_t i : {7U, 9U}) std::fill_n(builder.Frames[i].begin() + 8, 8, ui8_t{0x7f});
  for (const ui32_t threads : {1U, 4U}) {
    m_Request.Threads = threads;
    const PassFile& file = PassPictures(builder.Build(), {Depth::Decode, Depth::Hash});
    ASSERT_EQ(FoundNames(file.Findings), Names{"j2k-undecodable"}) << threads;
    EXPECT_EQ(file.Findings[0].Place.EditUnit, 7U);
    EXPECT_EQ(file.Findings[0].Found, "edit unit 7, 1 more");
    EXPECT_FALSE(file.Findings[0].Cause.has_value());
    EXPECT_EQ(file.Digest, DigestOf("picture.mxf"));
  }
}

TEST_F(ContentsPass, WhatFollowsFromDamagedHeadersIsSaidToFollow) {
  MxfBuilder builder(MxfBuilder::JP2K);
  for (ui32_t i = 0; i < 3; ++i) builder.Frames.push_back(MakeCodestream(64, 36, i));
  builder.Frames[1].resize(builder.Frames[1].size() - 20);
  const FindingList& findings = PassPictures(builder.Build(), {Depth::Frames, Depth::Decode}).Findings;
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings.back().ID, FindingID::J2KUndecodable);
  ASSERT_TRUE(findings.back().Cause.has_value());
  EXPECT_EQ(findings[*findings.back().Cause].ID, FindingID::J2KMarker);
}

TEST_F(ContentsPass, WhatWasFoundBeforeItWasEndedIsKept) {
  MxfBuilder builder = SoundPictures();
  CinemaCodestream other;
  other.HasTLM = false;
  other.DataLengths = {300'000, 300'000, 300'000};
  builder.Frames.assign(60, other.Make());
  m_Request.OnProgress = OnceUnderWay([] { return false; });
  const PassFile& file = PassPictures(builder.Build(), {Depth::Frames, Depth::Hash});
  EXPECT_EQ(FoundNames(file.Findings), Names{"j2k-tile-parts"});
  EXPECT_FALSE(file.Figures.has_value()) << "they would be those of a part";
  EXPECT_EQ(file.Reason, LeftOutReason::Cancelled);
  EXPECT_EQ(file.Missing, (DepthSet{Depth::Frames, Depth::Hash}));
  EXPECT_TRUE(file.LookedAt.IsEmpty());
  EXPECT_FALSE(file.Digest.HasValue());
}

TEST_F(ContentsPass, WhatWasFoundBeforeMemoryRanOutIsKept) {
  MxfBuilder builder = SoundPictures();
  CinemaCodestream other;
  other.HasTLM = false;
  other.DataLengths = {300'000, 300'000, 300'000};
  builder.Frames.assign(60, other.Make());
  m_Request.OnProgress = OnceUnderWay([]() -> bool { throw std::bad_alloc(); });
  const PassFile& file = PassPictures(builder.Build(), Frames);
  EXPECT_EQ(FoundNames(file.Findings), Names{"j2k-tile-parts"});
  EXPECT_EQ(file.Reason, LeftOutReason::NoMemory);
  EXPECT_EQ(file.Missing, Frames);
}

TEST_F(ContentsPass, WhateverIsThrownEndsOneFileAlone) {
  MxfBuilder builder(MxfBuilder::JP2K);
  for (ui32_t i = 0; i < 12; ++i) builder.Frames.push_back(MakeCodestream(64, 36, i));
  for (const ui32_t threads : {1U, 3U}) {
    m_Request.Threads = threads;
    bool is_thrown = false;
    m_Request.OnProgress = [&](const PassProgress&) {
      if (!std::exchange(is_thrown, true)) throw std::length_error("too long");
      return true;
    };
    const PassFile& file = PassPictures(builder.Build(), All);
    EXPECT_EQ(file.Reason, LeftOutReason::Unreadable);
    EXPECT_EQ(file.Missing, All);
  }
}

TEST_F(ContentsPass, AFileThatIsCutIsNotLookedAtToItsEnd) {
  MxfBuilder builder = SoundPictures();
  testsupport::Bytes bytes = builder.Build();
  Write("picture.mxf", bytes);
  const TrackFile track = OpenedPicture(m_Folder.Folder().string(), "picture.mxf");
  bytes.resize(builder.ElementAt[5]);
  Write("picture.mxf", bytes);
  const PassFile& file = Pass(track, Frames);
  EXPECT_EQ(file.Missing, Frames);
  EXPECT_EQ(file.Reason, LeftOutReason::Damaged);
  EXPECT_FALSE(file.Figures.has_value());
}

TEST_F(ContentsPass, WhatTheDecoderDoesNotTakeFollowsFromTheProfile) {
  CinemaCodestream subsampled;
  subsampled.Components[4] = subsampled.Components[5] = 2;
  MxfBuilder builder(MxfBuilder::JP2K);
  builder.Frames.assign(2, subsampled.Make());
  FindingList findings = PassPictures(builder.Build(), {Depth::Frames, Depth::Decode}).Findings;
  ASSERT_EQ(FoundNames(findings), (Names{"j2k-profile", "j2k-undecodable"}));
  LinkCauses(findings);
  EXPECT_FALSE(findings[0].Cause.has_value());
  EXPECT_EQ(findings[1].Cause, 0U);
}

TEST_F(ContentsPass, ProgressEndsWithAllBytes) {
  PassProgress last;
  m_Request.OnProgress = [&](const PassProgress& progress) {
    EXPECT_GE(progress.BytesDone, last.BytesDone);
    last = progress;
    return true;
  };
  for (const DepthSet& depths : {Frames, Hash, All}) {
    last = {};
    PassPictures(SoundPictures().Build(), depths);
    EXPECT_EQ(last.BytesDone, m_Track.Size);
    EXPECT_EQ(last.BytesTotal, m_Track.Size);
    EXPECT_EQ(last.FilesDone, 1U);
    EXPECT_EQ(last.FileCount, 1U);
    EXPECT_EQ(last.File, m_Folder.Path("picture.mxf"));
  }
}

TEST_F(ContentsPass, FilesThatDidNotChangeAreNotReadAgain) {
  MxfBuilder builder = SoundPictures();
  CinemaCodestream other;
  other.HasTLM = false;
  builder.Frames[4] = other.Make();
  m_Request.KeptResults = m_Folder.Path("kept");
  const DepthSet depths = {Depth::Frames, Depth::Hash};
  size_t read = 0;
  m_Request.OnProgress = [&](const PassProgress& progress) {
    read = progress.FileCount;
    return true;
  };
  const PassFile first = PassPictures(builder.Build(), depths);
  EXPECT_EQ(m_State, KeptState::None);
  EXPECT_EQ(read, 1U);

  read = 0;
  const PassFile second = Pass(m_Track, depths);
  EXPECT_EQ(m_State, KeptState::Used);
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(second.Findings, first.Findings);
  EXPECT_EQ(second.Digest, first.Digest);
  EXPECT_EQ(second.LookedAt, depths);

  std::filesystem::last_write_time(m_Folder.Path("picture.mxf"),
                                   std::filesystem::file_time_type::clock::now() - std::chrono::minutes(30));
  Pass(m_Track, depths);
  EXPECT_EQ(read, 1U) << "it was touched";
  read = 0;
  Pass(m_Track, All);
  EXPECT_EQ(read, 1U) << "more is asked for";
  read = 0;
  m_Folder.Write("kept", "no results");
  EXPECT_EQ(Pass(m_Track, depths).Findings, first.Findings);
  EXPECT_EQ(m_State, KeptState::Damaged);
  EXPECT_EQ(read, 1U);
}

TEST_F(ContentsPass, AFileThatIsNotThereIsLeftOut) {
  Write("picture.mxf", SoundPictures().Build());
  const TrackFile track = OpenedPicture(m_Folder.Folder().string(), "picture.mxf");
  std::filesystem::remove(m_Folder.Path("picture.mxf"));
  EXPECT_EQ(Pass(track, All).Reason, LeftOutReason::Unreadable);
  EXPECT_EQ(m_Files[0].Missing, All);
}

TEST_F(ContentsPass, OfOtherFilesTheDigestIsAllThatThereIs) {
  m_Folder.Write("font.ttf", "a font");
  PassFile file;
  file.Document = file.Path = m_Folder.Path("font.ttf");
  file.Size = 6;
  m_Files = {file};
  m_Request.Depths = All;
  PassOver(m_Request, m_Files);
  EXPECT_EQ(m_Files[0].LookedAt, Hash);
  EXPECT_TRUE(m_Files[0].Missing.IsEmpty());
  EXPECT_EQ(m_Files[0].Digest, Ferro::DigestText("a font"));
}

}  // namespace
