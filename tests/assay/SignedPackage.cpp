// SPDX-License-Identifier: BSD-3-Clause
#include "SignedPackage.h"

#include "Judges.h"

#include <cstdlib>

namespace testsupport {
namespace {

constexpr char KeyID[] = "0f0f0f0f-1111-4222-8333-0000000000d1";
constexpr char CompositionID[] = "0f0f0f0f-1111-4222-8333-000000000003";

Assay::UUID IDFrom(const char* text) {
  return Assay::UUID::FromHex(text).value();
}

}  // namespace

SignedPackage::SignedPackage() {
  for (const char* document : {"CPL.xml", "PKL.xml"}) Package.EditAll(document, "2024-03-01T", "2026-03-01T");
  Package.EditAll("CPL.xml", "<Hash>", std::string("<KeyId>urn:uuid:") + KeyID + "</KeyId>\n<Hash>");
  Package.Sign(Sign, Sign);
  Message(SoundRequest());
  Request.Now = SigilTest::Time("2026-03-03T12:00:00Z").UnixMilliseconds() / 1000;
  Request.Profile = Assay::Profile::All;
}

Sigil::MessageRequest SignedPackage::SoundRequest() {
  Sigil::MessageRequest request = SigilTest::SoundRequest();
  request.CompositionID = IDFrom(CompositionID);
  request.Keys.resize(1);
  request.Keys[0].Entry.ID = IDFrom(KeyID);
  return request;
}

std::string SignedPackage::Sign(const std::string& xml) {
  return SigilTest::Signed(xml);
}

SignedPackage& SignedPackage::SignComposition(const SamplePackage::Signing& sign) {
  Package.Sign(sign, Sign);
  return *this;
}

SignedPackage& SignedPackage::Message(const std::string& xml) {
  Messages.emplace();
  static_cast<void>(Messages->AddMessage("kdm.xml", xml));
  return *this;
}

Assay::CheckReport SignedPackage::Report() {
  const TemporaryFolder folder;
  Package.Write(folder.Folder().string());
  Request.Folders = {folder.Folder().string()};
  Request.Depths = {Assay::Depth::Documents};
  Request.Messages = &*Messages;
  Request.MessageProblems = Messages->Problems();
  Assay::CheckReport report;
  if (Check(Request, report).Failure()) std::abort();
  return report;
}

std::string SignedAnew(const std::string& xml) {
  using SigilTest::Part;
  using SigilTest::Replaced;
  const TemporaryFolder folder;
  std::string text = Replaced(xml, Part(xml, "<ds:DigestValue>", "</ds:DigestValue>"), "<ds:DigestValue/>");
  text = Replaced(text, Part(text, "<ds:SignatureValue>", "</ds:SignatureValue>"), "<ds:SignatureValue/>");
  return RunJudge(
      {"xmlsec1", "--sign", "--privkey-pem", folder.Write("key.pem", TestKeyPEM("leaf")), folder.Write("a.xml", text)});
}

}  // namespace testsupport
