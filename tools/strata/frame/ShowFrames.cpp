// SPDX-License-Identifier: BSD-3-Clause
#include "ShowFrames.h"

#include "findings/LoadFailure.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"

#include <QUIRE/FrameBuffer.h>
#include <QUIRE/SampleCadence.h>
#include <Strata/CompositionInfo.h>
#include <Strata/FrameRequester.h>
#include <Strata/PlayedSpan.h>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

std::vector<ui8_t> BytesOf(const QUIRE::FrameBuffer& frame) {
  return {frame.RoData(), frame.RoData() + frame.Size()};
}

CommandError NothingThere(const FrameChannel& channel, ui32_t position) {
  const char* const advice = channel.Type == Strata::TRKT_AUX_DATA ? "; --channel says what else is meant" : "";
  return {ExitCode::Usage, "the show has no " + channel.Name() + " at edit unit " + std::to_string(position) + advice};
}

bool IsText(Strata::TrackType_t type) {
  return type == Strata::TRKT_ON_SCREEN_TEXT || type == Strata::TRKT_OFF_SCREEN_TEXT;
}

SoundFormat FormatOf(const Strata::ITimelineTrack& track) {
  return {track.SampleRate(), track.SampleSize(), track.ChannelCount(), track.MCALabelString()};
}

/// The bytes of a frame that a track delivered, verified and decrypted where there is a key. Throws CommandError.
std::vector<ui8_t> PlainBytesOf(const QUIRE::FrameBuffer& frame, TrackKey* key, std::optional<Ferro::ui64_t> number,
                                const EditUnit& unit) {
  if (key == nullptr) return BytesOf(frame);
  std::vector<ui8_t> bytes(frame.SourceLength());
  const Ferro::Result_t result = QUIRE::VerifyAndDecrypt(key->Track, frame, number, &key->Contexts, bytes);
  if (result.Failure())
    throw CommandError(ExitCode::NotPlayable, unit.File + ": edit unit " + std::to_string(unit.FilePosition) +
                                                  " cannot be decrypted: " + result.Label());
  return bytes;
}

/// The silence that plays from the end of a sound track's duration to the end of its reel.
EditUnit SilenceOf(const Strata::ITimelineTrack& track, const QUIRE::Rational& edit_rate, ui32_t file_position) {
  EditUnit unit;
  unit.Coding = FrameCoding::PCM;
  unit.Sound = FormatOf(track);
  const QUIRE::Rational sampling_rate(static_cast<Ferro::i32_t>(unit.Sound.SampleRate), 1);
  if (const auto cadence = QUIRE::PCM::SampleCadence::Make(sampling_rate, edit_rate))
    unit.Bytes.resize(size_t{cadence->SampleCount(file_position)} * unit.Sound.Channels * ((unit.Sound.Bits + 7) / 8));
  return unit;
}

}  // namespace

ShowFrames::ShowFrames(const InputOptions& options, TrackKeys& keys) : m_Keys(keys) {
  if (!m_Inputs.Open(options)) throw CommandError(m_Inputs.ProblemCode(), m_Inputs.Problem());
  if (Load()) return;
  throw CommandError(ReportLoadFailure(m_Inputs), "nothing can be taken out of it");
}

bool ShowFrames::Load() {
  QuietLog log;  // why it failed is told in other words
  return Strata::NewPlaylist(m_Playlist).Success() && m_Inputs.Load(*m_Playlist).Success() && Duration() > 0;
}

ShowFrames::~ShowFrames() = default;

QUIRE::Rational ShowFrames::EditRate() const {
  return m_Playlist->GetCompositionInfoForPosition(0).EditRate;
}

EditUnit ShowFrames::Read(const FrameChannel& channel, ui32_t position) {
  Strata::ITimelineTrack& track = TrackFor(channel, position);
  const ui32_t reel_position = m_Playlist->TranslateReelPosition(position);
  const auto file_position = Strata::PlayedFilePosition(track, reel_position);
  if (!file_position && channel.Type == Strata::TRKT_SOUND)
    return SilenceOf(track, m_Playlist->GetCompositionInfoForPosition(position).EditRate, reel_position);
  if (!file_position) throw NothingThere(channel, position);
  EditUnit unit;
  unit.Encrypted = track.KeyID().HasValue() && KeyFor(track) == nullptr;
  if (track.AssetID().HasValue()) {
    Cairn::AssetInfo info;
    static_cast<void>(m_Inputs.Store().GetInfoForAssetID(track.AssetID(), info, false));
    unit.AssetID = track.AssetID().EncodeString();
    unit.File = info.RealFilename;
  }
  unit.FilePosition = *file_position;
  if (IsText(channel.Type))
    ReadText(track, unit);
  else
    ReadFrame(track, channel.Type, unit);
  return unit;
}

Strata::ITimelineTrack& ShowFrames::TrackFor(const FrameChannel& channel, ui32_t position) {
  Strata::ITimelineTrack* track = nullptr;
  if (channel.Number < m_Playlist->GetChannelCountForType(channel.Type, position))
    track = m_Playlist->GetReaderForChannel(channel.Type, channel.Number, position);
  if (track == nullptr) throw NothingThere(channel, position);
  return *track;
}

void ShowFrames::ReadFrame(Strata::ITimelineTrack& track, Strata::TrackType_t type, EditUnit& unit) const {
  if (!IsReady(track)) throw CommandError(ExitCode::NotPlayable, unit.File + ": this track file cannot be opened");
  Strata::FrameRequester requester(track);
  {
    const auto frame = requester.Take(unit.FilePosition);
    if (!frame.IsThere())
      throw CommandError(ExitCode::NotPlayable,
                         unit.File + ": edit unit " + std::to_string(unit.FilePosition) + " cannot be read");
    TrackKey* const key = KeyFor(track);
    const auto number = [&](QUIRE::Eye eye) {
      return key == nullptr ? std::nullopt : key->Track.SequenceNumber(unit.FilePosition, eye);
    };
    unit.Bytes = PlainBytesOf(track.FrameBuffer(), key, number(QUIRE::Eye::Left), unit);
    if (track.HasStereoImage())
      unit.RightEye = PlainBytesOf(track.REyeFrameBuffer(), key, number(QUIRE::Eye::Right), unit);
  }
  if (type == Strata::TRKT_SOUND) {
    unit.Coding = FrameCoding::PCM;
    unit.Sound = FormatOf(track);
  }
  if (type != Strata::TRKT_IMAGE) return;
  Cairn::AssetInfo info;
  static_cast<void>(m_Inputs.Store().GetInfoForAssetID(track.AssetID(), info, false));
  unit.Coding = info.FileType == Cairn::FT_QUIRE_MPEG2_VES ? FrameCoding::MPEG2 : FrameCoding::JPEG2000;
  if (unit.Coding == FrameCoding::JPEG2000) unit.Colour = ColourOfTrackFile(info.RealFilename);
}

TrackKey* ShowFrames::KeyFor(const Strata::ITimelineTrack& track) const {
  Cairn::AssetInfo info;
  const bool is_found = m_Inputs.Store().GetInfoForAssetID(track.AssetID(), info, false) == Ferro::RESULT_OK;
  return is_found ? m_Keys.Of(info.RealFilename) : nullptr;
}

void ShowFrames::ReadText(const Strata::ITimelineTrack& track, EditUnit& unit) const {
  unit.Coding = FrameCoding::TimedText;
  QUIRE::TimedText::FrameBuffer buffer;
  if (!track.GetTimedTextData(buffer))
    throw CommandError(ExitCode::NotPlayable, unit.File + ": the text in it cannot be read");
  TrackKey* const key = KeyFor(track);
  Ferro::ui64_t number = 1;  // the document's; its resources follow
  unit.Bytes = PlainBytesOf(buffer, key, number, unit);
  if (unit.Encrypted) return;

  if (track.TextEssenceFormat() == Cairn::DFT_DCI_SMPTE) {
    Ferro::UUIDList ids;
    static_cast<void>(track.AncillaryResourceIDList(ids));
    for (const Ferro::UUID& id : ids) {
      ++number;
      if (!track.GetTimedTextResourceByID(id, buffer)) continue;
      std::vector<ui8_t> bytes = PlainBytesOf(buffer, key, number, unit);
      unit.Resources.push_back({ResourceName(id, bytes), std::move(bytes)});
    }
    return;
  }
  Ferro::ArchivableList<Ferro::ArchivableString> names;
  static_cast<void>(track.AncillaryResourceNameList(names));
  for (const std::string& name : names)
    if (track.GetTimedTextResourceByName(name, buffer)) unit.Resources.push_back({name, BytesOf(buffer)});
}

}  // namespace Tool
