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

/// Puts the true digest and size of a document behind its identifier, which ends so, in a packing list or composition.
void Fit(std::string& list, const std::string& id, const std::string& document) {
  const size_t entry = list.find("0000000000" + id + "</Id>");
  if (entry == std::string::npos) return;
  const auto set = [&](const std::string& open, const std::string& close, const std::string& value) {
    const size_t begin = list.find(open, entry);
    const size_t end = list.find(close, entry);
    if (begin < end && end != std::string::npos && end - entry < 400)
      list.replace(begin + open.size(), end - begin - open.size(), value);
  };
  const Ferro::SHA1 digest = Ferro::DigestText(document);
  set("<Hash>", "</Hash>", Ferro::base64encode({digest.Value(), 20}));
  set("<Size>", "</Size>", std::to_string(document.size()));
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
               {"file_12.mxf", "x"},
               {"file_13.mxf", "x"}};
  }
}

void SamplePackage::Apply(const Change& change) {
  std::string& text = m_Files[change.Document];
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
  Apply({document, from, to});
  return *this;
}

SamplePackage& SamplePackage::EditAll(const std::string& document, const std::string& from, const std::string& to) {
  Apply({document, from, to, true});
  return *this;
}

SamplePackage& SamplePackage::Damage(const std::string& document, const std::string& from, const std::string& to) {
  m_Damages.push_back({document, from, to});
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

SamplePackage& SamplePackage::Rename(const std::string& from, const std::string& to) {
  m_Files[to] = m_Files[from];
  return Remove(from);
}

void SamplePackage::Write(const std::string& folder) {
  if (const auto list = m_Files.find("PKL.xml"); list != m_Files.end()) {
    if (m_Files.contains("text/text.xml")) {
      Fit(list->second, "14", m_Files["text/text.xml"]);
      Fit(m_Files["CPL.xml"], "14", m_Files["text/text.xml"]);
    }
    if (m_Files.contains("CPL.xml")) Fit(list->second, "03", m_Files["CPL.xml"]);
  }
  for (const Change& damage : m_Damages) Apply(damage);
  m_Damages.clear();
  for (const auto& [path, content] : m_Files) {
    const std::filesystem::path file = std::filesystem::path(folder) / path;
    std::filesystem::create_directories(file.parent_path());
    if (!path.ends_with('/')) std::ofstream(file, std::ios::binary) << content;
  }
}

Assay::CheckReport SamplePackage::Report(Assay::Profile profile) {
  const TemporaryFolder folder;
  Write(folder.Folder().string());
  Assay::CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Profile = profile;
  request.Now = Now;
  Assay::CheckReport report;
  if (Check(request, report).Failure()) std::abort();
  return report;
}

std::vector<std::string> SamplePackage::Findings() {
  return NamesOf(Report().Findings);
}

std::vector<std::string> NamesOf(const Assay::FindingList& findings) {
  std::vector<std::string> names;
  for (const Assay::Finding& finding : findings) {
    const Assay::FindingRule& rule = RuleOf(finding.ID);
    names.push_back(rule.Name);
    if (finding.Class != rule.Classes.Usual()) names.back() += std::string(" ") + FindingClassName(finding.Class);
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace testsupport
