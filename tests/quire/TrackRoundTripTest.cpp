// SPDX-License-Identifier: BSD-3-Clause
//
// What the writers write, the readers read: frames byte for byte, descriptors and writer information field for field.
#include "LogCapture.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

using namespace QUIRE;
using namespace testsupport;

constexpr ui32_t BufferCapacity = 2 * 1024 * 1024;

Bytes Contents(const FrameBuffer& buffer) {
  return {buffer.RoData(), buffer.RoData() + buffer.Size()};
}

// The contexts for reading a spec's file.
struct ReadContexts {
  explicit ReadContexts(const TrackFileSpec& spec) {
    if (!spec.Key) return;
    EXPECT_EQ(Decryption.InitKey(spec.Key->Key), Ferro::RESULT_OK);
    DecryptionPtr = &Decryption;
    if (!spec.Key->UsesHMAC) return;
    EXPECT_EQ(Integrity.InitKey(spec.Key->Key, spec.LabelSet), Ferro::RESULT_OK);
    IntegrityPtr = &Integrity;
  }
  AESDecContext Decryption;
  HMACContext Integrity;
  AESDecContext* DecryptionPtr = nullptr;
  HMACContext* IntegrityPtr = nullptr;
};

std::string Describe(const TrackFileSpec& spec) {
  std::string text = spec.EditRate.EncodeString() + (spec.LabelSet == LS_MXF_SMPTE ? " SMPTE" : " Interop");
  if (spec.Key) text += spec.Key->UsesHMAC ? " encrypted with integrity" : " encrypted";
  return text;
}

// A spec in clear, encrypted with some bytes in clear, and encrypted with integrity codes, with each label set.
std::vector<TrackFileSpec> Variants(const TrackFileSpec& base,
                                    const std::vector<LabelSet_t>& label_sets = {LS_MXF_SMPTE, LS_MXF_INTEROP}) {
  std::vector<TrackFileSpec> variants;
  for (const LabelSet_t label_set : label_sets) {
    for (int protection = 0; protection < 3; ++protection) {
      TrackFileSpec& spec = variants.emplace_back(base);
      spec.LabelSet = label_set;
      if (protection > 0) spec.Key = TrackFileKey{};
      if (protection == 1) {
        spec.Key->UsesHMAC = false;
        spec.Key->PlaintextOffset = 16;
      }
    }
  }
  return variants;
}

class TrackRoundTrip : public testing::Test {
 protected:
  template <class ReaderT>
  void Open(ReaderT& reader, TrackKind kind, const TrackFileSpec& spec) {
    ASSERT_EQ(MakeTrackFile(kind, m_Path, spec), Ferro::RESULT_OK);
    ASSERT_EQ(reader.OpenRead(m_Path), Ferro::RESULT_OK);
    WriterInfo info;
    ASSERT_EQ(reader.FillWriterInfo(info), Ferro::RESULT_OK);
    EXPECT_EQ(info, MakeWriterInfo(spec));
  }

  // Frames from the last to the first, the last again, and none beyond it.
  template <class ReaderT, class BufferT>
  void ExpectFrames(ReaderT& reader, TrackKind kind, const TrackFileSpec& spec) {
    ReadContexts contexts(spec);
    BufferT buffer;
    ASSERT_EQ(buffer.Capacity(BufferCapacity), Ferro::RESULT_OK);
    for (ui32_t k = 0; k <= spec.Duration; ++k) {
      const ui32_t i = (2 * spec.Duration - 1 - k) % spec.Duration;
      ASSERT_EQ(reader.ReadFrame(i, buffer, contexts.DecryptionPtr, contexts.IntegrityPtr), Ferro::RESULT_OK) << i;
      ASSERT_EQ(Contents(buffer), MakeFrame(kind, spec, i)) << i;
      ASSERT_EQ(buffer.FrameNumber(), i);
    }
    EXPECT_EQ(reader.ReadFrame(spec.Duration, buffer, contexts.DecryptionPtr, contexts.IntegrityPtr), RESULT_RANGE);
    if (spec.Key) ExpectCiphertext<ReaderT, BufferT>(reader, kind, spec);
  }

  // Without a context encrypted essence comes as it is stored.
  template <class ReaderT, class BufferT>
  void ExpectCiphertext(ReaderT& reader, TrackKind kind, const TrackFileSpec& spec) {
    BufferT buffer;
    ASSERT_EQ(buffer.Capacity(BufferCapacity), Ferro::RESULT_OK);
    ASSERT_EQ(reader.ReadFrame(0, buffer), Ferro::RESULT_OK);
    const Bytes plain = MakeFrame(kind, spec, 0);
    EXPECT_EQ(buffer.SourceLength(), plain.size());
    EXPECT_EQ(buffer.PlaintextOffset(), spec.Key->PlaintextOffset);
    Bytes decrypted(plain.size());
    AESDecContext context;
    ASSERT_EQ(context.InitKey(spec.Key->Key), Ferro::RESULT_OK);
    ASSERT_EQ(DecryptFrame(std::span(buffer.RoData(), buffer.Size()), buffer.SourceLength(), buffer.PlaintextOffset(),
                           context, decrypted),
              Ferro::RESULT_OK);
    EXPECT_EQ(decrypted, plain);
  }

  // Writes a file, and reads it back: what it says of itself, and its frames.
  template <class Kind>
  void ExpectRoundTrip(const TrackFileSpec& spec) {
    SCOPED_TRACE(std::to_string(spec.ChannelCount) + " channels, " + Describe(spec));
    typename Kind::Reader reader;
    Open(reader, Kind::Kind, spec);
    auto expected = Kind::Expected(spec);
    decltype(expected) descriptor;
    ASSERT_EQ((reader.*Kind::Fill)(descriptor), Ferro::RESULT_OK);
    EXPECT_EQ(descriptor, expected);
    ExpectFrames<typename Kind::Reader, typename Kind::Buffer>(reader, Kind::Kind, spec);
  }

  TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("file.mxf");
};

const Rational Rates[] = {{24, 1}, {25, 1}, {30, 1}, {48, 1}, {60, 1}, {30000, 1001}};

// What differs between the kinds: classes, rates, and how a file is described.
struct FlatPictures {
  using Reader = JP2K::MXFReader;
  using Buffer = JP2K::FrameBuffer;
  static constexpr TrackKind Kind = TrackKind::Picture;
  static inline const std::span<const Rational> EditRates = Rates;
  static constexpr auto Fill = &Reader::FillPictureDescriptor;
  static JP2K::PictureDescriptor Expected(const TrackFileSpec& spec) { return MakePictureDescriptor(spec); }
};

struct MPEG2Pictures {
  using Reader = MPEG2::MXFReader;
  using Buffer = MPEG2::FrameBuffer;
  static constexpr TrackKind Kind = TrackKind::MPEG2;
  static inline const Rational All[] = {{24, 1}, {25, 1}, {30, 1}, {60, 1}, {30000, 1001}};
  static inline const std::span<const Rational> EditRates = All;
  static constexpr auto Fill = &Reader::FillVideoDescriptor;
  static MPEG2::VideoDescriptor Expected(const TrackFileSpec& spec) { return MakeVideoDescriptor(spec); }
};

template <int SamplesPerSecond>
struct Sound {
  using Reader = PCM::MXFReader;
  using Buffer = PCM::FrameBuffer;
  static constexpr TrackKind Kind = TrackKind::Sound;
  static inline const std::span<const Rational> EditRates = Rates;
  static constexpr auto Fill = &Reader::FillAudioDescriptor;
  static PCM::AudioDescriptor Expected(const TrackFileSpec& spec) { return MakeAudioDescriptor(spec); }
};

struct AuxiliaryData {
  using Reader = DCData::MXFReader;
  using Buffer = DCData::FrameBuffer;
  static constexpr TrackKind Kind = TrackKind::Data;
  static inline const std::span<const Rational> EditRates = Rates;
  static constexpr auto Fill = &Reader::FillDCDataDescriptor;
  static DCData::DCDataDescriptor Expected(const TrackFileSpec& spec) { return MakeDataDescriptor(spec); }
};

struct ImmersiveAudio {
  using Reader = ATMOS::MXFReader;
  using Buffer = DCData::FrameBuffer;
  static constexpr TrackKind Kind = TrackKind::Atmos;
  static inline const std::span<const Rational> EditRates = Rates;
  static constexpr auto Fill = &Reader::FillAtmosDescriptor;
  static ATMOS::AtmosDescriptor Expected(const TrackFileSpec& spec) { return MakeAtmosDescriptor(spec); }
};

TrackFileSpec BaseOf(const FlatPictures&) {
  return {};
}
TrackFileSpec BaseOf(const AuxiliaryData&) {
  return {};
}
TrackFileSpec BaseOf(const MPEG2Pictures&) {
  TrackFileSpec spec;
  spec.Duration = 14;  // more than one group of pictures
  return spec;
}
template <int SamplesPerSecond>
TrackFileSpec BaseOf(const Sound<SamplesPerSecond>&) {
  TrackFileSpec spec;
  spec.SamplingRate = Rational(SamplesPerSecond, 1);
  return spec;
}
TrackFileSpec BaseOf(const ImmersiveAudio&) {
  TrackFileSpec spec;
  spec.FirstFrame = 192;
  return spec;
}

template <class Kind>
class TrackOfKind : public TrackRoundTrip {};
using Kinds = testing::Types<FlatPictures, MPEG2Pictures, Sound<48000>, Sound<96000>, AuxiliaryData, ImmersiveAudio>;
TYPED_TEST_SUITE(TrackOfKind, Kinds);

TYPED_TEST(TrackOfKind, ReadsAsItWasWrittenAtEachRate) {
  TrackFileSpec base = BaseOf(TypeParam());
  for (const Rational& rate : TypeParam::EditRates) {
    base.EditRate = rate;
    for (const TrackFileSpec& spec : Variants(base)) this->template ExpectRoundTrip<TypeParam>(spec);
  }
}

TEST_F(TrackRoundTrip, StereoscopicPictures) {
  for (const Rational& rate : {EditRate_24, EditRate_30, EditRate_48}) {
    TrackFileSpec base;
    base.EditRate = rate;
    for (const TrackFileSpec& spec : Variants(base)) {
      SCOPED_TRACE(Describe(spec));
      JP2K::MXFSReader reader;
      Open(reader, TrackKind::StereoscopicPicture, spec);
      JP2K::PictureDescriptor descriptor;
      ASSERT_EQ(reader.FillPictureDescriptor(descriptor), Ferro::RESULT_OK);
      EXPECT_EQ(descriptor, MakePictureDescriptor(spec, true));
      ReadContexts contexts(spec);
      JP2K::SFrameBuffer pair;
      ASSERT_EQ(pair.Left.Capacity(BufferCapacity), Ferro::RESULT_OK);
      ASSERT_EQ(pair.Right.Capacity(BufferCapacity), Ferro::RESULT_OK);
      for (ui32_t i = 0; i < spec.Duration; ++i) {
        ASSERT_EQ(reader.ReadFrame(i, pair, contexts.DecryptionPtr, contexts.IntegrityPtr), Ferro::RESULT_OK) << i;
        ASSERT_EQ(Contents(pair.Left), MakeFrame(TrackKind::StereoscopicPicture, spec, i)) << i;
        ASSERT_EQ(Contents(pair.Right), MakeFrame(TrackKind::StereoscopicPicture, spec, i, true)) << i;
      }
    }
  }
}

TEST_F(TrackRoundTrip, MPEG2IndexTellsTypeAndPlaceOfEachPicture) {
  TrackFileSpec spec;
  spec.Duration = 6;  // stored I P B B P P, displayed I B B P P P
  MPEG2::MXFReader reader;
  Open(reader, TrackKind::MPEG2, spec);
  MPEG2::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(BufferCapacity), Ferro::RESULT_OK);
  std::vector<int> flags;
  std::vector<int> offsets;
  for (ui32_t i = 0; i < 6; ++i) {
    ASSERT_EQ(reader.ReadFrame(i, frame), Ferro::RESULT_OK);
    flags.push_back(frame.IndexFlags());
    offsets.push_back(frame.TemporalOffset());
  }
  EXPECT_EQ(flags, (std::vector<int>{0xc0, 0x22, 0x33, 0x33, 0x22, 0x22}));
  EXPECT_EQ(offsets, (std::vector<int>{0, 1, 1, -2, 0, 0}));
}

TEST_F(TrackRoundTrip, SoundOfEachWidthAndChannelFormat) {
  for (ui32_t channels = 2; channels <= 16; ++channels) {
    for (const ui32_t bits : {16u, 24u}) {
      TrackFileSpec base;
      base.ChannelCount = channels;
      base.QuantizationBits = bits;
      base.Duration = 2;
      base.ChannelFormat = static_cast<PCM::ChannelFormat_t>(channels % 7);
      for (const TrackFileSpec& spec : Variants(base, {LS_MXF_SMPTE})) ExpectRoundTrip<Sound<48000>>(spec);
    }
  }
}

TEST_F(TrackRoundTrip, FramesWithAPlaintextOffset) {
  TrackFileSpec spec;
  spec.Key = TrackFileKey{};
  for (const ui32_t offset : {1u, 15u, 16u, 107u}) {
    spec.Key->PlaintextOffset = offset;
    JP2K::MXFReader reader;
    Open(reader, TrackKind::Picture, spec);
    ExpectFrames<JP2K::MXFReader, JP2K::FrameBuffer>(reader, TrackKind::Picture, spec);
  }
}

void ExpectText(const std::string& path, const TrackFileSpec& spec) {
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(path), Ferro::RESULT_OK);
  WriterInfo info;
  ASSERT_EQ(reader.FillWriterInfo(info), Ferro::RESULT_OK);
  EXPECT_EQ(info, MakeWriterInfo(spec));
  TimedText::TimedTextDescriptor descriptor;
  ASSERT_EQ(reader.FillTimedTextDescriptor(descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(descriptor, MakeTextDescriptor(spec));

  ReadContexts contexts(spec);
  std::string text;
  ASSERT_EQ(reader.ReadTimedTextResource(text, contexts.DecryptionPtr, contexts.IntegrityPtr), Ferro::RESULT_OK);
  EXPECT_EQ(text, MakeText(spec));
  const std::vector<Bytes> resources = MakeResources(spec);
  for (size_t i = resources.size(); i-- > 0;) {
    TimedText::FrameBuffer buffer;
    const Ferro::UUID& id = descriptor.ResourceList[i].ResourceID;
    ASSERT_EQ(reader.ReadAncillaryResource(id, buffer, contexts.DecryptionPtr, contexts.IntegrityPtr),
              Ferro::RESULT_OK);
    EXPECT_EQ(Contents(buffer), resources[i]) << i;
    EXPECT_EQ(buffer.AssetID(), id);
  }
}

TEST_F(TrackRoundTrip, TimedTextWithResourcesOfAllSizes) {
  TrackFileSpec none;
  TrackFileSpec one;
  one.FontSizes = {1};
  TrackFileSpec twenty;
  twenty.FontSizes = {383804, 16, 15, 17};
  twenty.ImageSizes = {1,     2,    16, 31, 32, 33, 82, 100, 1000, 65535, 65536, 100000, 1000000, 5 * 1024 * 1024,
                       20000, 20001};
  TrackFileSpec equal;
  equal.FontSizes.assign(10, 40);
  equal.ImageSizes.assign(10, 90);
  for (TrackFileSpec base : {none, one, twenty, equal}) {
    base.Duration = 240;
    for (const TrackFileSpec& spec : Variants(base, {LS_MXF_SMPTE})) {
      ASSERT_EQ(MakeTrackFile(TrackKind::Text, m_Path, spec), Ferro::RESULT_OK);
      ExpectText(m_Path, spec);
    }
  }
}

TEST_F(TrackRoundTrip, TimedTextAtEachRate) {
  for (const Rational& rate : Rates) {
    TrackFileSpec spec;
    spec.EditRate = rate;
    spec.ImageSizes = {100};
    ASSERT_EQ(MakeTrackFile(TrackKind::Text, m_Path, spec), Ferro::RESULT_OK);
    ExpectText(m_Path, spec);
  }
}

TEST_F(TrackRoundTrip, EachKindIsRecognised) {
  const std::pair<TrackKind, EssenceType_t> kinds[] = {
      {TrackKind::Picture, ESS_JPEG_2000}, {TrackKind::StereoscopicPicture, ESS_JPEG_2000_S},
      {TrackKind::MPEG2, ESS_MPEG2_VES},   {TrackKind::Sound, ESS_PCM},
      {TrackKind::Data, ESS_DCDATA},       {TrackKind::Atmos, ESS_ATMOS},
      {TrackKind::Text, ESS_TIMED_TEXT}};
  for (const auto& [kind, expected] : kinds) {
    EssenceType_t type = ESS_UNKNOWN;
    ASSERT_EQ(MakeTrackFile(kind, m_Path, {}), Ferro::RESULT_OK);
    ASSERT_EQ(EssenceType(m_Path, type), Ferro::RESULT_OK);
    EXPECT_EQ(type, expected);
  }
}

TEST_F(TrackRoundTrip, NothingIsLoggedForAProperFile) {
  for (TrackKind kind : {TrackKind::Picture, TrackKind::Sound}) {
    ASSERT_EQ(MakeTrackFile(kind, m_Path, {}), Ferro::RESULT_OK);
    LogCapture log;
    JP2K::MXFReader picture;
    PCM::MXFReader sound;
    JP2K::FrameBuffer frame;
    PCM::FrameBuffer samples;
    ASSERT_EQ(frame.Capacity(BufferCapacity), Ferro::RESULT_OK);
    ASSERT_EQ(samples.Capacity(BufferCapacity), Ferro::RESULT_OK);
    if (kind == TrackKind::Picture) {
      ASSERT_EQ(picture.OpenRead(m_Path), Ferro::RESULT_OK);
      EXPECT_EQ(picture.ReadFrame(0, frame), Ferro::RESULT_OK);
    } else {
      ASSERT_EQ(sound.OpenRead(m_Path), Ferro::RESULT_OK);
      EXPECT_EQ(sound.ReadFrame(0, samples), Ferro::RESULT_OK);
    }
    EXPECT_EQ(log.Text(), "");
  }
}

TEST_F(TrackRoundTrip, AWrongKeyAndATamperedFrameAreToldApart) {
  TrackFileSpec spec;
  spec.Key = TrackFileKey{};
  JP2K::MXFReader reader;
  Open(reader, TrackKind::Picture, spec);
  JP2K::FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(BufferCapacity), Ferro::RESULT_OK);
  TrackFileSpec other = spec;
  other.Key->Key[0] ^= 1;
  ReadContexts wrong(other);
  EXPECT_EQ(reader.ReadFrame(0, buffer, wrong.DecryptionPtr), RESULT_CHECKFAIL);
  EXPECT_EQ(reader.Close(), Ferro::RESULT_OK);

  {
    std::fstream file(m_Path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(16524 + 400);  // within the first frame's ciphertext
    file.put(0x5a).put(0x5a).put(0x5a).put(0x5a);
  }
  ReadContexts right(spec);
  ASSERT_EQ(reader.OpenRead(m_Path), Ferro::RESULT_OK);
  EXPECT_EQ(reader.ReadFrame(0, buffer, right.DecryptionPtr, right.IntegrityPtr), RESULT_HMACFAIL);
  EXPECT_EQ(reader.ReadFrame(1, buffer, right.DecryptionPtr, right.IntegrityPtr), Ferro::RESULT_OK);
}

}  // namespace
