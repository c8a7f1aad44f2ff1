// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/TextTrack.h"

#include <Cairn/DCSubtitle.h>
#include <Cairn/MIMEType.h>
#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <Ferro/Path.h>
#include <QUIRE/MXF/RIP.h>
#include <QUIRE/Result.h>
#include <QUIRE/TimedTextReader.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <limits>
#include <span>
#include <system_error>

namespace Strata {

namespace {

using TextBuffer = QUIRE::TimedText::FrameBuffer;

/// The first bytes of every MXF key (ST 336; ST 377-1, 6.3).
constexpr std::array<ui8_t, 4> MXFKeyStart{0x06, 0x0e, 0x2b, 0x34};

/// Copies all that a text buffer holds; the copy's capacity is the source's size. False when it cannot be had.
bool CopyTextDataBuffer(const TextBuffer& source, TextBuffer& out) {
  if (out.Capacity(source.Size()).Failure()) return false;
  if (source.Size() > 0) std::memcpy(out.Data(), source.RoData(), source.Size());
  out.Size(source.Size());
  out.FrameNumber(source.FrameNumber());
  out.SourceLength(source.SourceLength());
  out.PlaintextOffset(source.PlaintextOffset());
  out.IntegrityPack(source.IntegrityPack());
  out.AssetID(source.AssetID());
  out.MIMEType(source.MIMEType());
  return true;
}

/// Reads a whole file into a buffer of its size.
Result_t ReadWholeFile(const Ferro::FileReader& file, TextBuffer& out) {
  if (file.Size() > std::numeric_limits<ui32_t>::max()) return Ferro::RESULT_TOOLARGE;
  const auto size = static_cast<ui32_t>(file.Size());
  Result_t result = out.Capacity(size);
  if (result.Failure()) return result;
  result = file.ReadAt(0, std::span<ui8_t>(out.Data(), size));
  if (result.Success()) out.Size(size);
  return result;
}

/// The gaps between a file's partitions, each rounded down to 16 bytes. They bound what lies in the partition before
/// the gap's end. No gap is taken for larger than the file, whatever its index pack says.
std::list<ui32_t> PartitionGaps(const QUIRE::MXF::RIP& index, Ferro::fsize_t file_size) {
  const Ferro::fsize_t limit = std::min<Ferro::fsize_t>(file_size, std::numeric_limits<ui32_t>::max());
  std::list<ui32_t> gaps;
  for (size_t i = 1; i < index.PairArray.size(); ++i) {
    const ui64_t gap = index.PairArray[i].ByteOffset - index.PairArray[i - 1].ByteOffset;
    gaps.push_back(static_cast<ui32_t>(std::min(gap, limit)) & ~ui32_t{15});
  }
  return gaps;
}

std::string ResourceMIMEType(QUIRE::TimedText::MIMEType_t type) {
  switch (type) {
    case QUIRE::TimedText::MT_PNG:
      return Cairn::FileTypeToSMPTEMIMEType(Cairn::FT_TI_PNG);
    case QUIRE::TimedText::MT_OPENTYPE:
      return Cairn::FileTypeToSMPTEMIMEType(Cairn::FT_OPENTYPE);
    default:
      return "application/octet-stream";
  }
}

/// Whether a document may name this file as its own: by a path that goes down, to a file that really lies there.
/// Followed are links within the folder, and the folder may lie behind one, as may the document itself.
bool BelongsToDocument(const std::string& document, const std::string& name) {
  namespace fs = std::filesystem;
  const fs::path relative(name);
  if (!Ferro::PathStaysInside(name) || std::find(relative.begin(), relative.end(), "..") != relative.end())
    return false;
  std::error_code error;
  const fs::path file = fs::canonical(fs::path(document).parent_path() / relative, error);
  if (error) return true;  // opening it fails too, and says why
  const auto holds_file = [&](const fs::path& folder) {
    return !error && std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
  };
  return holds_file(fs::canonical(Ferro::PathDirname(document), error)) ||
         holds_file(fs::canonical(document, error).parent_path());
}

void LogFailure(const std::string& resource, const Result_t& result) {
  Ferro::DefaultLogSink().Error("%s: %s", resource.c_str(), result.Label());
}

}  // namespace

TextTimelineTrack::TextTimelineTrack(ui32_t intrinsic_duration, ShortIndexPack short_index_pack)
    : m_IntrinsicDuration(intrinsic_duration), m_ShortIndexPack(short_index_pack) {}

TextTimelineTrack::~TextTimelineTrack() = default;

TextTimelineElement::~TextTimelineElement() = default;

void TextTimelineTrack::SetIdentity(TrackType_t type, ui32_t channel_id, const std::string& asset_name,
                                    const std::string& language) {
  m_TrackType = type;
  m_ChannelID = channel_id;
  m_AssetName = asset_name;
  m_Language = language;
}

const QUIRE::Rational& TextTimelineTrack::EditRate() const {
  Ferro::AutoMutex lock(m_Lock);
  return m_EditRate;
}

Result_t TextTimelineTrack::InitWithFilename(const std::string& filename, const ui32_t& entry_point,
                                             const ui32_t& duration) {
  Ferro::AutoMutex lock(m_Lock);
  DropResources();
  Ferro::FileReader file;
  Result_t result = file.OpenRead(filename);
  std::array<ui8_t, 16> start{};
  size_t count = 0;
  if (result.Success()) result = file.ReadUpTo(0, start, count);
  if (result.Failure()) return result;
  if (count < start.size()) return QUIRE::RESULT_FORMAT;

  result = std::equal(MXFKeyStart.begin(), MXFKeyStart.end(), start.begin())
               ? InitWithST429_5Filename(filename, file.Size())
               : InitWithInteropFilename(file);
  if (result.Failure()) return result;
  m_Filename = filename;
  m_EntryPoint = entry_point;
  m_Duration = duration;
  m_SpanDuration = duration;
  return result;
}

void TextTimelineTrack::DropResources() {
  m_AncillaryResourceIdMap.clear();
  m_AncillaryResourceIdList.clear();
  m_AncillaryResourceNameMap.clear();
  m_AncillaryResourceNameList.clear();
}

Result_t TextTimelineTrack::InitWithST429_5Filename(const std::string& filename, Ferro::fsize_t file_size) {
  m_Format = Cairn::DFT_DCI_SMPTE;
  QUIRE::TimedText::MXFReader reader;
  Result_t result = reader.OpenRead(filename);
  if (result.Success()) result = reader.FillWriterInfo(m_Info);
  if (result.Failure()) return result;

  std::list<ui32_t> buf_size_list = PartitionGaps(reader.RIP(), file_size);
  if (m_Info.EncryptedEssence) m_KeyID = m_Info.CryptographicKeyID;
  m_AssetID = m_Info.AssetUUID;
  static_cast<void>(reader.FillTimedTextDescriptor(m_Desc));
  m_EditRate = m_Desc.EditRate;

  if (buf_size_list.empty()) return QUIRE::RESULT_FORMAT;  // one partition: no place for the document
  if (buf_size_list.size() <= m_Desc.ResourceList.size() && m_ShortIndexPack == ShortIndexPack::Refuse) {
    Ferro::DefaultLogSink().Error("%s: too few partitions in the index pack for %zu resources\n", filename.c_str(),
                                  m_Desc.ResourceList.size());
    return QUIRE::RESULT_FORMAT;
  }
  result = m_TextResource.Capacity(buf_size_list.front());
  if (result.Success()) result = reader.ReadTimedTextResource(m_TextResource);
  if (result.Failure()) return result;
  for (const auto& resource : m_Desc.ResourceList) {
    buf_size_list.pop_front();
    FERRO_ASSERT(!buf_size_list.empty());
    result = LoadST429_5Resource(reader, resource, buf_size_list.front());
    if (result.Failure()) return result;
  }
  return Ferro::RESULT_OK;
}

Result_t TextTimelineTrack::LoadST429_5Resource(QUIRE::TimedText::MXFReader& reader,
                                                const QUIRE::TimedText::TimedTextResourceDescriptor& resource,
                                                ui32_t size_hint) {
  const UUID& id = resource.ResourceID;
  TextBuffer& buffer = m_AncillaryResourceIdMap[id];
  Result_t result = buffer.Capacity(size_hint);
  if (result.Success()) result = reader.ReadAncillaryResource(id, buffer);
  if (result.Failure()) {
    m_AncillaryResourceIdMap.erase(id);
    LogFailure(id.EncodeString(), result);
    return result;
  }
  buffer.MIMEType(ResourceMIMEType(resource.Type));
  // Out of the reach of any file: the entry was made above.
  const auto test_i = m_AncillaryResourceIdMap.find(id);
  FERRO_ASSERT(test_i != m_AncillaryResourceIdMap.end());
  m_AncillaryResourceIdList.push_back(id);
  return Ferro::RESULT_OK;
}

Result_t TextTimelineTrack::InitWithInteropFilename(const Ferro::FileReader& file) {
  m_Format = Cairn::DFT_Interop;
  Result_t result = ReadWholeFile(file, m_TextResource);
  if (result.Failure()) return result;

  Cairn::DCSubtitle document;
  result =
      document.DecodeXML(std::string(reinterpret_cast<const char*>(m_TextResource.RoData()), m_TextResource.Size()));
  if (result.Failure()) return result;
  m_AssetID = document.SubtitleID;
  m_TextResource.AssetID(m_AssetID);
  m_TextResource.MIMEType(Cairn::FileTypeToInteropMIMEType(Cairn::FT_TI_SUBTITLE));
  for (const std::string& name : document.AncillaryNames()) LoadInteropResource(file.Filename(), name);
  return Ferro::RESULT_OK;
}

/// A show does not stop for one font: what cannot be loaded is logged and left out.
void TextTimelineTrack::LoadInteropResource(const std::string& document, const std::string& name) {
  const std::string path = Ferro::PathJoin(Ferro::PathDirname(document), name);
  TextBuffer& buffer = m_AncillaryResourceNameMap[name];
  Ferro::FileReader file;
  // The document comes from outside: it must not reach for the server's other files.
  Result_t result = BelongsToDocument(document, name) ? file.OpenRead(path) : Cairn::RESULT_CN_PATH;
  if (result.Success()) result = ReadWholeFile(file, buffer);
  if (result.Failure()) {
    m_AncillaryResourceNameMap.erase(name);
    LogFailure(path, result);
    return;
  }
  const bool image = Ferro::PathExtension(name) == "png";  // "PNG" is taken for a font
  buffer.MIMEType(Cairn::FileTypeToInteropMIMEType(image ? Cairn::FT_TI_PNG : Cairn::FT_TI_TRUETYPE));
  // As in LoadST429_5Resource.
  const auto test_i = m_AncillaryResourceNameMap.find(name);
  FERRO_ASSERT(test_i != m_AncillaryResourceNameMap.end());
  m_AncillaryResourceNameList.push_back(name);
}

bool TextTimelineTrack::GetTimedTextData(TextBuffer& out) const {
  return CopyTextDataBuffer(m_TextResource, out);
}

bool TextTimelineTrack::AncillaryResourceIDList(UUIDList& out) const {
  out.assign(m_AncillaryResourceIdList.begin(), m_AncillaryResourceIdList.end());
  return true;
}

bool TextTimelineTrack::AncillaryResourceNameList(Ferro::ArchivableList<Ferro::ArchivableString>& out) const {
  out.assign(m_AncillaryResourceNameList.begin(), m_AncillaryResourceNameList.end());
  return true;
}

bool TextTimelineTrack::GetTimedTextResourceByID(const UUID& id, TextBuffer& out) const {
  const auto found = m_AncillaryResourceIdMap.find(id);
  return found != m_AncillaryResourceIdMap.end() && CopyTextDataBuffer(found->second, out);
}

bool TextTimelineTrack::GetTimedTextResourceByName(const std::string& name, TextBuffer& out) const {
  const auto found = m_AncillaryResourceNameMap.find(name);
  return found != m_AncillaryResourceNameMap.end() && CopyTextDataBuffer(found->second, out);
}

}  // namespace Strata
