// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Result.h>

namespace Ferro {
class ILogSink;
}

namespace Cairn {

/// Initialises Xerces-C and XML-Security-C once for the process; they are never terminated. Any thread may call it, any
/// number of times; it returns when they are ready. Where that fails, as for want of memory, it throws what they throw, and
/// std::runtime_error ever after: they can be initialised once only.
CAIRN_API void init_xml_libs();

/// Logs the exception being handled, which a library below threw. To be called in a catch block.
/// @return RESULT_XML_PARSE.
[[nodiscard]] CAIRN_API Result_t LogXMLException(Ferro::ILogSink& log);

}  // namespace Cairn
