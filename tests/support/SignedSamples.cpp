// SPDX-License-Identifier: BSD-3-Clause
#include "SignedSamples.h"

#include <LogCapture.h>

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/PackingList.h>

#include <gtest/gtest.h>

namespace SigilTest {
namespace {

Cairn::UUID ID(unsigned char last) {
  Cairn::ui8_t bytes[16] = {};
  bytes[6] = 0x40;
  bytes[8] = 0x80;
  bytes[15] = last;
  return Cairn::UUID(bytes);
}

}  // namespace

std::string Composition(Cairn::DCPFormat_t format) {
  Cairn::CompositionPlaylist composition;
  composition.ID = ID(1);
  composition.IssueDate = Noon;
  composition.ContentTitle = "a < b & c \xC3\xA9";
  composition.ContentKind = Cairn::CK_FEATURE;
  composition.RatingList = {{"urn:a", "12"}};
  Cairn::Reel& reel = composition.ReelList.emplace_back();
  reel.ID = ID(2);
  reel.MainPicture.AssetID = ID(3);
  reel.MainPicture.EditRate = reel.MainPicture.FrameRate = QUIRE::Rational(24, 1);
  reel.MainPicture.IntrinsicDuration = reel.MainPicture.Duration = 48;
  reel.MainPicture.ScreenAspectRatio = QUIRE::Rational(185, 100);
  reel.MainPicture.KeyID = ID(4);
  std::string xml;
  EXPECT_EQ(composition.EncodeXML(xml, format), Ferro::RESULT_OK);
  return xml;
}

std::string PackingList(Cairn::DCPFormat_t format) {
  Cairn::PackingList list;
  list.ID = ID(1);
  list.IssueDate = Noon;
  const Cairn::ui8_t digest[20] = {1};
  list.AssetList = {{ID(2), "a", Cairn::SHA1(digest), 17, "text/xml", "a.xml"}};
  std::string xml;
  EXPECT_EQ(list.EncodeXML(xml, format), Ferro::RESULT_OK);
  return xml;
}

Sigil::PrivateKey Key(const std::string& name) {
  const std::string pem = testsupport::TestKeyPEM(name);
  std::optional<Sigil::PrivateKey> key;
  EXPECT_EQ(Sigil::PrivateKey::FromPEM({reinterpret_cast<const Sigil::ui8_t*>(pem.data()), pem.size()}, {}, key,
                                       Ferro::DefaultLogSink()),
            Ferro::RESULT_OK);
  return key.value();
}

Sigil::SignerIdentity Signer(const std::vector<testsupport::CertificateRecipe>& recipes) {
  return {Key(recipes.back().Key), Certificates(recipes)};
}

std::string Signed(std::string xml, const Sigil::SignerIdentity& signer) {
  EXPECT_EQ(Sigil::SignDocument(xml, signer, Ferro::DefaultLogSink()), Ferro::RESULT_OK);
  return xml;
}

const std::string& SignedComposition() {
  static const std::string s_Text = Signed(Composition(Cairn::DFT_DCI_SMPTE));
  return s_Text;
}

std::string Verdict(const std::string& xml, const Sigil::SignatureContext& context) {
  testsupport::LogCapture log;
  Sigil::SignatureReport report;
  const Sigil::Result_t result = Sigil::VerifySignature(xml, context, report, log);
  if (result.Failure()) return result.Symbol();
  static constexpr const char* States[] = {"not signed\n", "valid\n", "invalid\n"};
  return States[static_cast<size_t>(report.State)] + Lines(report.Findings);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  const size_t at = text.find(what);
  if (at == std::string::npos) {
    ADD_FAILURE() << "there is no " << what;
    return text;
  }
  return text.replace(at, what.size(), by);
}

std::string Part(const std::string& text, const std::string& begin, const std::string& end) {
  const size_t from = text.find(begin);
  const size_t to = from == std::string::npos ? from : text.find(end, from);
  if (to == std::string::npos) {
    ADD_FAILURE() << "there is no " << begin << "..." << end;
    return {};
  }
  return text.substr(from, to + end.size() - from);
}

}  // namespace SigilTest
