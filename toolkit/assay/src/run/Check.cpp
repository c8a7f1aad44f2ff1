// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/Check.h>

#include "Verdicts.h"

#include "document/Composition.h"
#include "document/Package.h"
#include "document/PackageFindings.h"
#include "security/SecurityFindings.h"

#include <Cairn/IAssetLookup.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>

namespace Assay {
namespace {

namespace fs = std::filesystem;

constexpr int MaxDepth = 8;             // folders inside each other that are searched for packages
constexpr size_t MaxPackages = 10'000;  // of one check

/// Adds the packages of a folder: itself where it has an asset map, else those below it.
bool AddPackages(const fs::path& folder, int depth, std::vector<std::string>& packages) {
  std::error_code error;
  std::vector<fs::path> below;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (IsMapName(entry.path().filename().string())) {
      packages.push_back(folder.string());
      return true;
    }
    if (entry.is_directory(error) && !entry.is_symlink(error)) below.push_back(entry.path());
  }
  std::ranges::sort(below);
  bool has = false;
  for (const fs::path& path : below)
    if (depth < MaxDepth && packages.size() < MaxPackages) has |= AddPackages(path, depth + 1, packages);
  return has;
}

class PackageCheck {
 public:
  PackageCheck(const CheckRequest& request, CheckReport& report)
      : m_Request(request),
        m_Report(report),
        m_Now(request.Now.value_or(SystemSeconds())),
        m_Trust{Ferro::Timestamp(m_Now * 1000), request.TrustedRoots},
        m_Question{request.Messages,  Ferro::Timestamp(m_Now * 1000),
                   request.At,        request.Tolerance,
                   request.Recipient, request.PrivateKey,
                   request.Devices} {}

  void Run(const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
      if (!GoesOn(folder, folders.size())) {
        m_Report.IsCancelled = true;
        break;
      }
      ReadPackage(folder, m_Packages.emplace_back());
    }
    for (const Package& package : m_Packages) NoteFiles(package);
    for (const Package& package : m_Packages) Find(package);
    FindInMessageProblems(m_Request.MessageProblems, m_IsWithoutMessage, m_Report.Findings);
    Conclude(m_Request.Profile, m_Parts, m_Report);
    if (!m_Report.IsCancelled) m_Report.LookedAt = m_Request.Depths;
  }

 private:
  [[nodiscard]] bool GoesOn(const std::string& folder, size_t count) const {
    CheckProgress progress;
    progress.Package = folder;
    progress.PackagesDone = m_Packages.size();
    progress.PackageCount = count;
    return !m_Request.OnProgress || m_Request.OnProgress(progress);
  }

  static i64_t SystemSeconds() {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }

  void NoteFiles(const Package& package) {
    for (const MapAsset& asset : package.MapAssets)
      if (asset.ID) m_Known.insert(asset.ID->EncodeString());
  }

  /// Files that the store has are known, too.
  void AskStore(const Composition& composition) {
    if (m_Request.Store == nullptr) return;
    for (const Reel& reel : composition.Reels)
      for (const ReelAsset& asset : reel.Assets) {
        Cairn::AssetInfo info;
        if (asset.ID && asset.IsFile() &&
            m_Request.Store->GetInfoForAssetID(*asset.ID, info, false) == Ferro::RESULT_OK)
          m_Known.insert(asset.ID->EncodeString());
      }
  }

  void Find(const Package& package) {
    FindInPackage(package, m_Now, m_Report.Findings);
    FindInListSignatures(package, m_Trust, m_Report.Findings);
    FindGroups(package);
    for (const DocumentFile* document : package.Compositions) FindComposition(package, *document);
    m_Report.Packages.push_back({package.Folder, {}});
  }

  void FindComposition(const Package& package, const DocumentFile& document) {
    const Composition composition = ReadComposition(document);
    AskStore(composition);
    FindingList& findings = m_Report.Findings;
    // Without an asset map nothing tells what is external.
    FindInComposition(composition, {&package, m_Now, package.MapAssets.empty() ? nullptr : &m_Known}, findings);
    FindTwin(composition, findings);
    const auto signer =
        FindInSignature(document, composition.At(&composition.Root()), IsEncrypted(composition), m_Trust, findings);
    CheckedComposition& checked = m_Report.Compositions.emplace_back();
    checked = {composition.ID.value_or(UUID()), composition.Title, document.Package, document.Path, {}, {}};
    checked.Keys = FindInKeys(composition, signer, m_Question, StartsOf(checked.ID), findings);
    m_IsWithoutMessage |= std::ranges::any_of(checked.Keys, [&](const KeyAnswer& answer) {
      return answer.IsNow != m_Request.At.has_value() && !answer.Serves();
    });
    m_Parts.push_back(PartsOf(package, composition));
  }

  /// Where a composition stands in the show: at its beginning unless the host says so.
  [[nodiscard]] std::vector<double> StartsOf(const UUID& composition) const {
    std::vector<double> starts;
    for (const CompositionStart& start : m_Request.Starts)
      if (start.Composition == composition) starts.push_back(start.Seconds);
    if (starts.empty()) starts.push_back(0);
    return starts;
  }

  static CompositionParts PartsOf(const Package& package, const Composition& composition) {
    CompositionParts parts;
    if (composition.ID) parts.Inside.insert(*composition.ID);
    for (const Reel& reel : composition.Reels)
      for (const ReelAsset& asset : reel.Assets)
        if (asset.ID && asset.IsFile())
          (package.FindMapped(*asset.ID) != nullptr ? parts.Inside : parts.Outside).insert(*asset.ID);
    return parts;
  }

  /// A composition with the same identifier and another content, in this package or another.
  void FindTwin(const Composition& composition, FindingList& findings) {
    if (!composition.ID) return;
    const auto [known, is_new] = m_Compositions.try_emplace(composition.ID->EncodeString(), composition.Document);
    if (!is_new && known->second->Text != composition.Document->Text)
      Add(findings, Finding(FindingID::CplDuplicateID), composition.At(composition.Root().Child("Id")), "",
          known->second->Path);
  }

  void FindGroups(const Package& package) {
    for (const ListFile& list : package.Lists) {
      const Node* element = list.Document->Root()->Child("GroupId");
      const auto group = IDOf(element);
      if (!group) continue;
      const auto [known, is_new] = m_Groups.try_emplace(group->EncodeString(), list.Document);
      if (!is_new)
        Add(m_Report.Findings, Finding(FindingID::PklGroupID), list.Document->At(element), "",
            known->second->Package + '/' + known->second->Path);
    }
  }

  const CheckRequest& m_Request;
  CheckReport& m_Report;
  i64_t m_Now;
  Sigil::SignatureContext m_Trust;
  KeyQuestion m_Question;
  bool m_IsWithoutMessage = false;        // some encrypted composition
  std::vector<CompositionParts> m_Parts;  // of each composition of the report
  std::deque<Package> m_Packages;
  std::set<std::string> m_Known;  // identifiers of files that the asset maps have
  std::map<std::string, const DocumentFile*> m_Compositions;
  std::map<std::string, const DocumentFile*> m_Groups;
};

}  // namespace

Result_t Check(const CheckRequest& request, CheckReport& report) {
  report = {};
  if (request.Folders.empty()) return RESULT_AY_NOTHING;
  if (!(request.Depths == DepthSet{Depth::Documents})) return RESULT_AY_DEPTH;
  std::vector<std::string> packages;
  for (const std::string& folder : request.Folders) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) return Ferro::RESULT_NOT_FOUND;
    if (!AddPackages(folder, 0, packages)) packages.push_back(folder);
  }
  PackageCheck(request, report).Run(packages);
  return Ferro::RESULT_OK;
}

}  // namespace Assay
