// SPDX-License-Identifier: BSD-3-Clause
#include "SamplePackage.h"

#include "SampleDocuments.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace testsupport {
namespace {

constexpr Assay::i64_t Now = 1'717'200'000;  // 2024-06-01

const char* const TrackFiles[] = {"12", "13", "14", "15", "16", "22", "23", "24", "25", "26"};

/// Puts a value between two tags behind an identifier that ends so; where there are none, nothing.
void Set(std::string& document, const std::string& id, const std::string& open, const std::string& close,
         const std::string& value) {
  const size_t entry = document.find("0000000000" + id + "</Id>");
  if (entry == std::string::npos) return;
  const size_t begin = document.find(open, entry);
  const size_t end = document.find(close, entry);
  if (begin < end && end != std::string::npos && end - entry < 400)
    document.replace(begin + open.size(), end - begin - open.size(), value);
}

/// Puts the true digest and size of a document behind its identifier in a packing list or composition.
void Fit(std::string& list, const std::string& id, const std::string& document) {
  const Ferro::SHA1 digest = Ferro::DigestText(document);
  Set(list, id, "<Hash>", "</Hash>", Ferro::base64encode({digest.Value(), 20}));
  Set(list, id, "<Size>", "</Size>", std::to_string(document.size()));
}

}  // namespace

SamplePackage::SamplePackage(Kind kind) {
  if (kind == Kind::SMPTE) {
    m_Files = {{"ASSETMAP.xml", SMPTEAssetMap()},
               {"VOLINDEX.xml", SMPTEVolumeIndex()},
               {"PKL.xml", SMPTEPackingList()},
               {"CPL.xml", SMPTEComposition()}};
    for (const char* id : TrackFiles) m_Files[std::string("file_") + id + ".mxf"] = "x";
  } else {
    m_Files = {{"ASSETMAP", InteropAssetMap()},
               {"VOLINDEX", InteropVolumeIndex()},
               {"PKL.xml", InteropPackingList()},
               {"CPL.xml", InteropComposition()},
               {"text/text.xml", InteropText()},
               {"text/font.ttf", "x"},
               {"text/spot.png", "x"},
               {"file_12.mxf", "x"},
               {"file_13.mxf", "x"}};
  }
}

void SamplePackage::Apply(const Change& change, FileMap& files) {
  std::string& text = files[change.Document];
  size_t at = text.find(change.From);
  if (at == std::string::npos) {
    std::cerr << "the sample's " << change.Document << " has no " << change.From << '\n';
    std::abort();
  }
  for (; at != std::string::npos; at = change.IsForAll ? text.find(change.From, at + change.To.size()) : at) {
    text.replace(at, change.From.size(), change.To);
    if (!change.IsForAll) break;
  }
}

SamplePackage& SamplePackage::Edit(const std::string& document, const std::string& from, const std::string& to) {
  Apply({document, from, to}, m_Files);
  return *this;
}

SamplePackage& SamplePackage::EditAll(const std::string& document, const std::string& from, const std::string& to) {
  Apply({document, from, to, true}, m_Files);
  return *this;
}

SamplePackage& SamplePackage::Damage(const std::string& document, const std::string& from, const std::string& to) {
  m_Damages.push_back({document, from, to});
  return *this;
}

SamplePackage& SamplePackage::Move(const std::string& document, const std::string& begin, const std::string& end,
                                   const std::string& before) {
  std::string& text = m_Files[document];
  for (size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
    const std::string part = text.substr(at, text.find(end, at) + end.size() - at);
    text.erase(at, part.size());
    at = text.find(before, at);
    text.insert(at, part);
  }
  return *this;
}

SamplePackage& SamplePackage::Put(const std::string& path, const std::string& content) {
  m_Files[path] = content;
  return *this;
}

SamplePackage& SamplePackage::Remove(const std::string& path) {
  m_Files.erase(path);
  return *this;
}

SamplePackage& SamplePackage::Sign(const Signing& composition, const Signing& packing_list) {
  m_SignComposition = composition;
  m_SignPackingList = packing_list;
  return *this;
}

SamplePackage& SamplePackage::Rename(const std::string& from, const std::string& to) {
  m_Files[to] = m_Files[from];
  return Remove(from);
}

void SamplePackage::Write(const std::string& folder) const {
  FileMap files = m_Files;
  Prepare(folder, files);
  if (const auto list = files.find("PKL.xml"); list != files.end()) {
    if (files.contains("text/text.xml")) {
      Fit(list->second, "14", files["text/text.xml"]);
      Fit(files["CPL.xml"], "14", files["text/text.xml"]);
    }
    if (m_SignComposition) files["CPL.xml"] = m_SignComposition(files["CPL.xml"]);
    if (files.contains("CPL.xml")) Fit(list->second, "03", files["CPL.xml"]);
    if (m_SignPackingList) list->second = m_SignPackingList(list->second);
  }
  for (const Change& damage : m_Damages) Apply(damage, files);
  for (const auto& [path, content] : files) {
    const std::filesystem::path file = std::filesystem::path(folder) / path;
    std::filesystem::create_directories(file.parent_path());
    if (!path.ends_with('/')) std::ofstream(file, std::ios::binary) << content;
  }
}

void SamplePackage::FitSize(const std::string& id, Assay::ui64_t size, FileMap& files) {
  for (auto& [path, text] : files) {
    const bool is_map = path.starts_with("ASSETMAP");
    if (is_map || path == "PKL.xml")
      Set(text, id, is_map ? "<Length>" : "<Size>", is_map ? "</Length>" : "</Size>", std::to_string(size));
  }
}

Assay::CheckReport SamplePackage::Report(Assay::Profile profile) const {
  const TemporaryFolder folder;
  Write(folder.Folder().string());
  Assay::CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Profile = profile;
  request.Depths = Depths();
  request.Now = Now;
  Assay::CheckReport report;
  if (Check(request, report).Failure()) std::abort();
  return report;
}

std::vector<std::string> SamplePackage::Findings() const {
  return NamesOf(Report().Findings);
}

std::vector<std::string> NamesOf(const Assay::FindingList& findings) {
  std::vector<std::string> names;
  for (const Assay::Finding& finding : findings) {
    const Assay::FindingRule& rule = RuleOf(finding.ID);
    // The samples are not signed, and need not be.
    if (finding.ID == Assay::FindingID::SignMissing && finding.Class == Assay::FindingClass::Note) continue;
    names.push_back(rule.Name);
    if (finding.Class != rule.Classes.Usual()) names.back() += std::string(" ") + FindingClassName(finding.Class);
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace testsupport
