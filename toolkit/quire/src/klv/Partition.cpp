// SPDX-License-Identifier: BSD-3-Clause
#include "ParsePartition.h"
#include "base/BigEndian.h"
#include "base/FormatError.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Partition.h>

#include <algorithm>
#include <array>
#include <utility>

namespace QUIRE::MXF {
namespace {

constexpr ui64_t FixedLength = 88;  // the value without container labels
constexpr ui32_t LabelLength = 16;

// Bytes 14 and 15 of the key: kind 2 to 4 (header, body, footer) and status 1 to 4; 3 and 0x11 for a generic stream
// (ST 410). No value for what is no partition pack.
std::optional<std::pair<PartitionKind, PartitionStatus>> KindOfKey(const UL& key) {
  const ui8_t kind = key.Value()[13];
  const ui8_t status = key.Value()[14];
  std::array<ui8_t, 16> general{};
  std::copy_n(key.Value(), 16, general.begin());
  general[13] = 1;
  general[14] = 0;
  if (!DefaultSMPTEDict().Is(UL(general), MDD_PartitionPack)) return std::nullopt;
  if (kind == 3 && status == 0x11) return std::pair(PartitionKind::GenericStream, PartitionStatus::ClosedComplete);
  if (kind < 2 || kind > 4 || status < 1 || status > 4) return std::nullopt;
  return std::pair(PartitionKind{kind}, PartitionStatus{status});
}

// The value of a partition pack, all numbers big-endian (ST 377-1, 7.1):
//
//    0  version: major, minor                        2 bytes each
//    4  KAG size                                     4
//    8  offsets of this, previous, footer partition  8 each
//   32  bytes of header metadata, of index           8 each
//   48  index SID                                    4
//   52  offset of the essence in its stream          8
//   60  body SID                                     4
//   64  operational pattern                          16
//   80  number of container labels, bytes of each    4 each
//   88  the labels
Partition FixedFields(const ui8_t* value) {
  Partition read;
  read.MajorVersion = LoadBE<ui16_t>(value);
  read.MinorVersion = LoadBE<ui16_t>(value + 2);
  read.KAGSize = LoadBE<ui32_t>(value + 4);
  read.ThisPartition = LoadBE<ui64_t>(value + 8);
  read.PreviousPartition = LoadBE<ui64_t>(value + 16);
  read.FooterPartition = LoadBE<ui64_t>(value + 24);
  read.HeaderByteCount = LoadBE<ui64_t>(value + 32);
  read.IndexByteCount = LoadBE<ui64_t>(value + 40);
  read.IndexSID = LoadBE<ui32_t>(value + 48);
  read.BodyOffset = LoadBE<ui64_t>(value + 52);
  read.BodySID = LoadBE<ui32_t>(value + 60);
  read.OperationalPattern.Set(value + 64);
  return read;
}

}  // namespace

const char* PartitionKindName(PartitionKind kind) {
  switch (kind) {
    case PartitionKind::Header:
      return "header";
    case PartitionKind::Body:
      return "body";
    case PartitionKind::Footer:
      return "footer";
    case PartitionKind::GenericStream:
      return "generic stream";
  }
  return "unknown";
}

UL Partition::Key() const {
  std::array<ui8_t, 16> key = DefaultSMPTEDict().Type(MDD_PartitionPack).Label;
  const bool stream = Kind == PartitionKind::GenericStream;
  key[13] = static_cast<ui8_t>(stream ? PartitionKind::Body : Kind);
  key[14] = stream ? static_cast<ui8_t>(PartitionKind::GenericStream) : static_cast<ui8_t>(Status);
  return UL(key);
}

void Partition::Write(std::vector<ui8_t>& out) const {
  AppendKL(out, Key(), FixedLength + LabelLength * EssenceContainers.size());
  AppendBE(out, MajorVersion);
  AppendBE(out, MinorVersion);
  AppendBE(out, KAGSize);
  AppendBE(out, ThisPartition);
  AppendBE(out, PreviousPartition);
  AppendBE(out, FooterPartition);
  AppendBE(out, HeaderByteCount);
  AppendBE(out, IndexByteCount);
  AppendBE(out, IndexSID);
  AppendBE(out, BodyOffset);
  AppendBE(out, BodySID);
  AppendBytes(out, OperationalPattern.Bytes());
  AppendBE(out, static_cast<ui32_t>(EssenceContainers.size()));
  AppendBE(out, LabelLength);
  for (const UL& label : EssenceContainers) AppendBytes(out, label.Bytes());
}

std::optional<std::string> ParsePartition(std::span<const ui8_t> bytes, ui64_t offset, Partition& partition) {
  const auto packet = ParseKLV(bytes, 0, bytes.size());
  if (!packet) return "no whole partition pack";
  const auto kind = KindOfKey(packet->Key);
  if (!kind) return "key " + packet->Key.EncodeString() + " is no partition pack";
  if (packet->ValueLength < FixedLength)
    return "partition pack of only " + std::to_string(packet->ValueLength) + " bytes";
  const ui8_t* value = bytes.data() + packet->HeaderLength;
  const ui64_t count = LoadBE<ui32_t>(value + 80);
  const ui64_t size = LoadBE<ui32_t>(value + 84);
  if (count != 0 && (size < LabelLength || count > (packet->ValueLength - FixedLength) / size))
    return "partition pack with " + std::to_string(count) + " container labels of " + std::to_string(size) +
           " bytes beyond its end";
  partition = FixedFields(value);
  partition.Kind = kind->first;
  partition.Status = kind->second;
  for (ui64_t i = 0; i < count; ++i) partition.EssenceContainers.emplace_back().Set(value + FixedLength + i * size);
  partition.FileOffset = offset;
  partition.PackLength = packet->End();
  return std::nullopt;
}

Result_t Partition::Read(std::span<const ui8_t> bytes, ui64_t offset) {
  const auto error = ParsePartition(bytes, offset, *this);
  return error ? FormatError(offset, "%s", error->c_str()) : Ferro::RESULT_OK;
}

bool IsPartitionKey(const UL& key) {
  return KindOfKey(key).has_value();
}

}  // namespace QUIRE::MXF
