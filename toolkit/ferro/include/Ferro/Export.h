// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libferro exports; everything else is hidden.
#define FERRO_API __attribute__((visibility("default")))
