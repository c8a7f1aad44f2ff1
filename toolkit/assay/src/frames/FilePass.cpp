// SPDX-License-Identifier: BSD-3-Clause
#include "FilePass.h"

#include "TrackReader.h"

#include <algorithm>
#include <new>

namespace Assay {

using Ferro::RESULT_OK;
using QUIRE::Eye;

namespace {

// Frames that cannot be found one after another, before the rest is given up: each costs a line in the log.
constexpr ui32_t MaxLostInRow = 100;

LeftOutReason ReasonOf(Result_t key_result) {
  return key_result == QUIRE::RESULT_ALGORITHM ? LeftOutReason::Algorithm : LeftOutReason::NoKey;
}

const char* DenialText(Result_t result) {
  if (result == QUIRE::RESULT_SEQUENCE) return "out of place";
  if (result == QUIRE::RESULT_CHECKFAIL) return "another check value";
  if (result == QUIRE::RESULT_FORMAT) return "malformed";
  return "altered";
}

std::unique_ptr<IFrameExaminer> NewExaminer(const TrackFile& file) {
  if (file.As<SoundHeader>() != nullptr) return NewSoundExaminer(file);
  if (file.As<QUIRE::ATMOS::AtmosDescriptor>() != nullptr) return NewImmersiveExaminer(file);
  return NewPictureExaminer(file);
}

}  // namespace

FilePass::FilePass(PassFile& file, const DepthSet& depths, const Sigil::KeyRing* keys, DecodeQueue& decoding,
                   FileScan::OnBytes progress)
    : m_File(file),
      m_Wanted(file.Applicable(depths)),
      m_Keys(keys),
      m_Queue(decoding),
      m_Scan(m_Wanted.Has(Depth::Hash), progress) {}

FilePass::~FilePass() = default;

void FilePass::Run() {
  if (m_Wanted.IsEmpty()) return;
  if (m_Scan.Open(m_File.Path).Failure()) return m_File.LeaveOut(m_Wanted, LeftOutReason::Unreadable);
  try {
    if (m_Wanted.Has(Depth::Frames) || m_Wanted.Has(Depth::Decode)) LookAtFrames();
    if (m_Wanted.Has(Depth::Hash) && !m_Ended) EndDigest();
  } catch (const std::bad_alloc&) {
    m_Ended = LeftOutReason::NoMemory;
  } catch (...) {
    m_Queue.Cancel(m_Decoding);
    throw;
  }
  if (m_Ended) m_Queue.Cancel(m_Decoding);  // nothing that it holds on to may outlive it
  const auto reason = m_Ended ? m_Ended : m_FramesEnded;
  if (reason) m_File.LeaveOut(m_Wanted, *reason);
}

// What was found until memory ran out is told all the same.
void FilePass::LookAtFrames() {
  try {
    TrackReader reader;
    if (reader.Open(*m_File.Track).Failure())
      m_FramesEnded = LeftOutReason::Unreadable;
    else if (TakeKey(reader) && !m_File.IsText())  // who reads texts verifies them
      OpenFrames(reader);
  } catch (const std::bad_alloc&) {
    m_Ended = LeftOutReason::NoMemory;
  }
  EndFrames();
}

bool FilePass::TakeKey(TrackReader& reader) {
  QUIRE::TrackEncryption track;
  Result_t result = reader.Reader().FillTrackEncryption(track);
  if (result.Failure()) {
    m_FramesEnded = LeftOutReason::Damaged;
    return false;
  }
  result = m_Opener.Init(track, m_Keys);
  if (result.Failure()) m_FramesEnded = ReasonOf(result);
  return result.Success();
}

void FilePass::OpenFrames(TrackReader& reader) {
  if (m_Wanted.Has(Depth::Frames)) m_Examiner = NewExaminer(*m_File.Track);
  const bool is_watched = m_Examiner || m_Wanted.Has(Depth::Decode) || m_File.Track->Info.EncryptedEssence;
  if (!is_watched) return;
  const auto* picture = m_File.Track->As<QUIRE::JP2K::PictureDescriptor>();
  const bool has_two_eyes = picture != nullptr && picture->Stereoscopic;
  for (ui32_t unit = 0; unit < m_File.Track->Duration; ++unit) {
    if (LookAtFrame(reader, unit, Eye::Left) == Step::End) return;
    if (has_two_eyes && LookAtFrame(reader, unit, Eye::Right) == Step::End) return;
  }
}

FilePass::Step FilePass::LookAtFrame(TrackReader& reader, ui32_t edit_unit, Eye eye) {
  QUIRE::StoredFrame stored;
  Result_t result = reader.Reader().LocateFrame(edit_unit, eye, stored);
  if (result == QUIRE::RESULT_CUT || result == QUIRE::RESULT_RANGE) {  // that it is cut, its header tells
    m_FramesEnded = LeftOutReason::Damaged;
    return Step::End;
  }
  if (result == Ferro::RESULT_NOT_FOUND) {
    m_HasGaps = true;
    if (m_Opener.NumbersEyes()) m_Found.Note(FindingID::MicInvalid, edit_unit, "", "one eye alone");
    return Step::GoOn;
  }
  if (result == Ferro::RESULT_READFAIL || result == Ferro::RESULT_ENDOFFILE || result == Ferro::RESULT_ALLOC)
    return Fail(result);
  if (result.Failure()) return Lose(edit_unit, "", "no frame in its place");
  if (stored.Length > FileScan::MaxPiece - QUIRE::FrameBuffer::MaxIntegrityPack)
    return Lose(edit_unit, "up to " + std::to_string(FileScan::MaxPiece) + " bytes",
                std::to_string(stored.Length) + " bytes");
  m_LostInRow = 0;

  const ui64_t pack = std::min<ui64_t>(stored.PackLength, QUIRE::FrameBuffer::MaxIntegrityPack);
  std::span<const ui8_t> bytes;
  result = m_Scan.Take(stored.Offset, static_cast<size_t>(stored.Length + pack), bytes);
  if (result.Failure()) return Fail(result);
  if (m_Scan.ReadAgain() > m_Scan.Size()) {
    m_Found.Note(FindingID::FileDamaged, edit_unit, "", "frames over each other");
    m_FramesEnded = LeftOutReason::Damaged;
    return Step::End;
  }
  std::span<const ui8_t> clear;
  result = m_Opener.Open(stored, bytes, edit_unit, eye, clear);
  if (result == Ferro::RESULT_ALLOC) return Fail(result);
  if (result.Failure())
    NoteDenied(edit_unit, result);
  else
    Deliver(edit_unit, eye, clear);
  return Step::GoOn;
}

void FilePass::Deliver(ui32_t edit_unit, Eye eye, std::span<const ui8_t> clear) {
  if (m_Examiner) m_Examiner->Examine({edit_unit, eye == Eye::Right, clear});
  if (m_Wanted.Has(Depth::Decode)) m_Queue.Submit(m_Decoding, edit_unit, clear);
}

void FilePass::NoteDenied(ui32_t edit_unit, Result_t result) {
  m_HasGaps = true;
  m_Found.Note(FindingID::MicInvalid, edit_unit, "", DenialText(result));
}

// A frame that cannot be read.
FilePass::Step FilePass::Lose(ui32_t edit_unit, const std::string& expected, const std::string& found) {
  m_HasGaps = true;
  m_Found.Note(FindingID::FileDamaged, edit_unit, expected, found);
  if (++m_LostInRow < MaxLostInRow) return Step::GoOn;
  m_FramesEnded = LeftOutReason::Damaged;
  return Step::End;
}

FilePass::Step FilePass::Fail(Result_t result) {
  if (result == Ferro::RESULT_ALLOC) throw std::bad_alloc();
  m_Ended = result == Ferro::RESULT_CANCELLED ? LeftOutReason::Cancelled : LeftOutReason::Unreadable;
  return Step::End;
}

void FilePass::EndFrames() {
  if (m_Ended) m_Queue.Cancel(m_Decoding);
  m_Queue.Finish(m_Decoding);
  FileFigures figures{m_File.Track->ID,
                      m_File.Package,
                      m_File.Document,
                      m_File.Track->EditRate,
                      m_File.Track->Duration,
                      std::nullopt,
                      {}};
  const bool is_through = !m_Ended && !m_FramesEnded;
  if (m_Examiner) {
    m_Examiner->Finish(m_File.Findings, figures, is_through && !m_HasGaps);
    if (is_through) m_File.Figures = std::move(figures);  // means and peaks of a part are not those of the file
  }
  m_Found.AddTo(m_File.Findings, m_File.Track->At(), m_File.Track->EditRate);
  AddUndecodable();
  if (m_Decoding.RanOutOfMemory) m_FramesEnded = LeftOutReason::NoMemory;
  if (m_Ended || m_FramesEnded) return;
  if (m_Wanted.Has(Depth::Frames)) m_File.LookedAt.Add(Depth::Frames);
  if (m_Wanted.Has(Depth::Decode)) m_File.LookedAt.Add(Depth::Decode);
}

// Where the headers of all of them are damaged, it follows from that.
void FilePass::AddUndecodable() {
  if (m_Decoding.Failed == 0) return;
  Finding finding(FindingID::J2KUndecodable);
  finding.Place = m_File.Track->At();
  finding.Place.EditUnit = m_Decoding.First;
  finding.Place.EditRate = m_File.Track->EditRate;
  finding.Found = OccurrenceText("", m_Decoding.First, m_Decoding.Failed - 1);
  const auto damage = std::ranges::find_if(m_File.Findings, [](const Finding& other) {
    return other.ID == FindingID::J2KMarker && other.Class == FindingClass::Error;
  });
  if (m_Decoding.Malformed == m_Decoding.Failed && damage != m_File.Findings.end())
    finding.Cause = static_cast<size_t>(damage - m_File.Findings.begin());
  m_File.Findings.push_back(std::move(finding));
}

void FilePass::EndDigest() {
  const Result_t result = m_Scan.Finish(m_File.Digest);
  if (result.Failure())
    static_cast<void>(Fail(result));
  else
    m_File.LookedAt.Add(Depth::Hash);
}

}  // namespace Assay
