// SPDX-License-Identifier: BSD-3-Clause
// The loaded timeline as documents and lists.
#include "Playlist/TimelineExport.h"
#include "Playlist/h__Playlist.h"

namespace Strata {

// The encoders cannot fail on what a timeline holds but for text that XML cannot carry. Neither operation reports that,
// nor does the first report anything else: the document is then empty.
Result_t h__Playlist::GetShowPlaylistForTimeline(std::string& document) const {
  document.clear();
  ShowPlaylist spl;
  if (FillShowPlaylist(m_Timeline, m_EventList, m_DurationSeconds, spl).Success())
    static_cast<void>(spl.EncodeXML(document, Cairn::DFT_NONE));
  return Ferro::RESULT_OK;
}

Result_t h__Playlist::GetPresentationListForTimeline(const std::string& base_path, std::string& document,
                                                     ui32_t& playout_id) const {
  ResourcePresentationList rpl;
  document.clear();
  playout_id = 0;
  const Result_t result = FillPresentationList(m_Timeline, base_path, rpl);
  if (result.Failure()) return result;
  static_cast<void>(rpl.EncodeXML(document));
  playout_id = rpl.PlayoutID;
  return rpl.ReelResourcesList.empty() ? Ferro::RESULT_FALSE : Ferro::RESULT_OK;
}

void h__Playlist::GetLastCPLContext(UUID& id, Cairn::AssetInfoList& assets) const {
  id = m_ThisCPL_ID;
  assets = m_ThisCPL_AssetList;
}

void h__Playlist::GetKeyIDList(UUIDList& out) const {
  out = m_KeyIDList;
}

void h__Playlist::GetCPLIDList(UUIDList& out) const {
  out = m_CPLIDList;
}

void h__Playlist::GetCiphertextCPLIDList(UUIDList& out) const {
  out = m_CiphertextCPLIDList;
}

}  // namespace Strata
