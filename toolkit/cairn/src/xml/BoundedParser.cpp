// SPDX-License-Identifier: BSD-3-Clause
#include "BoundedParser.h"

#include <Cairn/DocumentParser.h>

#include "DocumentEncoding.h"
#include "DocumentGuard.h"
#include "DocumentRefused.h"
#include "base/UTF16.h"

#include <Ferro/ILogSink.h>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string_view>

namespace Cairn {
namespace {

constexpr char SystemIdentifier[] = "pidc_rules_file";

Result_t Refuse(Ferro::ILogSink& log, const std::string& reason) {
  log.Error("XML document refused: %s\n", reason.c_str());
  return RESULT_XML_PARSE;
}

}  // namespace

BoundedParser::BoundedParser() {
  useScanner(xercesc::XMLUni::fgWFXMLScanner);  // the scanner without DTD and schema: no entity is ever resolved
  setDoNamespaces(true);
  setDoSchema(false);
  setValidationScheme(xercesc::XercesDOMParser::Val_Never);
  setLoadExternalDTD(false);
  setDisableDefaultEntityResolution(true);
  setExitOnFirstFatalError(false);
  setCreateCommentNodes(false);
  setCreateEntityReferenceNodes(false);
}

BoundedParser::~BoundedParser() = default;

void BoundedParser::KeepEverything() {
  m_KeepsEverything = true;
  setCreateCommentNodes(true);
}

Result_t BoundedParser::ParseText(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log) {
  if (xml.size() > DocumentParser::MaxDocumentSize) {
    log.Error("XML document refused: it has more than %zu bytes\n", DocumentParser::MaxDocumentSize);
    return Ferro::RESULT_TOOLARGE;
  }
  std::string buffer;
  std::string_view text;
  if (const std::string reason = DecodeDocumentText(xml, buffer, text); !reason.empty()) return Refuse(log, reason);
  if (const std::string reason = CheckDocumentText(text); !reason.empty()) return Refuse(log, reason);

  xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), SystemIdentifier);
  source.setEncoding(xercesc::XMLUni::fgUTF8EncodingString);  // whatever the declaration says: it was converted
  Reset();
  setErrorHandler(&reporter);
  m_Reporter = &reporter;
  try {
    parse(source);
  } catch (const DocumentRefused& refusal) {
    return Refuse(log, refusal.Reason);
  } catch (const TooManyErrors&) {
    // The count below says so.
  }
  setErrorHandler(nullptr);  // the parser may outlive it
  m_Reporter = nullptr;
  if (reporter.m_ErrorCount == 0) return Ferro::RESULT_OK;
  log.Error("XML parser error count: %u\n", reporter.m_ErrorCount);
  return RESULT_XML_PARSE;
}

void BoundedParser::Reset() {
  m_ElementCount = 0;
  m_AttributeCount = 0;
  m_NamespaceCounts.clear();
  m_Names.clear();
}

// What follows an error is parsed for its diagnostics only. It need not nest, and the parser's own tree crashes on an end
// without a start.
bool BoundedParser::IsMalformed() const {
  return m_Reporter != nullptr && m_Reporter->m_ErrorCount > 0;
}

// The parser's own tree keeps its names in a table of fixed size: many different ones would make it crawl.
const BoundedParser::Name& BoundedParser::NoteName(const XMLCh* name) {
  const std::u16string_view wide(name);
  if (const auto known = m_Names.find(wide); known != m_Names.end()) return known->second;
  if (m_Names.size() == DocumentParser::MaxNameCount)
    throw DocumentRefused("it has more than " + std::to_string(DocumentParser::MaxNameCount) + " different names");
  const size_t colon = wide.find(u':');
  const std::u16string_view local = colon == std::u16string_view::npos ? wide : wide.substr(colon + 1);
  return m_Names.try_emplace(std::u16string(wide), Name{UTF16ToUTF8(wide), UTF16ToUTF8(local)}).first->second;
}

void BoundedParser::CheckAttributes(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, size_t count) {
  m_AttributeCount += count;
  if (m_AttributeCount > DocumentParser::MaxTotalAttributeCount)
    throw DocumentRefused("it has more than " + std::to_string(DocumentParser::MaxTotalAttributeCount) + " attributes");
  size_t declarations = m_NamespaceCounts.empty() ? 0 : m_NamespaceCounts.back();
  for (size_t i = 0; i < count; ++i) {
    const xercesc::XMLAttr* attribute = attributes.elementAt(i);
    const std::u16string_view name(attribute->getQName());
    NoteName(attribute->getQName());
    if (name.starts_with(u"xmlns")) ++declarations;
    if (xercesc::XMLString::stringLen(attribute->getValue()) > DocumentParser::MaxAttributeLength)
      throw DocumentRefused("an attribute's value is longer than " +
                            std::to_string(DocumentParser::MaxAttributeLength) + " characters");
  }
  if (declarations > DocumentParser::MaxNamespaceCount)
    throw DocumentRefused("it has more than " + std::to_string(DocumentParser::MaxNamespaceCount) +
                          " namespace declarations in scope");
  m_NamespaceCounts.push_back(declarations);
}

const BoundedParser::Name& BoundedParser::AdmitElement(const xercesc::XMLElementDecl& declaration,
                                                       const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                                       size_t attribute_count) {
  if (m_NamespaceCounts.size() >= DocumentParser::MaxDepth)
    throw DocumentRefused("it nests more than " + std::to_string(DocumentParser::MaxDepth) +
                          " elements inside each other");
  if (++m_ElementCount > DocumentParser::MaxElementCount)
    throw DocumentRefused("it has more than " + std::to_string(DocumentParser::MaxElementCount) + " elements");
  CheckAttributes(attributes, attribute_count);
  return NoteName(declaration.getFullName());
}

// Called for empty elements too; in a malformed document, not always for an open one.
void BoundedParser::LeaveElement() {
  if (!m_NamespaceCounts.empty()) m_NamespaceCounts.pop_back();
}

void BoundedParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                                 const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attribute_count,
                                 bool is_empty, bool is_root) {
  AdmitElement(declaration, attributes, attribute_count);
  if (IsMalformed()) return;
  XercesDOMParser::startElement(declaration, uri, prefix, attributes, attribute_count, is_empty, is_root);
}

void BoundedParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool is_root,
                               const XMLCh* prefix) {
  LeaveElement();
  if (IsMalformed()) return;
  XercesDOMParser::endElement(declaration, uri, is_root, prefix);
}

void BoundedParser::docCharacters(const XMLCh* text, XMLSize_t length, bool) {
  if (IsMalformed()) return;
  XercesDOMParser::docCharacters(text, length, false);
}

void BoundedParser::ignorableWhitespace(const XMLCh* text, XMLSize_t length, bool) {
  docCharacters(text, length, false);
}

void BoundedParser::docPI(const XMLCh* target, const XMLCh* data) {
  if (m_KeepsEverything && !IsMalformed()) XercesDOMParser::docPI(target, data);
}

void BoundedParser::docComment(const XMLCh* text) {
  if (m_KeepsEverything && !IsMalformed()) XercesDOMParser::docComment(text);
}

}  // namespace Cairn
