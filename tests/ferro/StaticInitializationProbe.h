// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogSink.h>
#include <Ferro/Result.h>
#include <Ferro/UUID.h>

#include <string>

namespace Ferro::Test {

/// What a constructor of static storage duration saw, long before main() began.
struct BeforeMain {
  BeforeMain();

  Result_t Constant;
  Result_t Found;
  Result_t NotFound;
  UUID ID;
  Timestamp Now;
  LogEntry Logged;
  std::string StandardError;
};

const BeforeMain& SeenBeforeMain();

}  // namespace Ferro::Test
