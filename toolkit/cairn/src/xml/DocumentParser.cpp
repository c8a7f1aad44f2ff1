// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DocumentParser.h>

#include "BoundedParser.h"

#include <Ferro/ILogSink.h>
#include <Ferro/XMLDocType.h>

#include <string_view>

namespace Cairn {
namespace {

struct NamespacePrefix {
  std::string_view URI;
  DCPFormat_t Format;
};

// Tested in this order. Documents of the IMF user group are read as SMPTE ones.
constexpr NamespacePrefix s_Prefixes[] = {
    {"http://www.smpte-ra.org/", DFT_DCI_SMPTE},
    {"http://www.smptera.org/", DFT_DCI_SMPTE},  // the same host without its hyphen, met in presentation lists
    {"http://www.imfug.com/", DFT_DCI_SMPTE},
    {"http://www.digicine.com/", DFT_Interop},
    {"http://www.strata.example/", DFT_Interop},
};

DCPFormat_t FormatOf(const Ferro::XMLDocType& type) {
  for (const NamespacePrefix& prefix : s_Prefixes)
    if (type.NamespaceName.starts_with(prefix.URI)) return prefix.Format;
  return type.ElementName == "DCSubtitle" ? DFT_Interop : DFT_NONE;
}

}  // namespace

DocumentParser::DocumentParser(Content_t content) : m_Parser(new BoundedParser) {
  if (content == Everything) m_Parser->KeepEverything();
}
DocumentParser::~DocumentParser() = default;

Result_t DocumentParser::ParseText(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log) {
  return m_Parser->ParseText(xml, reporter, log);
}

xercesc::DOMDocument* DocumentParser::Document() const {
  return m_Parser->getDocument();
}

Result_t ClassifyXMLDocument(const std::string& xml, DCPFormat_t& format, Ferro::ILogSink& log) {
  Ferro::XMLDocType type;
  if (!Ferro::GetXMLDocType(xml, type)) {
    log.Error("Unable to parse XML document element.\n");
    return RESULT_XML_PARSE;
  }
  format = FormatOf(type);
  if (format != DFT_NONE) return Ferro::RESULT_OK;
  log.Error("Document does not contain SMPTE or JPEG Interop XML.\n");
  return RESULT_XML_NAMESPACE;
}

}  // namespace Cairn
