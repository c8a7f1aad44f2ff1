// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Takes interrupt and termination signals as a wish to stop, which long work asks for. So is a second one, which often
/// follows right behind the first while what was begun is being tidied away; a third ends the program the usual way.
class Interrupt {
 public:
  static void Install();
  [[nodiscard]] static bool Requested();
};
