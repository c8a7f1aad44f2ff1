// SPDX-License-Identifier: BSD-3-Clause
#include "PackageMaker.h"

#include <Ferro/Assert.h>
#include <Ferro/SHA1Digest.h>

#include <fstream>

namespace testsupport {

namespace {

Cairn::FileType_t FileTypeOf(TrackKind kind) {
  switch (kind) {
    case TrackKind::Picture:
      return Cairn::FT_QUIRE_JP2K_J2C;
    case TrackKind::StereoscopicPicture:
      return Cairn::FT_QUIRE_JP2K_J2C_S;
    case TrackKind::MPEG2:
      return Cairn::FT_QUIRE_MPEG2_VES;
    case TrackKind::Sound:
      return Cairn::FT_QUIRE_PCM;
    case TrackKind::Data:
      return Cairn::FT_QUIRE_DCDATA;
    case TrackKind::Atmos:
      return Cairn::FT_QUIRE_ATMOS;
    case TrackKind::Text:
      return Cairn::FT_QUIRE_TIMED_TEXT;
  }
  return Cairn::FT_UNKNOWN;
}

constexpr const char* InteropDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<DCSubtitle Version=\"1.0\">\n"
    "<SubtitleID>11223344-5566-4778-899a-abbccddeeff0</SubtitleID>\n<MovieTitle>Title</MovieTitle>\n"
    "<ReelNumber>1</ReelNumber>\n<Language>English</Language>\n</DCSubtitle>\n";

}  // namespace

Cairn::AssetInfo PackageMaker::Register(const Ferro::UUID& id, Cairn::FileType_t type, const std::string& path) {
  Cairn::AssetInfo info;
  info.ID = id;
  info.FileType = type;
  info.RealFilename = path;
  info.Digest = Ferro::DigestText(path);
  Lookup.Table[id] = info;
  return info;
}

Cairn::AssetInfo PackageMaker::Track(TrackKind kind, TrackFileSpec spec) {
  spec.AssetID = Ferro::UUID::Random();
  const std::string path = m_Folder.Path(std::to_string(++m_Count) + ".mxf");
  const bool made = MakeTrackFile(kind, path, spec).Success();
  FERRO_ASSERT(made);
  return Register(spec.AssetID, FileTypeOf(kind), path);
}

Cairn::AssetInfo PackageMaker::InteropText() {
  return Document(Ferro::UUID::Random(), Cairn::FT_TI_SUBTITLE, InteropDocument);
}

Cairn::AssetInfo PackageMaker::Document(const Ferro::UUID& id, Cairn::FileType_t type, const std::string& content) {
  const std::string path = m_Folder.Path(std::to_string(++m_Count) + ".xml");
  std::ofstream(path, std::ios::binary) << content;
  return Register(id, type, path);
}

Cairn::AssetInfo PackageMaker::Composition(const Cairn::CompositionPlaylist& cpl) {
  return Document(cpl.ID, Cairn::FT_CPL, Encode(cpl));
}

Cairn::AssetInfo PackageMaker::Show(const Strata::ShowPlaylist& spl) {
  return Document(spl.ID, Cairn::FT_SHOW, Encode(spl));
}

std::string PackageMaker::Encode(const Cairn::CompositionPlaylist& cpl) {
  std::string xml;
  const bool encoded = cpl.EncodeXML(xml, cpl.DCPFormat).Success();
  FERRO_ASSERT(encoded);
  return xml;
}

std::string PackageMaker::Encode(const Strata::ShowPlaylist& spl) {
  std::string xml;
  const bool encoded = spl.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success();
  FERRO_ASSERT(encoded);
  return xml;
}

Cairn::Reel ReelOf(const Cairn::AssetInfo& picture, Ferro::ui32_t duration) {
  Cairn::Reel reel;
  reel.ID = Ferro::UUID::Random();
  reel.MainPicture = AssetOf<Cairn::PictureAsset>(picture, duration);
  reel.MainPicture.FrameRate = QUIRE::EditRate_24;
  reel.MainPicture.ScreenAspectRatio = QUIRE::Rational(16, 9);
  return reel;
}

Cairn::CompositionPlaylist EmptyComposition(const std::string& title) {
  Cairn::CompositionPlaylist cpl;
  cpl.ID = Ferro::UUID::Random();
  cpl.IssueDate = "2026-01-02T03:04:05+00:00";
  cpl.Issuer = "Issuer";
  cpl.Creator = "Creator";
  cpl.ContentTitle = title;
  cpl.ContentKind = Cairn::CK_FEATURE;
  cpl.DCPFormat = Cairn::DFT_DCI_SMPTE;
  return cpl;
}

}  // namespace testsupport
