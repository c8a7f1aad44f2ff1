// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/PackingList.h>

#include "xml/FieldReader.h"
#include "xml/FieldWriter.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;
constexpr char DocumentName[] = "PackingList";

void ReadAsset(FieldReader& fields, const Element* element, PackingList::Asset& asset) {
  bool has_size = false;
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    if (!IsOwnElement(child)) continue;
    const std::string& name = LocalName(child);
    if (name == "Id") {
      fields.ID(child, asset.ID);
    } else if (name == "AnnotationText") {
      asset.Annotation = TextContent(child);
    } else if (name == "Hash") {
      fields.Digest(child, asset.Digest);
    } else if (name == "Size") {
      has_size = true;
      fields.Count(child, asset.Size);
    } else if (name == "Type") {
      asset.Type = TrimmedText(child);
    } else if (name == "OriginalFileName") {
      asset.OriginalFileName = TextContent(child);
    }
  }
  if (!asset.ID.HasValue() && fields.Result().Success()) fields.Missing("Asset Id");
  if (!has_size) fields.Missing("Asset Size");
}

void ReadAssetList(FieldReader& fields, const Element* list, PackingList& pkl) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child))
    if (LocalName(child) == "Asset" && IsOwnElement(child)) ReadAsset(fields, child, pkl.AssetList.emplace_back());
}

void ReadOwnChild(FieldReader& fields, const Element* child, const std::string& name, PackingList& pkl) {
  if (name == "Id") {
    fields.ID(child, pkl.ID);
  } else if (name == "AnnotationText") {
    pkl.Annotation = TextContent(child);
  } else if (name == "IconId") {
    fields.ID(child, pkl.IconID);
  } else if (name == "IssueDate") {
    pkl.IssueDate = TrimmedText(child);
  } else if (name == "Issuer") {
    pkl.Issuer = TextContent(child);
  } else if (name == "Creator") {
    pkl.Creator = TextContent(child);
  } else if (name == "GroupId") {
    fields.ID(child, pkl.GroupID);
  } else if (name == "AssetList") {
    ReadAssetList(fields, child, pkl);
  }
}

Result_t ReadPackingList(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, PackingList& pkl) {
  if (LocalName(root) != "PackingList") return RESULT_NOT_PKL;
  pkl.NamespaceName = NamespaceName(root);
  pkl.DCPFormat = format;
  FieldReader fields(DocumentName, log);
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child)) {
    const std::string& name = LocalName(child);
    if (name == "Signature") {
      ReadSignature(child, pkl.SignatureMode, pkl.SignatureChain);
    } else if (IsOwnElement(child)) {
      ReadOwnChild(fields, child, name, pkl);
    }
  }
  if (!pkl.ID.HasValue() && fields.Result().Success()) fields.Missing("Id");
  if (FirstChildNamed(root, "AssetList") == nullptr) fields.Missing("AssetList");
  return fields.Result();
}

void WriteAsset(FieldWriter& fields, XMLElement& list, const PackingList::Asset& asset) {
  XMLElement& element = list.AddChild("Asset");
  fields.ID(element, "Id", asset.ID);
  fields.OptionalText(element, "AnnotationText", asset.Annotation);
  if (!asset.Digest.HasValue() && !fields.IsInterop()) fields.Missing("Asset Hash");
  FieldWriter::OptionalDigest(element, "Hash", asset.Digest);
  fields.PositiveCount(element, "Size", asset.Size);
  element.AddChildWithContent("Type", asset.Type);
  fields.OptionalText(element, "OriginalFileName", asset.OriginalFileName);
}

}  // namespace

Result_t PackingList::DecodeXML(const std::string& xml) {
  *this = PackingList();
  return ReadDocument(xml, Ferro::DefaultLogSink(),
                      [this](const Element* root, DCPFormat_t format, Ferro::ILogSink& log) {
                        return ReadPackingList(root, format, log, *this);
                      });
}

Result_t PackingList::EncodeXML(std::string& out, Cairn::DCPFormat_t format) const {
  if (!IsWritableFormat(format)) return Ferro::RESULT_PARAM;
  FieldWriter fields(DocumentName, format);
  XMLElement root("PackingList");
  root.SetAttr("xmlns", fields.IsInterop() ? NS_Interop_PKL : NS_SMPTE_PKL);
  fields.ID(root, "Id", ID);
  fields.OptionalText(root, "AnnotationText", Annotation);
  fields.OptionalID(root, "IconId", IconID);
  fields.Date(root, "IssueDate", IssueDate);
  root.AddChildWithContent("Issuer", Issuer);
  root.AddChildWithContent("Creator", Creator);
  if (!fields.IsInterop()) fields.OptionalID(root, "GroupId", GroupID);
  if (AssetList.empty()) fields.Missing("Asset");
  XMLElement& list = root.AddChild("AssetList");
  for (const Asset& asset : AssetList) WriteAsset(fields, list, asset);
  return fields.Render(root, out);
}

}  // namespace Cairn
