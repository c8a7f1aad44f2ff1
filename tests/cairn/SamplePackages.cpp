// SPDX-License-Identifier: BSD-3-Clause
#include "SampleDocuments.h"

#include <Cairn/Namespace.h>

namespace CairnTest {
namespace {

using Cairn::AssetMap;
using Cairn::DCSubtitle;
using Cairn::PackingList;
using Cairn::VolumeIndex;

constexpr char IssueDate[] = "2026-02-03T04:05:06Z";

PackingList PackingListOf(bool is_interop) {
  PackingList pkl;
  pkl.NamespaceName = is_interop ? Cairn::NS_Interop_PKL : Cairn::NS_SMPTE_PKL;
  pkl.DCPFormat = is_interop ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE;
  pkl.ID = SampleID(0x500);
  pkl.Annotation = "Night Ferry";
  pkl.IconID = SampleID(0x501);
  pkl.IssueDate = IssueDate;
  pkl.Issuer = "Quayside";
  pkl.Creator = "Mastering 7";
  if (!is_interop) pkl.GroupID = SampleID(0x502);
  pkl.AssetList = {{SampleID(0x510), "The composition", SampleDigest(1), 4711,
                    is_interop ? "text/xml;asdcpKind=CPL" : "text/xml", "CPL.xml"},
                   {SampleID(0x511), "", SampleDigest(2), 5'828'131'012,
                    is_interop ? "application/x-smpte-mxf;asdcpKind=Picture" : "application/mxf", "picture & more.mxf"},
                   {SampleID(0x512), "", SampleDigest(3), 1, "image/png", ""}};
  if (is_interop) pkl.AssetList.back().Digest.Reset();
  return pkl;
}

AssetMap AssetMapOf(bool is_interop) {
  AssetMap map;
  map.NamespaceName = is_interop ? Cairn::NS_Interop_AM : Cairn::NS_SMPTE_AM;
  map.DCPFormat = is_interop ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE;
  map.ID = SampleID(0x600);
  map.Annotation = "Night Ferry";
  map.Creator = "Mastering 7";
  map.VolumeCount = 2;
  map.IssueDate = IssueDate;
  map.Issuer = "Quayside";
  map.AssetList = {
      {SampleID(0x500), "The list", true, {{"PKL.xml", 1, 0, false, 0}}},
      {SampleID(0x511),
       "",
       false,
       {{"reel/picture.mxf.0", 1, 0, true, 4'294'967'296}, {"reel/picture.mxf.1", 2, 4'294'967'296, true, 1'048'576}}}};
  return map;
}

DCSubtitle Subtitle() {
  DCSubtitle document;
  document.DCPFormat = Cairn::DFT_Interop;
  document.Version = "1.1";
  document.SubtitleID = SampleID(0x700);
  document.MovieTitle = "Night Ferry";
  document.ReelNumber = 2;
  document.Language = "French";
  document.FontList = {{"Main", "Ferry.ttf"}, {"Other", "fonts/Other.ttf"}};
  document.SpotList = {{"1", "00:00:04:000", "00:00:06:125", {"Premi\xC3\xA8re ligne", "& seconde"}, {}},
                       {"2", "00:00:07:010", "00:00:09:249", {}, {"spot2.png"}}};
  return document;
}

}  // namespace

std::vector<Sample<PackingList>> PackingListSamples() {
  return {{"pkl-smpte.xml", "smpte-429-8-2007-PKL.xsd", Cairn::DFT_DCI_SMPTE, PackingListOf(false)},
          {"pkl-interop.xml", "interop-PROTO-ASDCP-PKL-20040311.xsd", Cairn::DFT_Interop, PackingListOf(true)}};
}

std::vector<Sample<AssetMap>> AssetMapSamples() {
  return {{"assetmap-smpte.xml", "smpte-429-9-2007-AM.xsd", Cairn::DFT_DCI_SMPTE, AssetMapOf(false)},
          {"assetmap-interop.xml", "interop-PROTO-ASDCP-AM-20040311.xsd", Cairn::DFT_Interop, AssetMapOf(true)}};
}

std::vector<Sample<VolumeIndex>> VolumeIndexSamples() {
  return {{"volindex-smpte.xml",
           "smpte-429-9-2007-AM.xsd",
           Cairn::DFT_DCI_SMPTE,
           {Cairn::NS_SMPTE_AM, 1, Cairn::DFT_DCI_SMPTE}},
          {"volindex-interop.xml",
           "reconstructed-PROTO-ASDCP-VL-20040311.xsd",
           Cairn::DFT_Interop,
           {Cairn::NS_Interop_VL, 2, Cairn::DFT_Interop}}};
}

std::vector<Sample<DCSubtitle>> SubtitleSamples() {
  return {{"dcsubtitle.xml", "reconstructed-DCSubtitle.xsd", Cairn::DFT_Interop, Subtitle()}};
}

}  // namespace CairnTest
