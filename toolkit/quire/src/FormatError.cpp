// SPDX-License-Identifier: BSD-3-Clause
#include "FormatError.h"

#include <Ferro/LogSink.h>

#include <cstdarg>
#include <cstdio>

namespace QUIRE {

Result_t FormatError(ui64_t offset, const char* format, ...) {
  char message[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  Ferro::DefaultLogSink().Error("MXF: %s at offset %llu.\n", message, static_cast<unsigned long long>(offset));
  return RESULT_FORMAT;
}

}  // namespace QUIRE
