// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <map>
#include <string>

namespace Cairn {

/// A dictionary of option names and values, handed through to whoever asks for it by name.
using PListDict = std::map<std::string, std::string>;

}  // namespace Cairn
