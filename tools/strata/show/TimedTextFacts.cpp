// SPDX-License-Identifier: BSD-3-Clause
#include "TimedTextFacts.h"

#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Tool {

namespace {

/// Seconds of a time "HH:MM:SS:EE" in edit units of `rate`; 0 where it is none.
double SecondsOf(const std::string& text, double rate) {
  unsigned parts[4] = {};
  const char* at = text.data();
  const char* end = at + text.size();
  for (size_t i = 0; i < 4; ++i) {
    const auto read = std::from_chars(at, end, parts[i]);
    const bool is_last = i == 3;
    if (read.ec != std::errc() || (read.ptr == end) != is_last || (!is_last && *read.ptr != ':')) return 0;
    at = read.ptr + (is_last ? 0 : 1);
  }
  return parts[0] * 3600.0 + parts[1] * 60.0 + parts[2] + (rate > 0 ? parts[3] / rate : 0);
}

class FactsReader : public Cairn::XercesCallWrapper<TimedTextFacts> {
 public:
  Ferro::Result_t SetupCaller(TimedTextFacts* facts, Cairn::DCPFormat_t, Ferro::ILogSink&) override {
    const xercesc::DOMElement* root = m_doc->getDocumentElement();
    if (Cairn::LocalName(root) != "SubtitleReel") return Cairn::RESULT_XML_PARSE;
    const auto text = [&](const char* name) { return Cairn::TrimmedText(Cairn::FirstChildNamed(root, name)); };
    const auto id = Ferro::UUID::FromURN(text("Id"));
    if (!id) return Cairn::RESULT_XML_PARSE;
    facts->ID = *id;
    facts->Namespace = Cairn::NamespaceName(root);
    facts->Language = text("Language");
    static_cast<void>(facts->EditRate.DecodeString(text("EditRate")));
    const std::string rate = text("TimeCodeRate");
    std::from_chars(rate.data(), rate.data() + rate.size(), facts->TimeCodeRate);
    FindEnd(root, *facts);
    return Ferro::RESULT_OK;
  }

 private:
  // Documents from outside nest no deeper than the parser allows.
  static void FindEnd(const xercesc::DOMElement* element, TimedTextFacts& facts) {
    if (Cairn::LocalName(element) == "Subtitle") {
      const XMLCh name[] = {'T', 'i', 'm', 'e', 'O', 'u', 't', 0};
      const std::string time = Cairn::XMLChToUTF8(element->getAttribute(name));
      facts.End = std::max(facts.End, SecondsOf(time, facts.TimeCodeRate));
      return;
    }
    for (const auto* child = Cairn::FirstChildElement(element); child != nullptr;
         child = Cairn::NextSiblingElement(child))
      FindEnd(child, facts);
  }
};

}  // namespace

Ferro::ui32_t TimedTextFacts::EndInEditUnits(const QUIRE::Rational& edit_rate) const {
  constexpr double Rounding = 1e-6;  // of sums of fractions of seconds
  const double units = std::ceil(End * edit_rate.Quotient() - Rounding);
  return units < double(std::numeric_limits<Ferro::ui32_t>::max()) ? static_cast<Ferro::ui32_t>(std::max(units, 0.0))
                                                                   : 0;
}

bool ReadTimedTextFacts(const std::string& xml, TimedTextFacts& facts) {
  return Cairn::DecodeXMLDocument<FactsReader>(xml, &facts).Success();
}

}  // namespace Tool
