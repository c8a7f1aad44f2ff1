// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/MIMEType.h>

#include <algorithm>
#include <cctype>

namespace Cairn {
namespace {

constexpr char OctetStream[] = "application/octet-stream";

struct MIMEType {
  FileType_t FileType;
  const char* SMPTE;    // null: none
  const char* Interop;  // null: none
};

// ST 429-8, ST 429-5; Interop packing lists.
constexpr MIMEType s_Types[] = {
    {FT_XML, "text/xml", "text/xml"},
    {FT_CPL, "text/xml", "text/xml;asdcpKind=CPL"},
    {FT_PKL, "text/xml", "text/xml;asdcpKind=PKL"},
    {FT_ASSETMAP, "text/xml", "text/xml"},
    {FT_VOLINDEX, "text/xml", "text/xml"},
    {FT_KDM, "text/xml", "text/xml"},
    {FT_RPL, "text/xml", "text/xml"},
    {FT_SHOW, "text/xml", "text/xml"},
    {FT_DCST, "text/xml", nullptr},
    {FT_TI_SUBTITLE, nullptr, "text/xml;asdcpKind=Subtitle"},
    {FT_MXF, "application/mxf", "application/x-smpte-mxf"},
    {FT_QUIRE_JP2K_J2C, "application/mxf", "application/x-smpte-mxf;asdcpKind=Picture"},
    {FT_QUIRE_JP2K_J2C_S, "application/mxf", "application/x-smpte-mxf;asdcpKind=Picture"},
    {FT_QUIRE_MPEG2_VES, "application/mxf", "application/x-smpte-mxf;asdcpKind=Picture"},
    {FT_QUIRE_PCM, "application/mxf", "application/x-smpte-mxf;asdcpKind=Sound"},
    {FT_QUIRE_TIMED_TEXT, "application/mxf", "application/x-smpte-mxf;asdcpKind=Subtitle"},
    {FT_QUIRE_DCDATA, "application/mxf", nullptr},
    {FT_QUIRE_ATMOS, "application/mxf", nullptr},
    {FT_TI_PNG, "image/png", "image/png"},
    {FT_TI_TRUETYPE, "application/x-font-opentype", "application/ttf"},
    {FT_OPENTYPE, "application/x-font-opentype", "application/ttf"},
};

const MIMEType* Find(FileType_t type) {
  const auto* found = std::ranges::find(s_Types, type, &MIMEType::FileType);
  return found == std::end(s_Types) ? nullptr : found;
}

struct KnownName {
  std::string_view Name;
  FileType_t FileType;
};

// In lower case, without blanks.
constexpr KnownName s_Names[] = {
    {"text/xml", FT_XML},
    {"application/xml", FT_XML},
    {"text/xml;asdcpkind=cpl", FT_CPL},
    {"text/xml;asdcpkind=pkl", FT_PKL},
    {"text/xml;asdcpkind=subtitle", FT_TI_SUBTITLE},
    {"application/mxf", FT_MXF},
    {"application/x-smpte-mxf", FT_MXF},
    {"image/png", FT_TI_PNG},
    {"application/ttf", FT_TI_TRUETYPE},
    {"application/x-font-ttf", FT_TI_TRUETYPE},
    {"font/ttf", FT_TI_TRUETYPE},
    {"application/x-font-opentype", FT_OPENTYPE},
    {"font/otf", FT_OPENTYPE},
};

FileType_t FindName(std::string_view name) {
  const auto* found = std::ranges::find(s_Names, name, &KnownName::Name);
  return found == std::end(s_Names) ? FT_UNKNOWN : found->FileType;
}

// Kinds of MXF files; a picture's coding and dimension stay open.
FileType_t TrackFileKind(std::string_view parameters) {
  if (parameters == ";asdcpkind=sound") return FT_QUIRE_PCM;
  if (parameters == ";asdcpkind=subtitle") return FT_QUIRE_TIMED_TEXT;
  return FT_MXF;
}

}  // namespace

std::string FileTypeToSMPTEMIMEType(FileType_t type) {
  const MIMEType* found = Find(type);
  return found == nullptr || found->SMPTE == nullptr ? OctetStream : found->SMPTE;
}

std::string FileTypeToInteropMIMEType(FileType_t type) {
  const MIMEType* found = Find(type);
  return found == nullptr || found->Interop == nullptr ? OctetStream : found->Interop;
}

FileType_t MIMETypeToFileType(std::string_view mime_type) {
  std::string plain;
  for (const char c : mime_type)
    if (!std::isspace(static_cast<unsigned char>(c)))
      plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const size_t end = std::min(plain.find(';'), plain.size());
  const FileType_t whole = FindName(plain);
  const FileType_t type = whole != FT_UNKNOWN ? whole : FindName(std::string_view(plain).substr(0, end));
  return type == FT_MXF ? TrackFileKind(std::string_view(plain).substr(end)) : type;
}

}  // namespace Cairn
