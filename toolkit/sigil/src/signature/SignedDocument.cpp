// SPDX-License-Identifier: BSD-3-Clause
#include "signature/SignedDocument.h"

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/Namespace.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>
#include <Ferro/ILogSink.h>

#include <algorithm>
#include <iterator>

namespace Sigil {
namespace {

using enum DocumentKind;

struct KnownDocument {
  const char* Namespace;
  const char* Element;
  DocumentKind Kind;
  Cairn::DCPFormat_t Format;
};

constexpr KnownDocument s_Known[] = {
    {Cairn::NS_SMPTE_CPL, "CompositionPlaylist", Composition, Cairn::DFT_DCI_SMPTE},
    {Cairn::NS_Interop_CPL, "CompositionPlaylist", Composition, Cairn::DFT_Interop},
    {Cairn::NS_SMPTE_PKL, "PackingList", PackingList, Cairn::DFT_DCI_SMPTE},
    {Cairn::NS_SMPTE_PKL_2006, "PackingList", PackingList, Cairn::DFT_DCI_SMPTE},
    {Cairn::NS_Interop_PKL, "PackingList", PackingList, Cairn::DFT_Interop},
    {NS_KeyMessage, "DCinemaSecurityMessage", KeyMessage, Cairn::DFT_DCI_SMPTE},
};

}  // namespace

Result_t SignedDocument::Parse(const std::string& xml, Ferro::ILogSink& log) {
  Cairn::init_xml_libs();
  m_Parser = std::make_shared<Cairn::DocumentParser>(Cairn::DocumentParser::Everything);
  Cairn::DOMTreeErrorReporter reporter;
  reporter.m_LogSink = &log;
  if (const Result_t result = m_Parser->ParseText(xml, reporter, log); result.Failure()) return result;
  m_Document = m_Parser->Document();
  const std::string name = Cairn::LocalName(Root());
  const std::string space = Cairn::NamespaceName(Root());
  const auto known = std::ranges::find_if(
      s_Known, [&](const KnownDocument& entry) { return entry.Element == name && entry.Namespace == space; });
  if (known == std::end(s_Known)) {
    log.Error("%s\n", RESULT_SG_DOCUMENT.Label());
    return RESULT_SG_DOCUMENT;
  }
  m_Kind = known->Kind;
  m_Format = known->Format;
  return Ferro::RESULT_OK;
}

const xercesc::DOMElement* SignedDocument::Head() const {
  return m_Kind == KeyMessage ? Cairn::FirstChildNamed(Root(), "AuthenticatedPublic") : Root();
}

std::optional<Timestamp> SignedDocument::IssueDate() const {
  Timestamp date;
  if (!date.DecodeString(Cairn::TrimmedText(Cairn::FirstChildNamed(Head(), "IssueDate")))) return {};
  return date;
}

}  // namespace Sigil
