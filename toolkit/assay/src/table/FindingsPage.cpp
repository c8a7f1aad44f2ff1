// SPDX-License-Identifier: BSD-3-Clause
#include "FindingsPage.h"

#include <Assay/FindingRule.h>

namespace Assay {
namespace {

constexpr char Introduction[] =
    R"(# Findings

What a check can find wrong or unusual with packages, their files and shows. Each has a name that never changes, and a
class:

| class | means |
|---|---|
| error | servers refuse it, or it does not play |
| warning | some equipment fails, or the audience notices |
| profile | outside RDD 52, the application profile of SMPTE packages, though it plays |
| note | worth knowing |

Where there are several classes the first is the usual one. A value just at a limit is fine. Each entry says how far a
check must look to find it: documents (XML and directories), files (headers and indexes of track files as well), frames
(all of their contents), hash (digests of whole files) or decode (pictures through the decoder).

One fault often shows in several ways. What an entry may bring is shown below it where both are about the same asset,
reel, document, composition or package, and does not count again.

This page is made from the table that the findings themselves are made from. After a change of the table it is written
anew by `cmake --build build/release --target accept-findings`.
)";

struct Section {
  FindingID First;
  const char* Title;
};

constexpr Section Sections[] = {
    {FindingID::AmMissing, "Packages, their files and lists"},     {FindingID::CplSchema, "Compositions"},
    {FindingID::PictureSize, "Picture, sound and auxiliary data"}, {FindingID::TextSchema, "Timed text"},
    {FindingID::SignMissing, "Signatures, certificates and keys"}, {FindingID::ShowUnreadable, "Shows"},
};

std::string ClassesOf(const FindingRule& rule) {
  std::string text;
  for (const FindingClass value : rule.Classes.All()) {
    if (!text.empty()) text += " or ";
    text += FindingClassName(value);
  }
  return text;
}

std::string ConsequencesOf(const FindingRule& rule) {
  std::string text;
  for (const Consequence& consequence : rule.Consequences) {
    const std::string name = RuleOf(consequence.ID).Name;
    if (text.find('[' + name + ']') != std::string::npos) continue;  // in several scopes
    if (!text.empty()) text += ", ";
    text += '[' + name + "](#" + name + ')';
  }
  return text;
}

std::string Entry(const FindingRule& rule) {
  std::string text = std::string("\n### ") + rule.Name + "\n\n**" + rule.Sentence + "**\n\n" + rule.Reason + "\n\n";
  text += std::string("*What to do:* ") + rule.Advice + "\n\n";
  text += "*Class:* " + ClassesOf(rule) + ".";
  if (rule.Flavour == Flavour::Interop) text += " *Only in* Interop packages.";
  if (rule.Flavour == Flavour::SMPTE) text += " *Only in* SMPTE packages.";
  text += std::string(" *Depth:* ") + DepthName(rule.Depth) + ".";
  if (*rule.Source != '\0') text += std::string(" *Source:* ") + rule.Source + ".";
  if (!rule.Consequences.empty()) text += " *May bring:* " + ConsequencesOf(rule) + '.';
  return text + '\n';
}

}  // namespace

std::string FindingsPage() {
  std::string page = Introduction;
  for (const FindingRule& rule : FindingRules()) {
    for (const Section& section : Sections)
      if (section.First == rule.ID) page += std::string("\n## ") + section.Title + '\n';
    page += Entry(rule);
  }
  return page;
}

}  // namespace Assay
