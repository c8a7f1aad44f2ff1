// SPDX-License-Identifier: BSD-3-Clause
#include "ContentsCheck.h"

#include "frames/ContentsPass.h"

#include <Ferro/Path.h>

#include <algorithm>

namespace Assay {
namespace {

/// What its header or index told already of a file's damage explains the frames that cannot be found. Those findings begin at
/// `first`.
void FindSameDamage(FindingList& findings, size_t first) {
  for (size_t i = first; i < findings.size(); ++i) {
    const auto is_same = [&](const Finding& other) {
      return other.ID == FindingID::FileDamaged && other.Place.Package == findings[i].Place.Package &&
             other.Place.Document == findings[i].Place.Document;
    };
    const auto told = findings.begin() + static_cast<std::ptrdiff_t>(first);
    const auto cause = std::find_if(findings.begin(), told, is_same);
    if (findings[i].ID == FindingID::FileDamaged && cause != told)
      findings[i].Cause = static_cast<size_t>(cause - findings.begin());
  }
}

}  // namespace

ContentsCheck::ContentsCheck(const CheckRequest& request, const std::deque<Package>& packages, const TrackFiles& files)
    : m_Request(request), m_Packages(packages), m_TrackFiles(files) {
  if (Contents().IsEmpty()) return;
  AddTrackFiles();
  if (request.Depths.Has(Depth::Hash)) AddListedFiles();
}

void ContentsCheck::AddTrackFiles() {
  for (const TrackFile& track : m_TrackFiles.All()) {
    PassFile file;
    file.Package = track.Package;
    file.Document = track.Path;
    file.Path = track.FullPath();
    file.Track = &track;
    file.Size = track.Size;
    m_Files.Add(std::move(file));
  }
}

void ContentsCheck::AddListedFiles() {
  for (const Package& package : m_Packages)
    for (const ListFile& list : package.Lists)
      for (const ListAsset& asset : list.Assets) {
        const MapAsset* mapped = asset.ID ? package.FindMapped(*asset.ID) : nullptr;
        const auto found = mapped == nullptr ? package.Files.end() : package.Files.find(mapped->File);
        if (found == package.Files.end()) continue;
        PassFile file;
        file.Package = package.Folder;
        file.Document = found->first;
        file.Path = Ferro::PathJoin(package.Folder, found->first);
        file.Size = found->second.Size;
        m_Files.Add(std::move(file));
      }
}

DepthSet ContentsCheck::Contents() const {
  return m_Request.Depths.Without(DepthSet::UpTo(Depth::Files));
}

void ContentsCheck::Run(CheckReport& report) {
  PassRequest request{m_Request.Depths, m_Request.Threads, m_Request.Keys, m_Request.KeptResults, {}};
  if (m_Request.OnProgress)
    request.OnProgress = [&](const PassProgress& pass) {
      CheckProgress progress;
      progress.PackagesDone = progress.PackageCount = m_Packages.size();
      progress.Phase = CheckPhase::Contents;
      progress.File = pass.File;
      progress.FilesDone = pass.FilesDone;
      progress.FileCount = pass.FileCount;
      progress.BytesDone = pass.BytesDone;
      progress.BytesTotal = pass.BytesTotal;
      return m_Request.OnProgress(progress);
    };
  DepthSet missing;
  if (report.IsCancelled) {
    missing = Contents();  // of files that were not opened nobody knows what there is to look at
    for (PassFile& file : m_Files.All()) file.LeaveOut(file.Applicable(m_Request.Depths), LeftOutReason::Cancelled);
  } else {
    report.Kept = PassOver(request, m_Files.All());
  }
  for (const PassFile& file : m_Files.All()) {
    if (file.Figures) report.Figures.push_back(*file.Figures);
    if (file.Missing.IsEmpty()) continue;
    missing.Add(file.Missing);
    report.LeftOuts.push_back({file.Package, file.Document, file.Missing, file.Reason});
    if (file.Reason == LeftOutReason::Cancelled) report.IsCancelled = true;
  }
  report.LookedAt.Add(Contents().Without(missing));
}

void ContentsCheck::FindInPackage(const Package* package, FindingList& findings) const {
  const std::string folder = package == nullptr ? std::string() : package->Folder;
  if (package != nullptr) FindByDigests(*package, m_Files, findings);
  for (const PassFile& file : m_Files.All()) {
    if (file.Package != folder) continue;
    const size_t first = findings.size();
    for (const Finding& finding : file.Findings) {
      findings.push_back(finding);
      if (finding.Cause) findings.back().Cause = *finding.Cause + first;
    }
    FindSameDamage(findings, first);
  }
  FindWithoutKey(folder, findings);
}

// Once, not for each reel. That a text is closed is told by who reads it.
void ContentsCheck::FindWithoutKey(const std::string& folder, FindingList& findings) const {
  const PassFile* first = nullptr;
  size_t count = 0;
  for (const PassFile& file : m_Files.All()) {
    const bool is_closed =
        !file.Missing.IsEmpty() && (file.Reason == LeftOutReason::NoKey || file.Reason == LeftOutReason::Algorithm);
    if (file.Package != folder || !is_closed || !file.IsPicture()) continue;
    if (++count == 1) first = &file;
  }
  if (first == nullptr) return;
  Finding& finding = findings.emplace_back(FindingID::PictureFileKey);
  finding.Place = first->Track->At();
  finding.Found = std::to_string(count) + (count == 1 ? " file" : " files");
}

FileDigest ContentsCheck::DigestOf(const UUID& id, const std::string& package) const {
  FileDigest digest;
  std::string folder;
  std::string path;
  if (const TrackFile* track = m_TrackFiles.Find(id, package); track != nullptr) {
    folder = track->Package;
    path = track->Path;
  } else if (const DocumentPlace* document = m_TrackFiles.FindDocument(id, package); document != nullptr) {
    folder = document->Package;
    path = document->Path;
  }
  const PassFile* file = m_Files.Find(folder, path);
  if (file != nullptr) digest.Computed = file->Digest;
  const auto other = std::ranges::find(m_Packages, folder, &Package::Folder);
  const ListAsset* listed = other == m_Packages.end() ? nullptr : other->FindListed(id);
  if (listed != nullptr) digest.Listed = listed->Hash;
  return digest;
}

void ContentsCheck::FindInComposition(const Composition& composition, const Package* package,
                                      FindingList& findings) const {
  if (!m_Request.Depths.Has(Depth::Hash)) return;
  FindByDigests(
      composition, package, [&](const UUID& id) { return DigestOf(id, composition.Document->Package); }, findings);
}

}  // namespace Assay
