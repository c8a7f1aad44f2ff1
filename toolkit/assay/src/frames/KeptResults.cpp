// SPDX-License-Identifier: BSD-3-Clause
#include "KeptResults.h"

#include "KeptResultsForm.h"

#include <Ferro/FileText.h>
#include <Ferro/FileWriter.h>
#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace Assay {

std::optional<FileState> StateOf(const std::string& path) {
  std::error_code error;
  FileState state;
  state.Size = std::filesystem::file_size(path, error);
  if (error) return std::nullopt;
  const auto modified = std::filesystem::last_write_time(path, error);
  if (error) return std::nullopt;
  state.Modified = std::chrono::duration_cast<std::chrono::nanoseconds>(modified.time_since_epoch()).count();
  return state;
}

KeptState KeptResults::Read(const std::string& path) {
  m_Files.clear();
  std::string bytes;
  const Ferro::Result_t result = Ferro::ReadFileIntoString(path, bytes, MaxBytes);
  if (result == Ferro::RESULT_NOT_FOUND) return KeptState::None;
  if (result.Failure()) return KeptState::Damaged;
  return Decode(std::span(reinterpret_cast<const ui8_t*>(bytes.data()), bytes.size()));
}

KeptState KeptResults::Decode(std::span<const ui8_t> bytes) {
  m_Files.clear();
  KeptForm::Reader reader(bytes);
  if (const KeptState state = reader.ReadHead(); state != KeptState::Used) return state;
  std::map<std::string, KeptFile> files;
  ui32_t count = 0;
  bool is_sound = reader.ReadCount(count);
  for (ui32_t i = 0; is_sound && i < count; ++i) {
    std::string path;
    KeptFile file;
    is_sound = reader.Read(path) && reader.Read(file) && files.emplace(std::move(path), std::move(file)).second;
  }
  if (!is_sound || !reader.IsAtEnd()) return KeptState::Damaged;
  m_Files = std::move(files);
  return KeptState::Used;
}

std::vector<ui8_t> KeptResults::Encode() const {
  KeptForm::Writer writer;
  writer.WriteHead();
  const bool has_all = m_Files.size() <= MaxFiles;
  const auto is_kept = [&](const auto& each) { return has_all || each.second.IsAskedFor; };
  const auto count = std::min<std::ptrdiff_t>(std::ranges::count_if(m_Files, is_kept), MaxFiles);
  writer.Write(static_cast<ui32_t>(count));
  std::ptrdiff_t written = 0;
  for (const auto& each : m_Files) {
    if (!is_kept(each) || written++ >= count) continue;
    writer.Write(each.first);
    writer.Write(each.second);
  }
  return writer.Finish();
}

Ferro::Result_t KeptResults::Write(const std::string& path) {
  const std::vector<ui8_t> bytes = Encode();
  Ferro::FileWriter file;
  Ferro::Result_t result = file.OpenWrite(path);
  if (result.Success()) result = file.Write(bytes);
  return result.Success() ? file.Commit() : result;
}

namespace {

/// Whether something is found where it is looked so deep. Damaged frames are met by whoever reads them.
bool IsOf(FindingID id, const DepthSet& depths) {
  if (id == FindingID::J2KUndecodable) return depths.Has(Depth::Decode);
  const bool is_of_both = id == FindingID::FileDamaged || id == FindingID::MicInvalid;
  return depths.Has(Depth::Frames) || (is_of_both && depths.Has(Depth::Decode));
}

}  // namespace

bool KeptResults::Take(PassFile& file, const FileState& state, const DepthSet& wanted) {
  const auto found = m_Files.find(file.Path);
  if (found == m_Files.end() || found->second.State != state) return false;
  KeptFile& kept = found->second;
  kept.IsAskedFor = true;
  if (!kept.LookedAt.HasAll(wanted)) return false;
  file.LookedAt = wanted;
  if (wanted.Has(Depth::Hash)) file.Digest = kept.Digest;
  // What was found beyond what is wanted now is left out.
  for (const Finding& finding : kept.Findings) {
    if (!IsOf(finding.ID, wanted)) continue;
    Finding& taken = file.Findings.emplace_back(finding);
    if (file.Track != nullptr) taken.Place = file.Track->At();
    taken.Place.EditUnit = finding.Place.EditUnit;
    taken.Place.EditRate = finding.Place.EditRate;
    taken.Place.Channel = finding.Place.Channel;
    if (!wanted.Has(Depth::Frames)) taken.Cause.reset();
  }
  if (!wanted.Has(Depth::Frames) || !kept.Figures || file.Track == nullptr) return true;
  file.Figures = kept.Figures;
  file.Figures->Asset = file.Track->ID;
  file.Figures->Package = file.Package;
  file.Figures->Document = file.Document;
  return true;
}

// What the pass before found of frames stays where it went as deep: findings of one pass refer to each other.
void KeptResults::Put(const PassFile& file, const FileState& state) {
  KeptFile& kept = m_Files[file.Path];
  const KeptFile before = std::exchange(kept, {state, file.LookedAt, file.Digest, file.Findings, file.Figures, true});
  if (before.State != state) return;
  const DepthSet frames_before = before.LookedAt.Without({Depth::Hash});
  if (frames_before.HasAll(file.LookedAt.Without({Depth::Hash}))) {
    kept.Findings = before.Findings;
    kept.Figures = before.Figures;
    kept.LookedAt.Add(frames_before);
  }
  if (!before.Digest.HasValue() || file.LookedAt.Has(Depth::Hash)) return;
  kept.Digest = before.Digest;
  kept.LookedAt.Add(Depth::Hash);
}

}  // namespace Assay
