// SPDX-License-Identifier: BSD-3-Clause
#include "FieldCodec.h"

namespace QUIRE::MXF {

ValuePrinter::~ValuePrinter() = default;

bool FieldCodec<Timestamp>::Read(std::span<const ui8_t> bytes, Timestamp& value) {
  if (bytes.size() != Length) return false;
  value.Year = LoadBE<i16_t>(bytes.data());
  value.Month = bytes[2];
  value.Day = bytes[3];
  value.Hour = bytes[4];
  value.Minute = bytes[5];
  value.Second = bytes[6];
  value.Tick = bytes[7];
  return true;
}

void FieldCodec<Timestamp>::Write(const Timestamp& value, std::vector<ui8_t>& out) {
  AppendBE(out, value.Year);
  out.insert(out.end(), {value.Month, value.Day, value.Hour, value.Minute, value.Second, value.Tick});
}

bool FieldCodec<ProductVersion>::Read(std::span<const ui8_t> bytes, ProductVersion& value) {
  if (bytes.size() != Length) return false;
  const auto part = [&bytes](size_t i) { return LoadBE<ui16_t>(bytes.data() + 2 * i); };
  value = {part(0), part(1), part(2), part(3), part(4)};
  return true;
}

void FieldCodec<ProductVersion>::Write(const ProductVersion& value, std::vector<ui8_t>& out) {
  for (const ui16_t part : {value.Major, value.Minor, value.Tertiary, value.Patch, value.Release}) AppendBE(out, part);
}

void FieldCodec<ProductVersion>::Print(const ProductVersion& value, ValuePrinter& printer) {
  std::string text = std::to_string(value.Major);
  for (const ui16_t part : {value.Minor, value.Tertiary, value.Patch, value.Release})
    text += '.' + std::to_string(part);
  printer.Text(text);
}

}  // namespace QUIRE::MXF
