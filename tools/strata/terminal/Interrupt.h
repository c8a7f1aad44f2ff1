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
  /// For work that may not hear the wish, because it waits for a read that never returns: from the first signal on, the
  /// program has `seconds` to end by itself. Then it ends at once, with the exit code Interrupted.
  /// @param tidy_up  called before that from a signal handler: whatever it calls must be allowed there. May be null.
  static void EndAfter(unsigned seconds, void (*tidy_up)());
};

}  // namespace Tool
