// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/Result.h>

#include <xercesc/parsers/XercesDOMParser.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Cairn {

/// The parser within the limits of DocumentParser, with a DOM tree unless a derived class builds its own.
class BoundedParser : public xercesc::XercesDOMParser {
 public:
  BoundedParser();
  ~BoundedParser() override;

  /// Takes comments and processing instructions into the tree from now on.
  void KeepEverything();
  /// As DocumentParser::ParseText.
  [[nodiscard]] Result_t ParseText(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log);

  // Events of the parser, overridden to hold the limits and to end the tree at the first error.
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attribute_count, bool is_empty,
                    bool is_root) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool is_root,
                  const XMLCh* prefix) override;
  void docCharacters(const XMLCh* text, XMLSize_t length, bool is_cdata) override;
  void ignorableWhitespace(const XMLCh* text, XMLSize_t length, bool is_cdata) override;
  void docPI(const XMLCh* target, const XMLCh* data) override;
  void docComment(const XMLCh* text) override;

 protected:
  /// A name of an element or an attribute, as UTF-8.
  struct Name {
    std::string Qualified;
    std::string Local;  // without its prefix
  };

  /// Counts an element that begins, and its attributes; throws what ParseText reports when there are too many. The name
  /// lives until the next parse.
  const Name& AdmitElement(const xercesc::XMLElementDecl& declaration,
                           const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, size_t attribute_count);
  /// An element ends.
  void LeaveElement();
  /// Counts a name unless it was met before.
  const Name& NoteName(const XMLCh* name);

 private:
  struct NameHash : std::hash<std::u16string_view> {
    using is_transparent = void;
  };

  void CheckAttributes(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, size_t count);
  [[nodiscard]] bool IsMalformed() const;
  void Reset();

  bool m_KeepsEverything = false;
  const DOMTreeErrorReporter* m_Reporter = nullptr;  // of the parse that goes on
  unsigned m_ElementCount = 0;
  size_t m_AttributeCount = 0;
  std::vector<size_t> m_NamespaceCounts;  // declarations in scope, for each open element
  std::unordered_map<std::u16string, Name, NameHash, std::equal_to<>> m_Names;
};

}  // namespace Cairn
