// SPDX-License-Identifier: BSD-3-Clause
#include "Damage.h"

#include "sample/SampleSigner.h"

#include <Cairn/AssetMap.h>
#include <Cairn/PackingList.h>

#include <Ferro/ILogSink.h>
#include <Ferro/SHA1Digest.h>
#include <Ferro/TextEncoding.h>

#include <stdexcept>

namespace testsupport {
namespace {

struct ListedFile {
  std::string Path;
  std::string ID;      // "urn:uuid:…"
  std::string Digest;  // base64
};

std::string Base64(const Ferro::SHA1& digest) {
  return Ferro::base64encode({digest.Value(), Ferro::SHA1::Size});
}

std::string NameOf(const PackageFiles& files, FileKind kind) {
  for (const auto& [path, bytes] : files)
    if (KindOfFile(path) == kind) return path;
  return "";
}

/// What packing list and asset map of a sound package say.
std::vector<ListedFile> ListedFiles(const PackageFiles& files) {
  Cairn::PackingList list;
  Cairn::AssetMap map;
  std::vector<ListedFile> listed;
  if (list.DecodeXML(files.at(NameOf(files, FileKind::PackingList))).Failure() ||
      map.DecodeXML(files.at(NameOf(files, FileKind::AssetMap))).Failure())
    return listed;
  for (const Cairn::PackingList::Asset& asset : list.AssetList)
    for (const Cairn::AssetMap::Asset& mapped : map.AssetList)
      if (mapped.ID == asset.ID)
        listed.push_back({mapped.ChunkList.front().Path, asset.ID.EncodeURN(), Base64(asset.Digest)});
  return listed;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// Puts the size of a file into its entry of a packing list.
void ListSize(std::string& list, const std::string& id, size_t size) {
  const size_t entry = list.find(id);
  const size_t begin = entry == list.npos ? list.npos : list.find("<Size>", entry);
  const size_t end = begin == list.npos ? list.npos : list.find("</Size>", begin);
  if (end == list.npos || list.find("<Id>", entry) < begin) return;
  list.replace(begin + 6, end - begin - 6, std::to_string(size));
}

/// Takes an element and what is in it out of a document. True where there was one.
bool TakeOut(std::string& xml, const std::string& begin, const std::string& end) {
  const size_t first = xml.find(begin);
  const size_t last = first == xml.npos ? xml.npos : xml.find(end, first);
  if (last == xml.npos) return false;
  xml.erase(first, last + end.size() - first);
  return true;
}

/// Signs a document anew, where it has a signature and can be signed.
void SignAnew(std::string& xml, const std::string& path) {
  std::string unsigned_text = xml;
  if (!TakeOut(unsigned_text, "<Signer ", "</Signer>") || !TakeOut(unsigned_text, "<ds:Signature ", "</ds:Signature>"))
    return;
  try {
    Tool::SampleSigner().Sign(unsigned_text, path);
    xml = unsigned_text;
  } catch (const std::runtime_error&) {
    // What cannot be signed is damage enough.
  }
}

}  // namespace

void RecomputeDigests(PackageFiles& files, const PackageFiles& original) {
  const std::string composition = NameOf(original, FileKind::Composition);
  const std::string list = NameOf(original, FileKind::PackingList);
  const std::vector<ListedFile> listed = ListedFiles(original);
  const auto relist = [&](const ListedFile& file) {
    if (!files.contains(file.Path) || files[file.Path] == original.at(file.Path)) return;
    const std::string digest = Base64(Ferro::DigestText(files[file.Path]));
    for (const std::string& document : {composition, list})
      if (files.contains(document) && document != file.Path) ReplaceAll(files[document], file.Digest, digest);
    if (files.contains(list)) ListSize(files[list], file.ID, files[file.Path].size());
  };
  for (const ListedFile& file : listed)
    if (file.Path != composition) relist(file);
  for (const std::string& document : {composition, list}) {
    if (files.contains(document) && files[document] != original.at(document)) SignAnew(files[document], document);
    for (const ListedFile& file : listed)
      if (file.Path == composition && document == composition) relist(file);
  }
}

}  // namespace testsupport
