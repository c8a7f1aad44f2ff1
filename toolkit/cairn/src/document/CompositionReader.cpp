// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionReader.h"

namespace Cairn {
namespace {

constexpr char DocumentName[] = "CompositionPlaylist";

// CompositionPlaylist
//   Id, AnnotationText?, IconId?, IssueDate, Issuer?, Creator?
//   ContentTitleText, ContentKind, ContentVersion, RatingList
//   ReelList
//     Reel: Id, AnnotationText?, AssetList          the assets are CompositionAssetReader.cpp's
//   Signer?, Signature?
//
// (ST 429-7:2006, 6) Elements are read in whatever order they come; of other namespaces only assets are taken.

void ReadRatingList(const Element* list, std::list<Rating>& out) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child)) {
    if (LocalName(child) != "Rating" || !IsOwnElement(child)) continue;
    out.push_back({TrimmedText(FirstChildNamed(child, "Agency")), TrimmedText(FirstChildNamed(child, "Label"))});
  }
}

void ReadReelList(FieldReader& fields, const Element* list, CompositionPlaylist& cpl) {
  for (auto* child = FirstChildElement(list); child != nullptr; child = NextSiblingElement(child))
    if (LocalName(child) == "Reel" && IsOwnElement(child)) ReadReel(fields, child, cpl);
}

void ReadContentKind(const Element* element, CompositionPlaylist& cpl) {
  cpl.ContentKindText = TrimmedText(element);
  cpl.ContentKind = ContentKindFromName(cpl.ContentKindText);
  cpl.ContentKindScope = AttributeValue(element, "scope");
}

void ReadOwnChild(FieldReader& fields, const Element* child, const std::string& name, CompositionPlaylist& cpl) {
  if (name == "Id") {
    fields.ID(child, cpl.ID);
  } else if (name == "AnnotationText") {
    cpl.Annotation = TextContent(child);
  } else if (name == "IconId") {
    fields.ID(child, cpl.IconID);
  } else if (name == "IssueDate") {
    cpl.IssueDate = TrimmedText(child);
  } else if (name == "Issuer") {
    cpl.Issuer = TextContent(child);
  } else if (name == "Creator") {
    cpl.Creator = TextContent(child);
  } else if (name == "ContentTitleText") {
    cpl.ContentTitle = TextContent(child);
  } else if (name == "ContentKind") {
    ReadContentKind(child, cpl);
  } else if (name == "ContentVersion") {
    ReadContentVersion(child, cpl.ContentVersion);
  } else if (name == "RatingList") {
    ReadRatingList(child, cpl.RatingList);
  } else if (name == "ReelList") {
    ReadReelList(fields, child, cpl);
  }
}

// The interoperable master format has playlists of the same element name and another content.
bool IsMasterFormat(const std::string& namespace_name) {
  return namespace_name.starts_with("http://www.smpte-ra.org/schemas/2067-") ||
         namespace_name.starts_with("http://www.smpte-ra.org/ns/2067-");
}

Result_t ReadComposition(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, CompositionPlaylist& cpl) {
  if (LocalName(root) != "CompositionPlaylist") return RESULT_NOT_CPL;
  if (IsMasterFormat(NamespaceName(root))) {
    cpl.DCPFormat = DFT_IMF;
    return RESULT_NOT_CPL;
  }
  cpl.NamespaceName = NamespaceName(root);
  cpl.DCPFormat = format;
  FieldReader fields(DocumentName, log);
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child)) {
    const std::string& name = LocalName(child);
    if (name == "Signature") {
      ReadSignature(child, cpl.SignatureMode, cpl.SignatureChain);
    } else if (IsOwnElement(child)) {
      ReadOwnChild(fields, child, name, cpl);
    }
  }
  if (!cpl.ID.HasValue() && fields.Result().Success()) fields.Missing("Id");
  return fields.Result();
}

}  // namespace

Result_t CompositionPlaylist::DecodeXML(const std::string& xml) {
  *this = CompositionPlaylist();
  return ReadDocument(xml, Ferro::DefaultLogSink(),
                      [this](const Element* root, DCPFormat_t format, Ferro::ILogSink& log) {
                        return ReadComposition(root, format, log, *this);
                      });
}

}  // namespace Cairn
