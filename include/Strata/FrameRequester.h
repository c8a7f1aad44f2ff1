// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/FrameLock.h>
#include <Strata/ITimelineTrack.h>
#include <Strata/Types.h>

#include <QUIRE/FrameBuffer.h>

#include <optional>

namespace Strata {

/// Takes the frames of one track, having the next one read while the present one is used.
///
///     Strata::FrameRequester picture(track);
///     for (ui32_t p = first; p != end; ++p) {
///       const auto frame = picture.Take(p, p + 1);  // asks for p + 1, then waits for p
///       if (frame.IsThere()) Show(track.FrameBuffer());
///     }                                             // here p + 1 may take the front
///
/// Who asks ahead without this class has to know: a request that fails or repeats the front's position is answered
/// without an exchange of buffers. The bracket after it may then show the frame of a later request, and so may every
/// bracket that follows, until all requests are answered. This class therefore compares each frame's number with the one
/// asked for. On the first that differs it stops asking ahead until every request is answered. It asks for nothing ahead
/// of a position that the front may hold already, which is every position until the first frame was taken. So each readable frame is shown under its own number, and each frame that
/// cannot be read is reported once, for itself alone.
///
/// Silence and text answer at once; their frame is always there. One thread uses an object and its track.
class FrameRequester {
 public:
  /// One frame, in place as long as the object exists.
  class [[nodiscard]] Frame {
   public:
    /// False when the frame cannot be read: what the track shows is then another frame, or none.
    [[nodiscard]] bool IsThere() const { return m_IsThere; }

   private:
    friend class FrameRequester;
    Frame(FrameRequester& requester, ui32_t position)
        : m_Lock(requester.m_Track), m_IsThere(requester.Answered(position)) {}

    FrameLock m_Lock;
    bool m_IsThere;
  };

  /// @param track  ready while the object is used, its destruction included; not used by anything else meanwhile
  explicit FrameRequester(ITimelineTrack& track) : m_Track(track) {}
  ~FrameRequester() { Settle(); }
  FrameRequester(const FrameRequester&) = delete;
  FrameRequester& operator=(const FrameRequester&) = delete;

  /// Asks for a frame unless it is asked for already, and does not wait for it. With several tracks, ask all of them
  /// before the first is taken: they then read at the same time. What was asked for before and never taken is dropped,
  /// which may wait for the file.
  /// @param position  edit units of the track file, as in ReadyFrameAtLocation
  void Ask(ui32_t position) {
    if (m_Asked == position) return;
    Settle();
    Request(position);
  }

  /// Waits for the frame at `position`, asking for it first where that was not done.
  /// @param next  the position that will be taken next, if it is known: it is read while this frame is used.
  Frame Take(ui32_t position, std::optional<ui32_t> next = std::nullopt) {
    Ask(position);
    m_Asked.reset();
    if (m_InStep && next && *next != position && position != m_Front) Request(*next);
    return Frame(*this, position);
  }

  /// Waits until every request is answered and drops the frames. To be called, or the object destroyed, before the track
  /// may be put to rest: before the playlist is asked for tracks at a position elsewhere.
  void Settle() {
    if (!m_Asked) return;
    const Frame dropped(*this, *m_Asked);
    m_Asked.reset();
    m_InStep = true;
  }

 private:
  void Request(ui32_t position) {
    m_Track.ReadyFrameAtLocation(position);
    m_Asked = position;
  }

  /// Within the lock: takes note of what the front shows.
  bool Answered(ui32_t position) {
    const QUIRE::FrameBuffer& front = m_Track.FrameBuffer();
    m_Front = front.FrameNumber();
    // Silence holds samples without a number, a buffer of a file before its first frame holds nothing.
    const bool unnumbered = m_Front == NoFrame && (front.Size() > 0 || m_Track.TextEssenceFormat() != Cairn::DFT_NONE);
    const bool is_there = m_Front == position || unnumbered;
    m_InStep = !m_Asked || (m_InStep && is_there);
    return is_there;
  }

  ITimelineTrack& m_Track;
  std::optional<ui32_t> m_Asked;  // the one request that no frame was taken for
  ui32_t m_Front = NoFrame;       // the number of the frame shown last
  bool m_InStep = false;  // the front is known, and each bracket shows its own request's frame if it can be read
};

}  // namespace Strata
