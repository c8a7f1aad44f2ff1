// SPDX-License-Identifier: BSD-3-Clause
#include "base/BigEndian.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/RIP.h>

#include <algorithm>
#include <utility>

namespace QUIRE::MXF {
namespace {

// The value of a random index pack (ST 377-1, 12): for each partition its body SID (4 bytes) and the offset of its pack
// (8), in file order; then the length of the whole KLV (4), by which the pack is found from the end of the file.
constexpr ui64_t PairLength = 12;
constexpr ui64_t SmallestPack = 21;  // key, one byte of length, the closing word
constexpr ui64_t ProbeLength = 256;  // holds the pack of a file of 19 partitions
constexpr ui64_t LargestPack = 1 << 20;

}  // namespace

void RIP::Write(std::vector<ui8_t>& out) const {
  AppendKL(out, DefaultSMPTEDict().ul(MDD_RandomIndexPack), PairLength * PairArray.size() + 4);
  for (const Pair& pair : PairArray) {
    AppendBE(out, pair.BodySID);
    AppendBE(out, pair.ByteOffset);
  }
  AppendBE(out, static_cast<ui32_t>(ArchiveLength()));
}

Result_t RIP::Read(std::span<const ui8_t> bytes, ui64_t offset) {
  const auto packet = ParseKLV(bytes, 0, bytes.size());
  if (!packet || !DefaultSMPTEDict().Is(packet->Key, MDD_RandomIndexPack))
    return FormatError(offset, "no whole random index pack");
  if (packet->ValueLength < 4 || (packet->ValueLength - 4) % PairLength != 0)
    return FormatError(offset, "random index pack of %llu bytes, which are no whole pairs",
                       static_cast<unsigned long long>(packet->ValueLength));
  std::vector<Pair> pairs((packet->ValueLength - 4) / PairLength);
  const ui8_t* value = bytes.data() + packet->HeaderLength;
  for (Pair& pair : pairs) {
    pair = {LoadBE<ui32_t>(value), LoadBE<ui64_t>(value + 4)};
    value += PairLength;
  }
  PairArray = std::move(pairs);
  PackLength = packet->End();
  return Ferro::RESULT_OK;
}

Result_t RIP::ReadFromFile(const Ferro::FileReader& file) {
  const ui64_t probe = std::min<ui64_t>(ProbeLength, file.Size());
  if (probe < SmallestPack) return Ferro::RESULT_NOT_FOUND;
  std::vector<ui8_t> bytes(probe);
  Result_t result = file.ReadAt(file.Size() - probe, bytes);
  if (result.Failure()) return result;
  const ui64_t size = LoadBE<ui32_t>(bytes.data() + bytes.size() - 4);
  if (size < SmallestPack || size > file.Size() || size > LargestPack) return Ferro::RESULT_NOT_FOUND;
  if (size > probe) {
    bytes.resize(size);
    result = file.ReadAt(file.Size() - size, bytes);
    if (result.Failure()) return result;
  }
  const std::span<const ui8_t> pack = std::span<const ui8_t>(bytes).last(size);
  const auto packet = ParseKLV(pack, 0, size);
  if (!packet || packet->End() != size || !DefaultSMPTEDict().Is(packet->Key, MDD_RandomIndexPack) ||
      packet->ValueLength % PairLength != 4)
    return Ferro::RESULT_NOT_FOUND;
  return Read(pack, file.Size() - size);
}

}  // namespace QUIRE::MXF
