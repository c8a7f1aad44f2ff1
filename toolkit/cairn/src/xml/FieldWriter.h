// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <Ferro/XMLElement.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Cairn {

/// Writes typed values as elements. A value that the schema requires and that is missing or invalid is logged to the
/// default sink and makes Render fail, so that no invalid document is written.
class FieldWriter {
 public:
  /// `document` names the document's kind in messages and must outlive the writer.
  FieldWriter(const char* document, DCPFormat_t format) : m_Document(document), m_Format(format) {}

  [[nodiscard]] bool IsInterop() const { return m_Format == DFT_Interop; }

  void ID(Ferro::XMLElement& parent, const char* name, const UUID& id);
  void OptionalID(Ferro::XMLElement& parent, const char* name, const UUID& id);
  void OptionalText(Ferro::XMLElement& parent, const char* name, const std::string& text);
  /// xs:dateTime.
  void Date(Ferro::XMLElement& parent, const char* name, const std::string& text);
  static void Count(Ferro::XMLElement& parent, const char* name, ui64_t value);
  /// A count that the schema wants to be 1 or more.
  void PositiveCount(Ferro::XMLElement& parent, const char* name, ui64_t value);
  void Rate(Ferro::XMLElement& parent, const char* name, const QUIRE::Rational& rate);
  static void OptionalDigest(Ferro::XMLElement& parent, const char* name, const SHA1& digest);
  /// A language tag (RFC 5646); nothing when empty.
  void OptionalLanguage(Ferro::XMLElement& parent, const char* name, const std::string& tag);

  void Missing(const std::string& what);
  void Invalid(const std::string& what, const std::string& value);

  /// Renders the document unless something is missing or invalid.
  [[nodiscard]] Result_t Render(const Ferro::XMLElement& root, std::string& out) const;

 private:
  const char* m_Document;
  DCPFormat_t m_Format;
  Result_t m_Result = Ferro::RESULT_OK;
};

/// True for the formats that documents can be written in.
[[nodiscard]] constexpr bool IsWritableFormat(DCPFormat_t format) {
  return format == DFT_Interop || format == DFT_DCI_SMPTE;
}

}  // namespace Cairn
