// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/InspectFile.h>

#include "xml/DocumentEncoding.h"
#include "xml/DocumentTree.h"

#include <Cairn/DocumentParser.h>

#include <Ferro/FileReader.h>
#include <Ferro/FileText.h>
#include <Ferro/LogSink.h>
#include <Ferro/XMLDocType.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/EssenceType.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <array>
#include <string_view>
#include <utility>

namespace Cairn {

namespace {

constexpr size_t HeadSize = 4096;
constexpr fsize_t LargestDocument = DocumentParser::MaxDocumentSize;

/// Keeps the first message of a document's faults, without its end of line.
class FirstMessageSink : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry& entry) override {
    if (Message.empty()) Message = entry.Message.substr(0, entry.Message.find('\n'));
  }
  std::string Message;
};

struct Signature {
  std::string_view Bytes;
  FileType_t Type;
};

using namespace std::string_view_literals;

// The first bytes by which files of one kind are known.
constexpr std::array Signatures = {
    Signature{"\x89PNG\r\n\x1a\n"sv, FT_TI_PNG},
    Signature{"\x00\x01\x00\x00"sv, FT_TI_TRUETYPE},
    Signature{"true"sv, FT_TI_TRUETYPE},
    Signature{"OTTO"sv, FT_OPENTYPE},
    Signature{"\xff\x4f\xff\x51"sv, FT_J2C},
    Signature{"\x00\x00\x01\xb3"sv, FT_MPEG2_VES},
    Signature{"RIFF"sv, FT_WAV},
    Signature{"RF64"sv, FT_WAV},
};

FileType_t TypeFromSignature(std::string_view head) {
  for (const Signature& signature : Signatures)
    if (head.starts_with(signature.Bytes)) {
      if (signature.Type == FT_WAV && (head.size() < 12 || head.substr(8, 4) != "WAVE")) return FT_UNKNOWN;
      return signature.Type;
    }
  return FT_UNKNOWN;
}

bool MayBeXML(std::string_view head) {
  if (head.starts_with("\xef\xbb\xbf") || head.starts_with("\xff\xfe") || head.starts_with("\xfe\xff")) return true;
  const size_t first = head.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && head[first] == '<';
}

struct Root {
  std::string_view Element;
  FileType_t Type;
};

constexpr std::array Roots = {
    Root{"CompositionPlaylist", FT_CPL},    Root{"PackingList", FT_PKL},
    Root{"AssetMap", FT_ASSETMAP},          Root{"VolumeIndex", FT_VOLINDEX},
    Root{"DCSubtitle", FT_TI_SUBTITLE},     Root{"SubtitleReel", FT_DCST},
    Root{"ShowPlaylist", FT_SHOW},          Root{"ResourcePresentationList", FT_RPL},
    Root{"DCinemaSecurityMessage", FT_KDM},
};

/// The identifier that stands as a child of the document element.
UUID IdentifierIn(const Element* root) {
  const Element* element = FirstChildNamed(root, "Id");
  if (element == nullptr) element = FirstChildNamed(root, "SubtitleID");
  const std::string text = TrimmedText(element);
  if (const auto plain = UUID::FromHex(text)) return *plain;  // as Interop subtitles have it
  return UUID::FromURN(text).value_or(UUID());
}

FileType_t TypeOfDocument(const std::string& xml) {
  Ferro::XMLDocType doctype;
  if (!Ferro::GetXMLDocType(xml, doctype)) return FT_UNKNOWN;
  FirstMessageSink unheard;
  DCPFormat_t format = DFT_NONE;
  if (ClassifyXMLDocument(xml, format, unheard).Failure()) return FT_XML;
  for (const Root& root : Roots)
    if (doctype.ElementName == root.Element) return root.Type;
  return FT_XML;
}

Result_t InspectDocument(const std::string& filename, FileContent& content) {
  std::string xml;
  const Result_t result = Ferro::ReadFileIntoString(filename, xml, LargestDocument);
  if (result == Ferro::RESULT_TOOLARGE) return Ferro::RESULT_OK;  // no document of ours is as large
  if (result.Failure()) return result;
  content.Type = TypeOfDocument(xml);
  if (content.Type == FT_UNKNOWN || content.Type == FT_XML) return Ferro::RESULT_OK;
  std::string buffer;
  std::string_view text;
  content.Reason = DecodeDocumentText(xml, buffer, text);
  if (!content.Reason.empty()) {
    content.Problem = DP_ENCODING;
    return Ferro::RESULT_OK;
  }
  FirstMessageSink faults;
  const Result_t read = ReadDocument(xml, faults, [&](const Element* root, DCPFormat_t, Ferro::ILogSink&) {
    if (content.Type != FT_VOLINDEX) content.ID = IdentifierIn(root);
    return Result_t(Ferro::RESULT_OK);
  });
  if (read.Failure()) {
    content.Problem = DP_MALFORMED;
    content.Reason = std::move(faults.Message);
  }
  return Ferro::RESULT_OK;
}

template <class Reader>
UUID AssetOf(const std::string& filename) {
  Reader reader;
  QUIRE::WriterInfo info;
  if (reader.OpenRead(filename).Success()) static_cast<void>(reader.FillWriterInfo(info));
  return info.AssetUUID;
}

UUID AssetOfTrackFile(const std::string& filename, QUIRE::EssenceType_t essence) {
  switch (essence) {
    case QUIRE::ESS_MPEG2_VES:
      return AssetOf<QUIRE::MPEG2::MXFReader>(filename);
    case QUIRE::ESS_JPEG_2000:
      return AssetOf<QUIRE::JP2K::MXFReader>(filename);
    case QUIRE::ESS_JPEG_2000_S:
      return AssetOf<QUIRE::JP2K::MXFSReader>(filename);
    case QUIRE::ESS_PCM:
      return AssetOf<QUIRE::PCM::MXFReader>(filename);
    case QUIRE::ESS_TIMED_TEXT:
      return AssetOf<QUIRE::TimedText::MXFReader>(filename);
    case QUIRE::ESS_DCDATA:
      return AssetOf<QUIRE::DCData::MXFReader>(filename);
    case QUIRE::ESS_ATMOS:
      return AssetOf<QUIRE::ATMOS::MXFReader>(filename);
    default:
      return {};
  }
}

}  // namespace

Result_t InspectFile(const std::string& filename, FileContent& content) {
  content = FileContent();
  Ferro::FileReader file;
  if (const Result_t result = file.OpenRead(filename); result.Failure()) return result;
  std::array<ui8_t, HeadSize> bytes{};
  size_t count = 0;
  if (const Result_t result = file.ReadUpTo(0, bytes, count); result.Failure()) return result;
  const std::string_view head(reinterpret_cast<const char*>(bytes.data()), count);

  content.Type = TypeFromSignature(head);
  if (content.Type != FT_UNKNOWN) return Ferro::RESULT_OK;
  if (MayBeXML(head)) return InspectDocument(filename, content);

  QUIRE::EssenceType_t essence = QUIRE::ESS_UNKNOWN;
  const Result_t result = QUIRE::EssenceType(filename, essence);
  content.Type = static_cast<FileType_t>(essence);
  content.ID = AssetOfTrackFile(filename, essence);
  return result;
}

}  // namespace Cairn
