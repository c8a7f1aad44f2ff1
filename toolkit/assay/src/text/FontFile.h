// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <cstddef>
#include <memory>
#include <span>

namespace Assay {

/// A font of a text, as projectors take them: Open Font Format, with outlines of TrueType or CFF. Damaged and hostile files
/// are refused; what is needed of memory is bounded. One thread at a time.
class FontFile {
 public:
  static constexpr size_t MaxSize = 32 * 1024 * 1024;    // bytes of a file
  static constexpr size_t MaxTried = 1'000;              // shapes of a font that are read, each of which takes time
  static constexpr size_t MaxMemory = 64 * 1024 * 1024;  // bytes that reading one may take besides

  FontFile();
  ~FontFile();
  FontFile(const FontFile&) = delete;
  FontFile& operator=(const FontFile&) = delete;

  /// Takes a font of MaxSize at most; the bytes must stay. @return false for what is no font that can be drawn with.
  [[nodiscard]] bool Open(std::span<const ui8_t> bytes);
  /// Whether a font is open that has a shape for the character, which can be read. After MaxTried the font is believed.
  [[nodiscard]] bool CanDraw(char32_t character);

 private:
  struct Impl;

  std::unique_ptr<Impl> m_Impl;
};

}  // namespace Assay
