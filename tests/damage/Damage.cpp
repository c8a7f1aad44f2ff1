// SPDX-License-Identifier: BSD-3-Clause
#include "Damage.h"

#include <algorithm>
#include <vector>

namespace testsupport {
namespace {

/// Another byte, that way from it.
char Changed(char byte, size_t difference) {
  return static_cast<char>(static_cast<unsigned char>(byte) ^ difference);
}

size_t Shorter(size_t size, Dice& dice) {
  return size == 0 ? 0 : dice.Below(size);
}

std::string ChangeBytes(std::string& bytes, Dice& dice) {
  const size_t at = Shorter(bytes.size(), dice);
  const size_t count = std::min(1 + dice.Below(8), bytes.size() - at);
  for (size_t i = 0; i < count; ++i) bytes[at + i] = Changed(bytes[at + i], 1 + dice.Below(255));
  return std::to_string(count) + " bytes changed from " + std::to_string(at) + " on";
}

std::string ChangeBit(std::string& bytes, Dice& dice) {
  const size_t at = Shorter(bytes.size(), dice);
  bytes[at] = Changed(bytes[at], size_t{1} << dice.Below(8));
  return "1 bit changed at " + std::to_string(at);
}

std::string ZeroBytes(std::string& bytes, Dice& dice) {
  const size_t at = Shorter(bytes.size(), dice);
  const size_t count = std::min(1 + dice.Below(4096), bytes.size() - at);
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, '\0');
  return std::to_string(count) + " bytes zeroed from " + std::to_string(at) + " on";
}

std::string CutOff(std::string& bytes, Dice& dice) {
  bytes.resize(Shorter(bytes.size(), dice));
  return "cut after " + std::to_string(bytes.size()) + " bytes";
}

std::string Extend(std::string& bytes, Dice& dice) {
  const size_t count = 1 + dice.Below(1000);
  for (size_t i = 0; i < count; ++i) bytes += static_cast<char>(dice.Below(256));
  return std::to_string(count) + " bytes added at the end";
}

/// Removes the file or puts another of the package in its place.
std::string ReplaceFile(PackageFiles& files, const std::string& path, Dice& dice) {
  if (dice.Below(4) == 0) {
    files.erase(path);
    return "removed";
  }
  std::vector<std::string> others;
  for (const auto& [other, bytes] : files)
    if (other != path && IsDocument(KindOfFile(other)) == IsDocument(KindOfFile(path))) others.push_back(other);
  if (others.empty()) return "";
  const std::string other = dice.Of(others);
  files[path] = files[other];
  return other + " put in its place";
}

}  // namespace

std::string DamageBytes(std::string& bytes, Dice& dice) {
  if (bytes.empty()) return "";
  switch (dice.Below(6)) {
    case 0:
      return ZeroBytes(bytes, dice);
    case 1:
      return CutOff(bytes, dice);
    case 2:
      return Extend(bytes, dice);
    case 3:
      return ChangeBit(bytes, dice);
    default:
      return ChangeBytes(bytes, dice);
  }
}

Damage DamagePackage(PackageFiles& files, FileKind kind, uint32_t seed) {
  Dice dice(seed);
  std::vector<std::string> candidates;
  for (const auto& [path, bytes] : files)
    if (KindOfFile(path) == kind) candidates.push_back(path);
  Damage damage;
  damage.Path = dice.Of(candidates);
  damage.Kind = kind;
  const PackageFiles before = files;
  while (files == before) {
    const size_t way = dice.Below(12);
    if (way == 0) {
      damage.Text = ReplaceFile(files, damage.Path, dice);
    } else {
      std::string& bytes = files[damage.Path];
      const bool has_form = IsDocument(damage.Kind) || damage.Path.ends_with(".mxf");
      if (way < 4 || !has_form)
        damage.Text = DamageBytes(bytes, dice);
      else
        damage.Text = IsDocument(damage.Kind) ? DamageDocument(bytes, dice) : DamageTrackFile(bytes, dice);
    }
  }
  return damage;
}

}  // namespace testsupport
