// SPDX-License-Identifier: BSD-3-Clause
#include "FormatError.h"

#include <Ferro/ILogSink.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace QUIRE {

namespace {

thread_local const char* Subject = "MXF";

}  // namespace

const char* CurrentLogSubject() {
  return Subject;
}

LogSubject::LogSubject(const std::string& filename) : m_Before(std::exchange(Subject, filename.c_str())) {}

LogSubject::~LogSubject() {
  Subject = m_Before;
}

Result_t FormatError(ui64_t offset, const char* format, ...) {
  char message[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  Ferro::DefaultLogSink().Error("%s: %s at offset %llu.\n", Subject, message, static_cast<unsigned long long>(offset));
  return RESULT_FORMAT;
}

}  // namespace QUIRE
