// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/PackingList.h>

#include "AssetListDocument.h"

#include "xml/FieldWriter.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

using Ferro::XMLElement;
constexpr char DocumentName[] = "PackingList";

// PackingList
//   Id, AnnotationText?, IconId?, IssueDate, Issuer, Creator, GroupId?
//   AssetList
//     Asset: Id, AnnotationText?, Hash, Size, Type, OriginalFileName?   Interop may lack Hash
//   Signer?, Signature?
//
// (ST 429-8:2007) Elements are read in whatever order they come.

void ReadAsset(FieldReader& fields, const Element* element, PackingList::Asset& asset) {
  bool has_size = false;
  ForEachOwnChild(element, [&](const Element* child, const std::string& name) {
    if (ReadCommonField(fields, child, name, asset)) return;
    if (name == "Hash") {
      fields.Digest(child, asset.Digest);
    } else if (name == "Size") {
      has_size = true;
      fields.Count(child, asset.Size);
    } else if (name == "Type") {
      asset.Type = TrimmedText(child);
    } else if (name == "OriginalFileName") {
      asset.OriginalFileName = TextContent(child);
    }
  });
  RequireID(fields, asset.ID, "Asset Id");
  if (!has_size) fields.Missing("Asset Size");
}

void ReadSignatures(const Element* root, PackingList& pkl) {
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child))
    if (LocalName(child) == "Signature") ReadSignature(child, pkl.SignatureMode, pkl.SignatureChain);
}

Result_t ReadPackingList(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, PackingList& pkl) {
  if (LocalName(root) != "PackingList") return RESULT_NOT_PKL;
  pkl.NamespaceName = NamespaceName(root);
  pkl.DCPFormat = format;
  FieldReader fields(DocumentName, log);
  ForEachOwnChild(root, [&](const Element* child, const std::string& name) {
    if (ReadCommonElement(fields, child, name, pkl, ReadAsset)) return;
    if (name == "IconId") {
      fields.ID(child, pkl.IconID);
    } else if (name == "GroupId") {
      fields.ID(child, pkl.GroupID);
    }
  });
  ReadSignatures(root, pkl);
  RequireCommonElements(fields, root, pkl);
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
