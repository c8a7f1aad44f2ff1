// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>

namespace Cairn {

/// Initialises Xerces-C and XML-Security-C once for the process; they are never terminated. Any thread may call it, any
/// number of times; it returns when they are ready.
CAIRN_API void init_xml_libs();

}  // namespace Cairn
