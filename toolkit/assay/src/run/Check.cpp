// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/Check.h>

#include "ContentsCheck.h"
#include "PackageSearch.h"
#include "Verdicts.h"
#include "document/Composition.h"
#include "document/Package.h"
#include "document/PackageFindings.h"
#include "file/FileFindings.h"
#include "file/SoundFindings.h"
#include "security/SecurityFindings.h"
#include "text/TextUse.h"

#include <Cairn/IAssetLookup.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>

namespace Assay {
namespace {

/// A composition with what belongs to it.
struct MetComposition {
  const Assay::Package* Package = nullptr;
  Assay::Composition Composition;
  CompositionFiles Files;  // at the depth of documents these alone
};

/// With the depths that each includes.
DepthSet WithLesser(const DepthSet& depths) {
  DepthSet all = depths;
  const bool reads_files = !depths.Without({Depth::Documents}).IsEmpty();
  all.Add(DepthSet::UpTo(reads_files ? Depth::Files : Depth::Documents));
  return all;
}

class CheckRun {
 public:
  CheckRun(const CheckRequest& request, CheckReport& report)
      : m_Request(request),
        m_Report(report),
        m_Now(request.Now.value_or(SystemSeconds())),
        m_Trust{Ferro::Timestamp(m_Now * 1000), request.TrustedRoots},
        m_Question{request.Messages,  Ferro::Timestamp(m_Now * 1000),
                   request.At,        request.Tolerance,
                   request.Recipient, request.PrivateKey,
                   request.Devices} {}

  void Run(const std::vector<std::string>& folders) {
    m_Progress.PackageCount = folders.size();
    ReadPackages(folders);
    if (m_Request.Depths.Has(Depth::Files)) {
      ReadFiles();
      m_Contents.emplace(m_Request, m_Packages, *m_Files).Run(m_Report);
    } else {
      FindDocuments();
    }
    m_Texts = std::make_unique<TextFiles>(m_Packages, TextLook{TextDepth(), m_Request.Keys});
    for (const Package& package : m_Packages) Find(package);
    if (m_Contents) m_Contents->FindInPackage(nullptr, m_Report.Findings);
    FindInMessageProblems(m_Request.MessageProblems, m_IsWithoutMessage, m_Report.Findings);
    Conclude(m_Request.Profile, m_Parts, m_Report);
  }

 private:
  static i64_t SystemSeconds() {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }

  /// Whether to go on, after telling how far the check is.
  bool GoOn() {
    if (!m_Report.IsCancelled && m_Request.OnProgress && !m_Request.OnProgress(m_Progress)) m_Report.IsCancelled = true;
    return !m_Report.IsCancelled;
  }

  void ReadPackages(const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
      m_Progress.Package = folder;
      if (!GoOn()) break;
      ReadPackage(folder, m_Packages.emplace_back());
      ++m_Progress.PackagesDone;
    }
    if (!m_Report.IsCancelled) m_Report.LookedAt = DepthSet{Depth::Documents};
    for (const Package& package : m_Packages) {
      for (const MapAsset& asset : package.MapAssets)
        if (asset.ID) m_Known.insert(*asset.ID);
      for (const DocumentFile* document : package.Compositions)
        m_Compositions.push_back({&package, ReadComposition(*document), {}});
    }
    for (const MetComposition& met : m_Compositions) AskStore(met.Composition);
  }

  /// Files that the store has are known, too.
  void AskStore(const Composition& composition) {
    if (m_Request.Store == nullptr) return;
    for (const Reel& reel : composition.Reels)
      for (const ReelAsset& asset : reel.Assets) {
        Cairn::AssetInfo info;
        if (asset.ID && asset.IsFile() && !m_Known.contains(*asset.ID) &&
            m_Request.Store->GetInfoForAssetID(*asset.ID, info, false) == Ferro::RESULT_OK)
          m_Known.insert(*asset.ID);
      }
  }

  void ReadFiles() {
    PlayedUnits played;
    for (const MetComposition& met : m_Compositions) NotePlayed(met.Composition, played);
    m_Files = std::make_unique<TrackFiles>(m_Packages, played, m_Request.Store);
    m_Progress.Phase = CheckPhase::Files;
    m_Progress.FileCount = m_Files->All().size();
    const bool is_done = m_Files->Read([&](size_t done) {
      m_Progress.FilesDone = done;
      return GoOn();
    });
    if (is_done && !m_Report.IsCancelled) m_Report.LookedAt = DepthSet::UpTo(Depth::Files);
    for (Package& package : m_Packages)
      for (MapAsset& asset : package.MapAssets) {
        const TrackFile* file = asset.ID ? m_Files->Find(*asset.ID, package.Folder) : nullptr;
        if (file != nullptr && file->Package == package.Folder && file->IsOpen()) asset.Essence = file->Identity.Type;
      }
    for (MetComposition& met : m_Compositions) met.Files = CompositionFiles(met.Composition, *m_Files);
  }

  /// Without files, texts that are documents are looked at all the same.
  void FindDocuments() {
    m_Places = std::make_unique<TrackFiles>(m_Packages, PlayedUnits(), nullptr);
    for (MetComposition& met : m_Compositions) met.Files = CompositionFiles(met.Composition, *m_Places);
  }

  /// Texts are read last: of a check that was ended, only as far as it has come.
  [[nodiscard]] Depth TextDepth() const {
    const DepthSet& depths = m_Report.IsCancelled ? m_Report.LookedAt : m_Request.Depths;
    if (depths.Has(Depth::Frames)) return Depth::Frames;
    return depths.Has(Depth::Files) ? Depth::Files : Depth::Documents;
  }

  void Find(const Package& package) {
    FindInPackage(package, m_Now, m_Report.Findings);
    FindInListSignatures(package, m_Trust, m_Report.Findings);
    FindGroups(package);
    if (m_Files)
      for (; m_NextFile < m_Files->All().size() && m_Files->All()[m_NextFile].Package == package.Folder; ++m_NextFile)
        FindFile(m_Files->All()[m_NextFile]);
    if (m_Contents) m_Contents->FindInPackage(&package, m_Report.Findings);
    for (MetComposition& met : m_Compositions)
      if (met.Package == &package) FindComposition(met);
    m_Report.Packages.push_back({package.Folder, {}});
  }

  /// What a file tells by itself: once, whatever plays it.
  void FindFile(const TrackFile& file) {
    FindInFile(file, m_Report.Findings);
    FindInSoundFile(file, m_Report.Findings);
  }

  void FindComposition(MetComposition& met) {
    const Composition& composition = met.Composition;
    CompositionContext context;
    context.Package = met.Package;
    context.Now = m_Now;
    context.Known = met.Package->MapAssets.empty() ? nullptr : &m_Known;  // without an asset map all would be external
    if (m_Files) TakeFormats(met.Files, context);
    FindInComposition(composition, context, m_Report.Findings);
    FindTwin(composition);
    if (m_Files) FindWithFiles(met.Files);
    if (m_Contents) m_Contents->FindInComposition(composition, met.Package, m_Report.Findings);
    FindInTexts(met.Files, *m_Texts, m_Report.Findings);
    CheckedComposition& checked = m_Report.Compositions.emplace_back();
    checked.ID = composition.ID.value_or(UUID());
    checked.Title = composition.Title;
    checked.Package = composition.Document->Package;
    checked.Document = composition.Document->Path;
    FindKeys(composition, checked);
    m_Parts.push_back(PartsOf(*met.Package, composition));
  }

  void FindKeys(const Composition& composition, CheckedComposition& checked) {
    const auto signer = FindInSignature(*composition.Document, composition.At(&composition.Root()),
                                        IsEncrypted(composition), m_Trust, m_Report.Findings);
    checked.Keys = FindInKeys(composition, signer, m_Question, StartsOf(checked.ID), m_Report.Findings);
    m_IsWithoutMessage |= std::ranges::any_of(checked.Keys, [&](const KeyAnswer& answer) {
      return answer.IsNow != m_Request.At.has_value() && !answer.Serves();
    });
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

  /// What a composition and its files tell together.
  void FindWithFiles(const CompositionFiles& files) {
    for (const AssetFile& use : files.Assets)
      if (use.File != nullptr && use.File->Package.empty() && m_ToldOfStore.insert(use.File).second)
        FindFile(*use.File);
    FindInFiles(files, m_Report.Findings);
    FindInSounds(files, m_Report.Findings);
  }

  /// A composition with the same identifier and another content, in this package or another.
  void FindTwin(const Composition& composition) {
    if (!composition.ID) return;
    const auto [known, is_new] = m_ByID.try_emplace(*composition.ID, composition.Document);
    if (!is_new && !(known->second->Digest == composition.Document->Digest))
      Add(m_Report.Findings, Finding(FindingID::CplDuplicateID), composition.At(composition.Root().Child("Id")), "",
          known->second->Path);
  }

  void FindGroups(const Package& package) {
    for (const ListFile& list : package.Lists) {
      const Node* element = list.Document->Root()->Child("GroupId");
      const auto group = IDOf(element);
      if (!group) continue;
      const auto [known, is_new] = m_Groups.try_emplace(*group, list.Document);
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
  CheckProgress m_Progress;
  std::deque<Package> m_Packages;
  std::deque<MetComposition> m_Compositions;  // of all packages, in their order
  std::set<UUID> m_Known;                     // files that the asset maps and the store have
  std::unique_ptr<TrackFiles> m_Files;        // null at the depth of documents
  std::optional<ContentsCheck> m_Contents;    // none at the depth of documents
  std::unique_ptr<TrackFiles> m_Places;       // at the depth of documents: where these lie
  std::unique_ptr<TextFiles> m_Texts;
  size_t m_NextFile = 0;  // of those, which lie there in the order of packages
  std::set<const TrackFile*> m_ToldOfStore;
  std::map<UUID, const DocumentFile*> m_ByID;
  std::map<UUID, const DocumentFile*> m_Groups;
};

}  // namespace

Result_t Check(const CheckRequest& request, CheckReport& report) {
  report = {};
  if (request.Folders.empty()) return RESULT_AY_NOTHING;
  if (request.Depths.IsEmpty()) return RESULT_AY_DEPTH;
  std::vector<std::string> packages;
  if (const Result_t result = FindPackages(request.Folders, packages); result.Failure()) return result;
  CheckRequest whole = request;
  whole.Depths = WithLesser(request.Depths);
  CheckRun(whole, report).Run(packages);
  return Ferro::RESULT_OK;
}

}  // namespace Assay
