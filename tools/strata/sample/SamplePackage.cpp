// SPDX-License-Identifier: BSD-3-Clause
#include "SamplePackage.h"

#include "SampleRequire.h"
#include "terminal/CommandError.h"

#include <Cairn/MIMEType.h>
#include <Ferro/Path.h>

#include <filesystem>
#include <utility>

namespace Tool {

namespace {

constexpr char PackingListName[] = "PKL.xml";

}  // namespace

SamplePackage::SamplePackage(const SampleSeed& seed, std::string folder, std::string title, Cairn::DCPFormat_t flavour,
                             const SampleSigner* signer)
    : m_Seed(seed), m_Folder(std::move(folder)), m_Title(std::move(title)), m_Flavour(flavour), m_Signer(signer) {
  std::filesystem::create_directory(m_Folder);
  m_PackingList.ID = m_Seed.ID(m_Title + "/packing-list");
  m_AssetMap.ID = m_Seed.ID(m_Title + "/asset-map");
  m_PackingList.IssueDate = m_AssetMap.IssueDate = m_Seed.Date().EncodeString();
  m_PackingList.Issuer = m_PackingList.Creator = m_AssetMap.Issuer = m_AssetMap.Creator = SampleIssuer;
  AddToMap(m_PackingList.ID, PackingListName, true);
}

std::string SamplePackage::PathOf(const std::string& filename) const {
  return Ferro::PathJoin(m_Folder, filename);
}

Ferro::SHA1 SamplePackage::Add(const Ferro::UUID& id, const std::string& filename, Cairn::FileType_t type) {
  AddToMap(id, filename, false);
  Cairn::PackingList::Asset& asset = m_PackingList.AssetList.emplace_back();
  asset.ID = id;
  asset.Type =
      m_Flavour == Cairn::DFT_Interop ? Cairn::FileTypeToInteropMIMEType(type) : Cairn::FileTypeToSMPTEMIMEType(type);
  asset.OriginalFileName = std::filesystem::path(filename).filename();
  asset.Size = static_cast<Ferro::fsize_t>(std::filesystem::file_size(PathOf(filename)));
  SampleRequire(Ferro::DigestFile(PathOf(filename), asset.Digest), PathOf(filename));
  return asset.Digest;
}

void SamplePackage::AddComposition(const Cairn::CompositionPlaylist& composition, const std::string& filename) {
  m_PackingList.Annotation = composition.ContentTitle;
  WriteSigned(filename, Encode(composition, filename));
  Add(composition.ID, filename, Cairn::FT_CPL);
}

void SamplePackage::Finish() {
  const std::string end = m_Flavour == Cairn::DFT_Interop ? "" : ".xml";
  WriteSigned(PackingListName, Encode(m_PackingList, PackingListName));
  Write("ASSETMAP" + end, Encode(m_AssetMap, "ASSETMAP" + end));
  Write("VOLINDEX" + end, Encode(Cairn::VolumeIndex(), "VOLINDEX" + end));
}

void SamplePackage::AddToMap(const Ferro::UUID& id, const std::string& filename, bool is_packing_list) {
  Cairn::AssetMap::Asset& asset = m_AssetMap.AssetList.emplace_back();
  asset.ID = id;
  asset.IsPackingList = is_packing_list;
  asset.ChunkList.emplace_back().Path = filename;
}

template <class DocumentT>
std::string SamplePackage::Encode(const DocumentT& document, const std::string& filename) const {
  std::string text;
  SampleRequire(document.EncodeXML(text, m_Flavour), PathOf(filename));
  return text;
}

void SamplePackage::Write(const std::string& filename, const std::string& text) const {
  WriteSampleFile(PathOf(filename), text);
}

void SamplePackage::WriteSigned(const std::string& filename, std::string text) const {
  if (m_Signer != nullptr) m_Signer->Sign(text, PathOf(filename));
  Write(filename, text);
}

}  // namespace Tool
