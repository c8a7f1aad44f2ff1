// SPDX-License-Identifier: BSD-3-Clause
#include "Damage.h"

#include <QUIRE/MXF/KLV.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace testsupport {
namespace {

using QUIRE::MXF::KLVPacket;

constexpr size_t BatchHeader = 8;          // bytes before the items of a batch or an array: how many, and their size
constexpr size_t StreamOffsetAt = 3;       // within an index entry (ST 377-1, 11.2.5)
constexpr unsigned IndexEntries = 0x3f0a;  // local tag

unsigned ByteAt(const std::string& bytes, size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

size_t NumberAt(const std::string& bytes, size_t at, size_t size) {
  size_t number = 0;
  for (size_t i = 0; i < size; ++i) number = number << 8 | ByteAt(bytes, at + i);
  return number;
}

void PutNumber(std::string& bytes, size_t at, size_t size, size_t number) {
  for (size_t i = size; i-- > 0; number >>= 8) bytes[at + i] = static_cast<char>(number & 0xff);
}

std::vector<KLVPacket> PacketsOf(const std::string& bytes) {
  const std::span all(reinterpret_cast<const QUIRE::ui8_t*>(bytes.data()), bytes.size());
  std::vector<KLVPacket> packets;
  for (size_t at = 0; at < bytes.size(); at = packets.back().End()) {
    const auto packet = QUIRE::MXF::ParseKLV(all.subspan(at), at, bytes.size());
    if (!packet) break;
    packets.push_back(*packet);
  }
  return packets;
}

/// Category and registry designator of a key (ST 336) tell what it stands before.
bool IsOf(const std::string& bytes, const KLVPacket& packet, unsigned category, unsigned registry) {
  return ByteAt(bytes, packet.Offset + 4) == category && ByteAt(bytes, packet.Offset + 5) == registry;
}
bool IsFrame(const std::string& bytes, const KLVPacket& packet) {
  return IsOf(bytes, packet, 1, 2) || IsOf(bytes, packet, 2, 4);  // an element of essence, or an encrypted triplet
}
bool IsIndex(const std::string& bytes, const KLVPacket& packet) {
  return IsOf(bytes, packet, 2, 0x53) && ByteAt(bytes, packet.Offset + 13) == 0x10 &&
         ByteAt(bytes, packet.Offset + 8) == 0x0d && ByteAt(bytes, packet.Offset + 12) == 1;
}

template <class PredicateT>
std::vector<KLVPacket> Those(const std::string& bytes, PredicateT&& wanted) {
  std::vector<KLVPacket> some;
  for (const KLVPacket& packet : PacketsOf(bytes))
    if (wanted(bytes, packet)) some.push_back(packet);
  return some;
}

/// A value of a local set.
struct Item {
  unsigned Tag = 0;
  size_t At = 0;
  size_t Size = 0;
};

std::vector<Item> ItemsOf(const std::string& bytes, const KLVPacket& set) {
  std::vector<Item> items;
  for (size_t at = set.ValueOffset(); at + 4 <= set.End();) {
    const Item item = {static_cast<unsigned>(NumberAt(bytes, at, 2)), at + 4, NumberAt(bytes, at + 2, 2)};
    items.push_back(item);
    at = item.At + item.Size;
  }
  return items;
}

std::string ChangeLength(std::string& bytes, Dice& dice) {
  const auto packets = PacketsOf(bytes);
  const KLVPacket& packet = dice.Of(packets);
  const size_t at = packet.Offset + 16 + dice.Below(packet.HeaderLength - 16);
  bytes[at] = static_cast<char>(dice.Below(256));
  return "length of the KLV at " + std::to_string(packet.Offset) + " changed";
}

std::string ChangeItem(std::string& bytes, Dice& dice, bool is_index) {
  const auto sets = Those(bytes, [&](const std::string& all, const KLVPacket& packet) {
    return IsOf(all, packet, 2, 0x53) && IsIndex(all, packet) == is_index;
  });
  if (sets.empty()) return "";
  const auto items = ItemsOf(bytes, dice.Of(sets));
  const Item& item = dice.Of(items);
  if (item.Size == 0) return "";
  const size_t at = item.At + dice.Below(item.Size);
  bytes[at] = static_cast<char>(ByteAt(bytes, at) ^ (1 + dice.Below(255)));
  char tag[8];
  std::snprintf(tag, sizeof tag, "%04x", item.Tag);
  return std::string(is_index ? "index" : "header metadata") + ": 1 byte of item " + tag + " changed at " +
         std::to_string(at);
}

std::string ChangeFrame(std::string& bytes, Dice& dice) {
  const auto frames = Those(bytes, IsFrame);
  if (frames.empty()) return "";
  const size_t number = dice.Below(frames.size());
  const KLVPacket& frame = frames[number];
  if (frame.ValueLength == 0) return "";
  const size_t at = frame.ValueOffset() + dice.Below(frame.ValueLength);
  const size_t count = std::min<size_t>(1 + dice.Below(16), frame.End() - at);
  for (size_t i = 0; i < count; ++i) bytes[at + i] = static_cast<char>(dice.Below(256));
  return "frame " + std::to_string(number) + ": " + std::to_string(count) + " bytes changed at " +
         std::to_string(at - frame.ValueOffset());
}

std::string OverwriteFrame(std::string& bytes, Dice& dice) {
  const auto frames = Those(bytes, IsFrame);
  if (frames.size() < 2) return "";
  const size_t from = dice.Below(frames.size());
  const size_t to = dice.Below(frames.size());
  const std::string value = bytes.substr(frames[from].ValueOffset(), frames[from].ValueLength);
  if (frames[to].ValueLength != value.size()) return "";
  bytes.replace(frames[to].ValueOffset(), value.size(), value);
  return "frame " + std::to_string(from) + " put over frame " + std::to_string(to);
}

/// Makes the index lead to frames where they are now; left as it is where it has not one entry for each.
void CorrectIndex(std::string& bytes, const std::vector<size_t>& offsets) {
  const auto indexes = Those(bytes, IsIndex);
  for (const KLVPacket& index : indexes)
    for (const Item& item : ItemsOf(bytes, index)) {
      if (item.Tag != IndexEntries || NumberAt(bytes, item.At, 4) != offsets.size()) continue;
      const size_t size = NumberAt(bytes, item.At + 4, 4);
      const size_t first = NumberAt(bytes, item.At + BatchHeader + StreamOffsetAt, 8);
      for (size_t i = 0; i < offsets.size(); ++i)
        PutNumber(bytes, item.At + BatchHeader + i * size + StreamOffsetAt, 8, first + offsets[i] - offsets[0]);
    }
}

std::string SwapFrames(std::string& bytes, Dice& dice) {
  const auto frames = Those(bytes, IsFrame);
  if (frames.size() < 2) return "";
  const size_t one = dice.Below(frames.size());
  const size_t other = dice.Below(frames.size());
  if (one == other) return "";
  const auto [first, second] = std::minmax(one, other);
  const auto packet_text = [&](const KLVPacket& packet) {
    return bytes.substr(packet.Offset, packet.End() - packet.Offset);
  };
  const std::string former = packet_text(frames[first]);
  const std::string latter = packet_text(frames[second]);
  bytes.replace(frames[second].Offset, latter.size(), former);
  bytes.replace(frames[first].Offset, former.size(), latter);
  std::vector<size_t> offsets;
  for (const KLVPacket& frame : Those(bytes, IsFrame)) offsets.push_back(frame.Offset);
  CorrectIndex(bytes, offsets);
  return "frames " + std::to_string(first) + " and " + std::to_string(second) + " swapped, the index with them";
}

}  // namespace

std::string DamageTrackFile(std::string& bytes, Dice& dice) {
  switch (dice.Below(7)) {
    case 0:
      return ChangeLength(bytes, dice);
    case 1:
      return ChangeItem(bytes, dice, true);
    case 2:
    case 3:
      return ChangeItem(bytes, dice, false);
    case 4:
      return SwapFrames(bytes, dice);
    case 5:
      return OverwriteFrame(bytes, dice);
    default:
      return ChangeFrame(bytes, dice);
  }
}

}  // namespace testsupport
