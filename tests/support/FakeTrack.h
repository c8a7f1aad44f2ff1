// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITimelineTrack.h>

#include <Ferro/UUID.h>
#include <QUIRE/FrameBuffer.h>

#include <functional>
#include <string>
#include <utility>

namespace testsupport {

/// A track without a file: it says of itself what the test sets, and counts what it is asked to do.
class FakeTrack : public Strata::ITimelineTrack {
 public:
  using ui32_t = Ferro::ui32_t;

  struct Facts {
    Ferro::UUID AssetID;
    Ferro::UUID KeyID;  ///< no value: plain essence
    ui32_t EntryPoint = 0;
    ui32_t Duration = 0;
    ui32_t IntrinsicDuration = 0;
    QUIRE::Rational EditRate{24, 1};
    std::string AssetName;
    std::string Language;
    ui32_t ImageWidth = 0;
    ui32_t ImageHeight = 0;
    bool HasStereoImage = false;
    ui32_t ChannelCount = 0;
    QUIRE::UL ChannelAssignment;
    std::string MCALabelString;
    bool AlwaysPutToRest = false;  ///< MakeDormant answers true even at rest, as silence and text do
  };
  struct CallCounts {
    ui32_t MakeReady = 0;
    ui32_t MakeDormant = 0;
    ui32_t SetSpanDuration = 0;
  };

  FakeTrack() = default;
  explicit FakeTrack(Facts facts) : Is(std::move(facts)) {}
  ~FakeTrack() override {
    if (OnDelete) OnDelete();
  }

  Facts Is;
  CallCounts Calls;
  bool Ready = false;
  std::function<void()> OnDelete;

  [[nodiscard]] Strata::Result_t InitWithFilename(const std::string& /*filename*/, const ui32_t& entry_point,
                                                  const ui32_t& duration) override {
    Is.EntryPoint = entry_point;
    Is.Duration = duration;
    return Ferro::RESULT_OK;
  }
  void MakeReady() override {
    ++Calls.MakeReady;
    Ready = true;
  }
  bool MakeDormant() override {
    ++Calls.MakeDormant;
    return std::exchange(Ready, false) || Is.AlwaysPutToRest;
  }

  [[nodiscard]] const Ferro::UUID& AssetID() const override { return Is.AssetID; }
  [[nodiscard]] Strata::TrackType_t TrackType() const override { return Strata::TRKT_IMAGE; }
  [[nodiscard]] ui32_t ChannelID() const override { return 0; }
  [[nodiscard]] ui32_t EntryPoint() const override { return Is.EntryPoint; }
  [[nodiscard]] ui32_t Duration() const override { return Is.Duration; }
  [[nodiscard]] ui32_t IntrinsicDuration() const override { return Is.IntrinsicDuration; }
  [[nodiscard]] const QUIRE::Rational& EditRate() const override { return Is.EditRate; }
  [[nodiscard]] const std::string& AssetName() const override { return Is.AssetName; }
  [[nodiscard]] const std::string& Language() const override { return Is.Language; }
  void SetSpanDuration(const ui32_t& duration) override {
    ++Calls.SetSpanDuration;
    m_SpanDuration = duration;
  }
  [[nodiscard]] ui32_t GetSpanDuration() const override { return m_SpanDuration; }

  void ReadyFrameAtLocation(ui32_t /*position*/) override {}
  [[nodiscard]] ui32_t FrameBufferSize() const override { return m_Frame.Size(); }
  [[nodiscard]] const QUIRE::FrameBuffer& FrameBuffer() const override { return m_Frame; }
  void BufferLock() override {}
  void BufferUnlock() override {}

  [[nodiscard]] const Ferro::UUID& KeyID() const override { return Is.KeyID; }
  [[nodiscard]] ui32_t ImageWidth() const override { return Is.ImageWidth; }
  [[nodiscard]] ui32_t ImageHeight() const override { return Is.ImageHeight; }
  [[nodiscard]] bool HasStereoImage() const override { return Is.HasStereoImage; }
  [[nodiscard]] ui32_t REyeFrameBufferSize() const override { return 0; }
  [[nodiscard]] const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return m_Frame; }
  [[nodiscard]] ui32_t SampleRate() const override { return 0; }
  [[nodiscard]] ui32_t SampleSize() const override { return 0; }
  [[nodiscard]] ui32_t ChannelCount() const override { return Is.ChannelCount; }
  [[nodiscard]] const QUIRE::UL& ChannelAssignment() const override { return Is.ChannelAssignment; }
  [[nodiscard]] const std::string& MCALabelString() const override { return Is.MCALabelString; }

  [[nodiscard]] Cairn::DCPFormat_t TextEssenceFormat() const override { return Cairn::DFT_NONE; }
  [[nodiscard]] bool GetTimedTextData(QUIRE::TimedText::FrameBuffer& /*out*/) const override { return false; }
  [[nodiscard]] bool AncillaryResourceIDList(Ferro::UUIDList& /*out*/) const override { return false; }
  [[nodiscard]] bool AncillaryResourceNameList(Ferro::ArchivableList<Ferro::ArchivableString>& /*out*/) const override {
    return false;
  }
  [[nodiscard]] bool GetTimedTextResourceByID(const Ferro::UUID& /*id*/,
                                              QUIRE::TimedText::FrameBuffer& /*out*/) const override {
    return false;
  }
  [[nodiscard]] bool GetTimedTextResourceByName(const std::string& /*name*/,
                                                QUIRE::TimedText::FrameBuffer& /*out*/) const override {
    return false;
  }

 private:
  ui32_t m_SpanDuration = 0;
  QUIRE::FrameBuffer m_Frame;
};

}  // namespace testsupport
