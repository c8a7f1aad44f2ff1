// SPDX-License-Identifier: BSD-3-Clause
// What a message is asked for: each finding where it is due, and where it just is not.
#include "MessageSamples.h"

#include <gtest/gtest.h>

namespace {

using namespace SigilTest;
using Context = Sigil::MessageContext;

Context::CompositionFacts Facts() {
  return {ID(1), Signer().Chain[0].Thumbprint(), {ID(4), ID(5)}};
}

std::string Check(const Sigil::KeyMessage& message, const Context& context) {
  return Lines(Sigil::CheckKeyMessage(message, context));
}

std::string Check(const Context& context) {
  return Check(ReadMessage(SoundMessage()), context);
}

TEST(KeyMessageCheck, ASoundOneHasNoFindings) {
  Context context;
  context.From = Time(Begin);
  context.Until = Time(End);
  context.Composition = Facts();
  context.Recipient = Device()[0];
  context.Devices = {Device()[0].Thumbprint()};
  EXPECT_EQ(Check(context), "");
}

TEST(KeyMessageCheck, TheWindowCoversAllOfThePlaying) {
  Context context;
  context.From = Time("2026-03-02T07:59:59Z");
  EXPECT_EQ(Check(context), "E kdm-early: The key message is not valid before 2026-03-02T09:00:00+01:00.\n");
  context.From = Time("2026-03-02T08:00:00Z");
  EXPECT_EQ(Check(context), "");
  context.Until = Time("2026-03-09T22:59:59Z");
  EXPECT_EQ(Check(context), "");
  const std::string late = "E kdm-late: The key message is not valid after 2026-03-09T23:59:59+01:00.\n";
  context.Until = Time("2026-03-09T23:00:00Z");
  EXPECT_EQ(Check(context), late);
  context.From = Time("2026-03-09T23:00:00Z");
  context.Until.reset();
  EXPECT_EQ(Check(context), late);
}

TEST(KeyMessageCheck, TheCompositionAndItsKeysAreThoseOfTheMessage) {
  Context context;
  context.Composition = Facts();
  context.Composition->ID = ID(2);
  EXPECT_EQ(Check(context),
            "E kdm-composition: The key message is for another composition, 00000000-0000-4000-8000-000000000001.\n");
  context.Composition = Facts();
  context.Composition->KeyIDs = {ID(5)};
  EXPECT_EQ(Check(context), "");
  context.Composition->KeyIDs = {ID(5), ID(6)};
  EXPECT_EQ(Check(context), "E kdm-key-missing: The key message has no key 00000000-0000-4000-8000-000000000006.\n");
}

TEST(KeyMessageCheck, TheCompositionIsSignedByWhomTheMessageSays) {
  const std::string other = "E kdm-authenticator: The composition is not signed by whom the key message says.\n";
  Context context;
  context.Composition = Facts();
  context.Composition->SignerThumbprint = Device()[0].Thumbprint();
  EXPECT_EQ(Check(context), other);
  context.Composition->SignerThumbprint.reset();
  EXPECT_EQ(Check(context), other);
  Sigil::MessageRequest request = SoundRequest();
  request.ContentAuthenticator.reset();
  EXPECT_EQ(Check(ReadMessage(Made(request)), context), "");
}

TEST(KeyMessageCheck, TheRecipientIsTheOneOfTheMessage) {
  Context context;
  auto recipes = testsupport::DeviceRecipes();
  recipes[2].SerialNumber = "78";
  context.Recipient = Certificates(recipes)[0];
  const std::string message = Lines(Sigil::CheckKeyMessage(ReadMessage(SoundMessage()), context));
  EXPECT_TRUE(message.starts_with("E kdm-recipient: The key message is for another recipient, \"dnQualifier="))
      << message;
  recipes = testsupport::DeviceRecipes();
  recipes[2].SubjectPart("CN").Value = "SM.SERVER";
  context.Recipient = Certificates(recipes)[0];
  EXPECT_EQ(Check(context),
            "W kdm-recipient-name: The key message has another name for its recipient than the certificate.\n");
}

TEST(KeyMessageCheck, DevicesAreListedUnlessAnyIs) {
  const Sigil::SHA1 listed = Device()[0].Thumbprint();
  const Sigil::SHA1 other = Device()[1].Thumbprint();
  Context context;
  context.Devices = {listed, other};
  EXPECT_EQ(Check(context), "");
  Sigil::MessageRequest request = SoundRequest();
  request.Devices = {listed};
  EXPECT_EQ(Check(ReadMessage(Made(request)), context),
            "W kdm-device: The key message does not list the device " + other.EncodeBase64() + ".\n");
}

TEST(KeyMessageCheck, UnknownKeyTypesAreKeptAndTold) {
  const std::string scope = "scope=\"http://www.smpte-ra.org/430-1/2006/KDM#kdm-key-type\">MDIK";
  const auto noted = [](const std::string& type) {
    return "N kdm-key-type: The key 00000000-0000-4000-8000-000000000004 is of the unknown type \"" + type + "\".\n";
  };
  const auto message = ReadMessage(Resigned(Replaced(SoundMessage(), scope, "scope=\"urn:x\">XXXX")));
  EXPECT_EQ(message.Keys[0], (Sigil::KeyEntry{ID(4), "XXXX", "urn:x"}));
  EXPECT_EQ(Check(message, {}), noted("XXXX"));
  EXPECT_EQ(Check(ReadMessage(Resigned(Replaced(SoundMessage(), scope, "scope=\"urn:x\">MDIK"))), {}), noted("MDIK"));
  EXPECT_EQ(Check(ReadMessage(Resigned(Replaced(SoundMessage(), scope, ">FMIK"))), {}), "");
}

TEST(KeyMessageCheck, AnInvalidSignatureIsToldWithItsReason) {
  EXPECT_EQ(
      Check(ReadMessage(Replaced(SoundMessage(), "A &lt; B", "A &lt; D")), {}),
      "E kdm-signature: The key message's signature is invalid. The digest is not the document's: it was changed after "
      "it was signed.\n");
  const std::string signature = Part(SoundMessage(), "<ds:Signature ", "</ds:Signature>");
  EXPECT_EQ(Check(ReadMessage(Replaced(SoundMessage(), signature, "")), {}),
            "E kdm-signature: The key message is not signed.\n");
  EXPECT_EQ(Check(ReadMessage(Resigned(Replaced(SoundMessage(), "<IssueDate>2026", "<IssueDate>2036"))), {}),
            "E kdm-chain: The key message's signature is invalid. The certificate \"CS.SIGNER\" is not valid after "
            "2035-01-01T00:00:00+00:00.\n");
}

TEST(KeyMessageCheck, TheWindowLiesWithinTheSignersValidity) {
  Sigil::MessageRequest request = SoundRequest();
  request.NotAfter = Time("2035-01-01T00:00:00Z");
  EXPECT_EQ(Check(ReadMessage(Made(request)), {}), "");
  const std::string beyond =
      "W kdm-window-signer: The key message's window goes beyond the validity of its signer's certificate.\n";
  request.NotAfter = Time("2035-01-01T00:00:01Z");
  EXPECT_EQ(Check(ReadMessage(Made(request)), {}), beyond);
  request = SoundRequest();
  request.NotBefore = Time("2024-12-31T23:59:59Z");
  EXPECT_EQ(Check(ReadMessage(Made(request)), {}), beyond);
}

}  // namespace
