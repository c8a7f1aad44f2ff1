// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

/// The most bytes that one request for memory on this thread asked for, since it was set to 0. A program that links this
/// has its operator new replaced.
extern thread_local std::size_t LargestRequest;
