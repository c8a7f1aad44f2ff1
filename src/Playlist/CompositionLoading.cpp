// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/CompositionLoading.h"

#include "TimelineElements/SilenceTrack.h"

#include <Cairn/Result.h>
#include <Ferro/Assert.h>
#include <Ferro/CheckedMath.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/Result.h>

#include <memory>
#include <optional>

namespace Strata {

namespace {

void AppendIfPresent(const Cairn::GenericAsset& asset, UUIDList& ids) {
  if (asset.AssetID.HasValue()) ids.push_back(asset.AssetID);
}

UUIDList AssetIDsOf(const Cairn::CompositionPlaylist& cpl) {
  UUIDList ids;
  for (const Cairn::Reel& reel : cpl.ReelList) {
    AppendIfPresent(reel.MainPicture, ids);
    AppendIfPresent(reel.MainSound, ids);
    AppendIfPresent(reel.MainSubtitle, ids);
    for (const Cairn::TimedTextAsset& text : reel.OffScreenText) ids.push_back(text.AssetID);
    for (const Cairn::AuxDataAsset& data : reel.AuxData) ids.push_back(data.AssetID);
  }
  return ids;
}

}  // namespace

ui32_t calc_cpl_duration(const Cairn::CompositionPlaylist& cpl) {
  ui32_t duration = 0;
  for (const Cairn::Reel& reel : cpl.ReelList) duration += reel.MainPicture.Duration;
  return duration;
}

Result_t CompositionLoader::InitWithCPL(const Cairn::CompositionPlaylist& cpl, const Cairn::IAssetLookup& lookup) {
  m_CPL = &cpl;
  m_CPLText = cpl.ID.EncodeString();
  m_Info = CompositionInfo();
  m_Info.ID = cpl.ID;
  m_Info.Title = cpl.ContentTitle;
  m_Info.CurrentReel = 1;
  m_EditRate = QUIRE::Rational();
  m_AudioDescriptor = QUIRE::PCM::AudioDescriptor();
  m_FirstReel = 0;

  Ferro::DefaultLogSink().Info("Loading CPL %s\n", m_CPLText.c_str());
  std::optional<UUID> previous_cpl;
  if (!m_Target.Timeline.empty()) previous_cpl = LastReel().m_CPL;
  m_Target.CPL_ID = cpl.ID;

  Result_t result = ResolveAssets(lookup);
  for (auto reel = cpl.ReelList.begin(); reel != cpl.ReelList.end() && result.Success(); ++reel) {
    result = AppendReel(*reel);
    if (result.Success()) result = LoadAssets(*reel);
  }
  if (result.Failure()) return result;

  m_Info.EditRate = m_EditRate;
  FillSilence();
  if (previous_cpl) result = MarkDistinctCoding(*previous_cpl);
  m_Target.Compositions.try_emplace(cpl.ID, m_Info);
  return result;
}

Result_t CompositionLoader::ResolveAssets(const Cairn::IAssetLookup& lookup) {
  m_Target.AssetList.clear();
  Result_t result = lookup.GetInfoForAssetIDList(AssetIDsOf(*m_CPL), m_Target.AssetList, true);
  if (result == Ferro::RESULT_FALSE) {
    Ferro::DefaultLogSink().Error("CPL %s references unregistered assets\n", m_CPLText.c_str());
    result = Cairn::RESULT_CN_NOT_IN_STORE;
  }
  m_Assets.clear();
  for (const Cairn::AssetInfo& info : m_Target.AssetList) m_Assets.try_emplace(info.ID, info);
  return result;
}

// Positions are 32-bit counts of edit units, and each reel costs memory and open files: a document cannot ask for a
// timeline that does not hold them.
Result_t CompositionLoader::AppendReel(const Cairn::Reel& reel) {
  const ui32_t duration = reel.MainPicture.Duration;
  if (m_Target.ReelCount >= MaxTimelineReels || !Ferro::CheckedAdd(m_Target.ShowDuration, duration)) {
    Ferro::DefaultLogSink().Error("Timeline is full, no room for reel %d of %s (%d edit units)\n",
                                  static_cast<int>(m_Info.TotalReels + 1), m_CPLText.c_str(),
                                  static_cast<int>(duration));
    return QUIRE::RESULT_FORMAT;
  }

  TimelineReel appended;
  appended.m_ID = UUID::Random();
  if (!appended.m_ID.HasValue()) {
    Ferro::DefaultLogSink().Error("No random numbers to identify reel %d of %s\n",
                                  static_cast<int>(m_Info.TotalReels + 1), m_CPLText.c_str());
    return Ferro::RESULT_FAIL;
  }
  m_Target.ReelCount += 1;
  appended.m_CPL = m_CPL->ID;
  appended.m_CPLReelID = reel.ID;
  appended.m_CPLReelNumber = m_Info.TotalReels++;
  appended.m_PlaylistReelNumber = m_Target.ReelCount - 1;
  appended.m_Duration = duration;
  appended.m_Offset = m_Target.Timeline.empty() ? 0 : LastReel().End();
  appended.m_EditRate = reel.MainPicture.EditRate;
  m_Target.Timeline.push_back(appended);
  FERRO_ASSERT_TEXT(m_Target.ReelCount == m_Target.Timeline.size(), "m_ReelCount == m_Timeline.size()");

  if (appended.m_CPLReelNumber == 0) m_FirstReel = appended.m_PlaylistReelNumber;
  m_Target.ShowDuration += duration;
  m_Info.Duration += duration;
  return Ferro::RESULT_OK;
}

void CompositionLoader::FillSilence() {
  if (m_AudioDescriptor.ChannelCount == 0) return;  // no reel has sound
  for (size_t index = m_FirstReel; index < m_Target.Timeline.size(); ++index) {
    TimelineReel& reel = m_Target.Timeline[index];
    if (!reel.MainSound.empty()) continue;
    auto* silence = new SilenceTimelineElement(m_AudioDescriptor);
    reel.MainSound.set(silence);
    static_cast<void>(silence->InitWithFilename("", 0, reel.MainPicture->Duration()));
    Ferro::DefaultLogSink().Debug(
        "Created SilenceTimelineElement: show-reel=%d, cpl-reel=%d, duration=%d, channels=%d\n",
        static_cast<int>(index), static_cast<int>(reel.m_CPLReelNumber), static_cast<int>(silence->Duration()),
        static_cast<int>(silence->ChannelCount()));
  }
}

Result_t CompositionLoader::MarkDistinctCoding(const UUID& previous_cpl) {
  Result_t result = Ferro::RESULT_OK;
  if (m_FirstReel == 0) {  // the timeline held reels before, so this composition added none
    Ferro::DefaultLogSink().Error("CPL initialization failed, some assets not found.\n");
    result = QUIRE::RESULT_FORMAT;
  }
  const auto previous = m_Target.Compositions.find(previous_cpl);
  if (previous != m_Target.Compositions.end() &&
      !test_CompositionInfo_coding_same(m_Info, previous->second, m_Target.ChangeMode))
    m_Target.Timeline[m_FirstReel].m_StartDistinctCoding = true;
  return result;
}

}  // namespace Strata
