// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Event.h>
#include <Ferro/Result.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/Result.h>

#include <atomic>
#include <cstring>
#include <new>
#include <set>

namespace testsupport {

using Ferro::ui32_t;
using Ferro::ui8_t;

/// The byte that fills frame `position`.
inline ui8_t Pattern(ui32_t position) {
  return static_cast<ui8_t>(position * 31 + 7);
}

/// A track-file reader in the test's hands: it says when a read begins and ends, waits to be let go when told to, and
/// fails where it is told to. Frame p is SizeOf(p) bytes of Pattern(p).
class ControlledReader {
 public:
  Ferro::Event Begun{"Begun"};  ///< posted when a read begins
  Ferro::Event Ended{"Ended"};  ///< posted when a read is about to return
  Ferro::Event LetGo{"LetGo"};  ///< while Blocking, each read pends on it
  std::atomic<bool> Blocking = false;
  std::atomic<ui32_t> ReadCount = 0;
  std::set<ui32_t> Failing;   ///< positions whose read fails; not to be changed while the thread may read
  std::set<ui32_t> Throwing;  ///< likewise: memory is out when they are read

  static ui32_t SizeOf(ui32_t position) { return 64 + position % 64; }

  template <class FrameBufferT, class DecryptionT, class IntegrityT>
  Ferro::Result_t ReadFrame(ui32_t position, FrameBufferT& frame, DecryptionT decryption, IntegrityT integrity) {
    ++ReadCount;
    Begun.Post();
    if (Blocking) LetGo.Pend();
    if (Throwing.contains(position)) throw std::bad_alloc();
    const Ferro::Result_t result =
        decryption != nullptr || integrity != nullptr ? Ferro::RESULT_PARAM : Fill(position, frame);
    Ended.Post();
    return result;
  }

 private:
  Ferro::Result_t Fill(ui32_t position, QUIRE::FrameBuffer& frame) const {
    if (Failing.contains(position)) return QUIRE::RESULT_RANGE;
    if (frame.Capacity() < SizeOf(position)) return Ferro::RESULT_SMALLBUF;
    std::memset(frame.Data(), Pattern(position), SizeOf(position));
    frame.Size(SizeOf(position));
    frame.FrameNumber(position);
    return Ferro::RESULT_OK;
  }
  Ferro::Result_t Fill(ui32_t position, QUIRE::JP2K::SFrameBuffer& frame) const {
    const Ferro::Result_t result = Fill(position, frame.Left);
    return result.Failure() ? result : Fill(position, frame.Right);
  }
};

/// True when the buffer holds frame `position` whole and nothing else.
inline bool Holds(const QUIRE::FrameBuffer& frame, ui32_t position) {
  if (frame.FrameNumber() != position || frame.Size() != ControlledReader::SizeOf(position)) return false;
  for (ui32_t i = 0; i < frame.Size(); ++i)
    if (frame.RoData()[i] != Pattern(position)) return false;
  return true;
}

}  // namespace testsupport
