// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InfoItem.h"

#include <Cairn/FileType.h>

namespace Tool {

/// Tells of essence and resources outside MXF: a JPEG 2000 codestream, a WAVE file, an MPEG-2 stream, a PNG image. Says
/// nothing of other kinds.
void DescribeRawEssence(const std::string& path, Cairn::FileType_t type, InfoItem& item);

}  // namespace Tool
