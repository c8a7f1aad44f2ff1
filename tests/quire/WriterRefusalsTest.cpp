// SPDX-License-Identifier: BSD-3-Clause
//
// What the writers refuse, with which result, and what is left afterwards.
#include "../support/RandomFault.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/MPEG2Writer.h>
#include <QUIRE/PCMWriter.h>
#include <QUIRE/TimedTextWriter.h>

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace {

using namespace QUIRE;
using namespace testsupport;

class WriterRefusals : public testing::Test {
 protected:
  WriterRefusals() : m_PreviousLog(Ferro::SetDefaultLogSink(&m_Log)) {}
  ~WriterRefusals() override { Ferro::SetDefaultLogSink(m_PreviousLog); }

  Result_t OpenPicture(const WriterInfo& info) {
    return m_Picture.OpenWrite(m_Path, info, MakePictureDescriptor({}), MakeWriterOptions());
  }
  bool Logged(const std::string& line) const {
    return m_Log.Contains(Ferro::LogLevel::Error, m_Path + ": " + line + "\n");
  }
  bool FolderIsEmpty() const { return std::filesystem::is_empty(m_Folder.Folder()); }

  Ferro::MemoryLogSink m_Log;
  Ferro::ILogSink* const m_PreviousLog;
  TemporaryFolder m_Folder;
  const std::string m_Path = m_Folder.Path("file.mxf");
  JP2K::MXFWriter m_Picture;
};

class PictureBuffer : public JP2K::FrameBuffer {
 public:
  PictureBuffer() { FillBuffer(MakeFrame(TrackKind::Picture, {}, 0), *this); }
};

TrackFileSpec EncryptedSpec() {
  TrackFileSpec spec;
  spec.Key = TrackFileKey{};
  return spec;
}

TEST_F(WriterRefusals, SystemWithoutRandomNumbersIsAFailure) {
  WriterOptions options = MakeWriterOptions();
  options.Seed = {};
  const testsupport::NoRandomBytes none;
  EXPECT_EQ(m_Picture.OpenWrite(m_Path, MakeWriterInfo({}), MakePictureDescriptor({}), options), Ferro::RESULT_FAIL);
  EXPECT_TRUE(Logged("cannot write a track file: the system has no random numbers."));
  EXPECT_EQ(m_Picture.FailureReason(), "cannot write a track file: the system has no random numbers.");
  EXPECT_TRUE(FolderIsEmpty());
}

TEST_F(WriterRefusals, FactsThatAreMissingAreNamed) {
  const WriterInfo good = MakeWriterInfo(EncryptedSpec());
  WriterInfo info = good;
  info.AssetUUID.Reset();
  EXPECT_EQ(OpenPicture(info), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write a track file: the asset has no identifier."));
  info = good;
  info.LabelSetType = LS_MXF_UNKNOWN;
  EXPECT_EQ(OpenPicture(info), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write a track file: no label set was chosen."));
  info = good;
  info.ContextID.Reset();
  EXPECT_EQ(OpenPicture(info), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write a track file: the cryptographic context has no identifier."));
  info = good;
  info.CryptographicKeyID.Reset();
  EXPECT_EQ(OpenPicture(info), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write a track file: the key has no identifier."));
  info = good;
  info.EncryptedEssence = false;
  EXPECT_EQ(OpenPicture(info), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write a track file: integrity codes need encrypted essence."));
  EXPECT_TRUE(FolderIsEmpty());
}

TEST_F(WriterRefusals, RatesThatAreNotPositiveAreRefused) {
  for (const Rational& rate : {Rational(0, 0), Rational(24, 0), Rational(-24, 1), Rational(24, -1), Rational(0, 1)}) {
    DCData::DCDataDescriptor descriptor = MakeDataDescriptor({});
    descriptor.EditRate = rate;
    DCData::MXFWriter writer;
    EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), descriptor), Ferro::RESULT_PARAM);
    EXPECT_TRUE(Logged("cannot write a track file: the edit rate is not positive."));
    m_Log.Clear();
  }
}

TEST_F(WriterRefusals, AFolderThatIsNotThereIsNamed) {
  DCData::MXFWriter writer;
  const std::string path = m_Folder.Path("missing/file.mxf");
  EXPECT_TRUE(writer.OpenWrite(path, MakeWriterInfo({}), MakeDataDescriptor({})).Failure());
  EXPECT_FALSE(writer.IsOpen());
  ASSERT_EQ(m_Log.Entries().size(), 1u);
  EXPECT_EQ(m_Log.Entries()[0].Message, path + ": cannot write a track file: No such file or directory\n");
  EXPECT_EQ(writer.FailureReason(), "cannot write a track file: No such file or directory");
  // The next file is another matter.
  ASSERT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakeDataDescriptor({})), Ferro::RESULT_OK);
  EXPECT_EQ(writer.FailureReason(), "");
}

TEST_F(WriterRefusals, NothingIsWrittenBeforeOpenWrite) {
  PCM::FrameBuffer sound;
  JP2K::SFrameBuffer pair;
  TimedText::FrameBuffer text;
  JP2K::MXFSWriter stereoscopic;
  TimedText::MXFWriter timed_text;
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer()), Ferro::RESULT_INIT);
  EXPECT_EQ(m_Picture.Finalize(), Ferro::RESULT_INIT);
  EXPECT_EQ(m_Picture.EditUnitCount(), 0u);
  EXPECT_EQ(stereoscopic.WriteFrame(pair), Ferro::RESULT_INIT);
  EXPECT_EQ(stereoscopic.Finalize(), Ferro::RESULT_INIT);
  EXPECT_EQ(MPEG2::MXFWriter().WriteFrame({}), Ferro::RESULT_INIT);
  EXPECT_EQ(MPEG2::MXFWriter().Finalize(), Ferro::RESULT_INIT);
  EXPECT_EQ(PCM::MXFWriter().WriteFrame(sound), Ferro::RESULT_INIT);
  EXPECT_EQ(DCData::MXFWriter().WriteFrame({}), Ferro::RESULT_INIT);
  EXPECT_EQ(ATMOS::MXFWriter().WriteFrame({}), Ferro::RESULT_INIT);
  EXPECT_EQ(timed_text.WriteTimedTextResource("<a/>"), Ferro::RESULT_INIT);
  EXPECT_EQ(timed_text.WriteAncillaryResource(text), Ferro::RESULT_INIT);
  EXPECT_EQ(timed_text.Finalize(), Ferro::RESULT_INIT);
}

TEST_F(WriterRefusals, OneWriterWritesOneFileAtATime) {
  ASSERT_EQ(OpenPicture(MakeWriterInfo({})), Ferro::RESULT_OK);
  EXPECT_EQ(OpenPicture(MakeWriterInfo({})), Ferro::RESULT_STATE);
  ASSERT_EQ(m_Picture.Finalize(), Ferro::RESULT_OK);
  EXPECT_EQ(OpenPicture(MakeWriterInfo({})), Ferro::RESULT_OK);
}

TEST_F(WriterRefusals, ContextsAndFactsMustAgree) {
  WriteContexts contexts(EncryptedSpec());
  ASSERT_EQ(OpenPicture(MakeWriterInfo(EncryptedSpec())), Ferro::RESULT_OK);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer()), RESULT_CRYPT_CTX);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer(), contexts.Encryption()), RESULT_HMAC_CTX);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer(), contexts.Encryption(), contexts.Integrity()), Ferro::RESULT_OK);
  EXPECT_EQ(m_Picture.EditUnitCount(), 1u);
  ASSERT_EQ(m_Picture.Finalize(), Ferro::RESULT_OK);

  ASSERT_EQ(OpenPicture(MakeWriterInfo({})), Ferro::RESULT_OK);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer(), contexts.Encryption()), Ferro::RESULT_PARAM);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer(), nullptr, contexts.Integrity()), Ferro::RESULT_PARAM);
}

TEST_F(WriterRefusals, AContextWithoutKeyChangesNothing) {
  AESEncContext encryption;
  HMACContext integrity;
  ASSERT_EQ(OpenPicture(MakeWriterInfo(EncryptedSpec())), Ferro::RESULT_OK);
  EXPECT_EQ(m_Picture.WriteFrame(PictureBuffer(), &encryption, &integrity), Ferro::RESULT_INIT);
  EXPECT_EQ(m_Picture.EditUnitCount(), 0u);
  EXPECT_EQ(m_Picture.Finalize(), Ferro::RESULT_OK);
}

TEST_F(WriterRefusals, APlaintextOffsetBeyondTheFrameIsRefused) {
  WriteContexts contexts(EncryptedSpec());
  ASSERT_EQ(OpenPicture(MakeWriterInfo(EncryptedSpec())), Ferro::RESULT_OK);
  PictureBuffer buffer;
  buffer.PlaintextOffset(buffer.Size() + 1);
  EXPECT_EQ(m_Picture.WriteFrame(buffer, contexts.Encryption(), contexts.Integrity()), RESULT_LARGE_PTO);
  buffer.PlaintextOffset(buffer.Size());
  EXPECT_EQ(m_Picture.WriteFrame(buffer, contexts.Encryption(), contexts.Integrity()), Ferro::RESULT_OK);
}

TEST_F(WriterRefusals, ThereIsNoFileBeforeFinalize) {
  ASSERT_EQ(OpenPicture(MakeWriterInfo({})), Ferro::RESULT_OK);
  ASSERT_EQ(m_Picture.WriteFrame(PictureBuffer()), Ferro::RESULT_OK);
  EXPECT_FALSE(std::filesystem::exists(m_Path));
  m_Picture.Abandon();
  EXPECT_FALSE(m_Picture.IsOpen());
  EXPECT_TRUE(FolderIsEmpty());
}

TEST_F(WriterRefusals, AFullDiskLeavesNoFile) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{20000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  DCData::MXFWriter writer;
  DCData::FrameBuffer buffer;
  FillBuffer(MakeNoise(4000, 0), buffer);
  EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakeDataDescriptor({})), Ferro::RESULT_OK);
  EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_WRITEFAIL);
  EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_STATE);
  EXPECT_EQ(writer.Finalize(), Ferro::RESULT_STATE);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_TRUE(Logged("cannot write 4000 bytes at offset 16544: File too large"));
  EXPECT_EQ(writer.FailureReason(), "cannot write 4000 bytes at offset 16544: File too large");
  EXPECT_TRUE(FolderIsEmpty());
}

TEST_F(WriterRefusals, FlatWritersRefuseStereoscopicPictures) {
  EXPECT_EQ(m_Picture.OpenWrite(m_Path, MakeWriterInfo({}), MakePictureDescriptor({}, true)), Ferro::RESULT_PARAM);
}

TEST_F(WriterRefusals, EyesTakeTurns) {
  JP2K::MXFSWriter writer;
  const PictureBuffer eye;
  JP2K::SFrameBuffer pair;
  FillBuffer(MakeFrame(TrackKind::Picture, {}, 0), pair.Left);
  FillBuffer(MakeFrame(TrackKind::Picture, {}, 1), pair.Right);
  ASSERT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakePictureDescriptor({}, true)), Ferro::RESULT_OK);
  EXPECT_EQ(writer.WriteFrame(eye, JP2K::SP_RIGHT), RESULT_SPHASE);
  EXPECT_EQ(writer.WriteFrame(eye, JP2K::SP_LEFT), Ferro::RESULT_OK);
  EXPECT_EQ(writer.WriteFrame(eye, JP2K::SP_LEFT), RESULT_SPHASE);
  EXPECT_EQ(writer.WriteFrame(pair), RESULT_SPHASE);
  EXPECT_EQ(writer.Finalize(), RESULT_SPHASE);
  EXPECT_EQ(writer.WriteFrame(eye, JP2K::SP_RIGHT), Ferro::RESULT_OK);
  EXPECT_EQ(writer.EditUnitCount(), 1u);
  EXPECT_EQ(writer.WriteFrame(pair), Ferro::RESULT_OK);
  EXPECT_EQ(writer.Finalize(), Ferro::RESULT_OK);
}

TEST_F(WriterRefusals, PicturesThatAreNoneAreRawFormatErrors) {
  MPEG2::MXFWriter writer;
  ASSERT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakeVideoDescriptor({})), Ferro::RESULT_OK);
  MPEG2::FrameBuffer buffer;
  EXPECT_EQ(writer.WriteFrame(buffer), RESULT_RAW_FORMAT);
  EXPECT_EQ(writer.EditUnitCount(), 0u);
}

TEST_F(WriterRefusals, SoundFactsThatContradictEachOtherAreNamed) {
  PCM::MXFWriter writer;
  PCM::AudioDescriptor sound = MakeAudioDescriptor({});
  sound.ChannelCount = 0;
  EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), sound), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the sound: it has no channels or no sample size."));
  EXPECT_EQ(writer.FailureReason(), "cannot write the sound: it has no channels or no sample size.");
  sound = MakeAudioDescriptor({});
  sound.BlockAlign = 17;
  EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), sound), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the sound: its block alignment does not follow from channels and sample size."));
  sound = MakeAudioDescriptor({});
  sound.AudioSamplingRate = Rational(0, 1);
  EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), sound), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the sound: its samples cannot be dealt out to edit units."));
  EXPECT_TRUE(FolderIsEmpty());
}

TEST_F(WriterRefusals, LabelsThatLeadNowhereAreNamed) {
  PCM::MCALabelList good;
  ASSERT_EQ(PCM::MakeMCALabels("51(L,R)", "", good), Ferro::RESULT_OK);
  for (const auto& [place, groups] : {std::pair<size_t, std::vector<size_t>>(1, {3}),  // past the list
                                      {1, {2}},                                        // a channel
                                      {1, {0, 0}},                                     // two groups
                                      {0, {1}}}) {                                     // a group within a channel
    PCM::MCALabelList labels = good;
    labels[place].Groups = groups;
    PCM::MXFWriter writer;
    EXPECT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakeAudioDescriptor({}), labels), Ferro::RESULT_PARAM);
    EXPECT_TRUE(Logged("cannot write the sound: a channel label refers to a group that is not there."));
    m_Log.Clear();
  }
}

TEST_F(WriterRefusals, OnlyTheLastSoundFrameMayBeShort) {
  PCM::MXFWriter writer;
  ASSERT_EQ(writer.OpenWrite(m_Path, MakeWriterInfo({}), MakeAudioDescriptor({})), Ferro::RESULT_OK);
  for (const size_t size : {size_t{36018 + 18}, size_t{0}, size_t{17}, size_t{35999}}) {
    PCM::FrameBuffer buffer;
    FillBuffer(Bytes(size), buffer);
    EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_PARAM) << size;
  }
  PCM::FrameBuffer buffer;
  FillBuffer(Bytes(36000), buffer);
  EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
  buffer.Size(18);
  EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
  EXPECT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_STATE);
  EXPECT_EQ(writer.EditUnitCount(), 2u);
  ASSERT_EQ(writer.Finalize(), Ferro::RESULT_OK);
  EXPECT_EQ(std::filesystem::file_size(m_Path), 16524u + 2 * 36020 + 322);
}

class TimedTextRefusals : public WriterRefusals {
 protected:
  Result_t Open(const TimedText::TimedTextDescriptor& descriptor) {
    return m_Text.OpenWrite(m_Path, MakeWriterInfo({}), descriptor, MakeWriterOptions());
  }
  Result_t WriteResource(const Ferro::UUID& id) {
    TimedText::FrameBuffer buffer;
    FillBuffer(MakePNG(100), buffer);
    buffer.AssetID(id);
    return m_Text.WriteAncillaryResource(buffer);
  }

  TimedText::MXFWriter m_Text;
};

TEST_F(TimedTextRefusals, FactsAreChecked) {
  TrackFileSpec spec;
  spec.ImageSizes = {100, 100};
  TimedText::TimedTextDescriptor descriptor = MakeTextDescriptor(spec);
  descriptor.ResourceList[1].ResourceID = descriptor.ResourceList[0].ResourceID;
  EXPECT_EQ(Open(descriptor), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the timed text: a resource has no identifier or that of another."));
  descriptor = MakeTextDescriptor(spec);
  descriptor.AssetID.Reset();
  EXPECT_EQ(Open(descriptor), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the timed text: the document has no identifier."));
  spec.LabelSet = LS_MXF_INTEROP;
  EXPECT_EQ(m_Text.OpenWrite(m_Path, MakeWriterInfo(spec), MakeTextDescriptor(spec)), Ferro::RESULT_PARAM);
  EXPECT_TRUE(Logged("cannot write the timed text: Interop packages keep text in XML files."));
}

TEST_F(TimedTextRefusals, TheDocumentComesFirstAndEverythingOnce) {
  TrackFileSpec spec;
  spec.ImageSizes = {100};
  const TimedText::TimedTextDescriptor descriptor = MakeTextDescriptor(spec);
  const Ferro::UUID id = descriptor.ResourceList[0].ResourceID;
  ASSERT_EQ(Open(descriptor), Ferro::RESULT_OK);
  EXPECT_EQ(m_Text.Finalize(), Ferro::RESULT_STATE);
  EXPECT_EQ(WriteResource(id), Ferro::RESULT_STATE);
  EXPECT_EQ(m_Text.WriteTimedTextResource("<a/>"), Ferro::RESULT_OK);
  EXPECT_EQ(m_Text.WriteTimedTextResource("<a/>"), Ferro::RESULT_STATE);
  EXPECT_EQ(m_Text.Finalize(), Ferro::RESULT_STATE);
  EXPECT_EQ(WriteResource(spec.AssetID), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(WriteResource(id), Ferro::RESULT_OK);
  EXPECT_EQ(WriteResource(id), Ferro::RESULT_STATE);
  EXPECT_EQ(m_Text.Finalize(), Ferro::RESULT_OK);
}

TEST_F(TimedTextRefusals, AMetadataTextBeyondAnItemIsTooLarge) {
  TimedText::TimedTextDescriptor descriptor = MakeTextDescriptor({});
  descriptor.NamespaceName.assign(40000, 'n');
  EXPECT_EQ(Open(descriptor), Ferro::RESULT_TOOLARGE);
  EXPECT_TRUE(Logged("cannot write a track file: The data is larger than the limit set for it."));
  EXPECT_TRUE(FolderIsEmpty());
}

}  // namespace
