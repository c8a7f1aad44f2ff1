// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libquire exports; everything else is hidden.
#define QUIRE_API __attribute__((visibility("default")))
