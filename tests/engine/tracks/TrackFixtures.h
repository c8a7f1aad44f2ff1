// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Sanitized.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Strata/ITimelineTrack.h>

#include <Ferro/LogSink.h>
#include <QUIRE/FrameBuffer.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace testsupport {

/// Keeps the default log's messages for the length of a test.
class LoggedTest : public testing::Test {
 protected:
  LoggedTest() : m_Previous(Ferro::SetDefaultLogSink(&Log)) {}
  ~LoggedTest() override { Ferro::SetDefaultLogSink(m_Previous); }

  /// The messages so far, which all have to be errors.
  [[nodiscard]] std::vector<std::string> Errors() const {
    std::vector<std::string> messages;
    for (const Ferro::LogEntry& entry : Log.Entries()) {
      EXPECT_EQ(entry.Level, Ferro::LogLevel::Error);
      messages.push_back(entry.Message);
    }
    return messages;
  }

  Ferro::MemoryLogSink Log;

 private:
  Ferro::ILogSink* m_Previous;
};

/// A new dormant track of this kind. Text has none here.
std::unique_ptr<Strata::ITimelineTrack> MakeTrack(testsupport::TrackKind kind);

inline testsupport::Bytes BytesOf(const QUIRE::FrameBuffer& frame) {
  return {frame.RoData(), frame.RoData() + frame.Size()};
}

/// How many of this process's threads the system knows by the reader threads' name.
int CountReaderThreads();
/// How many threads the process has.
int CountThreads();
/// How many file descriptors the process has open.
int CountOpenFiles();

}  // namespace testsupport
