// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/h__Playlist.h"

namespace Strata {

IPlaylist::~IPlaylist() = default;

h__Playlist::h__Playlist() = default;

// Tracks stop their threads as their reel goes.
h__Playlist::~h__Playlist() {
  m_ThisCPL_AssetList.clear();
  m_CompositionInfo.clear();
  m_EventList.clear();
  m_Timeline.clear();
}

Result_t NewPlaylist(Ferro::mem_ptr<IPlaylist>& out) {
  out.set(new h__Playlist);
  return Ferro::RESULT_OK;
}

}  // namespace Strata
