// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Result.h>
#include <Strata/TrackType.h>
#include <Strata/Types.h>

#include <Cairn/DCPFormat.h>
#include <Ferro/ArchivableList.h>
#include <Ferro/ArchivableString.h>
#include <QUIRE/Rational.h>
#include <QUIRE/UL.h>

#include <string>

namespace QUIRE {
class FrameBuffer;
namespace TimedText {
class FrameBuffer;
}
}  // namespace QUIRE

namespace Strata {

/// One track of one reel. The order of the virtual operations is fixed.
///
/// A track is initialised once, then made ready and dormant any number of times. What it says of itself is known from
/// initialisation on; frames are there only while it is ready. A frame is taken in five steps: ReadyFrameAtLocation,
/// BufferLock, FrameBuffer and FrameBufferSize, BufferUnlock. One thread uses a track; the reader thread behind it is
/// the track's own affair. Destroying a ready track first makes it dormant.
class STRATA_API ITimelineTrack {
 public:
  virtual ~ITimelineTrack();

  /// Reads what the file says of itself.
  /// @param filename     path of the track file or subtitle document
  /// @param entry_point  first edit unit of the file that plays
  /// @param duration     number of edit units that play
  [[nodiscard]] virtual Result_t InitWithFilename(const std::string& filename, const ui32_t& entry_point,
                                                  const ui32_t& duration) = 0;
  /// Opens the file and begins to prefetch. A failure is logged and leaves the track dormant (see IsReady), where the five
  /// operations that take a frame are a programming error (assertion); a later call tries again.
  virtual void MakeReady() = 0;
  /// Ends prefetching and closes the file. @return true when the track was ready.
  virtual bool MakeDormant() = 0;

  [[nodiscard]] virtual const UUID& AssetID() const = 0;
  [[nodiscard]] virtual TrackType_t TrackType() const = 0;
  /// Number among the tracks of this type, from 0.
  [[nodiscard]] virtual ui32_t ChannelID() const = 0;
  /// First edit unit of the file that plays.
  [[nodiscard]] virtual ui32_t EntryPoint() const = 0;
  /// Number of edit units that play.
  [[nodiscard]] virtual ui32_t Duration() const = 0;
  /// Number of edit units in the file.
  [[nodiscard]] virtual ui32_t IntrinsicDuration() const = 0;
  /// Edit units per second.
  [[nodiscard]] virtual const QUIRE::Rational& EditRate() const = 0;
  [[nodiscard]] virtual const std::string& AssetName() const = 0;
  /// RFC 5646 language tag; empty when not stated.
  [[nodiscard]] virtual const std::string& Language() const = 0;
  /// Sets for how many edit units the same text continues, reels that follow without a break included.
  virtual void SetSpanDuration(const ui32_t& duration) = 0;
  [[nodiscard]] virtual ui32_t GetSpanDuration() const = 0;

  /// Asks for the frame at `position`, in edit units from the start of the file.
  virtual void ReadyFrameAtLocation(ui32_t position) = 0;
  /// Bytes of the current frame, of the left eye when stereoscopic. Only between BufferLock and BufferUnlock.
  [[nodiscard]] virtual ui32_t FrameBufferSize() const = 0;
  /// The current frame, of the left eye when stereoscopic. Only between BufferLock and BufferUnlock.
  [[nodiscard]] virtual const QUIRE::FrameBuffer& FrameBuffer() const = 0;
  /// Waits for the frame that was asked for and keeps it in place.
  virtual void BufferLock() = 0;
  virtual void BufferUnlock() = 0;

  /// The content key of an encrypted file; no value for plain essence.
  [[nodiscard]] virtual const UUID& KeyID() const = 0;
  /// Stored pixels; 0 for anything but picture.
  [[nodiscard]] virtual ui32_t ImageWidth() const = 0;
  [[nodiscard]] virtual ui32_t ImageHeight() const = 0;
  [[nodiscard]] virtual bool HasStereoImage() const = 0;
  /// Bytes of the right eye's frame; 0 when not stereoscopic.
  [[nodiscard]] virtual ui32_t REyeFrameBufferSize() const = 0;
  /// The right eye's frame; the ordinary frame when not stereoscopic.
  [[nodiscard]] virtual const QUIRE::FrameBuffer& REyeFrameBuffer() const = 0;

  /// Audio samples per second; 0 for anything but sound.
  [[nodiscard]] virtual ui32_t SampleRate() const = 0;
  /// Bits per audio sample; 0 for anything but sound.
  [[nodiscard]] virtual ui32_t SampleSize() const = 0;
  /// Audio channels; 0 for anything but sound.
  [[nodiscard]] virtual ui32_t ChannelCount() const = 0;
  /// The channel-assignment label of the sound file (ST 429-2); may have no value.
  [[nodiscard]] virtual const QUIRE::UL& ChannelAssignment() const = 0;
  /// Sound configuration, for example "51(L,R,C,LFE,Ls,Rs)"; else empty.
  [[nodiscard]] virtual const std::string& MCALabelString() const = 0;

  // The rest serves timed text; every other track answers DFT_NONE or false and leaves the output.

  [[nodiscard]] virtual Cairn::DCPFormat_t TextEssenceFormat() const = 0;
  /// Answers the timed-text document.
  [[nodiscard]] virtual bool GetTimedTextData(QUIRE::TimedText::FrameBuffer& out) const = 0;
  /// Answers the identifiers of the document's fonts and images.
  [[nodiscard]] virtual bool AncillaryResourceIDList(UUIDList& out) const = 0;
  /// Answers the names of the document's fonts and images.
  [[nodiscard]] virtual bool AncillaryResourceNameList(Ferro::ArchivableList<Ferro::ArchivableString>& out) const = 0;
  /// Answers the bytes of one font or image.
  [[nodiscard]] virtual bool GetTimedTextResourceByID(const UUID& id, QUIRE::TimedText::FrameBuffer& out) const = 0;
  [[nodiscard]] virtual bool GetTimedTextResourceByName(const std::string& name,
                                                        QUIRE::TimedText::FrameBuffer& out) const = 0;

 protected:
  ITimelineTrack() = default;
  ITimelineTrack(const ITimelineTrack&) = default;
  ITimelineTrack& operator=(const ITimelineTrack&) = default;
};

/// Whether frames may be taken from a track: a track file is open from a MakeReady that could open it until MakeDormant;
/// silence and text are always ready. Called after IPlaylist::GetReaderForChannel, it reveals a file that vanished since
/// the show was loaded: its track stays dormant, and the host continues without it. Any thread may call it.
[[nodiscard]] STRATA_API bool IsReady(const ITimelineTrack& track);

}  // namespace Strata
