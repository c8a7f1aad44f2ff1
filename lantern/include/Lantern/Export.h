// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what liblantern exports; everything else is hidden.
#define LANTERN_API __attribute__((visibility("default")))
