// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/MIMEType.h>

#include <gtest/gtest.h>

namespace {

using namespace Cairn;

TEST(MIMEType, SMPTETypes) {
  EXPECT_EQ(FileTypeToSMPTEMIMEType(FT_CPL), "text/xml");
  EXPECT_EQ(FileTypeToSMPTEMIMEType(FT_DCST), "text/xml");
  for (const FileType_t type : {FT_MXF, FT_QUIRE_JP2K_J2C, FT_QUIRE_JP2K_J2C_S, FT_QUIRE_MPEG2_VES, FT_QUIRE_PCM,
                                FT_QUIRE_TIMED_TEXT, FT_QUIRE_DCDATA, FT_QUIRE_ATMOS})
    EXPECT_EQ(FileTypeToSMPTEMIMEType(type), "application/mxf") << type;
  EXPECT_EQ(FileTypeToSMPTEMIMEType(FT_TI_PNG), "image/png");
  EXPECT_EQ(FileTypeToSMPTEMIMEType(FT_OPENTYPE), "application/x-font-opentype");
}

TEST(MIMEType, InteropTypes) {
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_CPL), "text/xml;asdcpKind=CPL");
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_TI_SUBTITLE), "text/xml;asdcpKind=Subtitle");
  for (const FileType_t type : {FT_QUIRE_JP2K_J2C, FT_QUIRE_JP2K_J2C_S, FT_QUIRE_MPEG2_VES})
    EXPECT_EQ(FileTypeToInteropMIMEType(type), "application/x-smpte-mxf;asdcpKind=Picture") << type;
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_QUIRE_PCM), "application/x-smpte-mxf;asdcpKind=Sound");
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_QUIRE_TIMED_TEXT), "application/x-smpte-mxf;asdcpKind=Subtitle");
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_TI_PNG), "image/png");
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_TI_TRUETYPE), "application/ttf");
}

TEST(MIMEType, FilesWithoutTypeAreOctetStreams) {
  for (const FileType_t type : {FT_UNKNOWN, FT_J2C, FT_WAV, FT_MPEG2_VES, FT_MAX}) {
    EXPECT_EQ(FileTypeToSMPTEMIMEType(type), "application/octet-stream") << type;
    EXPECT_EQ(FileTypeToInteropMIMEType(type), "application/octet-stream") << type;
  }
  EXPECT_EQ(FileTypeToSMPTEMIMEType(FT_TI_SUBTITLE), "application/octet-stream");
  EXPECT_EQ(FileTypeToInteropMIMEType(FT_QUIRE_ATMOS), "application/octet-stream");
}

TEST(MIMEType, TypesOfEitherFlavourAreUnderstood) {
  EXPECT_EQ(MIMETypeToFileType("text/xml"), FT_XML);
  EXPECT_EQ(MIMETypeToFileType("text/xml;asdcpKind=CPL"), FT_CPL);
  EXPECT_EQ(MIMETypeToFileType("text/xml;asdcpKind=Subtitle"), FT_TI_SUBTITLE);
  EXPECT_EQ(MIMETypeToFileType("application/mxf"), FT_MXF);
  EXPECT_EQ(MIMETypeToFileType("application/x-smpte-mxf;asdcpKind=Picture"), FT_MXF);
  EXPECT_EQ(MIMETypeToFileType("application/x-smpte-mxf;asdcpKind=Sound"), FT_QUIRE_PCM);
  EXPECT_EQ(MIMETypeToFileType("image/png"), FT_TI_PNG);
  EXPECT_EQ(MIMETypeToFileType("application/ttf"), FT_TI_TRUETYPE);
  EXPECT_EQ(MIMETypeToFileType("font/ttf"), FT_TI_TRUETYPE);
  EXPECT_EQ(MIMETypeToFileType("application/x-font-opentype"), FT_OPENTYPE);
}

TEST(MIMEType, CaseBlanksAndMixedFlavoursAreUnderstood) {
  EXPECT_EQ(MIMETypeToFileType(" Text/XML ; asdcpKIND = cpl "), FT_CPL);
  EXPECT_EQ(MIMETypeToFileType("application/mxf;asdcpKind=Sound"), FT_QUIRE_PCM);
  EXPECT_EQ(MIMETypeToFileType("text/xml;charset=utf-8"), FT_XML);
}

TEST(MIMEType, UnknownTypesStayUnknown) {
  EXPECT_EQ(MIMETypeToFileType(""), FT_UNKNOWN);
  EXPECT_EQ(MIMETypeToFileType("application/octet-stream"), FT_UNKNOWN);
  EXPECT_EQ(MIMETypeToFileType("text/xmlish"), FT_UNKNOWN);
}

}  // namespace
