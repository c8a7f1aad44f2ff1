// SPDX-License-Identifier: BSD-3-Clause
#include "ClipWrapping.h"

#include "base/BigEndian.h"
#include "klv/KLVScanner.h"

#include <QUIRE/JP2KHeaders.h>

#include <algorithm>
#include <array>

namespace QUIRE {

namespace {

// Holds any main header of a cinema codestream.
constexpr size_t HeaderRead = 4096;
// More tile-parts than this are not walked over.
constexpr int MaxTileParts = 1024;

// The run's only element; no value where it has several, or something else.
std::optional<MXF::KLVPacket> OnlyElement(MXF::KLVScanner& scanner, const MXF::EssenceRun& run) {
  const ui64_t end = run.FileOffset + run.Length;
  auto packet = scanner.At(run.FileOffset, end);
  while (packet && (MXF::IsSystemItemKey(packet->Key) || MXF::IsFillKey(packet->Key)))
    packet = scanner.At(packet->End(), end);
  if (!packet || !MXF::IsEssenceKey(packet->Key) || scanner.SkipFill(packet->End(), end) != end) return std::nullopt;
  return packet;
}

bool IndexLeadsInto(const MXF::IndexTable& index, ui64_t element_length) {
  if (index.EditUnitByteCount() != 0) return index.EditUnitByteCount() < element_length;
  MXF::IndexEntry first;
  MXF::IndexEntry second;
  return index.Lookup(0, first).Success() && index.Lookup(1, second).Success() &&
         second.StreamOffset - first.StreamOffset < element_length;
}

// Walks over the tile-parts of the element's first codestream; true when another one follows.
bool HasSecondCodestream(const Ferro::FileReader& file, const MXF::KLVPacket& element) {
  std::vector<ui8_t> bytes(std::min<ui64_t>(HeaderRead, element.ValueLength));
  JP2K::CodestreamHeaders headers;
  if (file.ReadAt(element.ValueOffset(), bytes).Failure() || JP2K::ParseHeaders(bytes, headers).Failure()) return false;
  ui64_t at = headers.MainHeaderLength;
  for (int i = 0; i < MaxTileParts && at + 12 <= element.ValueLength; ++i) {
    std::array<ui8_t, 12> head{};
    if (file.ReadAt(element.ValueOffset() + at, head).Failure()) return false;
    const auto marker = static_cast<JP2K::Marker>(LoadBE<ui16_t>(head.data()));
    if (marker == JP2K::Marker::EOC) return static_cast<JP2K::Marker>(LoadBE<ui16_t>(&head[2])) == JP2K::Marker::SOC;
    const ui32_t length = LoadBE<ui32_t>(&head[6]);  // Psot
    if (marker != JP2K::Marker::SOT || length < head.size()) return false;
    at += length;
  }
  return false;
}

}  // namespace

bool IsOneClip(const Ferro::FileReader& file, const MXF::FileStructure& structure,
               const std::vector<MXF::EssenceRun>& runs, const TrackFacts& facts) {
  if (facts.Duration < 2 || runs.size() != 1) return false;
  MXF::KLVScanner scanner(file);
  const auto element = OnlyElement(scanner, runs.front());
  if (!element) return false;
  MXF::IndexTable index;
  const bool has_index = structure.ReadIndex(file, facts.BodySID, index).Success() && !index.IsEmpty();
  if (has_index && IndexLeadsInto(index, element->End() - element->Offset)) return true;
  const bool is_jpeg_2000 = facts.Type == ESS_JPEG_2000 || facts.Type == ESS_JPEG_2000_S;
  return is_jpeg_2000 && !facts.Encrypted && HasSecondCodestream(file, *element);
}

}  // namespace QUIRE
