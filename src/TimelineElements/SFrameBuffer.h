// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/FrameBuffer.h>

namespace Strata {

/// A stereoscopic frame: the left and the right eye's codestream of one edit unit.
class SFrameBuffer : public QUIRE::JP2K::SFrameBuffer {};

}  // namespace Strata
