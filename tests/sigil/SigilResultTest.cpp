// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/Finding.h>
#include <Sigil/Result.h>

#include <gtest/gtest.h>

namespace {

TEST(SigilResult, EveryCodeIsFoundByItsValue) {
  for (const Sigil::Result_t result :
       {Sigil::RESULT_SG_CERTIFICATE, Sigil::RESULT_SG_PRIVATE_KEY, Sigil::RESULT_SG_SIGNER, Sigil::RESULT_SG_SIGN,
        Sigil::RESULT_SG_PASSPHRASE, Sigil::RESULT_SG_DOCUMENT, Sigil::RESULT_SG_MESSAGE, Sigil::RESULT_SG_UNVERIFIED,
        Sigil::RESULT_SG_CONTENT, Sigil::RESULT_SG_ARCHIVE, Sigil::RESULT_SG_NO_MESSAGE,
        Sigil::RESULT_SG_NO_VALID_MESSAGE, Sigil::RESULT_SG_NO_KEY, Sigil::RESULT_SG_DUPLICATE,
        Sigil::RESULT_SG_KEY_FILE, Sigil::RESULT_SG_KEY_CONFLICT}) {
    EXPECT_STREQ(Sigil::Result_t::Find(result.Value()).Symbol(), result.Symbol());
    EXPECT_LE(result.Value(), -300);
    EXPECT_GE(result.Value(), -399);
  }
}

TEST(SigilFinding, TheFirstAndTheLastRuleOfCertificatesHaveTheirNames) {
  EXPECT_STREQ(Sigil::FindingName(Sigil::FindingID::CertVersion), "cert-version");
  EXPECT_STREQ(Sigil::FindingName(Sigil::FindingID::CertDatesNested), "cert-dates-nested");
  EXPECT_STREQ(Sigil::FindingName(Sigil::FindingID::CertSignerCA), "cert-signer-ca");
}

}  // namespace
