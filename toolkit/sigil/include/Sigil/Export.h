// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libsigil exports; everything else is hidden.
#define SIGIL_API __attribute__((visibility("default")))
