// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/IArchive.h>
#include <Ferro/Types.h>
#include <Ferro/UUID.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace StrataTest {

using Ferro::ui32_t;
using Ferro::ui8_t;
using Bytes = std::vector<ui8_t>;

/// Bytes from their hexadecimal digits; blanks between them are passed over.
inline Bytes Hex(std::string_view text) {
  std::string digits;
  for (const char c : text)
    if (c != ' ') digits += c;
  EXPECT_EQ(digits.size() % 2, 0u) << text;
  Bytes bytes;
  for (size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<ui8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

inline Ferro::UUID ID(std::string_view text) {
  return Ferro::UUID::FromHex(text).value();
}

/// What `record` writes into a buffer that has room for anything.
inline Bytes Archived(const Ferro::IArchive& record) {
  Bytes buffer(4096);
  Ferro::MemIOWriter writer(buffer);
  EXPECT_TRUE(record.Archive(&writer));
  buffer.resize(writer.Length());
  return buffer;
}

/// Reads `record` from `bytes` and expects the whole of them to be taken.
inline void ReadWhole(Ferro::IArchive& record, const Bytes& bytes) {
  Ferro::MemIOReader reader(bytes);
  EXPECT_TRUE(record.Unarchive(&reader));
  EXPECT_EQ(reader.Remainder(), 0u);
}

/// One field of a record: its form in the record that is read or written, and in the one that stood there before.
struct Field {
  enum Kind { Number, String };
  Kind kind;
  Bytes after;
  Bytes before;
};

inline Field Number(std::string_view after, std::string_view before) {
  return {Field::Number, Hex(after), Hex(before)};
}
inline Field Text(std::string_view after, std::string_view before) {
  return {Field::String, Hex(after), Hex(before)};
}

/// Where a cursor stands that could not go beyond `limit`: numbers move it whole, strings by count and then by bytes.
inline size_t LastStop(const std::vector<Field>& fields, size_t limit) {
  size_t position = 0;
  for (const Field& field : fields) {
    if (field.kind == Field::String && position + 4 > limit) return position;
    if (position + field.after.size() > limit) return field.kind == Field::String ? position + 4 : position;
    position += field.after.size();
  }
  return position;
}

/// The record's form after reading `limit` bytes: fields that were there whole are new, the others as before.
inline Bytes FormAfterCut(const std::vector<Field>& fields, size_t limit) {
  Bytes form;
  size_t end = 0;
  for (const Field& field : fields) {
    end += field.after.size();
    const Bytes& part = end <= limit ? field.after : field.before;
    form.insert(form.end(), part.begin(), part.end());
  }
  return form;
}

/// Checks a record against its bytes: written whole, written into each buffer that is too small, read whole, and read
/// from each cut, over a record that held something before.
template <class Record>
void CheckRecord(const Record& before, const Record& after, const std::vector<Field>& fields) {
  const Bytes whole = FormAfterCut(fields, SIZE_MAX);
  ASSERT_EQ(Archived(before), FormAfterCut(fields, 0));
  ASSERT_EQ(Archived(after), whole);

  for (size_t size = 0; size <= whole.size(); ++size) {
    SCOPED_TRACE("writing into " + std::to_string(size) + " bytes");
    Bytes buffer(size, 0xEE);
    Ferro::MemIOWriter writer(buffer);
    EXPECT_EQ(after.Archive(&writer), size == whole.size());
    const size_t stop = LastStop(fields, size);
    EXPECT_EQ(writer.Length(), stop);
    Bytes expected(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(stop));
    expected.resize(size, 0xEE);
    EXPECT_EQ(buffer, expected);
  }

  for (size_t size = 0; size <= whole.size(); ++size) {
    SCOPED_TRACE("reading from " + std::to_string(size) + " bytes");
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    Record record = before;
    Ferro::MemIOReader reader(cut);
    EXPECT_EQ(record.Unarchive(&reader), size == whole.size());
    EXPECT_EQ(reader.Offset(), LastStop(fields, size));
    EXPECT_EQ(Archived(record), FormAfterCut(fields, size));
  }
}

/// What `write` prints to a stream.
inline std::string Printed(const std::function<void(FILE*)>& write) {
  char* text = nullptr;
  size_t size = 0;
  FILE* stream = open_memstream(&text, &size);
  write(stream);
  std::fclose(stream);
  const std::string printed(text, size);
  std::free(text);
  return printed;
}

}  // namespace StrataTest
