// SPDX-License-Identifier: BSD-3-Clause
#include "FrameVerifier.h"

#include <Ferro/FileText.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <algorithm>
#include <string>

namespace Tool {

namespace {

constexpr Ferro::ui32_t Capacity = 16 * 1024 * 1024;  // bytes; more than any frame that was delivered

bool Same(std::span<const Ferro::ui8_t> a, const QUIRE::FrameBuffer& b) {
  return a.size() == b.Size() && std::equal(a.begin(), a.end(), b.RoData());
}

}  // namespace

class FrameVerifier::Source {
 public:
  virtual ~Source() = default;
  virtual bool Open(const std::string& filename) = 0;
  virtual bool Holds(const DeliveredFrame& frame) = 0;
};

template <class Reader, class Buffer>
class FrameVerifier::SourceOf : public Source {
 public:
  bool Open(const std::string& filename) override {
    return m_Buffer.Capacity(Capacity).Success() && m_Reader.OpenRead(filename).Success();
  }
  bool Holds(const DeliveredFrame& frame) override {
    return m_Reader.ReadFrame(frame.FilePosition, m_Buffer).Success() && Same(frame.Frame, m_Buffer);
  }

 private:
  Reader m_Reader;
  Buffer m_Buffer;
};

class FrameVerifier::StereoSource : public Source {
 public:
  bool Open(const std::string& filename) override {
    return m_Buffer.Left.Capacity(Capacity).Success() && m_Buffer.Right.Capacity(Capacity).Success() &&
           m_Reader.OpenRead(filename).Success();
  }
  bool Holds(const DeliveredFrame& frame) override {
    return m_Reader.ReadFrame(frame.FilePosition, m_Buffer).Success() && Same(frame.Frame, m_Buffer.Left) &&
           Same(frame.RightEye, m_Buffer.Right);
  }

 private:
  QUIRE::JP2K::MXFSReader m_Reader;
  QUIRE::JP2K::SFrameBuffer m_Buffer;
};

class FrameVerifier::TextSource : public Source {
 public:
  bool Open(const std::string& filename) override { return m_Reader.OpenRead(filename).Success(); }
  bool Holds(const DeliveredFrame& frame) override {
    return m_Reader.ReadTimedTextResource(m_Buffer).Success() && Same(frame.Frame, m_Buffer);
  }

 private:
  QUIRE::TimedText::MXFReader m_Reader;
  QUIRE::TimedText::FrameBuffer m_Buffer;
};

/// An Interop subtitle document, which is its own file.
class FrameVerifier::DocumentSource : public Source {
 public:
  bool Open(const std::string& filename) override {
    m_Filename = filename;
    return true;
  }
  bool Holds(const DeliveredFrame& frame) override {
    std::string text;
    return Ferro::ReadFileIntoString(m_Filename, text, frame.Frame.size()).Success() &&
           std::equal(frame.Frame.begin(), frame.Frame.end(), text.begin(), text.end(),
                      [](Ferro::ui8_t a, char b) { return a == static_cast<Ferro::ui8_t>(b); });
  }

 private:
  std::string m_Filename;
};

FrameVerifier::FrameVerifier(const Cairn::AssetStore& store, const Sigil::KeyRing& keys)
    : m_Store(store), m_Keys(keys) {}
FrameVerifier::~FrameVerifier() = default;

bool FrameVerifier::Inspect(const DeliveredFrame& frame) {
  Source* source = SourceFor(frame.Track);
  if (source == nullptr) return true;
  ++m_Outcome.Compared;
  if (source->Holds(frame)) return true;
  ++m_Outcome.Different;
  if (m_Outcome.Differences.size() < MostDifferences)
    m_Outcome.Differences.push_back({frame.Channel, frame.ShowPosition, frame.FilePosition, frame.Track.AssetID()});
  return false;
}

Ferro::Result_t FrameVerifier::VerifyIntegrity(const DeliveredFrame& frame) {
  TrackKey* key = frame.Buffer == nullptr ? nullptr : KeyFor(frame.Track);
  if (key == nullptr) return Ferro::RESULT_OK;
  ++m_Outcome.Decrypted;
  // A text document is one for all edit units, and bears the first one's number.
  const Ferro::ui32_t position = frame.Track.TextEssenceFormat() == Cairn::DFT_NONE ? frame.FilePosition : 0;
  Ferro::Result_t result =
      QUIRE::VerifyFrame(key->Track, *frame.Buffer, key->Track.SequenceNumber(position), &key->Contexts);
  if (result.Success() && frame.RightBuffer != nullptr)
    result = QUIRE::VerifyFrame(key->Track, *frame.RightBuffer, key->Track.SequenceNumber(position, QUIRE::Eye::Right),
                                &key->Contexts);
  if (result.Failure()) ++m_Outcome.Altered;
  return result;
}

TrackKey* FrameVerifier::KeyFor(const Strata::ITimelineTrack& track) {
  const auto [place, is_new] = m_TrackKeys.try_emplace(track.AssetID(), nullptr);
  Cairn::AssetInfo info;
  if (is_new && m_Store.GetInfoForAssetID(track.AssetID(), info, false) == Ferro::RESULT_OK)
    place->second = m_Keys.Of(info.RealFilename);
  return place->second;
}

FrameVerifier::Source* FrameVerifier::SourceFor(const Strata::ITimelineTrack& track) {
  const auto known = m_Sources.find(track.AssetID());
  if (known != m_Sources.end()) return known->second.get();
  if (m_Sources.size() >= MostOpen) m_Sources.clear();
  return m_Sources.emplace(track.AssetID(), Open(track)).first->second.get();
}

std::unique_ptr<FrameVerifier::Source> FrameVerifier::Open(const Strata::ITimelineTrack& track) const {
  Cairn::AssetInfo info;
  if (!(m_Store.GetInfoForAssetID(track.AssetID(), info, false) == Ferro::RESULT_OK)) return nullptr;
  std::unique_ptr<Source> source;
  switch (info.FileType) {
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      if (track.HasStereoImage())
        source = std::make_unique<StereoSource>();
      else
        source = std::make_unique<SourceOf<QUIRE::JP2K::MXFReader, QUIRE::JP2K::FrameBuffer>>();
      break;
    case Cairn::FT_QUIRE_MPEG2_VES:
      source = std::make_unique<SourceOf<QUIRE::MPEG2::MXFReader, QUIRE::MPEG2::FrameBuffer>>();
      break;
    case Cairn::FT_QUIRE_PCM:
      source = std::make_unique<SourceOf<QUIRE::PCM::MXFReader, QUIRE::PCM::FrameBuffer>>();
      break;
    case Cairn::FT_QUIRE_DCDATA:
      source = std::make_unique<SourceOf<QUIRE::DCData::MXFReader, QUIRE::DCData::FrameBuffer>>();
      break;
    case Cairn::FT_QUIRE_ATMOS:
      source = std::make_unique<SourceOf<QUIRE::ATMOS::MXFReader, QUIRE::DCData::FrameBuffer>>();
      break;
    case Cairn::FT_QUIRE_TIMED_TEXT:
      source = std::make_unique<TextSource>();
      break;
    case Cairn::FT_TI_SUBTITLE:
      source = std::make_unique<DocumentSource>();
      break;
    default:
      return nullptr;
  }
  if (!source->Open(info.RealFilename)) return nullptr;
  return source;
}

}  // namespace Tool
