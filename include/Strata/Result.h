// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

namespace Strata {

using Ferro::Result_t;

// What a playback server built on this library reports, -1000 to -1035, beside the general results of Ferro and those
// of QUIRE and Cairn. The codes travel on the control protocol and never change. The playlist engine itself returns
// SX_EMPTY_PL, SX_PLAYLIST_REC, SX_PLAYLIST_PTYPE, SX_PLAYLIST_CTYPE and SX_DIGEST_FAIL; the others belong to the
// server's asset store, key handling and security-manager link. The symbols of the ASM codes bear no SX prefix.

inline constexpr Result_t RESULT_SX_DEVICE{-1000, "SX_DEVICE", "Media block failure."};
inline constexpr Result_t RESULT_SX_ID_EXISTS{-1001, "SX_ID_EXISTS", "Asset ID value already exists in asset store."};
inline constexpr Result_t RESULT_SX_NO_DISK{-1002, "SX_NO_DISK", "Asset store has insufficient disk space."};
inline constexpr Result_t RESULT_SX_EMPTY_PL{-1003, "SX_EMPTY_PL", "Playlist is empty."};
inline constexpr Result_t RESULT_SX_PLUG_XPORT{-1004, "SX_PLUG_XPORT", "Transport device plugin error."};
inline constexpr Result_t RESULT_SX_ATTR_NAME{-1005, "SX_ATTR_NAME", "Unknown attribute name."};
inline constexpr Result_t RESULT_SX_ATTR_RANGE{-1006, "SX_ATTR_RANGE", "Attribute value out of range."};
inline constexpr Result_t RESULT_SX_ATTR_TYPE{-1007, "SX_ATTR_TYPE", "Attribute value type not expected."};
inline constexpr Result_t RESULT_SX_NO_KDM{-1008, "SX_NO_KDM", "No KDM available."};
inline constexpr Result_t RESULT_SX_NO_VALID_KDM{-1009, "SX_NO_VALID_KDM", "No valid KDM available."};
inline constexpr Result_t RESULT_SX_IDX_FILE{-1010, "SX_IDX_FILE", "KDM index file error."};
inline constexpr Result_t RESULT_SX_DUP_KEY{-1011, "SX_DUP_KEY", "KDM key value already exists."};
inline constexpr Result_t RESULT_SX_NO_KEY{-1012, "SX_NO_KEY", "KDM key not found."};
inline constexpr Result_t RESULT_SX_REGFAIL{-1013, "SX_REGFAIL", "Asset registration failed."};
inline constexpr Result_t RESULT_SX_DUP_KDM{-1014, "SX_DUP_KDM", "KDM already exists."};
inline constexpr Result_t RESULT_ASM_PROTO{-1015, "ASM_PROTO", "ASM protocol error."};
inline constexpr Result_t RESULT_ASM_CONNECT{-1016, "ASM_CONNECT", "ASM client not connected."};
inline constexpr Result_t RESULT_ASM_BAD_REQ{-1017, "ASM_BAD_REQ", "ASM bad request."};
inline constexpr Result_t RESULT_ASM_FAIL{-1018, "ASM_FAIL", "ASM responder declined request."};
inline constexpr Result_t RESULT_ASM_INVALID{-1019, "ASM_INVALID", "ASM invalid parameter."};
inline constexpr Result_t RESULT_ASM_BUSY{-1020, "ASM_BUSY", "ASM busy."};
inline constexpr Result_t RESULT_ASM_KEYLOADOVER{-1021, "ASM_KEYLOADOVER", "ASM Key load overflow."};
inline constexpr Result_t RESULT_SX_NO_LINK{-1022, "SX_NO_LINK", "Link encryption required, no ASM peer found."};
inline constexpr Result_t RESULT_SX_TASK_DEP{-1023, "SX_TASK_DEP", "Asset delete failed because of task dependency."};
inline constexpr Result_t RESULT_SX_PLAYLIST_REC{-1024, "SX_PLAYLIST_REC",
                                                 "Show Playlist includes self, infinite loop refused."};
inline constexpr Result_t RESULT_SX_PLAYLIST_PTYPE{-1025, "SX_PLAYLIST_PTYPE",
                                                   "Composition playlist ID used in show playlist context."};
inline constexpr Result_t RESULT_SX_PLAYLIST_CTYPE{-1026, "SX_PLAYLIST_CTYPE",
                                                   "Show playlist ID used in composition playlist context."};
inline constexpr Result_t RESULT_SX_PLUGIN_TYPE{-1027, "SX_PLUGIN_TYPE", "Plugin format mismatch."};
inline constexpr Result_t RESULT_SX_CSP_BAD_RSP{-1028, "SX_CSP_BAD_RSP", "BadResponse returned from ACS device."};
inline constexpr Result_t RESULT_SX_CSP_SESSION{-1029, "SX_CSP_SESSION", "CSP session failed."};
inline constexpr Result_t RESULT_SX_DEVICE_BUSY{-1030, "SX_DEVICE_BUSY", "Media block is busy."};
inline constexpr Result_t RESULT_SX_EVENT_OVERFLOW{-1031, "SX_EVENT_OVERFLOW",
                                                   "The security log query yielded too many results."};
inline constexpr Result_t RESULT_SX_INGEST_OBJ{-1032, "SX_INGEST_OBJ", "Ingest objects no longer available."};
inline constexpr Result_t RESULT_SX_DIGEST_FAIL{-1033, "SX_DIGEST_FAIL", "Message digest mismatch."};
inline constexpr Result_t RESULT_SX_AUTO_DELETE{-1034, "SX_AUTO_DELETE", "Deleted broken asset record from database."};
inline constexpr Result_t RESULT_SX_NO_PICTURE{-1035, "SX_NO_PICTURE",
                                               "The playlist includes a reel with empty picture."};

}  // namespace Strata
