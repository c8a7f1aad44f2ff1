// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/LabelMeaning.h>

#include <QUIRE/Types.h>

#include <algorithm>
#include <initializer_list>

namespace QUIRE {

namespace {

// A label or a family of labels, by bytes 9 to 16 as far as they are given.
struct KnownLabel {
  ui8_t Length;
  ui8_t Bytes[8];
  const char* Meaning;
};

// The longer, more special ones first.
constexpr KnownLabel Labels[] = {
    // Picture coding.
    {8, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01, 0x01}, "JPEG 2000, D-Cinema profile"},
    {8, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01, 0x03}, "JPEG 2000, 2K D-Cinema profile"},
    {8, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01, 0x04}, "JPEG 2000, 4K D-Cinema profile"},
    {8, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01, 0x7f}, "JPEG 2000 of no profile"},
    {7, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x01}, "JPEG 2000, broadcast profile"},
    {7, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01, 0x08}, "high-throughput JPEG 2000 (HTJ2K)"},
    {6, {0x04, 0x01, 0x02, 0x02, 0x03, 0x01}, "JPEG 2000, IMF profile"},
    {6, {0x04, 0x01, 0x02, 0x02, 0x03, 0x06}, "ProRes"},
    {6, {0x04, 0x01, 0x02, 0x02, 0x01, 0x31}, "AVC (H.264)"},
    {6, {0x04, 0x01, 0x02, 0x02, 0x01, 0x32}, "AVC (H.264)"},
    {5, {0x04, 0x01, 0x02, 0x02, 0x01}, "MPEG video"},
    {5, {0x04, 0x01, 0x02, 0x02, 0x02}, "DV"},
    {5, {0x04, 0x01, 0x02, 0x02, 0x71}, "VC-3 (DNxHD)"},
    {4, {0x04, 0x01, 0x02, 0x01}, "uncompressed pictures"},
    // Encryption (ST 429-6).
    {6, {0x02, 0x09, 0x02, 0x01, 0x01, 0x00}, "AES-128 CBC"},
    {5, {0x02, 0x09, 0x02, 0x02, 0x01}, "HMAC-SHA1"},
    {5, {0x02, 0x09, 0x02, 0x02, 0x02}, "HMAC-SHA1"},
    // Immersive audio (ST 429-18): its coding as auxiliary data, and its container.
    {4, {0x0e, 0x09, 0x06, 0x04}, "immersive audio"},
    {4, {0x0e, 0x09, 0x06, 0x05}, "immersive audio, frame-wrapped"},
};

// Byte 14 of a generic container label (ST 379-1, RP 224). Where byte 15 counts wrappings, 1 is by frame and 2 by clip.
struct Container {
  ui8_t Kind;
  const char* Meaning;
};
constexpr Container Containers[] = {
    {0x01, "D-10 (IMX)"},
    {0x02, "DV"},
    {0x04, "MPEG video"},
    {0x05, "uncompressed pictures"},
    {0x06, "PCM sound"},
    {0x0a, "A-law sound"},
    {0x0b, "encrypted essence"},
    {0x0c, "JPEG 2000"},
    {0x10, "AVC (H.264)"},
    {0x11, "VC-3 (DNxHD)"},
    {0x1c, "ProRes"},
    {0x1d, "IMF immersive audio"},
    {0x7f, "several containers"},
};

constexpr std::initializer_list<ui8_t> LabelHead = {0x06, 0x0e, 0x2b, 0x34, 0x04};
constexpr std::initializer_list<ui8_t> PatternHead = {0x0d, 0x01, 0x02, 0x01};
constexpr std::initializer_list<ui8_t> ContainerHead = {0x0d, 0x01, 0x03, 0x01, 0x02};

bool BeginsWith(const ui8_t* bytes, std::initializer_list<ui8_t> head) {
  return std::equal(head.begin(), head.end(), bytes);
}

// Bytes 13 and 14: one, several in turn or several at choice, of items and of packages (ST 377-1, 8.3).
std::string PatternMeaning(ui8_t items, ui8_t packages) {
  if (items == 0x10) return "OP-Atom";
  if (items < 1 || items > 3 || packages < 1 || packages > 3) return {};
  return std::string("OP") + static_cast<char>('0' + items) + static_cast<char>('a' + packages - 1);
}

const char* WrappingOf(ui8_t kind, ui8_t wrapping, ui8_t detail) {
  constexpr ui8_t mpeg = 0x04, sound = 0x06, avc = 0x10, d10 = 0x01, immersive = 0x1d, several = 0x7f;
  if (kind == d10 || kind == immersive || kind == several) return "";
  if (kind == mpeg || kind == avc) wrapping = detail;          // byte 15 is the stream's number
  if (kind == sound && wrapping > 2) wrapping = wrapping - 2;  // AES3 after Broadcast Wave
  return wrapping == 1 ? ", frame-wrapped" : wrapping == 2 ? ", clip-wrapped" : "";
}

std::string ContainerMeaning(ui8_t kind, ui8_t wrapping, ui8_t detail) {
  constexpr ui8_t text_and_data = 0x13;
  if (kind == text_and_data) return wrapping == 1 ? "timed text" : "auxiliary data, frame-wrapped";
  const auto* found =
      std::find_if(std::begin(Containers), std::end(Containers), [=](const auto& known) { return known.Kind == kind; });
  if (found == std::end(Containers)) return {};
  return std::string(found->Meaning) + WrappingOf(kind, wrapping, detail);
}

}  // namespace

std::string LabelMeaning(const UL& label) {
  if (!BeginsWith(label.Value(), LabelHead)) return {};
  const ui8_t* const item = label.Value() + 8;
  if (BeginsWith(item, PatternHead)) return PatternMeaning(item[4], item[5]);
  if (BeginsWith(item, ContainerHead)) return ContainerMeaning(item[5], item[6], item[7]);
  const auto* found = std::find_if(std::begin(Labels), std::end(Labels), [item](const KnownLabel& known) {
    return std::equal(known.Bytes, known.Bytes + known.Length, item);
  });
  return found == std::end(Labels) ? std::string() : found->Meaning;
}

}  // namespace QUIRE
