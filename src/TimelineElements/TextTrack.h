// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITimelineTrack.h>

#include <Ferro/FileReader.h>
#include <Ferro/Mutex.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/TimedTextDescriptor.h>
#include <QUIRE/UL.h>
#include <QUIRE/WriterInfo.h>

#include <list>
#include <map>
#include <string>

namespace QUIRE::TimedText {
class MXFReader;
}

namespace Strata {

/// What a track does about an ST 429-5 file whose random index pack lists fewer partitions than its resources need.
enum class ShortIndexPack {
  Assert,  ///< for a host that makes tracks of files it has examined
  Refuse   ///< for files from outside: logged, QUIRE::RESULT_FORMAT
};

/// A track of timed text: an Interop subtitle document with its fonts and images beside it, or an ST 429-5 track file
/// with them inside. Initialisation loads all of it; the track then answers copies and has neither a ready nor a
/// dormant state. Mind: unless it is made with ShortIndexPack::Refuse, a file whose random index pack lists too few
/// partitions for its resources ends the process by an assertion; files from outside are never given to such a track.
///
/// InitWithFilename holds the buffer lock throughout. The getters do not lock: a caller that reads while another thread
/// may initialise brackets its reads with BufferLock and BufferUnlock, and asks EditRate, which locks too, outside.
class TextTimelineTrack : public ITimelineTrack {
 public:
  ~TextTimelineTrack() override;

  /// What the composition says of the track, set by its creator.
  void SetIdentity(TrackType_t type, ui32_t channel_id, const std::string& asset_name, const std::string& language);

  /// Loads the document and its resources. A file whose first four bytes are those of an MXF key is taken for ST 429-5,
  /// any other for Interop. A second call loads anew and keeps nothing of the first.
  /// @return RESULT_OK; QUIRE::RESULT_FORMAT for a file of fewer than 16 bytes; what opening, reading and decoding
  /// return. A resource of an ST 429-5 file that cannot be read is logged and ends the loading with its failure. A
  /// resource of an Interop document that cannot be read is logged and left out, and so is one whose name is absolute or
  /// has a step "..", or which is a link that leads out of the document's folder. After a failure the track is not to be
  /// used.
  Result_t InitWithFilename(const std::string& filename, const ui32_t& entry_point, const ui32_t& duration) override;
  void MakeReady() override {}
  bool MakeDormant() override { return true; }

  const UUID& AssetID() const override { return m_AssetID; }
  TrackType_t TrackType() const override { return m_TrackType; }
  ui32_t ChannelID() const override { return m_ChannelID; }
  ui32_t EntryPoint() const override { return m_EntryPoint; }
  ui32_t Duration() const override { return m_Duration; }
  /// As given at construction; neither form of file changes it.
  ui32_t IntrinsicDuration() const override { return m_IntrinsicDuration; }
  /// Of an ST 429-5 file; no value for Interop.
  const QUIRE::Rational& EditRate() const override;
  const std::string& AssetName() const override { return m_AssetName; }
  const std::string& Language() const override { return m_Language; }
  void SetSpanDuration(const ui32_t& duration) override { m_SpanDuration = duration; }
  ui32_t GetSpanDuration() const override { return m_SpanDuration; }

  void ReadyFrameAtLocation(ui32_t) override {}
  void BufferLock() override { m_Lock.Lock(); }
  void BufferUnlock() override { m_Lock.Unlock(); }

  const UUID& KeyID() const override { return m_KeyID; }
  ui32_t ImageWidth() const override { return 0; }
  ui32_t ImageHeight() const override { return 0; }
  bool HasStereoImage() const override { return false; }
  ui32_t SampleRate() const override { return 0; }
  ui32_t SampleSize() const override { return 0; }
  ui32_t ChannelCount() const override { return 0; }
  const QUIRE::UL& ChannelAssignment() const override { return m_ChannelAssignment; }
  const std::string& MCALabelString() const override { return m_MCALabelString; }

  Cairn::DCPFormat_t TextEssenceFormat() const override { return m_Format; }
  bool GetTimedTextData(QUIRE::TimedText::FrameBuffer& out) const override;
  bool AncillaryResourceIDList(UUIDList& out) const override;
  bool AncillaryResourceNameList(Ferro::ArchivableList<Ferro::ArchivableString>& out) const override;
  bool GetTimedTextResourceByID(const UUID& id, QUIRE::TimedText::FrameBuffer& out) const override;
  bool GetTimedTextResourceByName(const std::string& name, QUIRE::TimedText::FrameBuffer& out) const override;

 protected:
  /// @param intrinsic_duration  edit units that the composition says the asset has
  TextTimelineTrack(ui32_t intrinsic_duration, ShortIndexPack short_index_pack);

 private:
  Result_t InitWithST429_5Filename(const std::string& filename, Ferro::fsize_t file_size);
  Result_t LoadST429_5Resource(QUIRE::TimedText::MXFReader& reader,
                               const QUIRE::TimedText::TimedTextResourceDescriptor& resource, ui32_t size_hint);
  Result_t InitWithInteropFilename(const Ferro::FileReader& file);
  void LoadInteropResource(const std::string& document, const std::string& name);
  void DropResources();

  QUIRE::UL m_ChannelAssignment;
  std::string m_MCALabelString;
  UUID m_AssetID;
  QUIRE::Rational m_EditRate;
  std::string m_Filename;
  QUIRE::WriterInfo m_Info;
  QUIRE::TimedText::TimedTextDescriptor m_Desc;
  ui32_t m_EntryPoint = 0;
  ui32_t m_Duration = 0;
  ui32_t m_IntrinsicDuration;
  ShortIndexPack m_ShortIndexPack;
  ui32_t m_SpanDuration = 0;
  std::string m_AssetName;
  std::string m_Language;
  UUID m_KeyID;
  TrackType_t m_TrackType = TRKT_ON_SCREEN_TEXT;
  Cairn::DCPFormat_t m_Format = Cairn::DFT_NONE;
  ui32_t m_ChannelID = 0;
  mutable Ferro::Mutex m_Lock;
  QUIRE::TimedText::FrameBuffer m_TextResource;
  std::map<UUID, QUIRE::TimedText::FrameBuffer> m_AncillaryResourceIdMap;           // of an ST 429-5 file
  std::list<UUID> m_AncillaryResourceIdList;                                        // its keys, as loaded
  std::map<std::string, QUIRE::TimedText::FrameBuffer> m_AncillaryResourceNameMap;  // of an Interop document
  std::list<std::string> m_AncillaryResourceNameList;                               // its keys, as loaded
};

/// The text track as the timeline holds it: text comes through the operations for timed text, not as frames.
class TextTimelineElement final : public TextTimelineTrack {
 public:
  explicit TextTimelineElement(ui32_t intrinsic_duration, ShortIndexPack short_index_pack = ShortIndexPack::Assert)
      : TextTimelineTrack(intrinsic_duration, short_index_pack) {}
  ~TextTimelineElement() override;

  ui32_t FrameBufferSize() const override { return 0; }
  const QUIRE::FrameBuffer& FrameBuffer() const override { return m_TmpFB; }
  ui32_t REyeFrameBufferSize() const override { return 0; }
  const QUIRE::FrameBuffer& REyeFrameBuffer() const override { return m_TmpFB; }

 private:
  QUIRE::FrameBuffer m_TmpFB;  // always empty
};

}  // namespace Strata
