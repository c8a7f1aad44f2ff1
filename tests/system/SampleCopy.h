// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// Puts a sample show of seven seconds with small pictures into a folder, which must not exist. The show is made once for
/// the program as it is built now, and kept beside the tests; every test has its own copy.
/// @param is_signed  its documents are signed, and it has a key message, whose time is that of the making; else neither.
void CopySampleShow(const std::string& folder, bool is_signed = false);
