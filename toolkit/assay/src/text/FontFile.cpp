// SPDX-License-Identifier: BSD-3-Clause
#include "FontFile.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace Assay {
namespace {

// What stands in front of each piece of memory: its size, as wide as what any type is aligned to.
constexpr size_t PieceHead = alignof(std::max_align_t);

/// Memory for FreeType, which a hostile font makes ask for much.
class BoundedMemory {
 public:
  BoundedMemory() : m_Memory{this, Take, Give, Resize} {}
  BoundedMemory(const BoundedMemory&) = delete;
  BoundedMemory& operator=(const BoundedMemory&) = delete;
  ~BoundedMemory() = default;

  FT_Memory Get() { return &m_Memory; }

 private:
  static void* Take(FT_Memory memory, long size) { return Resize(memory, 0, size, nullptr); }

  static void Give(FT_Memory memory, void* block) {
    if (block != nullptr) Resize(memory, 0, 0, block);
  }

  // FreeType resizes to other sizes than 0, and gives back what it was handed out.
  static void* Resize(FT_Memory memory, long /*before*/, long size, void* block) {
    auto& self = *static_cast<BoundedMemory*>(memory->user);
    auto* piece = block == nullptr ? nullptr : static_cast<char*>(block) - PieceHead;
    const size_t before = piece == nullptr ? 0 : *reinterpret_cast<size_t*>(piece);
    if (size <= 0) {
      self.m_Used -= before;
      std::free(piece);
      return nullptr;
    }
    const auto wanted = static_cast<size_t>(size);
    if (wanted > FontFile::MaxMemory - (self.m_Used - before)) return nullptr;
    piece = static_cast<char*>(std::realloc(piece, PieceHead + wanted));
    if (piece == nullptr) return nullptr;
    self.m_Used += wanted - before;
    *reinterpret_cast<size_t*>(piece) = wanted;
    return piece + PieceHead;
  }

  FT_MemoryRec_ m_Memory;
  size_t m_Used = 0;  // bytes
};

/// Whether a file begins as Open Font Format does. FreeType knows many more, which projectors do not.
bool IsOpenFont(std::span<const ui8_t> bytes) {
  using namespace std::string_view_literals;
  constexpr std::array<std::string_view, 4> Tags = {"\0\1\0\0"sv, "OTTO"sv, "true"sv, "ttcf"sv};
  if (bytes.size() < 12) return false;
  const std::string_view tag(reinterpret_cast<const char*>(bytes.data()), 4);
  return std::ranges::find(Tags, tag) != Tags.end();
}

}  // namespace

struct FontFile::Impl {
  Impl() {
    if (FT_New_Library(Memory.Get(), &Library) == 0) FT_Add_Default_Modules(Library);
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl() {
    Close();
    if (Library != nullptr) FT_Done_Library(Library);
  }

  void Close() {
    if (Face != nullptr) FT_Done_Face(Face);
    Face = nullptr;
    TriedCount = 0;
  }

  BoundedMemory Memory;
  FT_Library Library = nullptr;
  FT_Face Face = nullptr;
  size_t TriedCount = 0;  // shapes of this face
};

FontFile::FontFile() : m_Impl(std::make_unique<Impl>()) {}
FontFile::~FontFile() = default;

bool FontFile::Open(std::span<const ui8_t> bytes) {
  m_Impl->Close();
  if (m_Impl->Library == nullptr || bytes.size() > MaxSize || !IsOpenFont(bytes)) return false;
  const auto size = static_cast<FT_Long>(bytes.size());
  if (FT_New_Memory_Face(m_Impl->Library, bytes.data(), size, 0, &m_Impl->Face) != 0) {
    m_Impl->Face = nullptr;
    return false;
  }
  if (FT_IS_SCALABLE(m_Impl->Face) && m_Impl->Face->num_glyphs > 0) return true;
  m_Impl->Close();
  return false;
}

bool FontFile::CanDraw(char32_t character) {
  if (m_Impl->Face == nullptr || m_Impl->Face->charmap == nullptr) return false;
  const FT_UInt glyph = FT_Get_Char_Index(m_Impl->Face, character);
  // Outlines alone, as they are stored: no instructions are run.
  if (glyph == 0 || m_Impl->TriedCount++ >= MaxTried) return glyph != 0;
  return FT_Load_Glyph(m_Impl->Face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_RECURSE) == 0;
}

}  // namespace Assay
