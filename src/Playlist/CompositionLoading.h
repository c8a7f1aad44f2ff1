// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Playlist/AssetResolution.h"
#include "Playlist/CompositionCoding.h"
#include "Playlist/TimelineReel.h"

#include <Strata/CompositionInfo.h>
#include <Strata/Result.h>

#include <Cairn/AssetInfo.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/FileType.h>
#include <Cairn/IAssetLookup.h>

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/Rational.h>

#include <map>
#include <string>

namespace Strata {

using CompositionInfoMap = std::map<UUID, CompositionInfo>;

/// The most reels that one timeline takes; documents that ask for more are refused.
inline constexpr ui32_t MaxTimelineReels = 100'000;

/// What loading a composition reads and changes of a playlist.
struct LoadingTarget {
  Timeline_t& Timeline;              ///< receives the reels
  ui32_t& ReelCount;                 ///< always the timeline's size
  ui32_t& ShowDuration;              ///< grows with each reel, edit units
  CompositionInfoMap& Compositions;  ///< receives the composition's record unless it has one
  bool& HasStereoImage;              ///< set by a stereoscopic composition, never cleared
  Cairn::FileType_t& PictureType;    ///< of the reel loaded last
  const ImageEssenceChangeMode_t& ChangeMode;
  UUID& CPL_ID;                     ///< becomes the composition's
  Cairn::AssetInfoList& AssetList;  ///< becomes what the composition's assets resolve to
};

/// Appends one composition to the timeline: a reel per reel, its tracks created, opened and checked against both the
/// composition and their files. Each failure is logged once, with the reel's number in the whole timeline from 1, and
/// ends the load; the reels and tracks appended before it stay.
class CompositionLoader {
 public:
  explicit CompositionLoader(LoadingTarget target) : m_Target(target) {}

  /// @return RESULT_OK; Cairn::RESULT_CN_NOT_IN_STORE for assets that `lookup` cannot resolve; RESULT_SX_DIGEST_FAIL;
  ///         QUIRE::RESULT_FORMAT where the composition, its files and the rules do not agree; or what `lookup` or
  ///         opening a file failed with.
  [[nodiscard]] Result_t InitWithCPL(const Cairn::CompositionPlaylist& cpl, const Cairn::IAssetLookup& lookup);

 private:
  struct AssetWords;
  static const AssetWords s_Picture;
  static const AssetWords s_Sound;
  static const AssetWords s_OnScreenText;
  static const AssetWords s_OffScreenText;
  static const AssetWords s_AuxData;

  [[nodiscard]] Result_t ResolveAssets(const Cairn::IAssetLookup& lookup);
  [[nodiscard]] Result_t AppendReel(const Cairn::Reel& reel);
  [[nodiscard]] Result_t LoadAssets(const Cairn::Reel& reel);
  void FillSilence();
  [[nodiscard]] Result_t MarkDistinctCoding(const UUID& previous_cpl);

  // Each loads one asset into the last reel.
  [[nodiscard]] Result_t InitCplImage(const Cairn::AssetInfo& info, const Cairn::PictureAsset& asset);
  [[nodiscard]] Result_t InitCplSound(const Cairn::AssetInfo& info, const Cairn::SoundAsset& asset);
  [[nodiscard]] Result_t InitCplOnScreenText(const Cairn::AssetInfo& info, const Cairn::TimedTextAsset& asset);
  [[nodiscard]] Result_t InitCplOffScreenText(const Cairn::AssetInfo& info, const Cairn::TimedTextAsset& asset);
  [[nodiscard]] Result_t InitCplAuxData(const Cairn::AssetInfo& info, const Cairn::AuxDataAsset& asset);

  template <class AssetT>
  using AssetLoader = Result_t (CompositionLoader::*)(const Cairn::AssetInfo&, const AssetT&);
  template <class AssetT>
  [[nodiscard]] Result_t LoadAsset(const AssetWords& words, const AssetT& asset, AssetLoader<AssetT> load);
  template <class TrackT>
  [[nodiscard]] Result_t OpenImage(const Cairn::AssetInfo& info, const Cairn::PictureAsset& asset);
  template <class TrackT>
  [[nodiscard]] Result_t OpenAuxData(const Cairn::AssetInfo& info, const Cairn::AuxDataAsset& asset);
  [[nodiscard]] Result_t OpenText(ITimelineTrack& track, const Cairn::AssetInfo& info,
                                  const Cairn::TimedTextAsset& asset) const;
  [[nodiscard]] Result_t PromoteToStereoscopic(Cairn::FileType_t& type);

  [[nodiscard]] Result_t CheckEditRate(const AssetWords& words, const Cairn::GenericAsset& asset) const;
  [[nodiscard]] Result_t CheckDigest(const AssetWords& words, const Cairn::AssetInfo& info,
                                     const Cairn::GenericAsset& asset) const;
  [[nodiscard]] Result_t CheckText(const AssetWords& words, const Cairn::AssetInfo& info,
                                   const Cairn::TimedTextAsset& asset) const;
  [[nodiscard]] Result_t CheckSoundFormat(const QUIRE::PCM::AudioDescriptor& descriptor) const;
  [[nodiscard]] Result_t CheckTrackEditRate(const char* name, const ITimelineTrack& track) const;
  [[nodiscard]] Result_t CheckTrackLength(const AssetWords& words, const ITimelineTrack& track) const;
  [[nodiscard]] Result_t TypeMismatch(const AssetWords& words, const Cairn::AssetInfo& info) const;

  [[nodiscard]] TimelineReel& LastReel() const { return m_Target.Timeline.back(); }

  LoadingTarget m_Target;

  // State of one load.
  const Cairn::CompositionPlaylist* m_CPL = nullptr;
  std::string m_CPLText;  // the composition's identifier, for messages
  CompositionInfo m_Info;
  QUIRE::Rational m_EditRate;                     // of the composition: the first reel's picture
  QUIRE::PCM::AudioDescriptor m_AudioDescriptor;  // of the sound track loaded last; no channels before
  AssetInfoMap m_Assets;
  size_t m_FirstReel = 0;  // index of the composition's first reel in the timeline
};

/// The sum of the main picture durations of a composition's reels, edit units.
[[nodiscard]] ui32_t calc_cpl_duration(const Cairn::CompositionPlaylist& cpl);

}  // namespace Strata
