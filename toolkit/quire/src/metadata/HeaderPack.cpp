// SPDX-License-Identifier: BSD-3-Clause
#include "HeaderPack.h"

#include "base/FormatError.h"
#include "klv/KLVScanner.h"

#include <QUIRE/MXF/OP1aHeader.h>

#include <Ferro/CheckedMath.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

// An ordinary header partition fills this exactly.
constexpr size_t FirstRead = 16384;
constexpr size_t LongestRunIn = 65535;
constexpr size_t LongestKL = 25;
// How every header partition pack begins, up to the state of the partition.
constexpr ui8_t HeaderPackHead[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x02};
constexpr size_t VersionByte = 7;

Result_t ReadSome(const Ferro::FileReader& file, ui64_t offset, size_t wanted, std::vector<ui8_t>& bytes) {
  bytes.resize(std::min<ui64_t>(wanted, file.Size() - offset));
  size_t count = 0;
  const Result_t result = file.ReadUpTo(offset, bytes, count);
  bytes.resize(count);
  return result;
}

// The place of the pack in `bytes`, or their end. What precedes it, the run-in, may be anything but these bytes (ST 377-1,
// 6.5).
size_t FindHeaderPack(std::span<const ui8_t> bytes) {
  for (size_t at = 0; at + sizeof HeaderPackHead <= bytes.size() && at <= LongestRunIn; ++at) {
    const auto here = bytes.subspan(at, sizeof HeaderPackHead);
    const auto differs = [&](size_t i) { return i != VersionByte && here[i] != HeaderPackHead[i]; };
    size_t i = 0;
    while (i < sizeof HeaderPackHead && !differs(i)) ++i;
    if (i == sizeof HeaderPackHead) return at;
  }
  return bytes.size();
}

// The KLV after the pack, from what was read already where that suffices.
std::optional<KLVPacket> NextKLV(const Ferro::FileReader& file, const HeaderPack& pack) {
  const ui64_t offset = pack.Pack.FileOffset + pack.Pack.PackLength;
  if (pack.Bytes.size() < pack.Pack.PackLength + LongestKL) return KLVScanner(file).At(offset, file.Size());
  return ParseKLV(std::span<const ui8_t>(pack.Bytes).subspan(pack.Pack.PackLength), offset, file.Size());
}

}  // namespace

Result_t LocateHeaderPack(const Ferro::FileReader& file, size_t first_read, std::vector<ui8_t>& bytes, ui64_t& run_in) {
  for (const size_t wanted : {first_read, LongestRunIn + first_read}) {
    if (const Result_t result = ReadSome(file, 0, wanted, bytes); result.Failure()) return result;
    run_in = FindHeaderPack(bytes);
    if (run_in < bytes.size()) {
      bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(run_in));
      return Ferro::RESULT_OK;
    }
    if (bytes.size() == file.Size()) break;
  }
  return Ferro::RESULT_NOT_FOUND;
}

Result_t ReadHeaderPack(const Ferro::FileReader& file, HeaderPack& pack) {
  ui64_t run_in = 0;
  const Result_t result = LocateHeaderPack(file, FirstRead, pack.Bytes, run_in);
  if (result == Ferro::RESULT_NOT_FOUND) return FormatError(0, "no header partition pack within 65535 bytes");
  return result.Success() ? pack.Pack.Read(pack.Bytes, run_in) : result;
}

Result_t ReadHeaderMetadata(const Ferro::FileReader& file, const HeaderPack& pack, std::vector<ui8_t>& metadata,
                            ui64_t& offset) {
  const ui64_t length = pack.Pack.HeaderByteCount;
  const std::span<const ui8_t> have(pack.Bytes);
  offset = pack.Pack.FileOffset + pack.Pack.PackLength;
  // The count starts after fill that aligns the metadata (ST 377-1, 7.1).
  if (const auto next = NextKLV(file, pack); next && IsFillKey(next->Key)) offset = next->End();
  if (!Ferro::RangeFits<ui64_t>(offset, length, file.Size()))
    return FormatError(pack.Pack.FileOffset, "header metadata of %llu bytes beyond the end of the file",
                       static_cast<unsigned long long>(length));
  if (length > OP1aHeader::MaxMetadataBytes)
    return FormatError(pack.Pack.FileOffset, "header metadata of %llu bytes, more than the limit",
                       static_cast<unsigned long long>(length));
  const auto rest = have.subspan(std::min<ui64_t>(offset - pack.Pack.FileOffset, have.size()));
  const auto taken = rest.first(std::min<ui64_t>(rest.size(), length));
  metadata.assign(taken.begin(), taken.end());
  metadata.resize(length);
  if (taken.size() == length) return Ferro::RESULT_OK;
  return file.ReadAt(offset + taken.size(), std::span<ui8_t>(metadata).subspan(taken.size()));
}

}  // namespace QUIRE::MXF
