// SPDX-License-Identifier: BSD-3-Clause
#include "SamplePackage.h"

#include "SampleRequire.h"

#include <Cairn/AssetMap.h>
#include <Cairn/MIMEType.h>
#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <filesystem>
#include <utility>

namespace {

constexpr char PackingListName[] = "PKL.xml";

template <class DocumentT>
void write(const DocumentT& document, const std::string& filename) {
  std::string text;
  SampleRequire(document.EncodeXML(text, Cairn::DFT_DCI_SMPTE), filename);
  SampleRequire(Ferro::WriteStringIntoFile(filename, text), filename);
}

}  // namespace

SamplePackage::SamplePackage(const SampleSeed& seed, std::string folder, std::string title)
    : m_Seed(seed), m_Folder(std::move(folder)), m_Title(std::move(title)) {
  std::filesystem::create_directory(m_Folder);
  m_PackingList.ID = m_Seed.ID(m_Title + "/packing-list");
  m_PackingList.Annotation = m_Title;
  m_PackingList.IssueDate = m_Seed.Date().EncodeString();
  m_PackingList.Issuer = m_PackingList.Creator = SampleIssuer;
}

std::string SamplePackage::PathOf(const std::string& filename) const {
  return Ferro::PathJoin(m_Folder, filename);
}

Ferro::SHA1 SamplePackage::Add(const Ferro::UUID& id, const std::string& filename, Cairn::FileType_t type) {
  Cairn::PackingList::Asset& asset = m_PackingList.AssetList.emplace_back();
  asset.ID = id;
  asset.Type = Cairn::FileTypeToSMPTEMIMEType(type);
  asset.OriginalFileName = filename;
  asset.Size = static_cast<Ferro::fsize_t>(std::filesystem::file_size(PathOf(filename)));
  SampleRequire(Ferro::DigestFile(PathOf(filename), asset.Digest), PathOf(filename));
  return asset.Digest;
}

void SamplePackage::AddComposition(const Cairn::CompositionPlaylist& composition, const std::string& filename) {
  write(composition, PathOf(filename));
  Add(composition.ID, filename, Cairn::FT_CPL);
}

void SamplePackage::Finish() {
  write(m_PackingList, PathOf(PackingListName));

  Cairn::AssetMap map;
  map.ID = m_Seed.ID(m_Title + "/asset-map");
  map.IssueDate = m_PackingList.IssueDate;
  map.Issuer = map.Creator = SampleIssuer;
  const auto add = [&](const Ferro::UUID& id, const std::string& filename, bool is_packing_list) {
    Cairn::AssetMap::Asset& asset = map.AssetList.emplace_back();
    asset.ID = id;
    asset.IsPackingList = is_packing_list;
    asset.ChunkList.emplace_back().Path = filename;
  };
  add(m_PackingList.ID, PackingListName, true);
  for (const Cairn::PackingList::Asset& asset : m_PackingList.AssetList) add(asset.ID, asset.OriginalFileName, false);
  write(map, PathOf("ASSETMAP.xml"));
  write(Cairn::VolumeIndex(), PathOf("VOLINDEX.xml"));
}
