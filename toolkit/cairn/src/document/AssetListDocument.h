// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "xml/FieldReader.h"

#include <string>

// What an asset map and a packing list have in common: who made them and when, and a list of assets with identifiers.
// Own elements are those in the document's namespace; others belong to extensions and are passed over.
namespace Cairn {

/// Calls `read(child, its local name)` for each own element below `parent`.
template <class Read>
void ForEachOwnChild(const Element* parent, Read read) {
  for (auto* child = FirstChildElement(parent); child != nullptr; child = NextSiblingElement(child))
    if (IsOwnElement(child)) read(child, LocalName(child));
}

/// Reads the fields that assets of both documents have. False for another element.
template <class Asset>
bool ReadCommonField(FieldReader& fields, const Element* child, const std::string& name, Asset& asset) {
  if (name == "Id") {
    fields.ID(child, asset.ID);
  } else if (name == "AnnotationText") {
    asset.Annotation = TextContent(child);
  } else {
    return false;
  }
  return true;
}

/// Reads the fields that both documents have, `read_asset` each of their assets. False for another element.
template <class Document, class ReadAsset>
bool ReadCommonElement(FieldReader& fields, const Element* child, const std::string& name, Document& document,
                       ReadAsset read_asset) {
  if (ReadCommonField(fields, child, name, document)) return true;
  if (name == "Creator") {
    document.Creator = TextContent(child);
  } else if (name == "IssueDate") {
    document.IssueDate = TrimmedText(child);
  } else if (name == "Issuer") {
    document.Issuer = TextContent(child);
  } else if (name == "AssetList") {
    ForEachOwnChild(child, [&](const Element* asset, const std::string& kind) {
      if (kind == "Asset") read_asset(fields, asset, document.AssetList.emplace_back());
    });
  } else {
    return false;
  }
  return true;
}

/// Tells of a missing `Id`, unless one was there and unreadable, which has been told.
inline void RequireID(FieldReader& fields, const UUID& id, const char* field) {
  if (!id.HasValue() && fields.Result().Success()) fields.Missing(field);
}

/// Tells of what a document of either kind must have and this one does not.
template <class Document>
void RequireCommonElements(FieldReader& fields, const Element* root, const Document& document) {
  RequireID(fields, document.ID, "Id");
  if (FirstChildNamed(root, "AssetList") == nullptr) fields.Missing("AssetList");
}

}  // namespace Cairn
