// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Result.h>
#include <Sigil/Types.h>

#include <Cairn/DCPFormat.h>
#include <Cairn/DocumentParser.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <memory>
#include <optional>
#include <string>

namespace Sigil {

enum class DocumentKind : ui8_t { Composition, PackingList, KeyMessage };

/// A document with all that canonical XML has of it: Cairn's parsing frame, and comments and processing instructions too.
class SignedDocument {
 public:
  /// @return RESULT_OK; as VerifySignature. May throw what Xerces-C throws.
  [[nodiscard]] Result_t Parse(const std::string& xml, Ferro::ILogSink& log);

  [[nodiscard]] xercesc::DOMDocument* Document() const { return m_Document; }
  [[nodiscard]] xercesc::DOMElement* Root() const { return m_Document->getDocumentElement(); }
  [[nodiscard]] DocumentKind Kind() const { return m_Kind; }
  [[nodiscard]] Cairn::DCPFormat_t Format() const { return m_Format; }
  /// The element that holds IssueDate and Signer.
  [[nodiscard]] const xercesc::DOMElement* Head() const;
  /// No value where it is missing or malformed.
  [[nodiscard]] std::optional<Timestamp> IssueDate() const;

 private:
  std::shared_ptr<Cairn::DocumentParser> m_Parser;  // owns the tree
  xercesc::DOMDocument* m_Document = nullptr;
  DocumentKind m_Kind = DocumentKind::Composition;
  Cairn::DCPFormat_t m_Format = Cairn::DFT_NONE;
};

inline constexpr char NS_KeyMessage[] = "http://www.smpte-ra.org/schemas/430-3/2006/ETM";
inline constexpr char ID_Public[] = "ID_AuthenticatedPublic";
inline constexpr char ID_Private[] = "ID_AuthenticatedPrivate";

}  // namespace Sigil
