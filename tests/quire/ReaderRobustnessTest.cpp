// SPDX-License-Identifier: BSD-3-Clause
//
// A file of each kind, cut short and with each of its numbers lying: whatever it says, there is a result, soon, and no
// request for more memory than the file's size and a fixed bound.
#include "FileFields.h"
#include "LargestRequest.h"
#include "ReaderFixture.h"

#include "../support/TestSeed.h"

#include <QUIRE/Crypto.h>

#include <algorithm>
#include <chrono>
#include <random>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

constexpr ui32_t BufferSize = 65536;
constexpr size_t MemoryBound = 1048576;
constexpr std::chrono::seconds TimeBound{5};

struct KeyContexts {
  explicit KeyContexts(const MxfBuilder& builder) {
    if (builder.Key.empty()) return;
    const std::span<const ui8_t, KeyLen> key(builder.Key.data(), KeyLen);
    EXPECT_EQ(Decryption.InitKey(key), RESULT_OK);
    EXPECT_EQ(Integrity.InitKey(key, LS_MXF_SMPTE), RESULT_OK);
    DecryptionPtr = &Decryption;
    IntegrityPtr = &Integrity;
  }
  AESDecContext Decryption;
  HMACContext Integrity;
  AESDecContext* DecryptionPtr = nullptr;
  HMACContext* IntegrityPtr = nullptr;
};

/// What an attempt to open a file and read all of it gave.
struct Outcome {
  Result_t Opened = RESULT_OK;
  std::vector<Bytes> Read;         // pieces of essence, in the builder's order as far as they came
  std::vector<Result_t> Failures;  // of reading
};

template <class Buffer>
void Note(const Result_t& result, const Buffer& frame, Outcome& outcome) {
  if (result.Success()) outcome.Read.push_back(Content(frame));
  if (result.Failure()) outcome.Failures.push_back(result);
}

template <class Reader, class Buffer = DCData::FrameBuffer>
Outcome ReadFrames(const MxfBuilder& builder, const std::string& filename) {
  Outcome outcome;
  Reader reader;
  outcome.Opened = reader.OpenRead(filename);
  if (outcome.Opened.Failure()) return outcome;
  (void)reader.RIP();
  KeyContexts contexts(builder);
  Buffer frame;
  EXPECT_EQ(frame.Capacity(BufferSize), RESULT_OK);
  for (ui32_t i = 0; i <= builder.Frames.size(); ++i)
    Note(reader.ReadFrame(i, frame, contexts.DecryptionPtr, contexts.IntegrityPtr), frame, outcome);
  Note(reader.ReadFrame(NoFrame, frame, contexts.DecryptionPtr, contexts.IntegrityPtr), frame, outcome);
  return outcome;
}

Outcome ReadPairs(const MxfBuilder& builder, const std::string& filename) {
  Outcome outcome;
  JP2K::MXFSReader reader;
  outcome.Opened = reader.OpenRead(filename);
  if (outcome.Opened.Failure()) return outcome;
  JP2K::SFrameBuffer pair;
  EXPECT_EQ(pair.Left.Capacity(BufferSize), RESULT_OK);
  EXPECT_EQ(pair.Right.Capacity(BufferSize), RESULT_OK);
  KeyContexts contexts(builder);
  for (ui32_t i = 0; i <= builder.Frames.size() / 2; ++i) {
    const Result_t result = reader.ReadFrame(i, pair, contexts.DecryptionPtr, contexts.IntegrityPtr);
    Note(result, pair.Left, outcome);
    Note(result, pair.Right, outcome);
  }
  return outcome;
}

Outcome ReadText(const MxfBuilder& builder, const std::string& filename) {
  Outcome outcome;
  TimedText::MXFReader reader;
  outcome.Opened = reader.OpenRead(filename);
  if (outcome.Opened.Failure()) return outcome;
  TimedText::TimedTextDescriptor descriptor;
  EXPECT_EQ(reader.FillTimedTextDescriptor(descriptor), RESULT_OK);
  KeyContexts contexts(builder);
  TimedText::FrameBuffer frame;
  Note(reader.ReadTimedTextResource(frame, contexts.DecryptionPtr, contexts.IntegrityPtr), frame, outcome);
  for (const Resource& resource : builder.Resources) {
    Ferro::UUID id;
    id.Set(resource.ID.data());
    Note(reader.ReadAncillaryResource(id, frame, contexts.DecryptionPtr, contexts.IntegrityPtr), frame, outcome);
  }
  return outcome;
}

Outcome ReadAll(const MxfBuilder& builder, const std::string& filename) {
  switch (builder.Kind) {
    case MxfBuilder::JP2K:
      return ReadFrames<JP2K::MXFReader, JP2K::FrameBuffer>(builder, filename);
    case MxfBuilder::JP2KS:
      return ReadPairs(builder, filename);
    case MxfBuilder::MPEG2:
      return ReadFrames<MPEG2::MXFReader, MPEG2::FrameBuffer>(builder, filename);
    case MxfBuilder::PCM:
      return ReadFrames<PCM::MXFReader, PCM::FrameBuffer>(builder, filename);
    case MxfBuilder::TimedText:
      return ReadText(builder, filename);
    case MxfBuilder::DCData:
      return ReadFrames<DCData::MXFReader>(builder, filename);
    default:
      return ReadFrames<ATMOS::MXFReader>(builder, filename);
  }
}

/// All pieces of essence that a builder's file holds.
std::vector<Bytes> Pieces(const MxfBuilder& builder) {
  std::vector<Bytes> pieces = builder.Frames;
  for (const Resource& resource : builder.Resources) pieces.push_back(resource.Data);
  return pieces;
}

struct Sample {
  const char* Name;
  MxfBuilder::Kind_t Kind;
  bool Encrypted;
};
void PrintTo(const Sample& sample, std::ostream* out) {
  *out << sample.Name;
}

class ReaderRobustness : public testing::TestWithParam<Sample> {
 protected:
  ReaderRobustness() {
    m_Builder.HeaderFill = 0;
    if (GetParam().Kind == MxfBuilder::TimedText) {
      m_Builder.Frames.resize(1);
      for (ui8_t i = 0; i < 2; ++i)
        m_Builder.Resources.push_back(
            {Hex("4e500000 0000 4000 8000 0000000000") + BE8(i), "image/png", Bytes(40 + i, i), 10u + i});
    }
    if (GetParam().Encrypted) m_Builder.Key = Hex("00112233 44556677 8899aabb ccddeeff");
    m_Whole = m_Builder.Build();
  }

  /// Opens and reads the file as it is now, and looks at all that is to be true of any file. `size` is the file's.
  Outcome Try(size_t size) {
    m_Log.Clear();
    LargestRequest = 0;
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome = ReadAll(m_Builder, m_File.Name());
    EXPECT_LT(std::chrono::steady_clock::now() - start, TimeBound);
    EXPECT_LE(LargestRequest, size + MemoryBound);
    if (outcome.Opened.Failure()) {
      EXPECT_EQ(outcome.Opened, RESULT_FORMAT) << outcome.Opened.Symbol();
      EXPECT_NE(m_Log.Text().find(m_File.Name() + ": "), std::string::npos) << m_Log.Text();
    }
    for (const Result_t& result : outcome.Failures) EXPECT_TRUE(IsExpected(result)) << result.Symbol();
    return outcome;
  }

  /// After a cut what comes is the file's own essence, from its beginning on.
  void TryCutAt(size_t size) {
    SCOPED_TRACE("cut at " + std::to_string(size));
    m_File.Truncate(size);
    const Outcome outcome = Try(size);
    const std::vector<Bytes> pieces = Pieces(m_Builder);
    ASSERT_LE(outcome.Read.size(), pieces.size());
    for (size_t i = 0; i < outcome.Read.size(); ++i) ASSERT_EQ(outcome.Read[i], pieces[i]);
    if (size >= m_Builder.FooterAt) {
      EXPECT_EQ(outcome.Read.size(), pieces.size());
    }
    if (size < m_Builder.EssenceAt) {
      EXPECT_TRUE(outcome.Read.empty());
    }
  }

  LogCapture m_Log;
  TemporaryFile m_File;
  MxfBuilder m_Builder = MakeBuilder(GetParam().Kind, 4);
  Bytes m_Whole;

 private:
  bool IsExpected(const Result_t& result) const {
    for (const Result_t& expected : {RESULT_FORMAT, RESULT_RANGE, RESULT_CUT, Ferro::RESULT_SMALLBUF})
      if (result == expected) return true;
    if (GetParam().Kind == MxfBuilder::TimedText && result == Ferro::RESULT_NOT_FOUND) return true;
    return GetParam().Encrypted && (result == RESULT_CHECKFAIL || result == RESULT_HMACFAIL ||
                                    result == RESULT_SEQUENCE || result == RESULT_ALGORITHM);
  }
};

// At each byte; within the frames of sound, which are long, at one in 97.
TEST_P(ReaderRobustness, CutAtEachByteEndsInAResult) {
  const bool is_sound = GetParam().Kind == MxfBuilder::PCM;
  m_File.Write(m_Whole);
  for (size_t size = m_Whole.size() + 1; size-- > 0;) {
    if (is_sound && size > m_Builder.EssenceAt && size < m_Builder.EssenceEnd && size % 97 != 0) continue;
    TryCutAt(size);
    if (HasFatalFailure()) return;
  }
}

TEST_P(ReaderRobustness, EachNumberAtItsLimitsEndsInAResult) {
  m_File.Write(m_Whole);
  const std::vector<FileField> fields = FindFields(m_Whole);
  ASSERT_GT(fields.size(), 300u);
  for (const FileField& field : fields) {
    SCOPED_TRACE(std::to_string(field.Size) + " bytes at " + std::to_string(field.At));
    for (const Bytes& value : LimitsOf(field.Size)) {
      m_File.Patch(field.At, value);
      (void)Try(m_Whole.size());
    }
    const auto begin = m_Whole.begin() + static_cast<std::ptrdiff_t>(field.At);
    m_File.Patch(field.At, Bytes(begin, begin + static_cast<std::ptrdiff_t>(field.Size)));
  }
  EXPECT_EQ(Try(m_Whole.size()).Read, Pieces(m_Builder));
}

/// How many frames lie whole before a cut; of stereoscopic ones, pairs of them count.
size_t WholeFrames(const MxfBuilder& builder, size_t cut) {
  size_t whole = 0;
  for (size_t i = 1; i < builder.ElementAt.size(); ++i) whole += builder.ElementAt[i] <= cut ? 1 : 0;
  return builder.Kind == MxfBuilder::JP2KS ? whole - whole % 2 : whole;
}

// Files whose bodies are too long to be cut at each byte. Text has one frame, and its resources behind it.
TEST_P(ReaderRobustness, CutAtRandomInALongBodyGivesJustWhatIsWhole) {
  const auto seed = TestSeed(20261121);
  SCOPED_TRACE("STRATA_TEST_SEED=" + std::to_string(seed));
  const bool is_text = GetParam().Kind == MxfBuilder::TimedText;
  const bool is_sound = GetParam().Kind == MxfBuilder::PCM;
  if (is_text) {
    m_Builder.Frames = MakeFrames(1, 9000);
    for (Resource& resource : m_Builder.Resources) resource.Data.resize(20000, 7);
  } else {
    m_Builder.Frames = is_sound ? MakeFrames(12, 12000, 0) : MakeFrames(12, m_Builder.Key.empty() ? 30000 : 6000, 777);
  }
  m_File.Write(m_Builder.Build());
  const size_t end = is_text ? m_Builder.FooterAt : m_Builder.EssenceEnd;
  std::mt19937 random(seed);
  std::vector<size_t> cuts;
  for (int i = 0; i < 1000; ++i) cuts.push_back(m_Builder.EssenceAt + random() % (end - m_Builder.EssenceAt));
  std::sort(cuts.rbegin(), cuts.rend());
  const std::vector<Bytes> pieces = Pieces(m_Builder);
  for (const size_t cut : cuts) {
    SCOPED_TRACE("cut at " + std::to_string(cut));
    m_File.Truncate(cut);
    const Outcome outcome = Try(cut);
    if (is_text)
      ASSERT_GE(outcome.Read.size(), cut >= m_Builder.EssenceEnd ? 1U : 0U);
    else
      ASSERT_EQ(outcome.Read.size(), WholeFrames(m_Builder, cut));
    ASSERT_LE(outcome.Read.size(), pieces.size());
    ASSERT_TRUE(std::equal(outcome.Read.begin(), outcome.Read.end(), pieces.begin()));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ReaderRobustness,
    testing::Values(Sample{"Picture", MxfBuilder::JP2K, false}, Sample{"StereoscopicPicture", MxfBuilder::JP2KS, false},
                    Sample{"MPEG2", MxfBuilder::MPEG2, false}, Sample{"Sound", MxfBuilder::PCM, false},
                    Sample{"TimedText", MxfBuilder::TimedText, false}, Sample{"Data", MxfBuilder::DCData, false},
                    Sample{"Atmos", MxfBuilder::Atmos, false}, Sample{"EncryptedPicture", MxfBuilder::JP2K, true},
                    Sample{"EncryptedStereoscopicPicture", MxfBuilder::JP2KS, true},
                    Sample{"EncryptedMPEG2", MxfBuilder::MPEG2, true}, Sample{"EncryptedSound", MxfBuilder::PCM, true},
                    Sample{"EncryptedTimedText", MxfBuilder::TimedText, true},
                    Sample{"EncryptedData", MxfBuilder::DCData, true},
                    Sample{"EncryptedAtmos", MxfBuilder::Atmos, true}),
    [](const auto& sample) { return sample.param.Name; });

}  // namespace
