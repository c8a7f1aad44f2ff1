// SPDX-License-Identifier: BSD-3-Clause
#include "TextResources.h"

#include <Cairn/AssetMapPath.h>
#include <Ferro/FileReader.h>
#include <QUIRE/MXF/Preface.h>
#include <QUIRE/MXF/SubDescriptors.h>
#include <Sigil/KeyRing.h>

#include <algorithm>
#include <filesystem>

namespace Assay {
namespace {

namespace fs = std::filesystem;

std::string Resolve(const fs::path& path) {
  std::error_code error;
  const fs::path resolved = fs::canonical(path, error);
  return error ? std::string() : resolved.string();
}

/// The most bytes that each stream of a file can have: its partitions reach from one to the next.
std::map<ui32_t, ui64_t> StreamLengths(const QUIRE::MXF::RIP& partitions, ui64_t file_size) {
  std::vector<QUIRE::MXF::RIP::Pair> pairs = partitions.PairArray;
  std::ranges::sort(pairs, {}, &QUIRE::MXF::RIP::Pair::ByteOffset);
  std::map<ui32_t, ui64_t> lengths;
  for (size_t i = 0; i < pairs.size(); ++i) {
    const ui64_t end = i + 1 < pairs.size() ? pairs[i + 1].ByteOffset : file_size;
    lengths[pairs[i].BodySID] += end - std::min(end, pairs[i].ByteOffset);
  }
  return lengths;
}

/// The stream of the document itself, as the reader takes it.
ui32_t DocumentStream(const QUIRE::MXF::OP1aHeader& header) {
  const QUIRE::MXF::SourcePackage* package = header.FilePackage();
  ui32_t first = 0;
  for (const auto& object : header.Objects()) {
    const auto* data = dynamic_cast<const QUIRE::MXF::EssenceContainerData*>(object.get());
    if (data == nullptr || data->BodySID == 0) continue;
    const bool is_linked = package != nullptr && QUIRE::MXF::MaterialNumber(data->LinkedPackageUID) ==
                                                     QUIRE::MXF::MaterialNumber(package->PackageUID);
    if (is_linked) return data->BodySID;
    if (first == 0) first = data->BodySID;
  }
  return first == 0 ? 1 : first;
}

}  // namespace

FolderResources::FolderResources(const std::string& root, const std::string& document)
    : m_Root(Resolve(root)), m_Folder((fs::path(root) / document).parent_path().string()) {}

std::string FolderResources::Find(const Cairn::TextResource& resource) const {
  std::vector<std::string> candidates;
  if (m_Root.empty() || Cairn::AssetMapPathCandidates(resource.Path, candidates).Failure()) return {};
  for (const std::string& candidate : candidates) {
    const std::string file = Resolve(fs::path(m_Folder) / candidate);
    std::error_code error;
    if (file.starts_with(m_Root + '/') && fs::is_regular_file(file, error)) return file;
  }
  return {};
}

ui64_t FolderResources::SizeBound(const Cairn::TextResource& resource) const {
  const std::string file = Find(resource);
  std::error_code error;
  const ui64_t size = file.empty() ? 0 : fs::file_size(file, error);
  return error ? 0 : size;
}

QUIRE::Result_t FolderResources::Read(const Cairn::TextResource& resource, std::vector<ui8_t>& bytes) {
  Ferro::FileReader file;
  if (const QUIRE::Result_t result = file.OpenRead(Find(resource)); result.Failure()) return result;
  if (file.Size() > MaxTextPart) return Ferro::RESULT_TOOLARGE;
  bytes.resize(static_cast<size_t>(file.Size()));
  return file.ReadAt(0, bytes);
}

void TrackFileText::NoteStreams(ui64_t file_size) {
  m_Lengths = StreamLengths(m_Reader.RIP(), file_size);
  std::map<UUID, ui32_t> streams;
  for (const auto& object : m_Reader.OP1aHeader().Objects()) {
    const auto* resource = dynamic_cast<const QUIRE::MXF::TimedTextResourceSubDescriptor*>(object.get());
    if (resource == nullptr) continue;
    // Of several with one identifier the longest: which of them is read is not known here.
    ui32_t& stream = streams[resource->AncillaryResourceID];
    if (stream == 0 || m_Lengths[resource->EssenceStreamID] > m_Lengths[stream]) stream = resource->EssenceStreamID;
  }
  for (const auto& listed : m_Descriptor.ResourceList)
    if (const ui32_t stream = streams[listed.ResourceID]; stream != 0) m_Streams[listed.ResourceID] = stream;
}

TrackFileText::State TrackFileText::Open(const TrackFile& file, const Sigil::KeyRing* keys) {
  QUIRE::TrackEncryption encryption;
  if (m_Reader.OpenRead(file.FullPath()).Failure() || m_Reader.FillTimedTextDescriptor(m_Descriptor).Failure())
    return State::Unreadable;
  NoteStreams(file.Size);
  const ui64_t document_length = m_Lengths.empty() ? file.Size : m_Lengths[DocumentStream(m_Reader.OP1aHeader())];
  if (document_length > MaxTextDocument) return State::TooLarge;
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

std::string TrackFileText::Find(const Cairn::TextResource& resource) const {
  const auto stream = m_Streams.find(resource.ID);
  return stream == m_Streams.end() ? std::string() : std::to_string(stream->second);
}

ui64_t TrackFileText::SizeBound(const Cairn::TextResource& resource) const {
  const auto stream = m_Streams.find(resource.ID);
  const auto length = stream == m_Streams.end() ? m_Lengths.end() : m_Lengths.find(stream->second);
  return length == m_Lengths.end() ? 0 : length->second;
}

QUIRE::Result_t TrackFileText::Read(const Cairn::TextResource& resource, std::vector<ui8_t>& bytes) {
  if (SizeBound(resource) > MaxTextPart) return Ferro::RESULT_TOOLARGE;
  QUIRE::TimedText::FrameBuffer frame;
  auto* decryption = m_IsEncrypted ? &m_Contexts.Decryption : nullptr;
  auto* integrity = m_IsEncrypted ? &m_Contexts.Integrity : nullptr;
  const QUIRE::Result_t result = m_Reader.ReadAncillaryResource(resource.ID, frame, decryption, integrity);
  if (result.Success()) bytes.assign(frame.RoData(), frame.RoData() + frame.Size());
  return result;
}

}  // namespace Assay
