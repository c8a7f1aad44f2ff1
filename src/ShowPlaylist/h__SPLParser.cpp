// SPDX-License-Identifier: BSD-3-Clause
#include "ShowPlaylist/h__SPLParser.h"

#include <Cairn/XMLAttrPtr.h>
#include <Cairn/XMLNode.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace Strata {
namespace {

using Cairn::FirstChildElement;
using Cairn::LocalName;
using Cairn::NextSiblingElement;
using Cairn::TextContent;
using Cairn::TrimmedText;
using xercesc::DOMElement;
using xercesc::DOMNode;

// The element's name when it is of its parent's namespace, so that extensions are passed over whatever their names are.
std::string OwnName(const DOMElement* element) {
  const bool own = Cairn::NamespaceName(element) == Cairn::NamespaceName(element->getParentNode());
  return own ? LocalName(element) : std::string();
}

Result_t ReadID(const DOMElement* element, UUID& out, Ferro::ILogSink& log) {
  const std::string text = TrimmedText(element);
  const std::optional<UUID> id = UUID::FromURN(text);
  if (!id) {
    log.Error("ShowPlaylist: malformed identifier \"%s\" in element %s\n", text.c_str(), LocalName(element).c_str());
    return Cairn::RESULT_CN_UUID_FORMAT;
  }
  out = *id;
  return Ferro::RESULT_OK;
}

long ReadNumber(const DOMElement* element) {
  return std::strtol(TextContent(element).c_str(), nullptr, 10);
}

// A count without its sign: existing documents hold negative ones. Beyond the type it is the largest that fits.
template <class Count>
Count ReadMagnitude(const DOMElement* element) {
  const long number = ReadNumber(element);
  const auto bits = static_cast<unsigned long>(number);
  const unsigned long magnitude = number < 0 ? 0 - bits : bits;
  return static_cast<Count>(std::min<unsigned long>(magnitude, std::numeric_limits<Count>::max()));
}

// The first text below the node that is not blank, without white space at its ends.
std::string FirstText(const DOMNode* node) {
  if (node->getNodeType() == DOMNode::TEXT_NODE) return TrimmedText(node);
  for (const DOMNode* child = node->getFirstChild(); child != nullptr; child = child->getNextSibling())
    if (std::string text = FirstText(child); !text.empty()) return text;
  return {};
}

enum class Place { InSequence, InComposition };

// Annotations are written as "AnnotationText" but taken from "Annotation" alone, which existing documents hold.
ShowPlaylist::MarkerItem ReadMarker(const DOMElement* element, Place place) {
  ShowPlaylist::MarkerItem marker;
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string name = OwnName(child);
    if (name == "Label") {
      marker.Label = TextContent(child);
      marker.Scope = Cairn::XMLAttrPtr::get_attr_with_name(child, "scope");
    } else if (name == "Annotation") {
      marker.Annotation = TextContent(child);
    } else if (name == "Offset" && place == Place::InComposition) {
      marker.Offset = ReadMagnitude<i32_t>(child);
    }
  }
  return marker;
}

Result_t ReadComposition(const DOMElement* element, ShowPlaylist::CompositionItem& composition, Ferro::ILogSink& log) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string name = OwnName(child);
    if (name == "CompositionId") {
      if (const Result_t result = ReadID(child, composition.ID, log); result.Failure()) return result;
    } else if (name == "AnnotationText") {
      composition.Annotation = TextContent(child);
    } else if (name == "EditRate") {
      const std::string text = TextContent(child);
      if (!composition.EditRate.DecodeString(text))
        Ferro::DefaultLogSink().Error("Unable to decode rational value from string \"%s\".", text.c_str());
    } else if (name == "Duration") {
      composition.Duration = ReadMagnitude<ui32_t>(child);
    } else if (name == "Marker") {
      composition.MarkerList.push_back(ReadMarker(child, Place::InComposition));
    }
  }
  return Ferro::RESULT_OK;
}

// What a show loses to an unsupported item goes to the server's log, whoever decodes the document and with what sink.
Result_t ReadSequence(const DOMElement* element, ShowPlaylist& playlist, Ferro::ILogSink& log) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string name = OwnName(child);
    if (name == "Marker") {
      playlist.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>(ReadMarker(child, Place::InSequence)));
    } else if (name == "ShowPlaylist") {
      auto show = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
      show->URI = FirstText(child);
      playlist.ShowSequence.push_back(std::move(show));
    } else if (name == "CompositionPlaylist") {
      auto composition = std::make_unique<ShowPlaylist::CompositionItem>();
      if (const Result_t result = ReadComposition(child, *composition, log); result.Failure()) return result;
      playlist.ShowSequence.push_back(std::move(composition));
    } else if (name == "StaticImage") {
      Ferro::DefaultLogSink().Warn("Ignoring StaticImage in playlist, not supported\n");
    }
  }
  return Ferro::RESULT_OK;
}

void ReadIssueDate(const DOMElement* element, Ferro::Timestamp& out, Ferro::ILogSink& log) {
  const std::string text = TrimmedText(element);
  if (!out.DecodeString(text)) log.Warn("ShowPlaylist: malformed IssueDate \"%s\", ignored\n", text.c_str());
}

Result_t ReadField(const DOMElement* element, ShowPlaylist& playlist, Ferro::ILogSink& log) {
  const std::string name = OwnName(element);
  if (name == "Id") return ReadID(element, playlist.ID, log);
  if (name == "ShowSequence") return ReadSequence(element, playlist, log);
  if (name == "IssueDate") {
    ReadIssueDate(element, playlist.IssueDate, log);
  } else if (name == "EstimatedDuration") {
    playlist.EstimatedDuration = static_cast<ui32_t>(ReadNumber(element));
  } else if (LocalName(element) == "Signature") {  // of XML Signature's namespace
    Cairn::ReadSignature(element, playlist.SignatureMode, playlist.SignatureChain);
  } else if (name == "AnnotationText") {
    playlist.Annotation = TextContent(element);
  } else if (name == "Issuer") {
    playlist.Issuer = TextContent(element);
  } else if (name == "Creator") {
    playlist.Creator = TextContent(element);
  } else if (name == "Label") {
    playlist.Label = TextContent(element);
  } else if (name == "ShowTitleText") {
    playlist.ShowTitle = TextContent(element);
  }
  return Ferro::RESULT_OK;
}

}  // namespace

h__SPLParser::~h__SPLParser() = default;

Result_t h__SPLParser::SetupCaller(ShowPlaylist* playlist, Cairn::DCPFormat_t format, Ferro::ILogSink& log) {
  const DOMElement* root = m_doc->getDocumentElement();
  if (LocalName(root) != "ShowPlaylist") return Cairn::RESULT_NOT_CPL;
  playlist->NamespaceName = Cairn::NamespaceName(root);
  for (auto* child = FirstChildElement(root); child != nullptr; child = NextSiblingElement(child))
    if (const Result_t result = ReadField(child, *playlist, log); result.Failure()) return result;
  playlist->DCPFormat = format;
  return Ferro::RESULT_OK;
}

Result_t ShowPlaylist::DecodeXML(const std::string& xml) {
  return Cairn::DecodeXMLDocument<h__SPLParser>(xml, this);
}

}  // namespace Strata
