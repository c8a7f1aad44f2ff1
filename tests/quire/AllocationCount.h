// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

// What this thread has asked of the memory, counted by operators that a program linking this has replaced.

extern thread_local std::size_t Allocations;
/// Bytes allocated and not freed, as the allocator rounds them.
extern thread_local std::size_t HeldBytes;
/// The most that were held since this was set.
extern thread_local std::size_t PeakBytes;
/// The request with this number from now on fails, and all after it; 0: none does.
extern thread_local std::size_t FailingRequest;
/// A request has failed since this was cleared.
extern thread_local bool HasRunOut;
