// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// `strata timeline`: what plays when, drawn to scale.
void AddTimelineCommand(CLI::App& app, int& exit_code);
