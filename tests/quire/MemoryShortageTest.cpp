// SPDX-License-Identifier: BSD-3-Clause
// Memory runs out at each request in turn: there is a result, nothing is lost, and later all goes well.
#include "AllocationCount.h"
#include "EssenceMaker.h"
#include "ReaderFixture.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Ferro/LogSink.h>
#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/MPEG2Writer.h>
#include <QUIRE/PCMWriter.h>
#include <QUIRE/TimedTextWriter.h>

#include <unistd.h>

#include <array>
#include <functional>
#include <utility>

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
    unlink(m_Path.c_str());  // from a try before
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

// One kind of track file; all that is written is made before memory becomes short.
template <class Writer, class Buffer, class Open>
class FrameWriting {
 public:
  FrameWriting(TrackKind kind, const TrackFileSpec& spec, Open open)
      : m_Info(MakeWriterInfo(spec)), m_Contexts(spec), m_Open(std::move(open)) {
    for (ui32_t i = 0; i < 3; ++i) FillBuffer(MakeFrame(kind, spec, i), m_Frames[i]);
  }

  Result_t operator()(const std::string& path) {
    Writer writer;
    Result_t result = m_Open(writer, path, m_Info);
    for (const Buffer& frame : m_Frames)
      if (result.Success()) result = writer.WriteFrame(frame, m_Contexts.Encryption(), m_Contexts.Integrity());
    return result.Success() ? writer.Finalize() : result;
  }

 private:
  const WriterInfo m_Info;
  WriteContexts m_Contexts;
  std::array<Buffer, 3> m_Frames;
  Open m_Open;
};

template <class Writer, class Buffer, class Descriptor>
auto WritingOf(TrackKind kind, const TrackFileSpec& spec, const Descriptor& descriptor) {
  const auto open = [descriptor, options = MakeWriterOptions()](Writer& writer, const std::string& path,
                                                                const WriterInfo& info) {
    return writer.OpenWrite(path, info, descriptor, options);
  };
  return FrameWriting<Writer, Buffer, decltype(open)>(kind, spec, open);
}

// In clear and encrypted.
std::array<TrackFileSpec, 2> BothSpecs() {
  std::array<TrackFileSpec, 2> specs;
  specs[1].Key.emplace();
  return specs;
}

TEST_F(WritingInShortage, PicturesEndInAResult) {
  for (const TrackFileSpec& spec : BothSpecs()) {
    auto pictures =
        WritingOf<JP2K::MXFWriter, JP2K::FrameBuffer>(TrackKind::Picture, spec, MakePictureDescriptor(spec));
    Try([&] { return pictures(m_Path); });
    auto videos = WritingOf<MPEG2::MXFWriter, MPEG2::FrameBuffer>(TrackKind::MPEG2, spec, MakeVideoDescriptor(spec));
    Try([&] { return videos(m_Path); });
  }
}

TEST_F(WritingInShortage, StereoscopicPicturesEndInAResult) {
  for (const TrackFileSpec& spec : BothSpecs()) {
    const WriterInfo info = MakeWriterInfo(spec);
    const WriterOptions options = MakeWriterOptions();
    const JP2K::PictureDescriptor descriptor = MakePictureDescriptor(spec, true);
    WriteContexts contexts(spec);
    JP2K::SFrameBuffer frame;
    FillBuffer(MakeFrame(TrackKind::StereoscopicPicture, spec, 0), frame.Left);
    FillBuffer(MakeFrame(TrackKind::StereoscopicPicture, spec, 0, true), frame.Right);
    Try([&] {
      JP2K::MXFSWriter writer;
      Result_t result = writer.OpenWrite(m_Path, info, descriptor, options);
      for (int i = 0; i < 2 && result.Success(); ++i)
        result = writer.WriteFrame(frame, contexts.Encryption(), contexts.Integrity());
      return result.Success() ? writer.Finalize() : result;
    });
  }
}

TEST_F(WritingInShortage, SoundEndsInAResult) {
  for (TrackFileSpec spec : BothSpecs())
    for (const char* labels : {"", "51(L,R,C,LFE,Ls,Rs)"}) {
      spec.MCAConfiguration = labels;
      const auto open = [descriptor = MakeAudioDescriptor(spec), list = MakeLabels(spec),
                         options = MakeWriterOptions()](PCM::MXFWriter& writer, const std::string& path,
                                                        const WriterInfo& info) {
        return writer.OpenWrite(path, info, descriptor, list, options);
      };
      FrameWriting<PCM::MXFWriter, PCM::FrameBuffer, decltype(open)> sound(TrackKind::Sound, spec, open);
      Try([&] { return sound(m_Path); });
    }
}

TEST_F(WritingInShortage, DataEndsInAResult) {
  for (const TrackFileSpec& spec : BothSpecs()) {
    auto data = WritingOf<DCData::MXFWriter, DCData::FrameBuffer>(TrackKind::Data, spec, MakeDataDescriptor(spec));
    Try([&] { return data(m_Path); });
    auto immersive =
        WritingOf<ATMOS::MXFWriter, DCData::FrameBuffer>(TrackKind::Atmos, spec, MakeAtmosDescriptor(spec));
    Try([&] { return immersive(m_Path); });
  }
}

TEST_F(WritingInShortage, TextEndsInAResult) {
  for (TrackFileSpec spec : BothSpecs()) {
    spec.FontSizes = {100};
    spec.ImageSizes = {200};
    const WriterInfo info = MakeWriterInfo(spec);
    const WriterOptions options = MakeWriterOptions();
    const TimedText::TimedTextDescriptor descriptor = MakeTextDescriptor(spec);
    const std::string text = MakeText(spec);
    const std::vector<Bytes> resources = MakeResources(spec);
    std::vector<TimedText::FrameBuffer> buffers(resources.size());
    for (size_t i = 0; i < resources.size(); ++i) {
      FillBuffer(resources[i], buffers[i]);
      buffers[i].AssetID(descriptor.ResourceList[i].ResourceID);
    }
    WriteContexts contexts(spec);
    Try([&] {
      TimedText::MXFWriter writer;
      Result_t result = writer.OpenWrite(m_Path, info, descriptor, options);
      if (result.Success()) result = writer.WriteTimedTextResource(text, contexts.Encryption(), contexts.Integrity());
      for (const TimedText::FrameBuffer& buffer : buffers)
        if (result.Success())
          result = writer.WriteAncillaryResource(buffer, contexts.Encryption(), contexts.Integrity());
      return result.Success() ? writer.Finalize() : result;
    });
  }
}

}  // namespace
