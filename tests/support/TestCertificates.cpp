// SPDX-License-Identifier: BSD-3-Clause
#include "TestCertificates.h"

#include <gtest/gtest.h>

namespace SigilTest {

Sigil::CertificateList Certificates(const std::vector<testsupport::CertificateRecipe>& recipes) {
  Sigil::CertificateList list;
  for (const auto& made : testsupport::MakeCertificates(recipes)) {
    Sigil::CertificateList one;
    EXPECT_EQ(Sigil::ReadCertificates(testsupport::EncodeDER(made), one, Ferro::DefaultLogSink()), Ferro::RESULT_OK);
    list.insert(list.end(), one.begin(), one.end());
  }
  return list;
}

Sigil::Timestamp Time(const std::string& text) {
  Sigil::Timestamp time;
  EXPECT_TRUE(time.DecodeString(text)) << text;
  return time;
}

std::string Lines(const Sigil::FindingList& findings) {
  std::string lines;
  for (const Sigil::Finding& finding : findings)
    lines += std::string(1, "EWN"[static_cast<size_t>(finding.Severity)]) + ' ' + Sigil::FindingName(finding.ID) +
             ": " + finding.Text + '\n';
  return lines;
}

}  // namespace SigilTest
