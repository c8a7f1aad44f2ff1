// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Marks what libcairn exports; everything else is hidden.
#define CAIRN_API __attribute__((visibility("default")))
