// SPDX-License-Identifier: BSD-3-Clause
#include "BeforeMain.h"

#include <Strata/Strata.h>

#include <new>

namespace StrataTest {
namespace {

// Raw storage, so that nothing is constructed here but by the observer below.
alignas(BeforeMain) unsigned char s_Storage[sizeof(BeforeMain)];

struct Observer {
  Observer() {
    new (s_Storage) BeforeMain{
        Strata::RESULT_SX_DEVICE.Symbol(),
        Strata::RESULT_SX_NO_PICTURE.Label(),
        Strata::Result_t::Find(-1021).Label(),
        Strata::Version(),
        Strata::ProtocolVersion(),
        Strata::StringCommandType(Strata::CMD_JOG),
        {Strata::RestartInternals::PositionName, Strata::ServerEvents::TransportStopError,
         Strata::ServerOptions::Player_PowerFailResumeMode_Stop, Strata::TransportOptions::ProjectorAddress}};
  }
};

// The first priority that programs may use: runs before every constructor without one.
[[gnu::init_priority(101)]] const Observer s_Observer;

}  // namespace

const BeforeMain& SeenBeforeMain() {
  return *std::launder(reinterpret_cast<const BeforeMain*>(s_Storage));
}

}  // namespace StrataTest
