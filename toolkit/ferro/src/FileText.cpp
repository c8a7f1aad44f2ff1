// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/FileReader.h>
#include <Ferro/FileText.h>
#include <Ferro/FileWriter.h>

#include <algorithm>
#include <utility>

namespace Ferro {
namespace {

// Reads until the end rather than to the size at opening, for files that grow meanwhile and for those of the system
// that state no size.
Result_t ReadToEnd(const FileReader& reader, std::string& text, fsize_t limit) {
  constexpr fsize_t StartSize = 4096;
  text.resize(std::max(StartSize, reader.Size() + 1));
  size_t filled = 0;
  for (;;) {
    size_t count = 0;
    const std::span<ui8_t> rest(reinterpret_cast<ui8_t*>(text.data()) + filled, text.size() - filled);
    if (const Result_t result = reader.ReadUpTo(filled, rest, count); result.Failure()) return result;
    filled += count;
    if (filled > limit) return RESULT_TOOLARGE;
    if (count < rest.size()) break;
    text.resize(2 * text.size());
  }
  text.resize(filled);
  return RESULT_OK;
}

}  // namespace

Result_t ReadFileIntoString(const std::string& filename, std::string& out, fsize_t limit) {
  FileReader reader;
  if (const Result_t result = reader.OpenRead(filename); result.Failure()) return result;
  if (reader.Size() > limit) return RESULT_TOOLARGE;
  std::string text;
  if (const Result_t result = ReadToEnd(reader, text, limit); result.Failure()) return result;
  out = std::move(text);
  return RESULT_OK;
}

Result_t WriteStringIntoFile(const std::string& filename, std::string_view text) {
  FileWriter writer;
  if (const Result_t result = writer.OpenWrite(filename); result.Failure()) return result;
  if (const Result_t result = writer.Write(text); result.Failure()) return result;
  return writer.Commit();
}

}  // namespace Ferro
