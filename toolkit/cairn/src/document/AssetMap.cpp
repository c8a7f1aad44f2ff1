// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMap.h>

#include "AssetListDocument.h"

#include "xml/FieldWriter.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;
constexpr char DocumentName[] = "AssetMap";

// AssetMap
//   Id, AnnotationText?, Creator, VolumeCount, IssueDate, Issuer      Interop has Creator last
//   AssetList
//     Asset: Id, AnnotationText?, PackingList?
//       ChunkList
//         Chunk: Path, VolumeIndex?, Offset?, Length?
//
// (ST 429-9:2014) Elements are read in whatever order they come.

void ReadChunk(FieldReader& fields, const Element* element, AssetMap::Chunk& chunk) {
  bool has_path = false;
  ForEachOwnChild(element, [&](const Element* child, const std::string& name) {
    if (name == "Path") {
      has_path = true;
      chunk.Path = TrimmedText(child);
    } else if (name == "VolumeIndex") {
      fields.Count(child, chunk.VolumeIndex);
    } else if (name == "Offset") {
      fields.Count(child, chunk.Offset);
    } else if (name == "Length") {
      chunk.HasLength = true;
      fields.Count(child, chunk.Length);
    }
  });
  if (!has_path) fields.Missing("Chunk Path");
}

// Present and empty, "true" or "1" in whatever flavour; other content has been met only as a way to say yes.
bool SaysPackingList(const Element* element) {
  const std::string text = TrimmedText(element);
  return text != "false" && text != "0";
}

void ReadAsset(FieldReader& fields, const Element* element, AssetMap::Asset& asset) {
  ForEachOwnChild(element, [&](const Element* child, const std::string& name) {
    if (ReadCommonField(fields, child, name, asset)) return;
    if (name == "PackingList") {
      asset.IsPackingList = SaysPackingList(child);
    } else if (name == "ChunkList") {
      ForEachOwnChild(child, [&](const Element* chunk, const std::string& kind) {
        if (kind == "Chunk") ReadChunk(fields, chunk, asset.ChunkList.emplace_back());
      });
    }
  });
  RequireID(fields, asset.ID, "Asset Id");
}

bool IsKnownNamespace(const std::string& name) {
  return name == NS_SMPTE_AM || name == NS_SMPTE_AM_2006 || name == NS_Interop_AM;
}

Result_t ReadAssetMap(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, AssetMap& map) {
  if (LocalName(root) != "AssetMap") return RESULT_NOT_ASSETMAP;
  map.NamespaceName = NamespaceName(root);
  map.DCPFormat = format;
  if (!IsKnownNamespace(map.NamespaceName))
    log.Warn("%s: namespace \"%s\" is not a known one\n", DocumentName, map.NamespaceName.c_str());
  FieldReader fields(DocumentName, log);
  ForEachOwnChild(root, [&](const Element* child, const std::string& name) {
    if (!ReadCommonElement(fields, child, name, map, ReadAsset) && name == "VolumeCount")
      fields.Count(child, map.VolumeCount);
  });
  RequireCommonElements(fields, root, map);
  return fields.Result();
}

void WriteChunk(FieldWriter& fields, XMLElement& list, const AssetMap::Chunk& chunk) {
  XMLElement& element = list.AddChild("Chunk");
  if (chunk.Path.empty()) fields.Missing("Chunk Path");
  element.AddChildWithContent("Path", chunk.Path);
  fields.PositiveCount(element, "VolumeIndex", chunk.VolumeIndex);
  FieldWriter::Count(element, "Offset", chunk.Offset);
  if (chunk.HasLength) fields.PositiveCount(element, "Length", chunk.Length);
}

void WriteAsset(FieldWriter& fields, XMLElement& list, const AssetMap::Asset& asset) {
  XMLElement& element = list.AddChild("Asset");
  fields.ID(element, "Id", asset.ID);
  fields.OptionalText(element, "AnnotationText", asset.Annotation);
  if (asset.IsPackingList) element.AddChildWithContent("PackingList", fields.IsInterop() ? "" : "true");
  if (asset.ChunkList.empty()) fields.Missing("Chunk");
  XMLElement& chunks = element.AddChild("ChunkList");
  for (const AssetMap::Chunk& chunk : asset.ChunkList) WriteChunk(fields, chunks, chunk);
}

}  // namespace

Result_t AssetMap::DecodeXML(const std::string& xml) {
  *this = AssetMap();
  VolumeCount = 0;  // nothing is read that is not there
  return ReadDocument(xml, Ferro::DefaultLogSink(),
                      [this](const Element* root, DCPFormat_t format, Ferro::ILogSink& log) {
                        return ReadAssetMap(root, format, log, *this);
                      });
}

Result_t AssetMap::EncodeXML(std::string& out, Cairn::DCPFormat_t format) const {
  if (!IsWritableFormat(format)) return Ferro::RESULT_PARAM;
  FieldWriter fields(DocumentName, format);
  XMLElement root("AssetMap");
  root.SetAttr("xmlns", fields.IsInterop() ? NS_Interop_AM : NS_SMPTE_AM);
  fields.ID(root, "Id", ID);
  fields.OptionalText(root, "AnnotationText", Annotation);
  if (!fields.IsInterop()) root.AddChildWithContent("Creator", Creator);
  fields.PositiveCount(root, "VolumeCount", VolumeCount);
  fields.Date(root, "IssueDate", IssueDate);
  root.AddChildWithContent("Issuer", Issuer);
  if (fields.IsInterop()) root.AddChildWithContent("Creator", Creator);
  if (AssetList.empty()) fields.Missing("Asset");
  XMLElement& list = root.AddChild("AssetList");
  for (const Asset& asset : AssetList) WriteAsset(fields, list, asset);
  return fields.Render(root, out);
}

}  // namespace Cairn
