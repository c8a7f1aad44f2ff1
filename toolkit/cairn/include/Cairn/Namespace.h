// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Namespace URIs of the documents read and written here. Compared byte for byte; a "#" at the end belongs to the name.

namespace Cairn {

inline constexpr char NS_SMPTE_CPL[] = "http://www.smpte-ra.org/schemas/429-7/2006/CPL";
inline constexpr char NS_Interop_CPL[] = "http://www.digicine.com/PROTO-ASDCP-CPL-20040511#";
inline constexpr char NS_SMPTE_PKL[] = "http://www.smpte-ra.org/schemas/429-8/2007/PKL";
inline constexpr char NS_SMPTE_PKL_2006[] = "http://www.smpte-ra.org/schemas/429-8/2006/PKL";
inline constexpr char NS_Interop_PKL[] = "http://www.digicine.com/PROTO-ASDCP-PKL-20040311#";
inline constexpr char NS_SMPTE_AM[] = "http://www.smpte-ra.org/schemas/429-9/2007/AM";
inline constexpr char NS_SMPTE_AM_2006[] = "http://www.smpte-ra.org/schemas/429-9/2006/AM";
inline constexpr char NS_Interop_AM[] = "http://www.digicine.com/PROTO-ASDCP-AM-20040311#";
inline constexpr char NS_Interop_VL[] = "http://www.digicine.com/PROTO-ASDCP-VL-20040311#";
inline constexpr char NS_SMPTE_DCST_2007[] = "http://www.smpte-ra.org/schemas/428-7/2007/DCST";
inline constexpr char NS_SMPTE_DCST_2010[] = "http://www.smpte-ra.org/schemas/428-7/2010/DCST";
inline constexpr char NS_SMPTE_DCST_2014[] = "http://www.smpte-ra.org/schemas/428-7/2014/DCST";

// Extension elements of a composition playlist.
inline constexpr char NS_SMPTE_Stereo[] = "http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-CPL";
inline constexpr char NS_SMPTE_Stereo_2007[] = "http://www.smpte-ra.org/schemas/429-10/2007/Main-Stereo-Picture-CPL";
inline constexpr char NS_Interop_Stereo[] = "http://www.digicine.com/schemas/437-Y/2007/Main-Stereo-Picture-CPL";
inline constexpr char NS_SMPTE_TT[] = "http://www.smpte-ra.org/schemas/429-12/2008/TT";
inline constexpr char NS_Interop_CC[] = "http://www.digicine.com/PROTO-ASDCP-CC-CPL-20070926#";
inline constexpr char NS_SMPTE_AuxData[] = "http://www.smpte-ra.org/schemas/429-14/2014/Aux-Data";
inline constexpr char NS_ImmersiveAudio[] = "http://www.dolby.com/schemas/2012/AD";  // ST 429-18
inline constexpr char NS_SMPTE_Metadata[] = "http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata";

inline constexpr char NS_XMLDSig[] = "http://www.w3.org/2000/09/xmldsig#";

}  // namespace Cairn
