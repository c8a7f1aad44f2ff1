// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "base/BigEndian.h"
#include "base/ValuePrinter.h"

#include <QUIRE/MXF/DataTypes.h>
#include <QUIRE/Rational.h>

#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <concepts>
#include <string>
#include <vector>

namespace QUIRE::MXF {

// How the data types of ST 377-1, 4.2 and 4.3 are coded. A codec of a type T has
//   bool Read(std::span<const ui8_t> bytes, T& value)   false when the bytes are no T
//   void Write(const T& value, std::vector<ui8_t>& out)
//   void Print(const T& value, ValuePrinter& printer)
// and, where all values have one length, that Length.

template <class T>
struct FieldCodec;

template <std::integral T>
struct FieldCodec<T> {
  static constexpr size_t Length = sizeof(T);
  static bool Read(std::span<const ui8_t> bytes, T& value) {
    if (bytes.size() != Length) return false;
    value = LoadBE<T>(bytes.data());
    return true;
  }
  static void Write(T value, std::vector<ui8_t>& out) { AppendBE(out, value); }
  static void Print(T value, ValuePrinter& printer) { printer.Number(static_cast<i64_t>(value)); }
};

template <>
struct FieldCodec<bool> {
  static constexpr size_t Length = 1;
  static bool Read(std::span<const ui8_t> bytes, bool& value) {
    if (bytes.size() != Length) return false;
    value = bytes[0] != 0;
    return true;
  }
  static void Write(bool value, std::vector<ui8_t>& out) { out.push_back(value ? 1 : 0); }
  static void Print(bool value, ValuePrinter& printer) { printer.Bool(value); }
};

template <class T>
requires std::derived_from<T, Ferro::Identifier<T::Size>>
struct FieldCodec<T> {
  static constexpr size_t Length = T::Size;
  static bool Read(std::span<const ui8_t> bytes, T& value) {
    if (bytes.size() != Length) return false;
    value.Set(bytes.data());
    return true;
  }
  static void Write(const T& value, std::vector<ui8_t>& out) { AppendBytes(out, value.Bytes()); }
  static void Print(const T& value, ValuePrinter& printer) {
    if constexpr (std::same_as<T, UL>)
      printer.Label(value);
    else if constexpr (std::same_as<T, UUID>)
      printer.Text(value.EncodeString());
    else
      printer.Text(value.EncodeHex());
  }
};

template <>
struct FieldCodec<Rational> {
  static constexpr size_t Length = 8;
  static bool Read(std::span<const ui8_t> bytes, Rational& value) {
    if (bytes.size() != Length) return false;
    value = Rational(LoadBE<i32_t>(bytes.data()), LoadBE<i32_t>(bytes.data() + 4));
    return true;
  }
  static void Write(const Rational& value, std::vector<ui8_t>& out) {
    AppendBE(out, value.Numerator);
    AppendBE(out, value.Denominator);
  }
  static void Print(const Rational& value, ValuePrinter& printer) {
    printer.Text(std::to_string(value.Numerator) + '/' + std::to_string(value.Denominator));
  }
};

template <>
struct FieldCodec<Timestamp> {
  static constexpr size_t Length = 8;
  static bool Read(std::span<const ui8_t> bytes, Timestamp& value);
  static void Write(const Timestamp& value, std::vector<ui8_t>& out);
  static void Print(const Timestamp& value, ValuePrinter& printer) { printer.Text(value.EncodeString()); }
};

template <>
struct FieldCodec<ProductVersion> {
  static constexpr size_t Length = 10;
  static bool Read(std::span<const ui8_t> bytes, ProductVersion& value);
  static void Write(const ProductVersion& value, std::vector<ui8_t>& out);
  static void Print(const ProductVersion& value, ValuePrinter& printer);
};

template <>
struct FieldCodec<RGBALayout> {
  static constexpr size_t Length = 16;
  static bool Read(std::span<const ui8_t> bytes, RGBALayout& value) {
    if (bytes.size() != Length) return false;
    std::copy(bytes.begin(), bytes.end(), value.begin());
    return true;
  }
  static void Write(const RGBALayout& value, std::vector<ui8_t>& out) { AppendBytes(out, value); }
  static void Print(const RGBALayout& value, ValuePrinter& printer) { printer.Text(Ferro::bin2hex(value)); }
};

template <>
struct FieldCodec<ImageComponent> {
  static constexpr size_t Length = 3;
  static bool Read(std::span<const ui8_t> bytes, ImageComponent& value) {
    if (bytes.size() != Length) return false;
    value = {bytes[0], bytes[1], bytes[2]};
    return true;
  }
  static void Write(const ImageComponent& value, std::vector<ui8_t>& out) {
    out.insert(out.end(), {value.Ssiz, value.XRsiz, value.YRsiz});
  }
  static void Print(const ImageComponent& value, ValuePrinter& printer) {
    printer.Text(Ferro::bin2hex(std::array{value.Ssiz, value.XRsiz, value.YRsiz}));
  }
};

/// UTF-16 big-endian, length by the item.
template <>
struct FieldCodec<std::string> {
  static bool Read(std::span<const ui8_t> bytes, std::string& value) {
    value = DecodeUTF16(bytes);
    return true;
  }
  static void Write(const std::string& value, std::vector<ui8_t>& out) { AppendBytes(out, EncodeUTF16(value)); }
  static void Print(const std::string& value, ValuePrinter& printer) { printer.Text(value); }
};

/// ISO 646, one byte for each character, ended by the item or a zero byte.
struct ISO7Codec {
  static bool Read(std::span<const ui8_t> bytes, std::string& value) {
    value.assign(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
    return true;
  }
  static void Write(const std::string& value, std::vector<ui8_t>& out) {
    out.insert(out.end(), value.begin(), value.end());
  }
  static void Print(const std::string& value, ValuePrinter& printer) { printer.Text(value); }
};

/// Raw bytes.
template <>
struct FieldCodec<std::vector<ui8_t>> {
  static bool Read(std::span<const ui8_t> bytes, std::vector<ui8_t>& value) {
    value.assign(bytes.begin(), bytes.end());
    return true;
  }
  static void Write(const std::vector<ui8_t>& value, std::vector<ui8_t>& out) { AppendBytes(out, value); }
  static void Print(const std::vector<ui8_t>& value, ValuePrinter& printer) { printer.Text(Ferro::bin2hex(value)); }
};

/// Batch or array: count, item size, items. An empty one has item size 0; longer items than ours are cut.
template <class T>
struct FieldCodec<std::vector<T>> {
  using Item = FieldCodec<T>;
  static bool Read(std::span<const ui8_t> bytes, std::vector<T>& value) {
    if (bytes.size() < 8) return false;
    const ui64_t count = LoadBE<ui32_t>(bytes.data());
    const ui64_t size = LoadBE<ui32_t>(bytes.data() + 4);
    if (count != 0 && (size < Item::Length || count > (bytes.size() - 8) / size)) return false;
    value.assign(count, T{});
    for (ui64_t i = 0; i < count; ++i)
      if (!Item::Read(bytes.subspan(8 + i * size, Item::Length), value[i])) return false;
    return true;
  }
  static void Write(const std::vector<T>& value, std::vector<ui8_t>& out) {
    AppendBE(out, static_cast<ui32_t>(value.size()));
    AppendBE(out, static_cast<ui32_t>(value.empty() ? 0 : Item::Length));
    for (const T& item : value) Item::Write(item, out);
  }
  static void Print(const std::vector<T>& value, ValuePrinter& printer) {
    printer.BeginList();
    for (const T& item : value) Item::Print(item, printer);
    printer.EndList();
  }
};

}  // namespace QUIRE::MXF
