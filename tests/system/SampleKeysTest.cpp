// SPDX-License-Identifier: BSD-3-Clause
// What of a sample show is signed and encrypted.
#include "SampleFolder.h"

#include "Judges.h"

#include <Ferro/FileText.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/PCMReader.h>
#include <Sigil/KeyMessageStore.h>
#include <Sigil/KeyRing.h>

#include <optional>

using testsupport::RunJudge;

namespace {

constexpr Ferro::i64_t Hour = 3'600'000;

class SampleKeys : public SampleFolder {
 protected:
  void SetUp() override { CopySampleShow(Show(), true); }

  [[nodiscard]] std::string KeyFile(const std::string& name) const { return Show("worthless-test-keys/" + name); }

  static std::string TextOf(const std::string& filename) {
    std::string text;
    EXPECT_TRUE(Ferro::ReadFileIntoString(filename, text).Success()) << filename;
    return text;
  }
  [[nodiscard]] Sigil::CertificateList CertificatesIn(const std::string& name) const {
    Sigil::CertificateList list;
    EXPECT_TRUE(Sigil::ReadCertificates(TextOf(KeyFile(name)), list, Ferro::DefaultLogSink()).Success());
    return list;
  }
  /// Today and the sample's own root taken into account.
  [[nodiscard]] Sigil::SignatureReport SignatureOf(const std::string& name) const {
    Sigil::SignatureReport report;
    const Sigil::SignatureContext context = {Ferro::Timestamp(), {CertificatesIn("signer-chain.pem").back()}};
    EXPECT_TRUE(VerifySignature(TextOf(Show(name)), context, report, Ferro::DefaultLogSink()).Success());
    return report;
  }
  [[nodiscard]] Sigil::PrivateKey KeyIn(const std::string& name) const {
    std::optional<Sigil::PrivateKey> key;
    EXPECT_TRUE(Sigil::PrivateKey::FromFile(KeyFile(name), {}, key, Ferro::DefaultLogSink()).Success());
    return *key;
  }
  [[nodiscard]] Sigil::KeyMessage Message() const {
    Sigil::KeyMessage message;
    const Sigil::SignatureContext context = {Ferro::Timestamp(), {CertificatesIn("signer-chain.pem").back()}};
    EXPECT_TRUE(Sigil::KeyMessage::Read(TextOf(KeyFile("key-message.xml")), context, message, Ferro::DefaultLogSink())
                    .Success());
    return message;
  }
};

TEST_F(SampleKeys, EveryCompositionAndPackingListIsSignedWithoutAFinding) {
  for (const char* package : {"Trailer", "Feature", "Stereoscopic", "Immersive", "Encrypted"})
    for (const char* document : {"/CPL.xml", "/PKL.xml"}) {
      const Sigil::SignatureReport report = SignatureOf(std::string(package) + document);
      EXPECT_EQ(report.State, Sigil::SignatureState::Valid) << package << document << ": " << report.Reason();
      for (const Sigil::Finding& finding : report.Findings)
        ADD_FAILURE() << package << document << ": " << Sigil::FindingName(finding.ID) << ' ' << finding.Text;
    }
}

TEST_F(SampleKeys, AnotherVerifierAcceptsTheSignatures) {
  const std::string root = Beside("root.pem");
  ASSERT_TRUE(Ferro::WriteStringIntoFile(root, CertificatesIn("signer-chain.pem").back().PEM()).Success());
  for (const char* name : {"Encrypted/CPL.xml", "Encrypted/PKL.xml"})
    RunJudge({"xmlsec1", "--verify", "--trusted-pem", root, "--verification-time", "2026-03-01 12:00:00", Show(name)});
}

TEST_F(SampleKeys, TheMessageServesTheCompositionNowAndForAYear) {
  Sigil::KeyMessageStore messages;
  ASSERT_TRUE(messages.AddFolder(Show("worthless-test-keys")).Success());
  EXPECT_TRUE(messages.Problems().empty());
  ASSERT_EQ(messages.Entries().size(), 1U);
  const Sigil::KeyMessage message = Message();
  Sigil::MessageContext context;
  context.From = Ferro::Timestamp();
  context.Until = Ferro::Timestamp(context.From->UnixMilliseconds() + 364 * 24 * Hour);
  context.Recipient = CertificatesIn("recipient.pem").front();
  const Sigil::SignatureReport composition = SignatureOf("Encrypted/CPL.xml");
  context.Composition = {message.CompositionID, composition.Chain.Chain.front().Thumbprint(), {}};
  for (const Sigil::KeyEntry& entry : message.Keys) context.Composition->KeyIDs.push_back(entry.ID);
  Sigil::KeyMessageStore::Choice choice;
  EXPECT_EQ(messages.FindBest(context, choice), Ferro::RESULT_OK);
  EXPECT_TRUE(choice.Findings.empty()) << choice.Findings.front().Text;
  EXPECT_EQ(message.Formulation(), Sigil::Formulation::AuthenticatedAnyDevice);
  EXPECT_EQ(message.Signature.State, Sigil::SignatureState::Valid) << message.Signature.Reason();
  EXPECT_TRUE(KeyIn("recipient-key.pem").Matches(*context.Recipient));
  EXPECT_TRUE(KeyIn("signer-key.pem").Matches(CertificatesIn("signer-chain.pem").front()));
}

TEST_F(SampleKeys, TheKeysOpenPictureAndSound) {
  Sigil::KeyRing keys;
  ASSERT_TRUE(keys.AddMessage(Message(), KeyIn("recipient-key.pem"), Ferro::DefaultLogSink()).Success());
  EXPECT_EQ(keys.Size(), 2U);
  QUIRE::TrackEncryption track;
  QUIRE::FrameContexts contexts;

  QUIRE::JP2K::MXFReader picture;
  QUIRE::JP2K::FrameBuffer codestream;
  ASSERT_TRUE(QUIRE::ReadTrackEncryption(Show("Encrypted/picture-1.mxf"), track).Success());
  ASSERT_TRUE(keys.FillContexts(track, contexts).Success());
  ASSERT_TRUE(picture.OpenRead(Show("Encrypted/picture-1.mxf")).Success());
  ASSERT_TRUE(codestream.Capacity(1'000'000).Success());
  EXPECT_EQ(picture.ReadFrame(23, codestream, &contexts.Decryption, &contexts.Integrity), Ferro::RESULT_OK);
  EXPECT_EQ(codestream.RoData()[0], 0xff);  // start of codestream
  EXPECT_EQ(codestream.RoData()[1], 0x4f);

  QUIRE::PCM::MXFReader sound;
  QUIRE::PCM::FrameBuffer samples;
  ASSERT_TRUE(QUIRE::ReadTrackEncryption(Show("Encrypted/sound-1.mxf"), track).Success());
  ASSERT_TRUE(keys.FillContexts(track, contexts).Success());
  ASSERT_TRUE(sound.OpenRead(Show("Encrypted/sound-1.mxf")).Success());
  ASSERT_TRUE(samples.Capacity(1'000'000).Success());
  EXPECT_EQ(sound.ReadFrame(23, samples, &contexts.Decryption, &contexts.Integrity), Ferro::RESULT_OK);
}

TEST_F(SampleKeys, AFolderAndItsFirstLineSayThatTheyAreWorthless) {
  EXPECT_EQ(TextOf(KeyFile("README.txt")).find("The keys and certificates in this folder are worthless."), 0U);
}

TEST_F(SampleKeys, CheckFindsTheMessageAndTellsHowLongTheShowPlays) {
  StrataProgram check({"check", Show(), "--hash"});
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_THAT(check.Output(), testing::HasSubstr("/worthless-test-keys/key-message.xml serves, from "));
  EXPECT_THAT(check.Output(), testing::HasSubstr("This show will play: 0:07."));
  EXPECT_THAT(check.Output(), testing::HasSubstr("Its keys are valid until "));
}

TEST_F(SampleKeys, OfAnInteropShowServeToo) {
  StrataProgram maker({"make-sample", Beside("interop"), "--length", "1", "--size", "96x64", "--flavour", "interop"});
  ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  StrataProgram check({"check", Beside("interop")});
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_THAT(check.Output(), testing::HasSubstr("/worthless-test-keys/key-message.xml serves, from "));
}

}  // namespace
