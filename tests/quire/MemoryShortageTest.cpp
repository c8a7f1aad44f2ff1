// SPDX-License-Identifier: BSD-3-Clause
// Memory runs out at each request in turn: there is a result, nothing is lost, and later all goes well.
#include "AllocationCount.h"
#include "EssenceMaker.h"
#include "ReaderFixture.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Ferro/LogSink.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KWriter.h>

#include <unistd.h>

#include <functional>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_ALLOC;
using Ferro::RESULT_OK;

// Runs `work` with the first, the second, ... request for memory failing, until none does. After each failure nothing may
// be held that was not before. Returns how often it failed.
size_t FailEachRequest(const std::function<Result_t()>& work) {
  for (size_t failing = 1;; ++failing) {
    const size_t held = HeldBytes;
    HasRunOut = false;
    FailingRequest = failing;
    Result_t result = RESULT_OK;
    bool has_thrown = false;
    try {
      result = work();
    } catch (const std::bad_alloc&) {
      has_thrown = true;
    }
    FailingRequest = 0;
    const bool ran_out = HasRunOut;
    EXPECT_FALSE(has_thrown) << "request " << failing;
    EXPECT_EQ(HeldBytes, held) << "request " << failing;
    if (!ran_out) {
      EXPECT_EQ(result, RESULT_OK);
      return failing - 1;
    }
    // Some requests can do without: a sorting algorithm's buffer.
    EXPECT_TRUE(result == RESULT_ALLOC || result == RESULT_OK) << "request " << failing << ": " << result.Symbol();
    if (testing::Test::HasFailure()) return failing;
  }
}

// Made once before anything is measured.
void WarmUp() {
  (void)DefaultSMPTEDict();
  (void)DefaultInteropDict();
  (void)Ferro::DefaultLogSink();
}

TEST(MemoryShortage, OpeningAndReadingEndInAResult) {
  WarmUp();
  for (const bool has_index : {true, false}) {
    MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3);
    builder.HasRIP = has_index;
    builder.IndexPlace = has_index ? MxfBuilder::InFooter : MxfBuilder::Nowhere;
    const TemporaryFile file(builder.Build());
    JP2K::FrameBuffer frame;
    ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
    const size_t failures = FailEachRequest([&] {
      JP2K::MXFReader reader;
      WriterInfo info;
      Result_t result = reader.OpenRead(file.Name());
      JP2K::PictureDescriptor descriptor;
      if (result.Success()) result = reader.FillWriterInfo(info);
      if (result.Success()) result = reader.FillPictureDescriptor(descriptor);
      if (result.Success()) result = reader.ReadFrame(2, frame);
      return result;
    });
    EXPECT_GT(failures, 100u);
  }
}

TEST(MemoryShortage, AReaderGoesOnWhenThereIsMemoryAgain) {
  WarmUp();
  const TemporaryFile file(MakeBuilder(MxfBuilder::JP2K, 3).Build());
  JP2K::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(1000), RESULT_OK);
  for (size_t failing = 1; failing < 20; ++failing) {
    JP2K::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    HasRunOut = false;
    FailingRequest = failing;
    const Result_t result = reader.ReadFrame(1, frame);
    FailingRequest = 0;
    EXPECT_EQ(result, HasRunOut ? RESULT_ALLOC : RESULT_OK) << failing;
    EXPECT_EQ(reader.ReadFrame(1, frame), RESULT_OK) << failing;
  }
}

TEST(MemoryShortage, TextsAndTheirResourcesEndInAResult) {
  WarmUp();
  MxfBuilder builder = MakeBuilder(MxfBuilder::TimedText, 1);
  Resource resource;
  resource.ID = Bytes(16, 9);
  resource.Data = Bytes(100, 5);
  builder.Resources = {resource};
  const TemporaryFile file(builder.Build());
  const Ferro::UUID id(std::span<const ui8_t, 16>(resource.ID.data(), 16));
  FailEachRequest([&] {
    TimedText::MXFReader reader;
    TimedText::FrameBuffer frame;
    Result_t result = reader.OpenRead(file.Name());
    TimedText::TimedTextDescriptor descriptor;
    std::string text;
    if (result.Success()) result = reader.FillTimedTextDescriptor(descriptor);
    if (result.Success()) result = reader.ReadTimedTextResource(text);
    if (result.Success()) result = reader.ReadTimedTextResource(frame);
    if (result.Success()) result = reader.ReadAncillaryResource(id, frame);
    return result;
  });
}

TEST(MemoryShortage, IdentifyingEndsInAResult) {
  WarmUp();
  const TemporaryFile file(MakeBuilder(MxfBuilder::PCM, 2).Build());
  FailEachRequest([&] {
    TrackFileIdentity identity;
    EssenceType_t type = ESS_UNKNOWN;
    const Result_t result = EssenceType(file.Name(), type);
    return result.Success() ? IdentifyTrackFile(file.Name(), identity) : result;
  });
}

// The writers leave nothing behind but a whole file.
class WritingInShortage : public ::testing::Test {
 protected:
  void SetUp() override {
    WarmUp();
    m_Path = m_Folder.Path("file.mxf");
  }
  template <class Work>
  void Try(const Work& work) {
    FailEachRequest([&] {
      const Result_t result = work();
      FailingRequest = 0;
      EXPECT_EQ((access(m_Path.c_str(), F_OK) == 0), result.Success());
      return result;
    });
  }

  TemporaryFolder m_Folder;
  std::string m_Path;
};

TEST_F(WritingInShortage, PicturesEndInAResult) {
  JP2K::FrameBuffer frame;
  const Bytes codestream = MakeCodestream(64, 36, 1);
  ASSERT_EQ(frame.Capacity(static_cast<ui32_t>(codestream.size())), RESULT_OK);
  std::copy(codestream.begin(), codestream.end(), frame.Data());
  frame.Size(static_cast<ui32_t>(codestream.size()));
  JP2K::PictureDescriptor descriptor;
  ASSERT_EQ(JP2K::ParseCodestream(codestream, descriptor), RESULT_OK);
  descriptor.EditRate = descriptor.SampleRate = EditRate_24;
  const WriterInfo info = MakeWriterInfo({});
  const WriterOptions options = MakeWriterOptions();
  Try([&] {
    JP2K::MXFWriter writer;
    Result_t result = writer.OpenWrite(m_Path, info, descriptor, options);
    for (int i = 0; i < 3 && result.Success(); ++i) result = writer.WriteFrame(frame);
    return result.Success() ? writer.Finalize() : result;
  });
}

}  // namespace
