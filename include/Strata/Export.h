// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libstrata exports; everything else is hidden.
#define STRATA_API __attribute__((visibility("default")))
