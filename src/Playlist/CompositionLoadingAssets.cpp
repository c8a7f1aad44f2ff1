// SPDX-License-Identifier: BSD-3-Clause
// The loaders of a composition's assets. Their order is the same everywhere: edit rate, type, digest, then the track is
// created, installed and opened, and at last held against its file. A track stays installed when it fails.
#include "Playlist/CompositionLoading.h"

#include "TimelineElements/TextTrack.h"
#include "TimelineElements/TrackFileElements.h"

#include <Strata/EssenceParams.h>

#include <Cairn/Result.h>
#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/Result.h>

#include <memory>

namespace Strata {

/// What messages call one sort of asset.
struct CompositionLoader::AssetWords {
  const char* Missing;
  const char* Name;
  const char* Digest;
  const char* Types;  ///< that the sort accepts
};

namespace {

int Int(ui32_t value) {
  return static_cast<int>(value);
}

bool Outruns(const ITimelineTrack& track) {
  return ui64_t{track.EntryPoint()} + track.Duration() > track.IntrinsicDuration();
}

}  // namespace

const CompositionLoader::AssetWords CompositionLoader::s_Picture{"Picture asset missing\n", "MainPicture",
                                                                 "MainPicture", ""};
const CompositionLoader::AssetWords CompositionLoader::s_Sound{"Sound asset missing\n", "MainSound", "MainSound",
                                                               "PCM"};
const CompositionLoader::AssetWords CompositionLoader::s_OnScreenText{
    "On-screen text asset missing\n", "On-screen text", "MainSubtitle", "CineCanvas or ST 429-5"};
const CompositionLoader::AssetWords CompositionLoader::s_OffScreenText{
    "Off-screen text asset missing\n", "Off-screen text", "Off-screen text", "CineCanvas or ST 429-5"};
const CompositionLoader::AssetWords CompositionLoader::s_AuxData{"Aux data asset missing\n", "AuxData", "AuxData",
                                                                 "DCDATA or ATMOS"};

Result_t CompositionLoader::LoadAssets(const Cairn::Reel& reel) {
  if (!reel.MainPicture.AssetID.HasValue()) {
    Ferro::DefaultLogSink().Error("No picture element in reel %d of %s\n", Int(m_Target.ReelCount), m_CPLText.c_str());
    return QUIRE::RESULT_FORMAT;
  }
  Result_t result = LoadAsset(s_Picture, reel.MainPicture, &CompositionLoader::InitCplImage);
  if (result.Success() && reel.MainSound.AssetID.HasValue())
    result = LoadAsset(s_Sound, reel.MainSound, &CompositionLoader::InitCplSound);
  if (result.Success() && reel.MainSubtitle.AssetID.HasValue())
    result = LoadAsset(s_OnScreenText, reel.MainSubtitle, &CompositionLoader::InitCplOnScreenText);
  for (auto text = reel.OffScreenText.begin(); text != reel.OffScreenText.end() && result.Success(); ++text) {
    if (LastReel().OffScreenText.size() >= OffScreenTextChannelMax) {
      Ferro::DefaultLogSink().Error("More than six (6) off-screen text tracks present.\n");
      return QUIRE::RESULT_FORMAT;
    }
    result = LoadAsset(s_OffScreenText, *text, &CompositionLoader::InitCplOffScreenText);
  }
  for (auto data = reel.AuxData.begin(); data != reel.AuxData.end() && result.Success(); ++data)
    result = LoadAsset(s_AuxData, *data, &CompositionLoader::InitCplAuxData);
  return result;
}

template <class AssetT>
Result_t CompositionLoader::LoadAsset(const AssetWords& words, const AssetT& asset, AssetLoader<AssetT> load) {
  const auto info = m_Assets.find(asset.AssetID);
  if (info == m_Assets.end()) {
    Ferro::DefaultLogSink().Error("%s", words.Missing);
    return Cairn::RESULT_CN_NOT_IN_STORE;
  }
  return (this->*load)(info->second, asset);
}

// Picture

Result_t CompositionLoader::InitCplImage(const Cairn::AssetInfo& info, const Cairn::PictureAsset& asset) {
  const bool first_reel = LastReel().m_CPLReelNumber == 0;
  if (first_reel) m_EditRate = asset.EditRate;
  Result_t result = CheckEditRate(s_Picture, asset);
  if (result.Failure()) return result;

  Cairn::FileType_t type = info.FileType;
  if (type == Cairn::FT_UNKNOWN) {
    Ferro::DefaultLogSink().Error("MainPicture image format not detected in reel %d of %s, asset %s\n",
                                  Int(m_Target.ReelCount), m_CPLText.c_str(), info.ID.EncodeString().c_str());
    return QUIRE::RESULT_FORMAT;
  }
  result = CheckDigest(s_Picture, info, asset);
  if (result.Success() && m_CPL->StereoscopicImage) result = PromoteToStereoscopic(type);
  if (result.Failure()) return result;

  if (first_reel) m_Info.ImageFormat = type;
  if (m_Info.ImageFormat != type) {
    Ferro::DefaultLogSink().Warn("MainPicture essence format mismatch in reel %d of %s\n", Int(m_Target.ReelCount),
                                 m_CPLText.c_str());
    return QUIRE::RESULT_FORMAT;
  }
  m_Target.PictureType = type;

  switch (type) {
    case Cairn::FT_QUIRE_JP2K_J2C:
      return OpenImage<JP2KTimelineElement>(info, asset);
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return OpenImage<JP2KSTimelineElement>(info, asset);
    case Cairn::FT_QUIRE_MPEG2_VES:
      return OpenImage<MPEG2TimelineElement>(info, asset);
    default:
      Ferro::DefaultLogSink().Error("Unknown type for MainPicture asset (%d) in reel %d of %s\n", Int(type),
                                    Int(m_Target.ReelCount), m_CPLText.c_str());
      return QUIRE::RESULT_FORMAT;
  }
}

// A SMPTE composition that says it is stereoscopic is believed whatever its files hold, MPEG-2 included: packages with a
// plain track file under a stereoscopic picture element play in the field.
Result_t CompositionLoader::PromoteToStereoscopic(Cairn::FileType_t& type) {
  if (type != Cairn::FT_QUIRE_JP2K_J2C_S) {
    if (m_CPL->DCPFormat == Cairn::DFT_DCI_SMPTE) {
      Ferro::DefaultLogSink().Warn(
          "Promoting SMPTE track file to stereoscopic image in reel %d of %s, mastering is suspect!\n",
          Int(m_Target.ReelCount), m_CPLText.c_str());
    } else if (m_CPL->DCPFormat != Cairn::DFT_Interop || type != Cairn::FT_QUIRE_JP2K_J2C) {
      Ferro::DefaultLogSink().Error("Stereoscopic image not supported for non-JPEG2000 essence in reel %d of %s\n",
                                    Int(m_Target.ReelCount), m_CPLText.c_str());
      return QUIRE::RESULT_FORMAT;
    }
  }
  m_Target.HasStereoImage = true;
  type = Cairn::FT_QUIRE_JP2K_J2C_S;
  return Ferro::RESULT_OK;
}

template <class TrackT>
Result_t CompositionLoader::OpenImage(const Cairn::AssetInfo& info, const Cairn::PictureAsset& asset) {
  auto* track = new TrackT;
  LastReel().MainPicture.set(track);
  track->SetIdentity(TRKT_IMAGE, 0, s_Picture.Name, "");
  Result_t result = track->InitWithFilename(info.RealFilename, asset.EntryPoint, asset.Duration);
  if (result.Failure()) return result;

  m_Info.ImageWidth = track->ImageWidth();
  m_Info.ImageHeight = track->ImageHeight();
  result = CheckTrackEditRate(s_Picture.Name, *track);
  if (result.Success() && Outruns(*track)) {
    Ferro::DefaultLogSink().Error(
        "MainPicture length (%d) is less than CPL EntryPoint + Duration (%d + %d) in reel %d of %s\n",
        Int(track->IntrinsicDuration()), Int(track->EntryPoint()), Int(track->Duration()), Int(m_Target.ReelCount),
        m_CPLText.c_str());
    result = QUIRE::RESULT_FORMAT;
  }
  return result;
}

// Sound

Result_t CompositionLoader::InitCplSound(const Cairn::AssetInfo& info, const Cairn::SoundAsset& asset) {
  Result_t result = CheckEditRate(s_Sound, asset);
  if (result.Success() && info.FileType != Cairn::FT_QUIRE_PCM) result = TypeMismatch(s_Sound, info);
  if (result.Success()) result = CheckDigest(s_Sound, info, asset);
  if (result.Failure()) return result;

  auto* track = new PCMTimelineElement;
  LastReel().MainSound.set(track);
  track->SetIdentity(TRKT_SOUND, 0, s_Sound.Name, asset.Language);
  result = track->InitWithFilename(info.RealFilename, asset.EntryPoint, asset.Duration);
  if (result.Failure()) return result;

  m_AudioDescriptor = track->Descriptor();
  m_Info.SoundFormat = m_AudioDescriptor.ChannelCount;
  result = CheckSoundFormat(m_AudioDescriptor);
  if (result.Success()) result = CheckTrackEditRate(s_Sound.Name, *track);
  if (result.Success()) result = CheckTrackLength(s_Sound, *track);
  return result;
}

Result_t CompositionLoader::CheckSoundFormat(const QUIRE::PCM::AudioDescriptor& descriptor) const {
  const QUIRE::Rational& rate = descriptor.AudioSamplingRate;
  if (!(rate == QUIRE::SampleRate_48k) && !(rate == QUIRE::SampleRate_96k)) {
    Ferro::DefaultLogSink().Error("MainSound sample rate is not 48kHz or 96kHz: %d/%d\n", rate.Numerator,
                                  rate.Denominator);
    return QUIRE::RESULT_FORMAT;
  }
  if (descriptor.QuantizationBits != 24) {
    Ferro::DefaultLogSink().Error("MainSound sample word size is not 24: %d\n", Int(descriptor.QuantizationBits));
    return QUIRE::RESULT_FORMAT;
  }
  return Ferro::RESULT_OK;
}

// Text

Result_t CompositionLoader::InitCplOnScreenText(const Cairn::AssetInfo& info, const Cairn::TimedTextAsset& asset) {
  const Result_t result = CheckText(s_OnScreenText, info, asset);
  if (result.Failure()) return result;
  auto* track = new TextTimelineElement(asset.IntrinsicDuration, ShortIndexPack::Refuse);
  LastReel().OnScreenText.set(track);
  const char* label = asset.Purpose == Cairn::TT_CAPTION ? "MainCaption" : "MainSubtitle";
  track->SetIdentity(TRKT_ON_SCREEN_TEXT, 0, label, asset.Language);
  return OpenText(*track, info, asset);
}

Result_t CompositionLoader::InitCplOffScreenText(const Cairn::AssetInfo& info, const Cairn::TimedTextAsset& asset) {
  const Result_t result = CheckText(s_OffScreenText, info, asset);
  if (result.Failure()) return result;
  std::vector<TrackPtr>& tracks = LastReel().OffScreenText;
  const ui32_t channel = static_cast<ui32_t>(tracks.size());
  auto* track = new TextTimelineElement(asset.IntrinsicDuration, ShortIndexPack::Refuse);
  tracks.push_back(TrackPtr(track));
  FERRO_ASSERT_TEXT(tracks.back().get() == track, "m_Timeline.back().OffScreenText.back().get() == TextTrack");
  const char* label = asset.Purpose == Cairn::TT_CAPTION ? "ClosedCaption" : "ClosedSubtitle";
  track->SetIdentity(TRKT_OFF_SCREEN_TEXT, channel, label, asset.Language);
  return OpenText(*track, info, asset);
}

Result_t CompositionLoader::CheckText(const AssetWords& words, const Cairn::AssetInfo& info,
                                      const Cairn::TimedTextAsset& asset) const {
  const Result_t result = CheckEditRate(words, asset);
  if (result.Failure()) return result;
  if (info.FileType != Cairn::FT_TI_SUBTITLE && info.FileType != Cairn::FT_QUIRE_TIMED_TEXT)
    return TypeMismatch(words, info);
  return CheckDigest(words, info, asset);
}

// Text that ends early shows nothing from there on, so its length is no reason to refuse the show. An Interop document
// has no edit rate of its own.
Result_t CompositionLoader::OpenText(ITimelineTrack& track, const Cairn::AssetInfo& info,
                                     const Cairn::TimedTextAsset& asset) const {
  Result_t result = track.InitWithFilename(info.RealFilename, asset.EntryPoint, asset.Duration);
  if (result.Success() && track.TextEssenceFormat() == Cairn::DFT_DCI_SMPTE)
    result = CheckTrackEditRate(track.AssetName().c_str(), track);
  if (result.Success() && Outruns(track))
    Ferro::DefaultLogSink().Warn("%s asset length (%d) less than EntryPoint + Duration (%d + %d) in reel %d of %s\n",
                                 track.AssetName().c_str(), Int(track.IntrinsicDuration()), Int(track.EntryPoint()),
                                 Int(track.Duration()), Int(m_Target.ReelCount), m_CPLText.c_str());
  return result;
}

// Auxiliary data

Result_t CompositionLoader::InitCplAuxData(const Cairn::AssetInfo& info, const Cairn::AuxDataAsset& asset) {
  Result_t result = CheckEditRate(s_AuxData, asset);
  if (result.Success() && info.FileType != Cairn::FT_QUIRE_DCDATA && info.FileType != Cairn::FT_QUIRE_ATMOS)
    result = TypeMismatch(s_AuxData, info);
  if (result.Success()) result = CheckDigest(s_AuxData, info, asset);
  if (result.Failure()) return result;
  return info.FileType == Cairn::FT_QUIRE_ATMOS ? OpenAuxData<AtmosTimelineElement>(info, asset)
                                                : OpenAuxData<DCDataTimelineElement>(info, asset);
}

template <class TrackT>
Result_t CompositionLoader::OpenAuxData(const Cairn::AssetInfo& info, const Cairn::AuxDataAsset& asset) {
  std::vector<TrackPtr>& tracks = LastReel().AuxData;
  const ui32_t channel = static_cast<ui32_t>(tracks.size());
  auto* track = new TrackT;
  tracks.push_back(TrackPtr(track));
  FERRO_ASSERT_TEXT(tracks.back().get() == track, "m_Timeline.back().AuxData.back().get() == data_track");
  track->SetIdentity(TRKT_AUX_DATA, channel, s_AuxData.Name, "");
  Result_t result = track->InitWithFilename(info.RealFilename, asset.EntryPoint, asset.Duration);
  if (result.Success()) result = CheckTrackEditRate(s_AuxData.Name, *track);
  if (result.Success()) result = CheckTrackLength(s_AuxData, *track);
  return result;
}

// Steps that the loaders share

Result_t CompositionLoader::CheckEditRate(const AssetWords& words, const Cairn::GenericAsset& asset) const {
  if (asset.EditRate == m_EditRate) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error("%s EditRate mismatch in reel %d of %s\n", words.Name, Int(m_Target.ReelCount),
                                m_CPLText.c_str());
  return QUIRE::RESULT_FORMAT;
}

Result_t CompositionLoader::TypeMismatch(const AssetWords& words, const Cairn::AssetInfo& info) const {
  Ferro::DefaultLogSink().Error("%s asset must be %s (got %d) in reel %d of %s\n", words.Name, words.Types,
                                Int(info.FileType), Int(m_Target.ReelCount), m_CPLText.c_str());
  return QUIRE::RESULT_FORMAT;
}

Result_t CompositionLoader::CheckDigest(const AssetWords& words, const Cairn::AssetInfo& info,
                                        const Cairn::GenericAsset& asset) const {
  if (!asset.Digest.HasValue() || asset.Digest == info.Digest) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error("%s digest does not match reel %d of %s, asset %s\n", words.Digest,
                                Int(m_Target.ReelCount), m_CPLText.c_str(), info.ID.EncodeString().c_str());
  return RESULT_SX_DIGEST_FAIL;
}

Result_t CompositionLoader::CheckTrackEditRate(const char* name, const ITimelineTrack& track) const {
  if (track.EditRate() == m_EditRate) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error("%s EditRate does not match track file in reel %d of %s\n", name,
                                Int(m_Target.ReelCount), m_CPLText.c_str());
  return QUIRE::RESULT_FORMAT;
}

Result_t CompositionLoader::CheckTrackLength(const AssetWords& words, const ITimelineTrack& track) const {
  if (!Outruns(track)) return Ferro::RESULT_OK;
  Ferro::DefaultLogSink().Error("%s asset length (%d) less than EntryPoint + Duration (%d + %d) in reel %d of %s\n",
                                words.Name, Int(track.IntrinsicDuration()), Int(track.EntryPoint()),
                                Int(track.Duration()), Int(m_Target.ReelCount), m_CPLText.c_str());
  return QUIRE::RESULT_FORMAT;
}

}  // namespace Strata
