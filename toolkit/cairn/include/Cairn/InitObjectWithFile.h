// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Result.h>

#include <Ferro/FileText.h>

#include <string>

namespace Cairn {

/// Reads a document file of at most 8 MiB whole and has `object` decode it.
/// @return what Ferro::ReadFileIntoString or T::DecodeXML returns.
template <class T>
[[nodiscard]] Result_t InitObjectWithFile(T& object, const std::string& filename) {
  std::string xml;
  const Result_t result = Ferro::ReadFileIntoString(filename, xml, Ferro::DefaultTextLimit);
  return result.Failure() ? result : object.DecodeXML(xml);
}

}  // namespace Cairn
