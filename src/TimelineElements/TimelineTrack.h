// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TimelineElements/EssenceReaderThread.h"
#include "TimelineElements/Readiness.h"
#include "TimelineElements/TextlessTrack.h"
#include "TimelineElements/WholeSampleRate.h"

#include <Ferro/ILogSink.h>
#include <Ferro/mem_ptr.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/WriterInfo.h>

#include <new>
#include <string>

namespace Strata {

/// A track whose essence lies in a track file. Dormant, it knows what the file says of itself; ready, it has the file
/// open and a thread that reads requested frames ahead.
///
/// InitWithFilename, MakeReady and MakeDormant lock m_Lock. The frame operations do not: they belong to one transport
/// thread, which takes no frames while the track is made dormant.
///
/// @tparam ReaderThreadT  an EssenceReaderThread of the next two
/// @tparam TrackFileT     a track-file reader with FrameBufferSize() and FillDescriptor(DescriptorT&)
/// @tparam FrameBufferT   what it reads into
/// @tparam DescriptorT    what it says of its essence
template <class ReaderThreadT, class TrackFileT, class FrameBufferT, class DescriptorT>
class TimelineTrack : public TextlessTrack, public Readiness {
 public:
  ~TimelineTrack() override {
    if (!m_ReaderThread.empty()) StopReaderThread();
    m_TrackFile.set(nullptr);
  }

  /// What the composition says of the track, set by its creator.
  void SetIdentity(TrackType_t type, ui32_t channel_id, const std::string& asset_name, const std::string& language) {
    m_TrackType = type;
    m_ChannelID = channel_id;
    m_AssetName = asset_name;
    m_Language = language;
  }

  /// What the file says of its essence, from InitWithFilename on.
  [[nodiscard]] const DescriptorT& Descriptor() const { return m_Desc; }

  /// On failure nothing of the file is kept but, from the writer information on, what was read before.
  Result_t InitWithFilename(const std::string& filename, const ui32_t& entry_point, const ui32_t& duration) override {
    Ferro::AutoMutex lock(m_Lock);
    FERRO_ASSERT(m_TrackFile.empty() && m_ReaderThread.empty());
    TrackFileT reader;
    Result_t result = reader.OpenRead(filename);
    if (result.Success()) result = reader.FillWriterInfo(m_Info);
    if (result.Failure()) return result;

    m_AssetID = m_Info.AssetUUID;
    if (m_Info.EncryptedEssence) m_KeyID = m_Info.CryptographicKeyID;
    static_cast<void>(reader.FillDescriptor(m_Desc));
    SetEssenceParameters(reader);
    m_Filename = filename;
    m_EntryPoint = entry_point;
    m_Duration = duration;
    return Ferro::RESULT_OK;
  }

  void MakeReady() override {
    Ferro::AutoMutex lock(m_Lock);
    FERRO_ASSERT(!m_Filename.empty());
    if (!m_TrackFile.empty()) {
      FERRO_ASSERT(!m_ReaderThread.empty());
      return;
    }
    FERRO_ASSERT(m_ReaderThread.empty());
    const Result_t result = StartReader();
    if (result.Success()) return;
    m_ReaderThread.set(nullptr);
    m_TrackFile.set(nullptr);
    try {
      Ferro::DefaultLogSink().Error("%s: %s\n", m_Filename.c_str(), result.Label());
    } catch (const std::bad_alloc&) {
      return;  // where memory is out, the line is lost
    }
  }

  bool MakeDormant() override {
    Ferro::AutoMutex lock(m_Lock);
    if (m_TrackFile.empty()) {
      FERRO_ASSERT(m_ReaderThread.empty());
      return false;
    }
    FERRO_ASSERT(!m_ReaderThread.empty());
    StopReaderThread();
    m_TrackFile.set(nullptr);
    return true;
  }

  bool IsReady() const override {
    Ferro::AutoMutex lock(m_Lock);
    return !m_TrackFile.empty();
  }

  const UUID& AssetID() const override { return m_AssetID; }
  TrackType_t TrackType() const override { return m_TrackType; }
  ui32_t ChannelID() const override { return m_ChannelID; }
  ui32_t EntryPoint() const override { return m_EntryPoint; }
  ui32_t Duration() const override { return m_Duration; }
  ui32_t IntrinsicDuration() const override { return m_IntrinsicDuration; }
  /// Waits for an InitWithFilename that runs.
  const QUIRE::Rational& EditRate() const override {
    Ferro::AutoMutex lock(m_Lock);
    return m_EditRate;
  }
  const std::string& AssetName() const override { return m_AssetName; }
  const std::string& Language() const override { return m_Language; }
  void SetSpanDuration(const ui32_t& duration) override { m_SpanDuration = duration; }
  ui32_t GetSpanDuration() const override { return m_SpanDuration; }

  void ReadyFrameAtLocation(ui32_t position) override {
    FERRO_ASSERT_TEXT(!m_TrackFile.empty() && !m_ReaderThread.empty(),
                      "! m_TrackFile.empty() && ! m_ReaderThread.empty()");
    m_ReaderThread->RequestFrame(position);
  }
  void BufferLock() override {
    FERRO_ASSERT(!m_ReaderThread.empty());
    m_ReaderThread->BufferLock();
  }
  void BufferUnlock() override {
    FERRO_ASSERT(!m_ReaderThread.empty());
    m_ReaderThread->BufferUnlock();
  }

  const UUID& KeyID() const override { return m_KeyID; }
  ui32_t ImageWidth() const override { return m_ImageWidth; }
  ui32_t ImageHeight() const override { return m_ImageHeight; }
  ui32_t SampleRate() const override { return m_SampleRate; }
  ui32_t SampleSize() const override { return m_SampleSize; }
  ui32_t ChannelCount() const override { return m_ChannelCount; }
  const QUIRE::UL& ChannelAssignment() const override { return m_ChannelAssignment; }
  const std::string& MCALabelString() const override { return m_MCALabelString; }

 protected:
  TimelineTrack() = default;

  /// The frame in the front buffer; the transport reads it between BufferLock and BufferUnlock.
  [[nodiscard]] const FrameBufferT& CurrentFrame() const {
    FERRO_ASSERT(!m_ReaderThread.empty());
    return m_ReaderThread->GetCurrentFrameBuffer();
  }

 private:
  static constexpr ui32_t StopTimeout = 10000;  // milliseconds until a warning; the wait goes on

  /// Opens the file and starts the thread. Memory that is out is a failure like any other: the track stays dormant.
  Result_t StartReader() {
    try {
      m_TrackFile.set(new TrackFileT);
      const Result_t result = m_TrackFile->OpenRead(m_Filename);
      if (result.Failure()) return result;
      m_ReaderThread.set(new ReaderThreadT(m_TrackFile.get()));
      FERRO_ASSERT(m_ReaderThread->SetupFrameBuffers(m_TrackFile->FrameBufferSize()));
      // A refusal is logged there. The thread object then answers each request as a failed read.
      static_cast<void>(m_ReaderThread->Start("TimelineTrack"));
      return Ferro::RESULT_OK;
    } catch (const std::bad_alloc&) {
      return Ferro::RESULT_ALLOC;
    }
  }

  void StopReaderThread() {
    static_cast<void>(m_ReaderThread->Stop(StopTimeout, true));
    m_ReaderThread.set(nullptr);
  }

  void SetEssenceParameters([[maybe_unused]] const TrackFileT& reader) {
    m_EditRate = m_Desc.EditRate;
    m_IntrinsicDuration = m_Desc.ContainerDuration;
    if constexpr (requires { m_Desc.StoredWidth; }) {
      m_ImageWidth = m_Desc.StoredWidth;
      m_ImageHeight = m_Desc.StoredHeight;
    }
    if constexpr (requires { m_Desc.AudioSamplingRate; }) {
      m_SampleRate = WholeSampleRate(m_Desc.AudioSamplingRate);
      m_SampleSize = m_Desc.QuantizationBits;
      m_ChannelCount = m_Desc.ChannelCount;
      m_ChannelAssignment = reader.m_ChannelAssignment;
      m_MCALabelString = reader.m_MCALabelString;
    }
  }

 protected:
  Ferro::mem_ptr<TrackFileT> m_TrackFile;  // set exactly while ready, as m_ReaderThread is
  UUID m_AssetID;
  QUIRE::Rational m_EditRate;
  ui32_t m_ImageWidth = 0;
  ui32_t m_ImageHeight = 0;
  ui32_t m_SampleRate = 0;
  ui32_t m_SampleSize = 0;
  ui32_t m_ChannelCount = 0;
  QUIRE::UL m_ChannelAssignment;
  std::string m_MCALabelString;
  std::string m_Filename;
  QUIRE::WriterInfo m_Info;
  DescriptorT m_Desc;
  ui32_t m_EntryPoint = 0;
  ui32_t m_Duration = 0;
  ui32_t m_SpanDuration = 0;
  ui32_t m_IntrinsicDuration = 0;
  std::string m_AssetName;
  std::string m_Language;
  mutable Ferro::Mutex m_Lock;
  UUID m_KeyID;
  TrackType_t m_TrackType = TRKT_IMAGE;  // the value 0
  ui32_t m_ChannelID = 0;
  Ferro::mem_ptr<ReaderThreadT> m_ReaderThread;
};

}  // namespace Strata
