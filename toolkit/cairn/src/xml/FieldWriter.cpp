// SPDX-License-Identifier: BSD-3-Clause
#include "FieldWriter.h"

#include <Ferro/ILogSink.h>
#include <Ferro/Timestamp.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace Cairn {
namespace {

// One to eight letters, then groups of one to eight letters and digits.
bool IsLanguageTag(std::string_view tag) {
  for (bool is_first = true;; is_first = false) {
    const std::string_view group = tag.substr(0, tag.find('-'));
    const bool fits = std::ranges::all_of(
        group, [&](unsigned char c) { return c < 0x80 && (is_first ? std::isalpha(c) != 0 : std::isalnum(c) != 0); });
    if (group.empty() || group.size() > 8 || !fits) return false;
    if (group.size() == tag.size()) return true;
    tag.remove_prefix(group.size() + 1);
  }
}

}  // namespace

void FieldWriter::ID(Ferro::XMLElement& parent, const char* name, const UUID& id) {
  if (!id.HasValue()) Missing(parent.Name() + " " + name);
  parent.AddChildWithContent(name, id.EncodeURN());
}

void FieldWriter::OptionalID(Ferro::XMLElement& parent, const char* name, const UUID& id) {
  if (id.HasValue()) ID(parent, name, id);
}

void FieldWriter::OptionalText(Ferro::XMLElement& parent, const char* name, const std::string& text) {
  if (!text.empty()) parent.AddChildWithContent(name, text);
}

void FieldWriter::Date(Ferro::XMLElement& parent, const char* name, const std::string& text) {
  if (!Ferro::Timestamp(0).DecodeString(text)) Invalid(parent.Name() + " " + name, text);
  parent.AddChildWithContent(name, text);
}

void FieldWriter::Count(Ferro::XMLElement& parent, const char* name, ui64_t value) {
  parent.AddChildWithContent(name, std::to_string(value));
}

void FieldWriter::PositiveCount(Ferro::XMLElement& parent, const char* name, ui64_t value) {
  if (value == 0) Invalid(parent.Name() + " " + name, "0");
  Count(parent, name, value);
}

void FieldWriter::Rate(Ferro::XMLElement& parent, const char* name, const QUIRE::Rational& rate) {
  if (rate.Numerator <= 0 || rate.Denominator <= 0) Invalid(parent.Name() + " " + name, rate.EncodeString());
  parent.AddChildWithContent(name, rate.EncodeString());
}

void FieldWriter::OptionalDigest(Ferro::XMLElement& parent, const char* name, const SHA1& digest) {
  if (digest.HasValue()) parent.AddChildWithContent(name, digest.EncodeBase64());
}

void FieldWriter::OptionalLanguage(Ferro::XMLElement& parent, const char* name, const std::string& tag) {
  if (tag.empty()) return;
  if (!IsLanguageTag(tag)) Invalid(parent.Name() + " " + name, tag);
  parent.AddChildWithContent(name, tag);
}

void FieldWriter::Missing(const std::string& what) {
  Ferro::DefaultLogSink().Error("%s cannot be written: %s is missing\n", m_Document, what.c_str());
  m_Result = RESULT_CN_VALUE;
}

void FieldWriter::Invalid(const std::string& what, const std::string& value) {
  Ferro::DefaultLogSink().Error("%s cannot be written: %s is \"%s\"\n", m_Document, what.c_str(), value.c_str());
  m_Result = RESULT_CN_VALUE;
}

Result_t FieldWriter::Render(const Ferro::XMLElement& root, std::string& out) const {
  return m_Result.Failure() ? m_Result : root.Render(out);
}

}  // namespace Cairn
