// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/DCSubtitle.h>

#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <string>

namespace CairnFuzz {

/// Takes messages and forgets them.
class Silence : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry&) override {}
};

inline Cairn::Result_t Encode(const Cairn::DCSubtitle& document, std::string& out, Cairn::DCPFormat_t) {
  return document.EncodeXML(out);
}
template <class T>
Cairn::Result_t Encode(const T& document, std::string& out, Cairn::DCPFormat_t format) {
  return document.EncodeXML(out, format);
}

/// Reads a document of kind T. One that can be read and written must be read again and then written the same.
template <class T>
void CheckRoundTrip(const unsigned char* data, size_t size) {
  static Silence silence;
  Ferro::SetDefaultLogSink(&silence);
  T document;
  if (document.DecodeXML(std::string(data, data + size)).Failure()) return;
  std::string written;
  if (Encode(document, written, document.DCPFormat).Failure()) return;  // lenient reading, strict writing
  T again;
  FERRO_ASSERT(again.DecodeXML(written).Success());
  std::string rewritten;
  FERRO_ASSERT(Encode(again, rewritten, again.DCPFormat).Success());
  FERRO_ASSERT(rewritten == written);
}

}  // namespace CairnFuzz
