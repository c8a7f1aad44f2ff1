// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <thread>

namespace {

using namespace testsupport;
using namespace QUIRE;

TEST(ReaderThreads, ManyReadersOfOneFileWorkSideBySide) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 50);
  const TemporaryFile file(builder.Build());
  std::vector<std::thread> threads;
  std::vector<size_t> failures(8, 0);
  for (size_t t = 0; t < failures.size(); ++t)
    threads.emplace_back([&, t] {
      JP2K::MXFReader reader;
      JP2K::FrameBuffer frame;
      if (reader.OpenRead(file.Name()).Failure() || frame.Capacity(2000).Failure()) ++failures[t];
      for (ui32_t i = 0; i < 500; ++i) {
        const auto number = static_cast<ui32_t>((i * 7 + t) % 50);
        if (reader.ReadFrame(number, frame).Failure() || Content(frame) != builder.Frames[number]) ++failures[t];
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, std::vector<size_t>(8, 0));
}

}  // namespace
