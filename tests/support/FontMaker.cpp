// SPDX-License-Identifier: BSD-3-Clause
#include "FontMaker.h"

#include <map>
#include <set>
#include <string>

namespace testsupport {
namespace {

/// Big-endian numbers one behind the other.
class Table {
 public:
  Table& Short(int value) { return Put(static_cast<unsigned>(value), 2); }
  Table& Long(unsigned value) { return Put(value, 4); }
  Table& Shorts(int value, int count) {
    for (int i = 0; i < count; ++i) Short(value);
    return *this;
  }
  Table& Byte(unsigned value) { return Put(value, 1); }
  [[nodiscard]] const Bytes& Get() const { return m_Bytes; }

 private:
  Table& Put(unsigned value, unsigned size) {
    for (unsigned i = size; i > 0; --i) m_Bytes.push_back(static_cast<unsigned char>(value >> (8 * (i - 1))));
    return *this;
  }

  Bytes m_Bytes;
};

/// The characters in their order.
Bytes CharacterMap(const std::set<char32_t>& characters) {
  const auto count = static_cast<unsigned>(characters.size());
  Table table;
  table.Short(0).Short(1).Short(3).Short(10).Long(12);                 // one map, of Unicode, behind this
  table.Short(12).Short(0).Long(16 + 12 * count).Long(0).Long(count);  // format 12: groups
  for (const char32_t character : characters) table.Long(character).Long(character).Long(1);
  return table.Get();
}

Bytes Head() {
  constexpr unsigned Magic = 0x5F0F3CF5;
  Table table;
  table.Long(0x10000).Long(0x10000).Long(0).Long(Magic).Short(0).Short(1000).Shorts(0, 8);
  return table.Shorts(0, 2).Shorts(500, 2).Short(0).Short(8).Short(2).Short(0).Short(0).Get();
}

Bytes HorizontalHead() {
  return Table().Long(0x10000).Short(800).Short(-200).Short(0).Short(600).Shorts(0, 12).Short(1).Get();
}

/// A triangle.
Bytes Shapes() {
  Table table;
  table.Short(1).Shorts(0, 2).Shorts(500, 2).Short(2).Short(0);
  table.Byte(1).Byte(1).Byte(1).Short(0).Short(500).Short(-250).Short(0).Short(0).Short(500);
  return table.Byte(0).Get();
}

}  // namespace

Bytes MakeTrueType(std::u32string_view characters) {
  std::map<std::string, Bytes> tables = {
      {"cmap", CharacterMap({characters.begin(), characters.end()})},
      {"glyf", Shapes()},
      {"head", Head()},
      {"hhea", HorizontalHead()},
      {"hmtx", Table().Short(600).Short(0).Short(0).Get()},
      {"loca", Table().Short(0).Short(0).Short(15).Get()},
      {"maxp", Table().Long(0x10000).Short(2).Short(3).Short(1).Shorts(0, 11).Get()}};
  const auto count = static_cast<unsigned>(tables.size());
  Table directory;
  directory.Long(0x10000).Short(static_cast<int>(count)).Short(64).Short(2).Short(48);
  unsigned offset = 12 + 16 * count;
  Bytes contents;
  for (const auto& [name, table] : tables) {
    for (const char c : name) directory.Byte(static_cast<unsigned char>(c));
    directory.Long(0).Long(offset + static_cast<unsigned>(contents.size())).Long(static_cast<unsigned>(table.size()));
    contents.insert(contents.end(), table.begin(), table.end());
    contents.resize((contents.size() + 3) / 4 * 4);
  }
  Bytes font = directory.Get();
  font.insert(font.end(), contents.begin(), contents.end());
  return font;
}

}  // namespace testsupport
