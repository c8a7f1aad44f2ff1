// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/EssenceType.h>

#include "ClipWrapping.h"
#include "TrackFacts.h"
#include "base/FormatError.h"
#include "base/ResultOf.h"
#include "klv/KLVScanner.h"
#include "metadata/HeaderPack.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/LabelMeaning.h>
#include <QUIRE/MXF/FileStructure.h>

#include <Ferro/FileReader.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace QUIRE {

namespace {

// What IsMXF reads first: enough to see a header partition pack where there is no run-in.
constexpr size_t FirstRead = 16;

// True when a header partition pack starts the file, after a run-in at most (ST 377-1, 6.5).
Result_t IsMXF(const Ferro::FileReader& file, bool& answer) {
  std::vector<ui8_t> bytes;
  ui64_t run_in = 0;
  const Result_t result = MXF::LocateHeaderPack(file, FirstRead, bytes, run_in);
  answer = result.Success();
  return result == Ferro::RESULT_NOT_FOUND ? Ferro::RESULT_OK : result;
}

UL PictureCoding(const MXF::FileDescriptor& descriptor) {
  const auto* picture = dynamic_cast<const MXF::GenericPictureEssenceDescriptor*>(&descriptor);
  return picture != nullptr && picture->PictureEssenceCoding ? *picture->PictureEssenceCoding : UL();
}

void TakeFacts(const MXF::OP1aHeader& header, const TrackFacts& facts, TrackFileIdentity& identity) {
  const auto* preface = header.First<MXF::Preface>();
  identity.OperationalPattern =
      preface != nullptr ? preface->OperationalPattern : header.HeaderPartition.OperationalPattern;
  if (facts.Descriptor == nullptr) return;
  identity.EssenceContainer = facts.EssenceContainer;
  identity.EssenceCoding = PictureCoding(*facts.Descriptor);
  identity.Encrypted = facts.Encrypted;
  identity.LabelSet = facts.LabelSet;
  identity.AssetID = facts.AssetID;
}

// Reads the header; `structure` serves to read on.
Result_t ReadIdentity(const Ferro::FileReader& file, MXF::FileStructure& structure, TrackFacts& facts,
                      TrackFileIdentity& identity) {
  bool is_mxf = false;
  if (const Result_t result = IsMXF(file, is_mxf); result.Failure() || !is_mxf) return result;
  const Result_t result = structure.ReadHeader(file);
  if (result == RESULT_FORMAT) {
    identity.Type = ESS_MXF_OTHER;
    identity.Fault = TrackFileFault::BrokenHeader;
    return Ferro::RESULT_OK;
  }
  if (result.Failure()) return result;
  identity.Fault = GatherTrackFacts(structure.Header, facts);
  identity.Type = identity.Fault == TrackFileFault::None ? facts.Type : ESS_MXF_OTHER;
  if (identity.Type == ESS_MXF_OTHER && identity.Fault == TrackFileFault::None)
    identity.Fault = TrackFileFault::UnknownEssence;
  TakeFacts(structure.Header, facts, identity);
  return Ferro::RESULT_OK;
}

Result_t LookAtEssence(const Ferro::FileReader& file, MXF::FileStructure& structure, const TrackFacts& facts,
                       TrackFileIdentity& identity) {
  std::vector<MXF::EssenceRun> runs;
  Result_t result = structure.ReadPartitions(file);
  if (result.Success()) result = structure.ReadEssenceRuns(file, facts.BodySID, runs);
  if (result == RESULT_FORMAT || runs.empty()) return result == RESULT_FORMAT ? Ferro::RESULT_OK : result;
  MXF::KLVScanner scanner(file);
  const auto first = scanner.At(runs.front().FileOffset, runs.front().FileOffset + runs.front().Length);
  identity.HasSystemItems = first && MXF::IsSystemItemKey(first->Key);
  if (identity.Fault == TrackFileFault::None && facts.Type != ESS_TIMED_TEXT &&
      IsOneClip(file, structure, runs, facts)) {
    identity.Fault = TrackFileFault::ClipWrapped;
    identity.Type = ESS_MXF_OTHER;
  }
  return scanner.LastRead();
}

bool IsAtom(const UL& pattern) {
  constexpr MDD_t patterns[] = {MDD_OPAtom, MDD_OPAtom_1TrackNClips, MDD_OPAtom_NTracks1Clip, MDD_OPAtom_NTracksNClips};
  return std::any_of(std::begin(patterns), std::end(patterns),
                     [&](MDD_t entry) { return DefaultSMPTEDict().Is(pattern, entry); });
}

// On failure, `identity` is that of an unknown file.
Result_t Identify(const std::string& filename, bool with_essence, TrackFileIdentity& identity) {
  identity = {};
  return ResultOf([&] {
    Ferro::FileReader file;
    TrackFileIdentity found;
    MXF::FileStructure structure;
    TrackFacts facts;
    const LogSubject subject(filename);
    Result_t result = file.OpenRead(filename);
    if (result.Success()) result = ReadIdentity(file, structure, facts, found);
    if (result.Success() && with_essence && facts.Descriptor != nullptr)
      result = LookAtEssence(file, structure, facts, found);
    if (result.Success()) identity = found;
    return result;
  });
}

}  // namespace

TrackFileIdentity IdentityOf(const MXF::OP1aHeader& header, const TrackFacts& facts) {
  TrackFileIdentity identity;
  identity.Type = facts.Type;
  identity.Fault = TrackFileFault::None;
  TakeFacts(header, facts, identity);
  return identity;
}

Result_t EssenceType(const std::string& filename, EssenceType_t& type) {
  TrackFileIdentity identity;
  const Result_t result = Identify(filename, false, identity);
  type = identity.Type;
  return result;
}

Result_t IdentifyTrackFile(const std::string& filename, TrackFileIdentity& identity) {
  return Identify(filename, true, identity);
}

bool TrackFileIdentity::IsTrackFile() const {
  return Fault == TrackFileFault::None && !HasSystemItems && IsAtom(OperationalPattern);
}

std::string TrackFileIdentity::EncodeString() const {
  if (Fault == TrackFileFault::NotMXF) return "not MXF";
  if (Fault == TrackFileFault::BrokenHeader) return "MXF whose header cannot be understood";
  if (IsTrackFile()) return EssenceTypeName(Type);
  std::string text = LabelMeaning(OperationalPattern);
  if (text.empty()) text = "MXF";
  if (HasSystemItems) text += ", with system items";
  if (Fault != TrackFileFault::None) text += std::string(", ") + WordsOf(Fault).Remark;
  const std::string essence = LabelMeaning(EssenceCoding.HasValue() ? EssenceCoding : EssenceContainer);
  if (Fault == TrackFileFault::UnknownEssence && !essence.empty()) text += " (" + essence + ')';
  return text + ": not a D-Cinema track file";
}

}  // namespace QUIRE
