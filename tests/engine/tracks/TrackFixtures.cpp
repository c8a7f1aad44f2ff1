// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFixtures.h"

#include "TimelineElements/TrackFileElements.h"

#include <filesystem>
#include <fstream>

namespace testsupport {

namespace {

int CountEntries(const char* folder) {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
  return count;
}

}  // namespace

std::unique_ptr<Strata::ITimelineTrack> MakeTrack(testsupport::TrackKind kind) {
  using testsupport::TrackKind;
  switch (kind) {
    case TrackKind::Picture:
      return std::make_unique<Strata::JP2KTimelineElement>();
    case TrackKind::StereoscopicPicture:
      return std::make_unique<Strata::JP2KSTimelineElement>();
    case TrackKind::MPEG2:
      return std::make_unique<Strata::MPEG2TimelineElement>();
    case TrackKind::Sound:
      return std::make_unique<Strata::PCMTimelineElement>();
    case TrackKind::Data:
      return std::make_unique<Strata::DCDataTimelineElement>();
    case TrackKind::Atmos:
      return std::make_unique<Strata::AtmosTimelineElement>();
    case TrackKind::Text:
      break;
  }
  ADD_FAILURE() << "no track-file track of this kind";
  return nullptr;
}

int CountReaderThreads() {
  int count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm"), name);
    if (name == "TimelineTrack") ++count;
  }
  return count;
}

int CountThreads() {
  return CountEntries("/proc/self/task");
}

int CountOpenFiles() {
  return CountEntries("/proc/self/fd") - 1;
}  // without the iterator's own

}  // namespace testsupport
