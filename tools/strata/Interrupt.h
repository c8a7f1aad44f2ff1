// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Takes interrupt and termination signals as a wish to stop, which long work asks for. A second signal ends the program
/// the usual way.
class Interrupt {
 public:
  static void Install();
  [[nodiscard]] static bool Requested();
};
