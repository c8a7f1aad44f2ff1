// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Sigil {

/// Sets up the memory for secrets, once for the process. Called before a private key is read.
void PrepareSecretHeap();

}  // namespace Sigil
