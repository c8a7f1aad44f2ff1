// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITransportNotify.h>

#include <vector>

namespace testsupport {

/// Keeps what it is told.
class RecordingNotifier final : public Strata::ITransportNotify {
 public:
  struct TransportStatus {
    Strata::TimelinePosition Show;
    Strata::TimelinePosition CPL;
    Strata::TimelinePosition Reel;
    Strata::DeviceStatus Status;
    Strata::CommandType_t Command;
  };

  std::vector<TransportStatus> Transport;
  std::vector<Strata::TransportException> Exceptions;
  std::vector<Strata::CompositionInfo> Compositions;
  std::vector<Strata::PlaylistEventList> Events;

  void TransportStatusNotify(const Strata::TimelinePosition& show, const Strata::TimelinePosition& cpl,
                             const Strata::TimelinePosition& reel, const Strata::DeviceStatus& status,
                             const Strata::CommandType_t& command) override {
    Transport.push_back({show, cpl, reel, status, command});
  }
  void TransportExceptionNotify(const Strata::TransportException& exception) override {
    Exceptions.push_back(exception);
  }
  void PlaylistStatusNotify(const Strata::CompositionInfo& composition) override {
    Compositions.push_back(composition);
  }
  void PlaylistEventNotify(const Strata::PlaylistEventList& events) override { Events.push_back(events); }
};

}  // namespace testsupport
