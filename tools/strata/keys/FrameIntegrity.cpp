// SPDX-License-Identifier: BSD-3-Clause
#include "FrameIntegrity.h"

#include "terminal/LogView.h"

#include <Ferro/FileReader.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace Tool {

namespace {

using Ferro::Result_t;
using Ferro::ui32_t;
using Ferro::ui64_t;

constexpr Ferro::fsize_t LargestFrame = 64 * 1024 * 1024;  // bytes; the largest profile allows 1.3 MB per eye
constexpr ui32_t BatchSize = 24;                           // edit units that a thread takes at a time
constexpr unsigned MostThreads = 16;

/// One thread's view of an encrypted file.
class FrameSource {
 public:
  virtual ~FrameSource() = default;
  /// False where it cannot be opened.
  virtual bool Open(const std::string& filename) = 0;
  [[nodiscard]] virtual const QUIRE::TrackEncryption& Encryption() const = 0;
  [[nodiscard]] virtual ui32_t Duration() const = 0;
  virtual Result_t Verify(ui32_t frame, QUIRE::FrameContexts& contexts) = 0;
};

template <class Reader, class Descriptor>
class SourceBase : public FrameSource {
 public:
  using Fill = Result_t (Reader::*)(Descriptor&) const;

  explicit SourceBase(Fill fill) : m_Fill(fill) {}

  bool Open(const std::string& filename) override {
    Ferro::FileReader file;
    if (file.OpenRead(filename).Failure()) return false;
    m_Capacity = static_cast<ui32_t>(std::min(file.Size(), LargestFrame));  // a frame is never larger than its file
    return m_Reader.OpenRead(filename).Success() && m_Reader.FillTrackEncryption(m_Encryption).Success() &&
           (m_Reader.*m_Fill)(m_Descriptor).Success();
  }
  [[nodiscard]] const QUIRE::TrackEncryption& Encryption() const override { return m_Encryption; }
  [[nodiscard]] ui32_t Duration() const override { return m_Descriptor.ContainerDuration; }

 protected:
  /// What a file without integrity codes has is not asked for.
  QUIRE::HMACContext* IntegrityOf(QUIRE::FrameContexts& contexts) const {
    return m_Encryption.UsesHMAC ? &contexts.Integrity : nullptr;
  }

  Reader m_Reader;
  Descriptor m_Descriptor;
  ui32_t m_Capacity = 0;  // bytes

 private:
  const Fill m_Fill;
  QUIRE::TrackEncryption m_Encryption;
};

template <class Reader, class Descriptor, class Buffer>
class SourceOf : public SourceBase<Reader, Descriptor> {
 public:
  using SourceBase<Reader, Descriptor>::SourceBase;

  Result_t Verify(ui32_t frame, QUIRE::FrameContexts& contexts) override {
    if (m_Buffer.Capacity() == 0)
      if (const Result_t result = m_Buffer.Capacity(this->m_Capacity); result.Failure()) return result;
    return this->m_Reader.ReadFrame(frame, m_Buffer, &contexts.Decryption, this->IntegrityOf(contexts));
  }

 private:
  Buffer m_Buffer;
};

class StereoSource : public SourceBase<QUIRE::JP2K::MXFSReader, QUIRE::JP2K::PictureDescriptor> {
 public:
  using SourceBase::SourceBase;

  Result_t Verify(ui32_t frame, QUIRE::FrameContexts& contexts) override {
    for (QUIRE::FrameBuffer* buffer : {&m_Buffer.Left, &m_Buffer.Right})
      if (buffer->Capacity() == 0)
        if (const Result_t result = buffer->Capacity(m_Capacity); result.Failure()) return result;
    return m_Reader.ReadFrame(frame, m_Buffer, &contexts.Decryption, IntegrityOf(contexts));
  }

 private:
  QUIRE::JP2K::SFrameBuffer m_Buffer;
};

/// A text document lies in the file once, for all edit units.
class TextSource : public SourceBase<QUIRE::TimedText::MXFReader, QUIRE::TimedText::TimedTextDescriptor> {
 public:
  using SourceBase::SourceBase;

  [[nodiscard]] ui32_t Duration() const override { return 1; }
  Result_t Verify(ui32_t, QUIRE::FrameContexts& contexts) override {
    QUIRE::TimedText::FrameBuffer buffer;
    Result_t result = m_Reader.ReadTimedTextResource(buffer, &contexts.Decryption, IntegrityOf(contexts));
    for (const auto& resource : m_Descriptor.ResourceList) {
      if (result.Failure()) return result;
      result = m_Reader.ReadAncillaryResource(resource.ResourceID, buffer, &contexts.Decryption, IntegrityOf(contexts));
    }
    return result;
  }
};

std::unique_ptr<FrameSource> MakeSource(Cairn::FileType_t type) {
  using namespace QUIRE;
  switch (type) {
    case Cairn::FT_QUIRE_JP2K_J2C:
      return std::make_unique<SourceOf<JP2K::MXFReader, JP2K::PictureDescriptor, JP2K::FrameBuffer>>(
          &JP2K::MXFReader::FillPictureDescriptor);
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return std::make_unique<StereoSource>(&JP2K::MXFSReader::FillPictureDescriptor);
    case Cairn::FT_QUIRE_MPEG2_VES:
      return std::make_unique<SourceOf<MPEG2::MXFReader, MPEG2::VideoDescriptor, MPEG2::FrameBuffer>>(
          &MPEG2::MXFReader::FillVideoDescriptor);
    case Cairn::FT_QUIRE_PCM:
      return std::make_unique<SourceOf<PCM::MXFReader, PCM::AudioDescriptor, PCM::FrameBuffer>>(
          &PCM::MXFReader::FillAudioDescriptor);
    case Cairn::FT_QUIRE_DCDATA:
      return std::make_unique<SourceOf<DCData::MXFReader, DCData::DCDataDescriptor, DCData::FrameBuffer>>(
          &DCData::MXFReader::FillDCDataDescriptor);
    case Cairn::FT_QUIRE_ATMOS:
      return std::make_unique<SourceOf<ATMOS::MXFReader, ATMOS::AtmosDescriptor, DCData::FrameBuffer>>(
          &ATMOS::MXFReader::FillAtmosDescriptor);
    case Cairn::FT_QUIRE_TIMED_TEXT:
      return std::make_unique<TextSource>(&TimedText::MXFReader::FillTimedTextDescriptor);
    default:
      return nullptr;
  }
}

std::unique_ptr<FrameSource> OpenSource(const EncryptedFile& file) {
  auto source = MakeSource(file.Type);
  return source && source->Open(file.Filename) ? std::move(source) : nullptr;
}

/// Some edit units of one file.
struct Batch {
  size_t File = 0;
  ui32_t First = 0;
  ui32_t Count = 0;
};

/// The work of all threads. Each keeps a reader and contexts of its own for the file that it looks at.
class Verification {
 public:
  Verification(const std::vector<EncryptedFile>& files, const Sigil::KeyRing& keys) : m_Files(files), m_Keys(keys) {
    for (const EncryptedFile& file : files) Plan(file);
  }

  std::vector<FrameIntegrity> Run(const std::function<bool(ui64_t, ui64_t)>& go_on) {
    const auto wanted = static_cast<unsigned>(std::min<size_t>(m_Batches.size(), MostThreads));
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, std::max(wanted, 1U));
    {
      std::vector<std::jthread> helpers;
      for (unsigned i = 1; i < count; ++i) helpers.emplace_back([this] { Work({}); });
      Work(go_on);
    }
    return std::move(m_Outcomes);
  }

 private:
  void Plan(const EncryptedFile& file) {
    FrameIntegrity& outcome = m_Outcomes.emplace_back();
    const auto source = OpenSource(file);
    if (!source) return;
    outcome.IsEncrypted = source->Encryption().IsEncrypted;
    outcome.HasKey = outcome.IsEncrypted && m_Keys.Has(source->Encryption().KeyID);
    outcome.HasCodes = source->Encryption().UsesHMAC;
    outcome.HasStandardSequence = source->Encryption().HasStandardSequence();
    if (!outcome.HasKey) return;
    const ui32_t duration = source->Duration();
    for (ui32_t first = 0; first < duration; first += std::min(BatchSize, duration - first))
      m_Batches.push_back({m_Outcomes.size() - 1, first, std::min(BatchSize, duration - first)});
    m_Total += duration;
  }

  void Work(const std::function<bool(ui64_t, ui64_t)>& go_on) {
    std::unique_ptr<FrameSource> source;
    QUIRE::FrameContexts contexts;
    Result_t opening = Ferro::RESULT_OK;
    size_t opened = m_Files.size();
    for (size_t at = m_Next++; at < m_Batches.size() && !m_IsStopped; at = m_Next++) {
      const Batch& batch = m_Batches[at];
      if (opened != batch.File) {
        opened = batch.File;
        source = OpenSource(m_Files[opened]);
        opening = source ? m_Keys.FillContexts(source->Encryption(), contexts) : Ferro::RESULT_READFAIL;
      }
      for (ui32_t frame = batch.First; frame < batch.First + batch.Count; ++frame)
        Note(batch.File, frame, opening.Success() ? source->Verify(frame, contexts) : opening);
      m_Done += batch.Count;
      if (go_on && !go_on(m_Done, m_Total)) m_IsStopped = true;
    }
  }

  void Note(size_t file, ui32_t frame, const Result_t& result) {
    const std::lock_guard lock(m_Mutex);
    FrameIntegrity& outcome = m_Outcomes[file];
    ++outcome.Frames;
    if (result.Success()) return;
    if (outcome.Bad++ > 0 && frame > outcome.FirstBad) return;
    outcome.FirstBad = frame;
    outcome.Reason = result.Label();
  }

  const std::vector<EncryptedFile>& m_Files;
  const Sigil::KeyRing& m_Keys;
  std::vector<Batch> m_Batches;
  ui64_t m_Total = 0;
  std::atomic<size_t> m_Next = 0;
  std::atomic<ui64_t> m_Done = 0;
  std::atomic<bool> m_IsStopped = false;
  std::mutex m_Mutex;
  std::vector<FrameIntegrity> m_Outcomes;  // guarded by m_Mutex while threads work
};

}  // namespace

std::vector<FrameIntegrity> VerifyFrames(const std::vector<EncryptedFile>& files, const Sigil::KeyRing& keys,
                                         const std::function<bool(ui64_t, ui64_t)>& go_on) {
  const QuietLog log;  // what is wrong is told by the outcomes
  return Verification(files, keys).Run(go_on);
}

}  // namespace Tool
