// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/DistinguishedName.h>

#include "certificate/CertificateState.h"

#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <array>

namespace Sigil {
namespace {

constexpr size_t MaxAttributes = 100;
constexpr size_t MaxTypeLength = 1000;  // characters of a keyword or an object identifier
constexpr std::string_view Special = ",+\"\\<>;=";

/// Empty for one that OpenSSL finds too long.
std::string DottedForm(const ASN1_OBJECT* object) {
  const int length = OBJ_obj2txt(nullptr, 0, object, 1);
  if (length <= 0) return {};
  std::string text(static_cast<size_t>(length) + 1, '\0');
  OBJ_obj2txt(text.data(), length + 1, object, 1);
  text.pop_back();
  return text;
}

/// The keyword of an attribute type; the dotted form where it has none.
std::string Keyword(const std::string& type) {
  const int nid = OBJ_txt2nid(type.c_str());
  return nid == NID_undef ? type : OBJ_nid2sn(nid);
}

/// The dotted form of a keyword, of the usual ones in either case, or of an object identifier; empty for neither.
std::string TypeFrom(std::string_view word) {
  static constexpr std::array Keywords = {"CN",           "O",  "OU", "dnQualifier", "C",
                                          "ST",           "L",  "DC", "street",      "UID",
                                          "serialNumber", "SN", "GN", "title",       "emailAddress"};
  const auto is_same = [&](const char* keyword) {
    return std::ranges::equal(word, std::string_view(keyword), [](char a, char b) { return (a | 0x20) == (b | 0x20); });
  };
  const auto known = std::ranges::find_if(Keywords, is_same);
  if (known != Keywords.end()) return DottedForm(OBJ_nid2obj(OBJ_txt2nid(*known)));
  if (word.empty() || word.size() > MaxTypeLength) return {};
  ASN1_OBJECT* object = OBJ_txt2obj(std::string(word).c_str(), 0);
  std::string type = object == nullptr ? std::string() : DottedForm(object);
  ASN1_OBJECT_free(object);
  ERR_clear_error();
  return type;
}

std::string_view TrimBlanks(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  const size_t begin = text.find_first_not_of(Blanks);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(Blanks) + 1 - begin);
}

/// Reads names of RFC 4514 from front to back.
class NameReader {
 public:
  explicit NameReader(std::string_view text) : m_Rest(text) {}

  [[nodiscard]] std::optional<DistinguishedName> Read() {
    DistinguishedName name;
    if (m_Rest.empty()) return name;
    for (bool is_joined = false;;) {
      const size_t equals = m_Rest.find('=');
      if (equals == std::string_view::npos || name.Attributes.size() == MaxAttributes) return {};
      std::string type = TypeFrom(TrimBlanks(m_Rest.substr(0, equals)));
      m_Rest.remove_prefix(equals + 1);
      std::string value;
      if (type.empty() || !ReadValue(value)) return {};
      name.Attributes.push_back({std::move(type), std::move(value), is_joined});
      if (m_Rest.empty()) return name;
      is_joined = m_Rest.front() == '+';
      m_Rest.remove_prefix(1);
    }
  }

 private:
  /// Up to an unescaped separator. Blanks around count only where they are escaped.
  bool ReadValue(std::string& value) {
    m_Rest = m_Rest.substr(std::min(m_Rest.find_first_not_of(" \t\r\n"), m_Rest.size()));
    if (m_Rest.starts_with('#')) return false;  // a value that is no text
    size_t keep = 0;                            // what ends in an escaped blank is not trimmed
    while (!m_Rest.empty() && m_Rest.front() != ',' && m_Rest.front() != '+') {
      const char c = m_Rest.front();
      m_Rest.remove_prefix(1);
      if (c == '"' || c == ';' || c == '<' || c == '>') return false;
      if (c != '\\') {
        value += c;
      } else if (ReadEscape(value)) {
        keep = value.size();
      } else {
        return false;
      }
    }
    const size_t last = value.find_last_not_of(" \t\r\n");
    value.resize(std::max(keep, last == std::string::npos ? 0 : last + 1));
    return true;
  }

  bool ReadEscape(std::string& value) {
    if (m_Rest.empty()) return false;
    if (Special.find(m_Rest.front()) != std::string_view::npos || m_Rest.front() == ' ' || m_Rest.front() == '#') {
      value += m_Rest.front();
      m_Rest.remove_prefix(1);
      return true;
    }
    std::array<Ferro::ui8_t, 1> byte{};
    if (m_Rest.size() < 2 || !Ferro::hex2bin(m_Rest.substr(0, 2), byte)) return false;
    value += static_cast<char>(byte[0]);
    m_Rest.remove_prefix(2);
    return true;
  }

  std::string_view m_Rest;
};

void AppendEscaped(std::string& out, const std::string& value) {
  for (size_t i = 0; i < value.size(); ++i) {
    const char c = value[i];
    const bool is_edge_blank = c == ' ' && (i == 0 || i + 1 == value.size());
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      const std::array<Ferro::ui8_t, 1> byte = {static_cast<Ferro::ui8_t>(c)};
      out += '\\' + Ferro::bin2hex(byte);
      continue;
    }
    // "=" need not be escaped, and no document has it so.
    if ((c != '=' && Special.find(c) != std::string_view::npos) || is_edge_blank || (c == '#' && i == 0)) out += '\\';
    out += c;
  }
}

}  // namespace

DistinguishedName NameFrom(const X509_NAME* name) {
  DistinguishedName result;
  int previous_set = -1;
  for (int i = X509_NAME_entry_count(name) - 1; i >= 0; --i) {
    const X509_NAME_ENTRY* entry = X509_NAME_get_entry(name, i);
    const ASN1_STRING* data = X509_NAME_ENTRY_get_data(entry);
    unsigned char* text = nullptr;
    const int length = ASN1_STRING_to_UTF8(&text, data);
    DistinguishedName::Attribute attribute{DottedForm(X509_NAME_ENTRY_get_object(entry)), {}};
    if (length > 0) attribute.Value.assign(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
    OPENSSL_free(text);
    attribute.IsJoined = X509_NAME_ENTRY_set(entry) == previous_set;
    attribute.IsPrintable = ASN1_STRING_type(data) == V_ASN1_PRINTABLESTRING;
    previous_set = X509_NAME_ENTRY_set(entry);
    result.Attributes.push_back(std::move(attribute));
  }
  return result;
}

std::optional<DistinguishedName> DistinguishedName::FromText(std::string_view text) {
  return NameReader(TrimBlanks(text)).Read();
}

std::string DistinguishedName::Text() const {
  std::string text;
  for (const Attribute& attribute : Attributes) {
    if (!text.empty()) text += attribute.IsJoined ? '+' : ',';
    text += Keyword(attribute.Type) + '=';
    AppendEscaped(text, attribute.Value);
  }
  return text;
}

std::string DistinguishedName::Value(std::string_view type) const {
  const auto found = std::ranges::find(Attributes, type, &Attribute::Type);
  return found == Attributes.end() ? std::string() : found->Value;
}

size_t DistinguishedName::Count(std::string_view type) const {
  return static_cast<size_t>(std::ranges::count(Attributes, type, &Attribute::Type));
}

}  // namespace Sigil
