// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentMutator.h"
#include "SampleDocuments.h"
#include "form/FormCheck.h"

#include "../support/SchemaCheck.h"
#include "../support/TemporaryFolder.h"
#include "../support/TestSeed.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>

// The standards' schemas judge the checker: it and xmllint agree about mutated documents.

namespace {

using Assay::Node;
using testsupport::DocumentMutator;

constexpr size_t DocumentCount = 10'000;

struct Sample {
  std::string Name;
  std::string Schema;
  std::string Text;
};

std::vector<Sample> Samples() {
  return {
      {"map", "smpte-429-9-2007-AM.xsd", testsupport::SMPTEAssetMap()},
      {"volume", "smpte-429-9-2007-AM.xsd", testsupport::SMPTEVolumeIndex()},
      {"list", "smpte-429-8-2007-PKL.xsd", testsupport::SMPTEPackingList()},
      {"signed", "smpte-429-8-2007-PKL.xsd", testsupport::SignedPackingList()},
      {"composition", "all-smpte-cpl.xsd", testsupport::SMPTEComposition()},
      {"stereoscopic", "all-smpte-cpl.xsd", testsupport::SMPTEStereoscopicComposition()},
      {"interop-map", "interop-PROTO-ASDCP-AM-20040311.xsd", testsupport::InteropAssetMap()},
      {"interop-volume", "reconstructed-PROTO-ASDCP-VL-20040311.xsd", testsupport::InteropVolumeIndex()},
      {"interop-list", "interop-PROTO-ASDCP-PKL-20040311.xsd", testsupport::InteropPackingList()},
      {"interop-composition", "all-interop-cpl.xsd", testsupport::InteropComposition()},
      {"interop-text", "reconstructed-DCSubtitle.xsd", testsupport::InteropText()},
      {"text-2007", "smpte-428-7-2007-DCST.xsd", testsupport::SMPTEText(2007)},
      {"text-2010", "smpte-428-7-2010-DCST.xsd", testsupport::SMPTEText(2010)},
      {"text-2014", "smpte-428-7-2014-DCST.xsd", testsupport::SMPTEText(2014)},
  };
}

Node RootOf(const std::string& text) {
  Assay::ParsedDocument document = Assay::ParseDocument(text);
  EXPECT_TRUE(document.Root.has_value()) << document.Error;
  return document.Root ? std::move(*document.Root) : Node();
}

/// What the checker says of a document: one line for each fault, none when it is sound.
std::string Faults(const Node& root) {
  const Assay::Grammar* grammar = Assay::FindGrammar(root.Namespace, root.Name);
  if (grammar == nullptr) return "not a known document\n";
  std::string text;
  for (const Assay::FormFault& fault : CheckForm(root, *grammar))
    text += std::to_string(fault.Line) + ": " + DescribeFault(fault) +
            (fault.Expected.empty() ? "" : ", not " + fault.Expected) + '\n';
  return text;
}

/// What xmllint says of each file of a folder, by its name: nothing of a valid one.
std::map<std::string, std::string> Judged(const std::string& schema, const std::string& folder) {
  const std::string command = "cd '" + folder + "' && xmllint --nonet --noout --schema '" + schema + "' *.xml 2>&1";
  std::map<std::string, std::string> said;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return said;
  std::array<char, 4096> line{};
  while (std::fgets(line.data(), static_cast<int>(line.size()), pipe) != nullptr) {
    const std::string text = line.data();
    const std::string name = text.substr(0, text.find_first_of(": "));
    if (text == name + " validates\n")
      said[name];
    else
      said[name] += text;
  }
  pclose(pipe);
  return said;
}

/// Where xmllint and the checker may differ, and why the checker does as it does; null elsewhere.
const char* ReasonFor(const std::string& judged, const std::string& faults) {
  const auto says = [&](const char* words) { return judged.find(words) != std::string::npos; };
  if (judged.empty() && faults.find("Base64") != std::string::npos)
    return "Base64 has no characters but its own and blanks (XML Schema, part 2, 3.2.16); xmllint passes over others";
  if (!faults.empty()) return nullptr;
  if (says("' 1 ' is not a valid value of the atomic type 'xs:long'"))
    return "blanks around a number do not count (XML Schema, part 2, 4.3.6); xmllint refuses them for xs:long alone";
  if (says("demanded by the strict wildcard"))
    return "what an algorithm of a signature is given is for whoever verifies the signature";
  if (says("anyURI")) return "characters beyond RFC 3986 are escaped by whoever follows a URI (XML Schema, 3.2.17)";
  return nullptr;
}

class FormSchema : public testing::Test {
 protected:
  void SetUp() override {
    if (testsupport::SchemaFolder().empty())
      GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name the folder of the standards' schemas";
  }
};

TEST_F(FormSchema, TheSampleDocumentsAreSoundByBoth) {
  for (const Sample& sample : Samples()) {
    EXPECT_EQ(testsupport::ValidateDocuments(testsupport::SchemaFolder() + "/" + sample.Schema, {sample.Text}), "")
        << sample.Name;
    EXPECT_EQ(Faults(RootOf(sample.Text)), "") << sample.Name;
  }
}

TEST_F(FormSchema, AgreesAboutMutatedDocuments) {
  DocumentMutator mutator(testsupport::TestSeed(20240301));
  size_t sound = 0;
  size_t judged_count = 0;
  std::map<std::string, size_t> differences;
  const std::vector<Sample> samples = Samples();
  for (const Sample& sample : samples) {
    const Node document = RootOf(sample.Text);
    const testsupport::TemporaryFolder folder;
    std::map<std::string, std::string> texts;
    for (size_t number = 0; number < DocumentCount / samples.size() + 1; ++number) {
      const std::string name = std::to_string(number) + ".xml";
      texts[name] = mutator.Mutated(document);
      folder.Write(name, texts[name]);
    }
    const auto judged = Judged(testsupport::SchemaFolder() + "/" + sample.Schema, folder.Folder().string());
    for (const auto& [name, text] : texts) {
      const auto verdict = judged.find(name);
      ASSERT_NE(verdict, judged.end()) << "xmllint is missing, or said nothing of " << sample.Name;
      ++judged_count;
      const std::string faults = Faults(RootOf(text));
      sound += faults.empty();
      if (faults.empty() == verdict->second.empty()) continue;
      const char* reason = ReasonFor(verdict->second, faults);
      EXPECT_NE(reason, nullptr) << sample.Name << "\nxmllint:\n" << verdict->second << "checker:\n" << faults << text;
      if (reason != nullptr) ++differences[reason];
    }
  }
  EXPECT_GE(judged_count, DocumentCount);
  EXPECT_GT(sound, judged_count / 20);  // the damages are small enough to leave documents sound
  EXPECT_LT(sound, judged_count / 2);
  for (const auto& [reason, count] : differences) std::printf("%zu differences: %s\n", count, reason.c_str());
  std::printf("%zu documents, %zu of them sound\n", judged_count, sound);
}

}  // namespace
