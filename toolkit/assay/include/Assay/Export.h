// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libassay exports; everything else is hidden.
#define ASSAY_API __attribute__((visibility("default")))
