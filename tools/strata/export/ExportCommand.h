// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace CLI {
class App;
}

/// `strata export`: a show's timeline as documents and lists.
void AddExportCommand(CLI::App& app, int& exit_code);
