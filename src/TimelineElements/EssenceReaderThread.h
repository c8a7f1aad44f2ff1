// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The frame hand-over between the transport and a track's reader thread, and why it is right.
//
// Two parties. The *thread* runs ThreadBody. The *transport* is the one other thread that requests frames and brackets
// its reading of them with BufferLock and BufferUnlock. (The owner, who starts and stops the thread, does so outside
// any bracket and while the transport makes no call.)
//
//        transport                                            thread
//        RequestFrame(p)   queue p  ── NewFrameEvent ──►      take p; read it into the back buffer
//        BufferLock()      ◄──────────── WriteEvent ──        [ReadEvent] exchange back and front
//          read the front buffer
//        BufferUnlock()             ─── ReadEvent ────►       may exchange once more
//
// States of the thread, by what it holds and what it waits for:
//
//   Idle      waits for NewFrameEvent; holds nothing
//   Taking    holds m_FBMutex, takes one position
//   Reading   holds the back buffer, and no lock
//   Full      waits for ReadEvent; holds the back buffer with a whole frame in it, and no lock
//   Exchange  holds m_FBMutex and both pointers
//   Ended     holds nothing, touches nothing any more
//
// The thread takes m_FBMutex for a few instructions at a time, never while it reads a file or waits for an event. The
// transport holds it through its bracket. Each event is counted: a post made before its pend is kept for it. ReadEvent
// has a ceiling of 1, because "the front was released since the last exchange" is a yes or a no; the other two have
// none.
//
// Who may touch what:
//   m_FBp_0, m_FBp_1 and m_CurrentPosition are written by the thread alone and under m_FBMutex. So the thread may read
//   them without it, and everyone else with it. The back buffer's contents belong to the thread, always. The front
//   buffer's contents are read by the transport, inside its bracket, and are written by nobody: they were written when
//   the buffer was the back buffer, before the exchange, which happens before every later bracket by way of the mutex.
//
// 1. No buffer is read while it is exchanged or written. A bracket holds m_FBMutex and so does an exchange: they
//    exclude each other. Inside a bracket the pointers therefore stand still, and the thread writes through m_FBp_0
//    only, which is never the buffer that m_FBp_1 names, since SetupFrameBuffers makes them differ and an exchange
//    keeps that.
//
// 2. No request is lost and none is served twice. RequestFrame adds the position before it posts NewFrameEvent, and the
//    event loses no post: at any time there are at least as many positions queued as posts of requests not yet
//    consumed. Each wake-up consumes one post and takes one position. The one post without a position is ThreadStop's,
//    and it follows the store of m_RunOK = false: a thread that consumed it sees the flag down before it looks at the
//    queue. A thread that consumed a request's post instead ends as well, or finds the position. Hence the assertion.
//
// 3. Every request is answered by exactly one post of WriteEvent, unless the thread is stopped first: the loop has
//    three ways from Taking back to Idle (current already, failed, exchanged) and each posts once. The event loses no
//    post. So the n-th bracket begins after the n-th request is finished, and a bracket beyond the requests waits.
//
// 4. The thread never waits for ReadEvent in vain. The constructor posts it for the first exchange. Let an exchange
//    have consumed it. The exchange then posts WriteEvent; the transport that made the request will bracket, and its
//    BufferUnlock posts ReadEvent again; nothing but an exchange consumes it. A post lost at the ceiling is lost
//    because the event is up, and the pend finds it up. A transport that never brackets keeps the thread in Full,
//    asleep and with the frame ready; that is what pausing is.
//
// 5. No deadlock at stop. ThreadStop first lowers m_RunOK, then posts NewFrameEvent and ReadEvent. Idle and Full are
//    the only states that wait for an event, and each is left by one of these posts (or by an earlier one; if the post
//    is lost at the ceiling, the event is up and nobody waits for it). After either wait the thread looks at m_RunOK
//    with m_FBMutex held, before anything else, and ends. Reading ends when the file system answers; what follows is
//    Full, or a jump to the loop's head, where m_RunOK is read. For m_FBMutex it waits no longer than the transport's
//    bracket, and there is none: the owner stops outside brackets. The lock order is trivial, there being one lock and
//    no wait under it.
//
// 6. What a bracket shows. Write F(n) for the position the front holds when request n is finished: its own position,
//    except after a failed read, where it is F(n-1). By 3, bracket n shows F(m) for some m >= n that was requested.
//    - With one request at a time (request, lock, unlock) there is no m > n: the bracket shows F(n).
//    - With requests ahead, all for new positions and readable. Count from a moment of rest, when every request so far
//      was answered and bracketed: ReadEvent is up, once, thanks to its ceiling. Until bracket n ends it has been up n
//      times (at rest, and after the brackets 1 to n-1), and the exchanges 1 to n consume just these. So exchange n+1
//      comes after the end of bracket n; and bracket n+1 comes after exchange n+1, which posts the WriteEvent it needs.
//      Exchanges and brackets alternate, and bracket n shows F(n). This is the normal run: the thread reads frame n+1
//      while the transport reads frame n.
//    - With requests ahead among which some fail or repeat the front's position, their WriteEvents come without an
//      exchange, and a bracket may run ahead of the exchange or behind it: it shows F(n) or a later request's frame.
//      It is a whole frame all the same, under its own number, because the number lies in the buffer and is written
//      with the contents. The shift lasts: as long as the transport keeps a request ahead, every later bracket may show
//      the frame of the next request in place of its own. Only rest ends it. A transport that asks ahead therefore
//      compares FrameNumber() with what it wants to show, and on the first difference asks for nothing more until every
//      request is answered, as Strata::FrameRequester does.
//
// 7. When the system refuses the thread, Start remembers it and RequestFrame answers at once as a failed read does: it
//    logs the failure and posts WriteEvent. So 3 holds without the thread. An exception in a read is a failed read too.

#include "TimelineElements/FrameBufferEyes.h"
#include "TimelineElements/PositionQueue.h"

#include <Strata/Result.h>
#include <Strata/Types.h>

#include <Ferro/Assert.h>
#include <Ferro/Event.h>
#include <Ferro/ILogSink.h>
#include <Ferro/Mutex.h>
#include <Ferro/Thread.h>
#include <Ferro/mem_ptr.h>

#include <atomic>
#include <exception>
#include <new>
#include <string>
#include <thread>
#include <utility>

namespace Strata {

/// What the hand-over is built on: a mutex with Lock and Unlock, and a counted event with Post and Pend. A test puts a
/// scheduler in their place, which runs the two parties through every interleaving.
struct SystemHandOver {
  using Mutex = Ferro::Mutex;
  using Event = Ferro::Event;
};

/// Reads requested frames of one track file ahead of the transport, into a pair of buffers.
///
/// @tparam TrackFileT    has `Result_t ReadFrame(ui32_t position, FrameBufferT&, nullptr, nullptr)`: one edit unit as
///                       it is stored, without decryption or integrity check.
/// @tparam FrameBufferT  a frame buffer, or a pair of them named Left and Right.
/// @tparam HandOverT     the mutex and events.
///
/// Construct, SetupFrameBuffers, Start; the owner calls Stop before it destroys the object.
template <class TrackFileT, class FrameBufferT, class HandOverT = SystemHandOver>
class EssenceReaderThread : public Ferro::Thread {
 public:
  /// @param track_file  an open reader that outlives the running thread; the thread alone reads from it meanwhile.
  explicit EssenceReaderThread(TrackFileT* track_file) : m_TrackFile(track_file) {
    m_ReadEvent.Post();  // the first exchange waits for no one: there is no front frame to be released
  }

  /// Creates both buffers, empty and numbered NoFrame, in place of any earlier ones. Before Start only.
  /// @param size  capacity of each buffer, of each eye of a stereoscopic one, in bytes. A capacity that cannot be had
  ///              shows in the frame reads, which then fail.
  /// @return true when the buffers exist.
  [[nodiscard]] bool SetupFrameBuffers(ui32_t size) {
    m_FrameBuffer_A.set(NewFrameBuffer(size));
    m_FrameBuffer_B.set(NewFrameBuffer(size));
    m_FBp_0 = m_FrameBuffer_A.get();
    m_FBp_1 = m_FrameBuffer_B.get();
    return m_FBp_0 != nullptr && m_FBp_1 != nullptr;
  }

  /// Starts the thread. When the system refuses, every request from then on is answered as a failed read.
  /// @return as Ferro::Thread::Start
  Result_t Start(const std::string& name) {
    const Result_t result = Thread::Start(name);
    if (!(result == Ferro::RESULT_STATE)) m_StartResult = result;  // a thread that runs already goes on serving
    return result;
  }

  /// Asks for the frame at `position`, in edit units of the track file. Returns at once; requests are served in order.
  void RequestFrame(ui32_t position) {
    if (m_StartResult.Failure()) {
      LogFailedRead(position, m_StartResult.Label());
      m_WriteEvent.Post();
      return;
    }
    // A request from inside the caller's own bracket finds the mutex in the caller's hands already.
    if (m_BracketOwner.load(std::memory_order_relaxed) == std::this_thread::get_id()) {
      m_NewPosition.push(position);
    } else {
      const Guard lock(m_FBMutex);
      m_NewPosition.push(position);
    }
    m_NewFrameEvent.Post();
  }

  /// Waits, without limit, until one more request is finished, and holds the front buffer still until BufferUnlock.
  void BufferLock() {
    m_WriteEvent.Pend();
    m_FBMutex.Lock();
    m_BracketOwner.store(std::this_thread::get_id(), std::memory_order_relaxed);
  }

  /// Releases the front buffer: the next frame may take its place.
  void BufferUnlock() {
    m_BracketOwner.store(std::thread::id(), std::memory_order_relaxed);
    m_FBMutex.Unlock();
    m_ReadEvent.Post();
  }

  /// The front buffer; its contents are valid between BufferLock and BufferUnlock.
  [[nodiscard]] const FrameBufferT& GetCurrentFrameBuffer() const {
    FERRO_ASSERT(m_FBp_1);
    return *m_FBp_1;
  }

  /// Bytes of the frame in the front buffer (of the left eye).
  [[nodiscard]] ui32_t GetCurrentFrameBufferSize() const { return LeftEye(GetCurrentFrameBuffer()).Size(); }

  Result_t ThreadInit() override { return Ferro::RESULT_OK; }

  /// Serves requests until it is stopped. The steps' names are those of the proof above.
  Result_t ThreadBody() override {
    while (m_RunOK) {
      m_NewFrameEvent.Pend();  // Idle
      ui32_t position = NoFrame;
      if (!TakeRequest(position)) break;
      if (position == m_CurrentPosition) {
        m_WriteEvent.Post();
        continue;
      }
      FERRO_ASSERT(m_TrackFile);
      if (!Read(position)) {  // Reading
        m_WriteEvent.Post();
        continue;
      }
      m_ReadEvent.Pend();  // Full
      if (!Exchange(position)) break;
      m_WriteEvent.Post();
    }
    return Ferro::RESULT_OK;
  }

  Result_t ThreadFini(Result_t result) override { return result; }

  Result_t ThreadStop() override {
    m_RunOK = false;
    m_NewFrameEvent.Post();
    m_ReadEvent.Post();
    return Ferro::RESULT_OK;
  }

 protected:
  using Mutex = typename HandOverT::Mutex;
  using Event = typename HandOverT::Event;

  /// Holds a mutex for the length of a scope.
  class [[nodiscard]] Guard {
   public:
    explicit Guard(Mutex& mutex) : m_Mutex(mutex) { m_Mutex.Lock(); }
    ~Guard() { m_Mutex.Unlock(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

   private:
    Mutex& m_Mutex;
  };

  static FrameBufferT* NewFrameBuffer(ui32_t size) {
    auto* buffer = new (std::nothrow) FrameBufferT;
    if (buffer != nullptr) {
      ForEachEye(*buffer, [size](auto& eye) {
        static_cast<void>(eye.Capacity(size));
        eye.FrameNumber(NoFrame);
      });
    }
    return buffer;
  }

  /// Reads into the back buffer. False, logged, when that fails; an exception, such as for memory that is out, is a
  /// failure too and ends here.
  bool Read(ui32_t position) {
    try {
      const Result_t result = m_TrackFile->ReadFrame(position, *m_FBp_0, nullptr, nullptr);
      if (result.Failure()) LogFailedRead(position, result.Label());
      return result.Success();
    } catch (const std::bad_alloc&) {
      LogFailedRead(position, Ferro::RESULT_ALLOC.Label());
    } catch (const std::exception& error) {
      LogFailedRead(position, error.what());
    } catch (...) {
      LogFailedRead(position, Ferro::RESULT_FAIL.Label());
    }
    return false;
  }

  /// One label for every kind of essence: log watchers search for it. Where memory is out, the line is lost
  /// rather than the answer.
  static void LogFailedRead(ui32_t position, const char* reason) {
    try {
      Ferro::DefaultLogSink().Error("%s (frame %d): %s\n", "IMG", static_cast<int>(position), reason);
    } catch (const std::exception&) {
      return;
    }
  }

  /// False when the thread is to end.
  bool TakeRequest(ui32_t& position) {
    const Guard lock(m_FBMutex);
    if (!m_RunOK) return false;
    FERRO_ASSERT(!m_NewPosition.empty());
    position = m_NewPosition.pop();
    return true;
  }

  /// False when the thread is to end; the frame just read is then dropped.
  bool Exchange(ui32_t position) {
    const Guard lock(m_FBMutex);
    if (!m_RunOK) return false;
    std::swap(m_FBp_0, m_FBp_1);
    m_CurrentPosition = position;
    return true;
  }

  ui32_t m_CurrentPosition = NoFrame;  // of the frame in the front buffer; written under m_FBMutex by the thread alone
  PositionQueue m_NewPosition;         // guarded by m_FBMutex
  std::atomic<bool> m_RunOK = true;    // goes down once, from the stopping thread
  FrameBufferT* m_FBp_0 = nullptr;     // back: the thread reads a file into it; guarded as m_CurrentPosition
  FrameBufferT* m_FBp_1 = nullptr;     // front: the transport reads it; likewise
  TrackFileT* const m_TrackFile;
  Mutex m_FBMutex;
  std::atomic<std::thread::id> m_BracketOwner;  // who is between BufferLock and BufferUnlock, if anyone
  Event m_ReadEvent{"ReadEvent", 1};
  Event m_WriteEvent{"WriteEvent"};
  Event m_NewFrameEvent{"NewFrameEvent"};
  Ferro::mem_ptr<FrameBufferT> m_FrameBuffer_A;
  Ferro::mem_ptr<FrameBufferT> m_FrameBuffer_B;
  Result_t m_StartResult = Ferro::RESULT_OK;  // of the owner, before any request
};

}  // namespace Strata
