// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include "../support/TemporaryFolder.h"
#include "../support/TrackFileMaker.h"

#include <QUIRE/EssenceType.h>

// What the writers write, the readers deliver: frames byte for byte, descriptors field for field.

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

struct ReadContexts {
  explicit ReadContexts(const TrackFileSpec& spec) : Keyed(spec.Key.has_value()) {
    if (!Keyed) return;
    EXPECT_EQ(Decryption.InitKey(spec.Key->Key), RESULT_OK);
    EXPECT_EQ(Integrity.InitKey(spec.Key->Key, spec.LabelSet), RESULT_OK);
  }
  AESDecContext* Dec() { return Keyed ? &Decryption : nullptr; }
  HMACContext* Mac() { return Keyed ? &Integrity : nullptr; }
  bool Keyed;
  AESDecContext Decryption;
  HMACContext Integrity;
};

// Clear, encrypted, encrypted without integrity packs; SMPTE and Interop.
std::vector<TrackFileSpec> Variants(const TrackFileSpec& base) {
  std::vector<TrackFileSpec> specs;
  for (LabelSet_t labels : {LS_MXF_SMPTE, LS_MXF_INTEROP}) {
    TrackFileSpec spec = base;
    spec.LabelSet = labels;
    specs.push_back(spec);
    spec.Key = TrackFileKey();
    specs.push_back(spec);
    spec.Key->UsesHMAC = false;
    spec.Key->PlaintextOffset = 16;
    specs.push_back(spec);
  }
  return specs;
}

const Rational Rates[] = {EditRate_24, EditRate_25, EditRate_30, EditRate_48, EditRate_60, Rational(30000, 1001)};

class RoundTrip : public ::testing::Test {
 protected:
  std::string Make(TrackKind kind, const TrackFileSpec& spec) {
    const std::string name = m_Folder.Path("file.mxf");
    EXPECT_EQ(MakeTrackFile(kind, name, spec), RESULT_OK);
    return name;
  }

  template <class Reader, class Buffer>
  void ExpectFrames(Reader& reader, TrackKind kind, const TrackFileSpec& spec) {
    ReadContexts contexts(spec);
    Buffer frame;
    ASSERT_EQ(frame.Capacity(1 << 20), RESULT_OK);
    for (ui32_t i = 0; i < spec.Duration; ++i) {
      const ui32_t number = (i * 3 + 2) % spec.Duration;
      ASSERT_EQ(reader.ReadFrame(number, frame, contexts.Dec(), contexts.Mac()), RESULT_OK) << number;
      ASSERT_EQ(Content(frame), MakeFrame(kind, spec, number)) << number;
    }
    EXPECT_EQ(reader.ReadFrame(spec.Duration, frame), RESULT_RANGE);
  }

  template <class Reader>
  void ExpectWriterInfo(const Reader& reader, const TrackFileSpec& spec) {
    WriterInfo info;
    ASSERT_EQ(reader.FillWriterInfo(info), RESULT_OK);
    EXPECT_EQ(info, MakeWriterInfo(spec));
  }

  TemporaryFolder m_Folder;
};

TEST_F(RoundTrip, Pictures) {
  for (const Rational& rate : Rates) {
    TrackFileSpec base;
    base.EditRate = rate;
    base.Duration = 7;
    for (const TrackFileSpec& spec : Variants(base)) {
      JP2K::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(Make(TrackKind::Picture, spec)), RESULT_OK);
      JP2K::PictureDescriptor descriptor;
      ASSERT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
      JP2K::PictureDescriptor expected = MakePictureDescriptor(spec);
      expected.ContainerDuration = spec.Duration;
      EXPECT_EQ(descriptor, expected);
      ExpectWriterInfo(reader, spec);
      ExpectFrames<JP2K::MXFReader, JP2K::FrameBuffer>(reader, TrackKind::Picture, spec);
    }
  }
}

TEST_F(RoundTrip, StereoscopicPictures) {
  TrackFileSpec base;
  for (const TrackFileSpec& spec : Variants(base)) {
    JP2K::MXFSReader reader;
    ASSERT_EQ(reader.OpenRead(Make(TrackKind::StereoscopicPicture, spec)), RESULT_OK);
    JP2K::PictureDescriptor descriptor;
    ASSERT_EQ(reader.FillPictureDescriptor(descriptor), RESULT_OK);
    EXPECT_TRUE(descriptor.Stereoscopic);
    EXPECT_EQ(descriptor.ContainerDuration, spec.Duration);
    EXPECT_EQ(descriptor.EditRate, EditRate_24);
    ExpectWriterInfo(reader, spec);
    ReadContexts contexts(spec);
    JP2K::SFrameBuffer frame;
    ASSERT_EQ(frame.Left.Capacity(1 << 20), RESULT_OK);
    ASSERT_EQ(frame.Right.Capacity(1 << 20), RESULT_OK);
    for (ui32_t i = 0; i < spec.Duration; ++i) {
      ASSERT_EQ(reader.ReadFrame(i, frame, contexts.Dec(), contexts.Mac()), RESULT_OK);
      EXPECT_EQ(Content(frame.Left), MakeFrame(TrackKind::StereoscopicPicture, spec, i));
      EXPECT_EQ(Content(frame.Right), MakeFrame(TrackKind::StereoscopicPicture, spec, i, true));
    }
  }
}

TEST_F(RoundTrip, Video) {
  for (const Rational& rate : {EditRate_24, Rational(30000, 1001)}) {
    TrackFileSpec base;
    base.EditRate = rate;
    base.Duration = 12;
    for (const TrackFileSpec& spec : Variants(base)) {
      MPEG2::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(Make(TrackKind::MPEG2, spec)), RESULT_OK);
      MPEG2::VideoDescriptor descriptor;
      ASSERT_EQ(reader.FillVideoDescriptor(descriptor), RESULT_OK);
      MPEG2::VideoDescriptor expected = MakeVideoDescriptor(spec);
      expected.ContainerDuration = spec.Duration;
      EXPECT_EQ(descriptor.EditRate, spec.EditRate);
      EXPECT_EQ(descriptor.ContainerDuration, spec.Duration);
      EXPECT_EQ(descriptor.StoredWidth, expected.StoredWidth);
      EXPECT_EQ(descriptor.ProfileAndLevel, expected.ProfileAndLevel);
      ExpectWriterInfo(reader, spec);
      ExpectFrames<MPEG2::MXFReader, MPEG2::FrameBuffer>(reader, TrackKind::MPEG2, spec);
    }
  }
}

TEST_F(RoundTrip, VideoIndexTellsTypeAndPlaceOfEachPicture) {
  TrackFileSpec spec;
  spec.Duration = 6;  // stored I P B B P P, displayed I B B P P P
  MPEG2::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(Make(TrackKind::MPEG2, spec)), RESULT_OK);
  MPEG2::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1 << 20), RESULT_OK);
  std::vector<int> flags;
  std::vector<int> offsets;
  for (ui32_t i = 0; i < 6; ++i) {
    ASSERT_EQ(reader.ReadFrame(i, frame), RESULT_OK);
    flags.push_back(frame.IndexFlags());
    offsets.push_back(frame.TemporalOffset());
  }
  EXPECT_EQ(flags, (std::vector<int>{0xc0, 0x22, 0x33, 0x33, 0x22, 0x22}));
  EXPECT_EQ(offsets, (std::vector<int>{0, 1, 1, -2, 0, 0}));
}

TEST_F(RoundTrip, SoundAtAllRates) {
  for (const Rational& rate : Rates) {
    for (const Rational& sampling : {SampleRate_48k, SampleRate_96k}) {
      TrackFileSpec spec;
      spec.EditRate = rate;
      spec.SamplingRate = sampling;
      spec.Duration = 6;
      PCM::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(Make(TrackKind::Sound, spec)), RESULT_OK) << rate.EncodeString();
      PCM::AudioDescriptor descriptor;
      ASSERT_EQ(reader.FillAudioDescriptor(descriptor), RESULT_OK);
      PCM::AudioDescriptor expected = MakeAudioDescriptor(spec);
      expected.ContainerDuration = spec.Duration;
      expected.LinkedTrackID = descriptor.LinkedTrackID;
      EXPECT_EQ(descriptor, expected);
      ExpectFrames<PCM::MXFReader, PCM::FrameBuffer>(reader, TrackKind::Sound, spec);
    }
  }
}

TEST_F(RoundTrip, SoundOfTwoToSixteenChannels) {
  for (ui32_t channels = 2; channels <= 16; channels += 2) {
    TrackFileSpec base;
    base.ChannelCount = channels;
    base.ChannelFormat = PCM::CF_CFG_4;
    for (const TrackFileSpec& spec : Variants(base)) {
      if (spec.LabelSet == LS_MXF_INTEROP) continue;
      PCM::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(Make(TrackKind::Sound, spec)), RESULT_OK);
      PCM::AudioDescriptor descriptor;
      ASSERT_EQ(reader.FillAudioDescriptor(descriptor), RESULT_OK);
      EXPECT_EQ(descriptor.ChannelCount, channels);
      EXPECT_EQ(descriptor.ChannelFormat, PCM::CF_CFG_4);
      ExpectWriterInfo(reader, spec);
      ExpectFrames<PCM::MXFReader, PCM::FrameBuffer>(reader, TrackKind::Sound, spec);
    }
  }
}

TEST_F(RoundTrip, InteropSound) {
  for (TrackFileSpec& spec : Variants({})) {
    if (spec.LabelSet != LS_MXF_INTEROP) continue;
    PCM::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(Make(TrackKind::Sound, spec)), RESULT_OK);
    ExpectWriterInfo(reader, spec);
    ExpectFrames<PCM::MXFReader, PCM::FrameBuffer>(reader, TrackKind::Sound, spec);
  }
}

TEST_F(RoundTrip, AuxiliaryData) {
  for (const TrackFileSpec& spec : Variants({})) {
    DCData::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(Make(TrackKind::Data, spec)), RESULT_OK);
    DCData::DCDataDescriptor descriptor;
    ASSERT_EQ(reader.FillDCDataDescriptor(descriptor), RESULT_OK);
    DCData::DCDataDescriptor expected = MakeDataDescriptor(spec);
    expected.ContainerDuration = spec.Duration;
    expected.AssetID = spec.AssetID;
    EXPECT_EQ(descriptor, expected);
    ExpectFrames<DCData::MXFReader, DCData::FrameBuffer>(reader, TrackKind::Data, spec);
  }
}

TEST_F(RoundTrip, ImmersiveAudio) {
  TrackFileSpec base;
  base.FirstFrame = 3;
  for (const TrackFileSpec& spec : Variants(base)) {
    ATMOS::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(Make(TrackKind::Atmos, spec)), RESULT_OK);
    ATMOS::AtmosDescriptor descriptor;
    ASSERT_EQ(reader.FillAtmosDescriptor(descriptor), RESULT_OK);
    ATMOS::AtmosDescriptor expected = MakeAtmosDescriptor(spec);
    expected.ContainerDuration = spec.Duration;
    expected.AssetID = spec.AssetID;
    EXPECT_EQ(descriptor, expected);
    ExpectFrames<ATMOS::MXFReader, DCData::FrameBuffer>(reader, TrackKind::Atmos, spec);
  }
}

TEST_F(RoundTrip, TextWithResourcesOfAllSizes) {
  const std::pair<std::vector<size_t>, std::vector<size_t>> resources[] = {
      {{}, {}},
      {{1}, {}},
      {{5000000, 16, 17}, {1, 2, 90, 100000}},
      {std::vector<size_t>(10, 40), std::vector<size_t>(10, 90)}};
  for (const auto& [fonts, images] : resources) {
    TrackFileSpec base;
    base.FontSizes = fonts;
    base.ImageSizes = images;
    for (const TrackFileSpec& spec : Variants(base)) {
      if (spec.LabelSet == LS_MXF_INTEROP) continue;  // Interop text is not kept in track files
      TimedText::MXFReader reader;
      ASSERT_EQ(reader.OpenRead(Make(TrackKind::Text, spec)), RESULT_OK);
      TimedText::TimedTextDescriptor descriptor;
      ASSERT_EQ(reader.FillTimedTextDescriptor(descriptor), RESULT_OK);
      TimedText::TimedTextDescriptor expected = MakeTextDescriptor(spec);
      expected.ContainerDuration = spec.Duration;
      EXPECT_EQ(descriptor, expected);
      ExpectWriterInfo(reader, spec);
      ReadContexts contexts(spec);
      std::string text;
      ASSERT_EQ(reader.ReadTimedTextResource(text, contexts.Dec(), contexts.Mac()), RESULT_OK);
      EXPECT_EQ(text, MakeText(spec));
      const std::vector<Bytes> expected_bytes = MakeResources(spec);
      ASSERT_EQ(descriptor.ResourceList.size(), expected_bytes.size());
      for (size_t i = 0; i < expected_bytes.size(); ++i) {
        TimedText::FrameBuffer frame;
        ASSERT_EQ(
            reader.ReadAncillaryResource(descriptor.ResourceList[i].ResourceID, frame, contexts.Dec(), contexts.Mac()),
            RESULT_OK);
        EXPECT_EQ(Content(frame), expected_bytes[i]);
      }
    }
  }
}

TEST_F(RoundTrip, EachKindIsRecognised) {
  const std::pair<TrackKind, EssenceType_t> kinds[] = {
      {TrackKind::Picture, ESS_JPEG_2000}, {TrackKind::StereoscopicPicture, ESS_JPEG_2000_S},
      {TrackKind::MPEG2, ESS_MPEG2_VES},   {TrackKind::Sound, ESS_PCM},
      {TrackKind::Data, ESS_DCDATA},       {TrackKind::Atmos, ESS_ATMOS},
      {TrackKind::Text, ESS_TIMED_TEXT}};
  for (const auto& [kind, expected] : kinds) {
    EssenceType_t type = ESS_UNKNOWN;
    ASSERT_EQ(EssenceType(Make(kind, {}), type), RESULT_OK);
    EXPECT_EQ(type, expected);
  }
}

TEST_F(RoundTrip, NothingIsLoggedForAProperFile) {
  for (TrackKind kind : {TrackKind::Picture, TrackKind::Sound}) {
    const std::string name = Make(kind, {});
    LogCapture log;
    JP2K::MXFReader picture;
    PCM::MXFReader sound;
    JP2K::FrameBuffer frame;
    PCM::FrameBuffer samples;
    ASSERT_EQ(frame.Capacity(1 << 20), RESULT_OK);
    ASSERT_EQ(samples.Capacity(1 << 20), RESULT_OK);
    if (kind == TrackKind::Picture) {
      ASSERT_EQ(picture.OpenRead(name), RESULT_OK);
      EXPECT_EQ(picture.ReadFrame(0, frame), RESULT_OK);
    } else {
      ASSERT_EQ(sound.OpenRead(name), RESULT_OK);
      EXPECT_EQ(sound.ReadFrame(0, samples), RESULT_OK);
    }
    EXPECT_EQ(log.Text(), "");
  }
}

}  // namespace
