// SPDX-License-Identifier: BSD-3-Clause
// What a track may cost: no allocation per frame, nothing left behind by ready and dormant, no processor time while it
// waits.
#include "TrackFixtures.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>

namespace {

std::atomic<long> Allocations = 0;
std::atomic<long> Living = 0;

void* Allocate(std::size_t size) noexcept {
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) {
    ++Allocations;
    ++Living;
  }
  return memory;
}

void Free(void* memory) noexcept {
  if (memory != nullptr) --Living;
  std::free(memory);
}

}  // namespace

// Every allocation of the program passes here, also those of other threads and of libraries.
void* operator new(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  Free(memory);
}
void operator delete[](void* memory) noexcept {
  Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  Free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  Free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  Free(memory);
}

namespace {

using Ferro::ui32_t;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;

class TrackCost : public testsupport::LoggedTest {
 protected:
  void Init(TrackKind kind) {
    TrackFileSpec spec;
    spec.Duration = Duration;
    ASSERT_EQ(MakeTrackFile(kind, Folder.Path("track.mxf"), spec), Ferro::RESULT_OK);
    Track = testsupport::MakeTrack(kind);
    ASSERT_EQ(Track->InitWithFilename(Folder.Path("track.mxf"), 0, Duration), Ferro::RESULT_OK);
  }
  /// Shows frame `position`.
  void Bracket(ui32_t position) {
    Track->BufferLock();
    ASSERT_EQ(Track->FrameBuffer().FrameNumber(), position);
    Track->BufferUnlock();
  }

  static constexpr ui32_t Duration = 24;
  testsupport::TemporaryFolder Folder;
  std::unique_ptr<Strata::ITimelineTrack> Track;
};

class FrameCost : public TrackCost, public testing::WithParamInterface<TrackKind> {};

TEST_P(FrameCost, FramesAreShownWithoutAllocation) {
  Init(GetParam());
  Track->MakeReady();
  for (ui32_t position = 0; position < Duration; ++position) {
    Track->ReadyFrameAtLocation(position);
    Bracket(position);
  }
  const long before = Allocations;
  Track->ReadyFrameAtLocation(0);
  for (ui32_t i = 0; i < 1000; ++i) {
    Track->ReadyFrameAtLocation((i + 1) % Duration);
    Bracket(i % Duration);
  }
  Bracket(1000 % Duration);
  EXPECT_EQ(Allocations - before, 0);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, FrameCost,
                         testing::Values(TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::MPEG2,
                                         TrackKind::Sound, TrackKind::Data, TrackKind::Atmos));

/// Bytes of the process in memory.
long ResidentBytes() {
  long pages = 0;
  std::ifstream statm("/proc/self/statm");
  statm >> pages >> pages;
  return pages * 4096;
}

TEST_F(TrackCost, ReadyAndDormantLeaveNothingBehind) {
#ifdef NDEBUG
  constexpr int rounds = testsupport::Sanitized ? 2000 : 100000;
#else
  constexpr int rounds = testsupport::Sanitized ? 2000 : 10000;
#endif
  Init(TrackKind::Sound);
  const auto round = [this](ui32_t number) {
    Track->MakeReady();
    if (number % 4 != 0) Track->ReadyFrameAtLocation(number % Duration);
    if (number % 4 == 1) Bracket(number % Duration);
    ASSERT_TRUE(Track->MakeDormant());
  };
  for (ui32_t number = 0; number < 500; ++number) round(number);
  const int files = testsupport::CountOpenFiles();
  const int threads = testsupport::CountThreads();
  const long living = Living;
  const long resident = ResidentBytes();
  for (ui32_t number = 0; number < rounds; ++number) round(number);
  EXPECT_EQ(testsupport::CountOpenFiles(), files);
  EXPECT_EQ(testsupport::CountThreads(), threads);
  EXPECT_EQ(Living, living);
  // A sanitizer keeps freed memory for a while.
  if (!testsupport::Sanitized) {
    EXPECT_LT(ResidentBytes() - resident, 1 << 20);
  }
  EXPECT_EQ(Errors(), std::vector<std::string>{});
}

/// Nanoseconds of processor time that the one reader thread has used.
long ReaderThreadTime() {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm"), name);
    long time = -1;
    if (name == "TimelineTrack") std::ifstream(task.path() / "schedstat") >> time;
    if (time >= 0) return time;
  }
  ADD_FAILURE() << "no reader thread";
  return 0;
}

/// Keeps this thread busy for as long as it takes it to use `nanoseconds` of processor time.
void Work(long nanoseconds) {
  timespec now{};
  const auto used = [&now] {
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1000000000L + now.tv_nsec;
  };
  const long end = used() + nanoseconds;
  while (used() < end) continue;
}

TEST_F(TrackCost, WaitingThreadUsesNoProcessor) {
  constexpr long millisecond = 1000000;
  Init(TrackKind::Sound);
  Track->MakeReady();
  Track->ReadyFrameAtLocation(0);
  Bracket(0);
  Work(5 * millisecond);  // time enough to go to sleep after the request
  const long idle = ReaderThreadTime();
  Work(100 * millisecond);
  EXPECT_LT(ReaderThreadTime() - idle, millisecond) << "while waiting for a request";
  Track->ReadyFrameAtLocation(1);
  Track->ReadyFrameAtLocation(2);
  Work(5 * millisecond);
  const long full = ReaderThreadTime();
  Work(100 * millisecond);
  EXPECT_LT(ReaderThreadTime() - full, millisecond) << "while waiting for the front buffer";
}

}  // namespace
