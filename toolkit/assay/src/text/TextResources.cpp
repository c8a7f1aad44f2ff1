// SPDX-License-Identifier: BSD-3-Clause
#include "TextResources.h"

#include <Cairn/AssetMapPath.h>
#include <Ferro/FileText.h>
#include <Sigil/KeyRing.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace Assay {
namespace {

namespace fs = std::filesystem;

std::string Resolve(const fs::path& path) {
  std::error_code error;
  const fs::path resolved = fs::canonical(path, error);
  return error ? std::string() : resolved.string();
}

/// The most bytes that one stream of a file can have: its partitions reach from one to the next.
ui64_t LongestStream(const QUIRE::MXF::RIP& partitions, ui64_t file_size) {
  std::vector<QUIRE::MXF::RIP::Pair> pairs = partitions.PairArray;
  std::ranges::sort(pairs, {}, &QUIRE::MXF::RIP::Pair::ByteOffset);
  std::map<ui32_t, ui64_t> lengths;
  ui64_t longest = pairs.empty() ? file_size : 0;
  for (size_t i = 0; i < pairs.size(); ++i) {
    const ui64_t end = i + 1 < pairs.size() ? pairs[i + 1].ByteOffset : file_size;
    ui64_t& length = lengths[pairs[i].BodySID];
    length += end - std::min(end, pairs[i].ByteOffset);
    longest = std::max(longest, length);
  }
  return longest;
}

}  // namespace

FolderResources::FolderResources(const std::string& root, const std::string& document)
    : m_Root(Resolve(root)), m_Folder((fs::path(root) / document).parent_path().string()) {}

std::string FolderResources::Find(const std::string& path) const {
  std::vector<std::string> candidates;
  if (m_Root.empty() || Cairn::AssetMapPathCandidates(path, candidates).Failure()) return {};
  for (const std::string& candidate : candidates) {
    const std::string file = Resolve(fs::path(m_Folder) / candidate);
    std::error_code error;
    if (file.starts_with(m_Root + '/') && fs::is_regular_file(file, error)) return file;
  }
  return {};
}

bool FolderResources::Has(const Cairn::TextResource& resource) {
  return !Find(resource.Path).empty();
}

std::optional<ui64_t> FolderResources::Size(const Cairn::TextResource& resource) const {
  const std::string file = Find(resource.Path);
  std::error_code error;
  const ui64_t size = file.empty() ? 0 : fs::file_size(file, error);
  return file.empty() || error ? std::nullopt : std::optional(size);
}

std::optional<std::vector<ui8_t>> FolderResources::Read(const Cairn::TextResource& resource) {
  std::string bytes;
  if (Ferro::ReadFileIntoString(Find(resource.Path), bytes, MaxTextPart).Failure()) return std::nullopt;
  return std::vector<ui8_t>(bytes.begin(), bytes.end());
}

TrackFileText::State TrackFileText::Open(const TrackFile& file, const Sigil::KeyRing* keys) {
  QUIRE::TrackEncryption encryption;
  if (m_Reader.OpenRead(file.FullPath()).Failure() || m_Reader.FillTimedTextDescriptor(m_Descriptor).Failure())
    return State::Unreadable;
  if (LongestStream(m_Reader.RIP(), file.Size) > MaxTextPart) return State::TooLarge;
  m_IsEncrypted = file.Info.EncryptedEssence;
  if (!m_IsEncrypted) return State::Open;
  if (m_Reader.FillTrackEncryption(encryption).Failure()) return State::Unreadable;
  const bool has_key = keys != nullptr && keys->FillContexts(encryption, m_Contexts).Success();
  return has_key ? State::Open : State::Encrypted;
}

QUIRE::Result_t TrackFileText::ReadDocument(std::string& text) {
  if (!m_IsEncrypted) return m_Reader.ReadTimedTextResource(text);
  return m_Reader.ReadTimedTextResource(text, &m_Contexts.Decryption, &m_Contexts.Integrity);
}

bool TrackFileText::Has(const Cairn::TextResource& resource) {
  return std::ranges::any_of(m_Descriptor.ResourceList,
                             [&](const auto& listed) { return listed.ResourceID == resource.ID; });
}

std::optional<std::vector<ui8_t>> TrackFileText::Read(const Cairn::TextResource& resource) {
  QUIRE::TimedText::FrameBuffer frame;
  const bool has_read =
      m_IsEncrypted
          ? m_Reader.ReadAncillaryResource(resource.ID, frame, &m_Contexts.Decryption, &m_Contexts.Integrity).Success()
          : m_Reader.ReadAncillaryResource(resource.ID, frame).Success();
  if (!has_read) return std::nullopt;
  return std::vector<ui8_t>(frame.RoData(), frame.RoData() + frame.Size());
}

}  // namespace Assay
