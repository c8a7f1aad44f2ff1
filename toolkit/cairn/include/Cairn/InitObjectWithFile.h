// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Result.h>

#include <Ferro/FileText.h>
#include <Ferro/ILogSink.h>

#include <string>

namespace Cairn {

/// Reads a document file of at most 8 MiB whole and has `object` decode it. A failure is logged with the file's name, since
/// the decoder, which may have logged why, does not know it.
/// @return what Ferro::ReadFileIntoString or T::DecodeXML returns.
template <class T>
[[nodiscard]] Result_t InitObjectWithFile(T& object, const std::string& filename) {
  std::string xml;
  Result_t result = Ferro::ReadFileIntoString(filename, xml, Ferro::DefaultTextLimit);
  if (result.Success()) result = object.DecodeXML(xml);
  if (result.Failure()) Ferro::DefaultLogSink().Error("%s: %s\n", filename.c_str(), result.Label());
  return result;
}

}  // namespace Cairn
