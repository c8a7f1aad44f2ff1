// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/IArchive.h>

namespace Ferro {

IArchive::~IArchive() = default;

}  // namespace Ferro
