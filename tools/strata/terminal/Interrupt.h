// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

/// Takes interrupt, quit, termination and hang-up signals as a wish to stop, which long work asks for. So is a second one,
/// which often follows right behind the first while what was begun is being tidied away; a third ends the program the
/// usual way. Hang-ups and quits that are ignored from the beginning, as under nohup, stay so.
class Interrupt {
 public:
  static void Install();
  [[nodiscard]] static bool Requested();
};

}  // namespace Tool
