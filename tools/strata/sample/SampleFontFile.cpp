// SPDX-License-Identifier: BSD-3-Clause
#include "SampleFontFile.h"

#include "SampleFont.h"

#include <algorithm>
#include <array>
#include <bit>
#include <map>
#include <string>
#include <string_view>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

// In font units.
constexpr int UnitsPerEm = 1024;
constexpr int Dot = 128;
constexpr int Columns = 5;
constexpr int Rows = 7;
constexpr int Advance = (Columns + 1) * Dot;
constexpr int Ascent = Rows * Dot;
constexpr int Descent = Dot;

constexpr Ferro::ui64_t Date = 3'850'070'400;  // 2026-01-01T00:00:00Z, in seconds from 1904

// By glyph index; the first stands for all characters that the font lacks.
constexpr std::string_view Characters = "? 0123456789:ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr SampleGlyph Missing = {31, 17, 17, 17, 17, 17, 31};

/// Characters in unbroken order, the first of which has this glyph index.
struct Range {
  int First, Last, Glyph;
};
constexpr Range Ranges[] = {{' ', ' ', 1}, {'0', ':', 2}, {'A', 'Z', 13}, {'a', 'z', 13}, {0xffff, 0xffff, 0}};

/// A table of big-endian numbers.
class Table {
 public:
  Table& U8(int value) { return Append(static_cast<ui32_t>(value), 1); }
  Table& U16(int value) { return Append(static_cast<ui32_t>(value), 2); }
  Table& U32(Ferro::ui64_t value) { return Append(static_cast<ui32_t>(value), 4); }
  Table& Zeros(size_t count) {
    Bytes.insert(Bytes.end(), count, 0);
    return *this;
  }
  Table& Text(std::string_view text) {
    Bytes.insert(Bytes.end(), text.begin(), text.end());
    return *this;
  }
  Table& Add(const Table& other) {
    Bytes.insert(Bytes.end(), other.Bytes.begin(), other.Bytes.end());
    return *this;
  }
  Table& Pad() { return Zeros((4 - Bytes.size() % 4) % 4); }
  [[nodiscard]] int Size() const { return static_cast<int>(Bytes.size()); }
  /// The sum of all 32-bit words of the padded table.
  [[nodiscard]] ui32_t Sum() const {
    ui32_t sum = 0;
    for (size_t i = 0; i < Bytes.size(); ++i) sum += ui32_t{Bytes[i]} << (24 - i % 4 * 8);
    return sum;
  }

  std::vector<ui8_t> Bytes;

 private:
  Table& Append(ui32_t value, int bytes) {
    while (bytes-- > 0) Bytes.push_back(static_cast<ui8_t>(value >> bytes * 8));
    return *this;
  }
};

/// A run of dots in one row of a glyph: left and right edge, in columns.
struct Run {
  int Row, Left, Right;
};

std::vector<Run> RunsOf(const SampleGlyph& glyph) {
  std::vector<Run> runs;
  for (int row = 0; row < Rows; ++row)
    for (int column = 0; column < Columns; ++column) {
      if ((glyph[static_cast<size_t>(row)] >> (Columns - 1 - column) & 1) == 0) continue;
      if (!runs.empty() && runs.back().Row == row && runs.back().Right == column)
        ++runs.back().Right;
      else
        runs.push_back({row, column, column + 1});
    }
  return runs;
}

/// One rectangle for each run, clockwise from its lower left corner.
Table Outline(const SampleGlyph& glyph) {
  const std::vector<Run> runs = RunsOf(glyph);
  Table table;
  if (runs.empty()) return table;
  int left = Columns;
  int right = 0;
  for (const Run& run : runs) {
    left = std::min(left, run.Left);
    right = std::max(right, run.Right);
  }
  table.U16(static_cast<int>(runs.size())).U16(left * Dot).U16((Rows - 1 - runs.back().Row) * Dot);
  table.U16(right * Dot).U16((Rows - runs.front().Row) * Dot);
  for (size_t i = 0; i < runs.size(); ++i) table.U16(static_cast<int>(i * 4 + 3));  // each contour's last point
  table.U16(0);                                                                     // no instructions
  for (size_t i = 0; i < runs.size() * 4; ++i) table.U8(1);                         // points on the curve, 16 bits each
  Table rows;
  int x = 0;
  int y = 0;
  for (const Run& run : runs) {
    const int bottom = (Rows - 1 - run.Row) * Dot;
    const std::array<int, 4> columns = {run.Left * Dot, run.Left * Dot, run.Right * Dot, run.Right * Dot};
    const std::array<int, 4> heights = {bottom, bottom + Dot, bottom + Dot, bottom};
    for (size_t i = 0; i < 4; ++i) {
      table.U16(columns[i] - x);
      rows.U16(heights[i] - y);
      x = columns[i];
      y = heights[i];
    }
  }
  return table.Add(rows).Pad();
}

Table CharacterMap() {
  constexpr int count = std::size(Ranges);
  constexpr int search = 2 << (std::bit_width(unsigned{count}) - 1);
  Table subtable;
  subtable.U16(4).U16(16 + count * 8).U16(0).U16(count * 2).U16(search);
  subtable.U16(std::bit_width(unsigned{count}) - 1).U16(count * 2 - search);
  for (const Range& range : Ranges) subtable.U16(range.Last);
  subtable.U16(0);
  for (const Range& range : Ranges) subtable.U16(range.First);
  for (const Range& range : Ranges) subtable.U16(range.First == 0xffff ? 1 : range.Glyph - range.First);
  for (int i = 0; i < count; ++i) subtable.U16(0);
  return Table().U16(0).U16(1).U16(3).U16(1).U32(12).Add(subtable);  // Windows, Unicode
}

Table Names() {
  const std::pair<int, std::string_view> texts[] = {
      {1, "Strata Sample"}, {2, "Regular"},     {3, "Strata Sample Regular 1.0"},
      {4, "Strata Sample"}, {5, "Version 1.0"}, {6, "StrataSample-Regular"}};
  Table records;
  Table storage;
  for (const auto& [id, text] : texts) {
    records.U16(3).U16(1).U16(0x409).U16(id).U16(static_cast<int>(text.size()) * 2).U16(storage.Size());
    for (const char character : text) storage.U16(character);
  }
  constexpr int count = std::size(texts);
  return Table().U16(0).U16(count).U16(6 + count * 12).Add(records).Add(storage);
}

Table Header() {
  Table table;
  table.U32(0x10000).U32(0x10000).U32(0).U32(0x5f0f3cf5);  // version, revision, adjustment of the sum, magic number
  table.U16(0x0b).U16(UnitsPerEm).U32(0).U32(Date).U32(0).U32(Date);
  table.U16(0).U16(0).U16(Columns * Dot).U16(Ascent);  // the box around all glyphs
  return table.U16(0).U16(Rows).U16(2).U16(1).U16(0);  // style, smallest size, direction, long offsets, glyph format
}

Table HorizontalHeader(int glyphs) {
  Table table;
  table.U32(0x10000).U16(Ascent).U16(-Descent).U16(0).U16(Advance);
  table.U16(0).U16(Dot).U16(Columns * Dot);  // smallest bearings, largest extent
  return table.U16(1).U16(0).U16(0).Zeros(8).U16(0).U16(glyphs);
}

Table WindowsMetrics() {
  Table table;
  table.U16(4).U16(Advance).U16(400).U16(5).U16(0);  // regular weight and width; may be embedded
  for (int i = 0; i < 2; ++i) table.U16(UnitsPerEm / 2).U16(UnitsPerEm / 2).U16(0).U16(Dot);  // sub- and superscript
  table.U16(Dot).U16(Ascent / 2).U16(0).Zeros(10);  // strike-out, no family class, no classification
  table.U32(1).U32(0).U32(0).U32(0).Text("STRA");   // Basic Latin
  table.U16(0x40).U16(' ').U16('z').U16(Ascent).U16(-Descent).U16(0).U16(Ascent).U16(Descent);
  return table.U32(1).U32(0).U16(Ascent).U16(Ascent).U16(0).U16(' ').U16(0);
}

/// Adds the tables that depend on the glyphs.
void AddGlyphs(std::map<std::string, Table>& tables) {
  int contours = 0;  // of the glyph that has most
  for (size_t i = 0; i < Characters.size(); ++i) {
    const SampleGlyph& glyph = i == 0 ? Missing : SampleGlyphOf(Characters[i]);
    const std::vector<Run> runs = RunsOf(glyph);
    int left = runs.empty() ? 0 : Columns;
    for (const Run& run : runs) left = std::min(left, run.Left);
    tables["hmtx"].U16(Advance).U16(left * Dot);
    tables["loca"].U32(tables["glyf"].Bytes.size());
    const Table drawn = Outline(glyph);
    if (!drawn.Bytes.empty())
      contours = std::max(contours, drawn.Bytes[0] << 8 | drawn.Bytes[1]);  // it begins with them
    tables["glyf"].Add(drawn);
  }
  tables["loca"].U32(tables["glyf"].Bytes.size());
  const int glyphs = static_cast<int>(Characters.size());
  tables["maxp"].U32(0x10000).U16(glyphs).U16(contours * 4).U16(contours).U16(0).U16(0).U16(2).Zeros(16);
  tables["hhea"] = HorizontalHeader(glyphs);
}

}  // namespace

std::vector<ui8_t> MakeSampleFontFile() {
  std::map<std::string, Table> tables = {{"OS/2", WindowsMetrics()},
                                         {"cmap", CharacterMap()},
                                         {"head", Header()},
                                         {"name", Names()},
                                         {"post", Table().U32(0x30000).Zeros(4).U16(-Dot).U16(Dot).U32(1).Zeros(16)}};
  AddGlyphs(tables);

  const int count = static_cast<int>(tables.size());
  const int exponent = static_cast<int>(std::bit_width(tables.size())) - 1;
  Table font;
  font.U32(0x10000).U16(count).U16(16 << exponent).U16(exponent).U16(count * 16 - (16 << exponent));
  Table content;
  const size_t start = 12 + tables.size() * 16;
  size_t head = 0;
  for (auto& [tag, table] : tables) {
    const size_t offset = start + content.Bytes.size();
    if (tag == "head") head = offset;
    font.Text(tag).U32(table.Sum()).U32(offset).U32(table.Bytes.size());
    content.Add(table).Pad();
  }
  font.Add(content);
  const Table adjustment = Table().U32(0xb1b0afba - font.Sum());
  std::copy(adjustment.Bytes.begin(), adjustment.Bytes.end(),
            font.Bytes.begin() + static_cast<std::ptrdiff_t>(head) + 8);
  return font.Bytes;
}

}  // namespace Tool
