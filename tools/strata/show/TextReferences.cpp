// SPDX-License-Identifier: BSD-3-Clause
#include "TextReferences.h"

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentParser.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>
#include <Ferro/ILogSink.h>

#include <xercesc/dom/DOMDocument.hpp>

namespace Tool {

namespace {

void Collect(const xercesc::DOMElement* element, TextReferences& references) {
  const std::string name = Cairn::LocalName(element);
  if (name == "LoadFont" || name == "Image")
    if (const auto id = Ferro::UUID::FromURN(Cairn::TrimmedText(element)))
      (name == "Image" ? references.Images : references.Fonts).push_back(*id);
  // Documents from outside nest no deeper than the parser allows.
  for (const auto* child = Cairn::FirstChildElement(element); child != nullptr;
       child = Cairn::NextSiblingElement(child))
    Collect(child, references);
}

}  // namespace

Ferro::Result_t ReadTextReferences(const std::string& xml, TextReferences& references) {
  Ferro::ILogSink& log = Ferro::DefaultLogSink();
  try {
    Cairn::init_xml_libs();
    Cairn::DocumentParser parser;
    Cairn::DOMTreeErrorReporter reporter;
    const Ferro::Result_t result = parser.ParseText(xml, reporter, log);
    if (result.Success()) Collect(parser.Document()->getDocumentElement(), references);
    return result;
  } catch (...) {
    return Cairn::LogXMLException(log);
  }
}

}  // namespace Tool
