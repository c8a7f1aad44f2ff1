// SPDX-License-Identifier: BSD-3-Clause
// Filling a playlist, from a document's text or from a list of identifiers.
#include "Playlist/ShowExpansion.h"
#include "Playlist/h__Playlist.h"

#include <Cairn/InitObjectWithFile.h>
#include <Ferro/ILogSink.h>
#include <Ferro/SHA1Digest.h>
#include <QUIRE/Result.h>

#include <exception>
#include <new>

namespace Strata {

namespace {

/// Answers what `load` does. An exception, from a lookup or a library below or for memory that is out, becomes a failure:
/// a server plays on with what it has.
template <class LoadT>
Result_t WithoutExceptions(LoadT load) {
  const auto failed = [](const Result_t& result, const char* reason) {
    try {
      Ferro::DefaultLogSink().Error("The playlist cannot be initialised: %s\n", reason);
    } catch (const std::exception&) {
      return result;  // where memory is out, the line is lost
    }
    return result;
  };
  try {
    return load();
  } catch (const std::bad_alloc&) {
    return failed(Ferro::RESULT_ALLOC, Ferro::RESULT_ALLOC.Label());
  } catch (const std::exception& error) {
    return failed(Ferro::RESULT_FAIL, error.what());
  } catch (...) {  // the XML libraries have exceptions of their own
    return failed(Ferro::RESULT_FAIL, Ferro::RESULT_FAIL.Label());
  }
}

}  // namespace

Result_t h__Playlist::InitWithPlaylist(const std::string& document, const Cairn::IAssetLookup& lookup,
                                       const Cairn::PListDict& options) {
  return WithoutExceptions([&] { return LoadDocument(document, lookup, options); });
}

Result_t h__Playlist::InitWithUUIDList(const UUIDList& ids, const Cairn::IAssetLookup& lookup,
                                       const Cairn::PListDict& options) {
  return WithoutExceptions([&] { return LoadList(ids, lookup, options); });
}

Result_t h__Playlist::LoadDocument(const std::string& document, const Cairn::IAssetLookup& lookup,
                                   const Cairn::PListDict& options) {
  if (document.empty()) return RESULT_SX_EMPTY_PL;
  Clear();

  Result_t result = Ferro::RESULT_OK;
  ShowPlaylist spl;
  Cairn::CompositionPlaylist cpl;
  if (spl.DecodeXML(document).Success()) {
    // The document's own identifier is taken, by no file, so that a reference to it from inside is refused.
    AssetInfoMap assets;
    assets[spl.ID].ID = spl.ID;
    Ferro::PathList_t paths{"ephemeral"};
    ShowExpander expander(m_Timeline, m_EventList, assets, lookup,
                          [&](const auto& composition) { return InitWithCPL(composition, lookup, options); });
    result = expander.InitWithSPL(spl, paths);
  } else if (cpl.DecodeXML(document).Success()) {
    result = InitWithCPL(cpl, lookup, options);
  } else {
    Ferro::DefaultLogSink().Error("String (SHA-1=%s) is not an XML ShowPlaylist or CompositionPlaylist document.\n",
                                  Ferro::DigestText(document).EncodeBase64().c_str());
    result = QUIRE::RESULT_FORMAT;
  }
  return result.Success() ? FixupPlaylist() : result;
}

Result_t h__Playlist::LoadList(const UUIDList& ids, const Cairn::IAssetLookup& lookup,
                               const Cairn::PListDict& options) {
  if (ids.empty()) return RESULT_SX_EMPTY_PL;
  Clear();

  AssetInfoMap assets;
  ShowExpander expander(m_Timeline, m_EventList, assets, lookup,
                        [&](const auto& composition) { return InitWithCPL(composition, lookup, options); });
  for (const UUID& id : ids) {
    AssetInfoMap::const_iterator asset;
    Result_t result = get_info_map_item(id, asset, assets, lookup);
    if (result.Failure()) return result;

    const std::string& path = asset->second.RealFilename;
    if (asset->second.FileType == Cairn::FT_CPL) {
      Cairn::CompositionPlaylist cpl;
      result = Cairn::InitObjectWithFile(cpl, path);
      if (result.Success()) result = InitWithCPL(cpl, lookup, options);
    } else if (asset->second.FileType == Cairn::FT_SHOW) {
      ShowPlaylist spl;
      Ferro::PathList_t paths{path};
      result = Cairn::InitObjectWithFile(spl, path);
      if (result.Success()) result = expander.InitWithSPL(spl, paths);
    } else {
      Ferro::DefaultLogSink().Error("UUID value %s does not identify a CompositionPlaylist or ShowPlaylist.\n",
                                    asset->second.ID.EncodeString().c_str());
    }
    if (result.Failure()) return result;
  }
  return FixupPlaylist();
}

// The reel count, events and composition records stay: a playlist object is initialised once.
void h__Playlist::Clear() {
  m_Timeline.clear();
  m_CurrentReel = nullptr;
  m_ShowPosition = TimelinePosition();
  m_CPLPosition = TimelinePosition();
  m_ReelPosition = TimelinePosition();
}

Result_t h__Playlist::InitWithCPL(const Cairn::CompositionPlaylist& cpl, const Cairn::IAssetLookup& lookup,
                                  const Cairn::PListDict&) {
  CompositionLoader loader({m_Timeline, m_ReelCount, m_ShowPosition.Duration, m_CompositionInfo, m_HasStereoImage,
                            m_PictureType, m_ImageEssenceChangeMode, m_ThisCPL_ID, m_ThisCPL_AssetList});
  return loader.InitWithCPL(cpl, lookup);
}

Result_t h__Playlist::FixupPlaylist() {
  Ferro::DefaultLogSink().Debug("reels: %d, Duration: %d\n", static_cast<int>(m_Timeline.size()),
                                static_cast<int>(m_ShowPosition.Duration));
  const TimelineSummary summary = SummariseTimeline(m_Timeline);
  m_CPLIDList = summary.CPLs;
  m_KeyIDList = summary.Keys;
  m_CiphertextCPLIDList = summary.CiphertextCPLs;
  m_DurationSeconds = summary.DurationSeconds;
  SortEvents(m_EventList);
  PullEventsInside(m_EventList, m_ShowPosition.Duration);

  if (m_Timeline.empty()) {
    Ferro::DefaultLogSink().Debug("Show playlist contains no reels\n");
    return Ferro::RESULT_PARAM;
  }
  AdjustCounters();
  return Ferro::RESULT_OK;
}

}  // namespace Strata
