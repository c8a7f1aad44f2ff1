// SPDX-License-Identifier: BSD-3-Clause
#include "InfoSecurity.h"

#include "keys/CertificateFile.h"
#include "keys/FrameIntegrity.h"
#include "keys/MessageReport.h"
#include "keys/Moment.h"
#include "keys/SecretFile.h"
#include "terminal/Interrupt.h"
#include "terminal/ProgressBar.h"

#include <Cairn/DocumentParser.h>
#include <Ferro/FileText.h>
#include <Sigil/CertificateChain.h>
#include <Sigil/DocumentSignature.h>

#include <string_view>
#include <utility>

namespace Tool {

namespace {

InfoFacts CertificateFacts(const Sigil::Certificate& certificate) {
  InfoFacts facts;
  facts.Set("subject", certificate.Subject().Text());
  if (certificate.IsSelfIssued())
    facts.Set("root", true);
  else
    facts.Set("issuer", certificate.Issuer().Text());
  facts.Set("serial_number", certificate.SerialNumber());
  facts.Set("not_before", certificate.NotBefore().EncodeString());
  facts.Set("not_after", certificate.NotAfter().EncodeString());
  facts.Set("thumbprint", certificate.Thumbprint().EncodeBase64());
  facts.Line = certificate.Subject().Text() +
               (certificate.IsSelfIssued() ? ", a root" : ", issued by " + NameOf(certificate.Issuer())) +
               ", valid from " + LocalText(certificate.NotBefore()) + " until " + LocalText(certificate.NotAfter()) +
               ", thumbprint " + certificate.Thumbprint().EncodeBase64();
  return facts;
}

InfoList FindingTexts(const Sigil::FindingList& findings) {
  InfoList list;
  for (const Sigil::Finding& finding : findings) {
    static constexpr const char* Names[] = {"error", "warning", "note"};
    InfoFacts facts;
    facts.Set("severity", Names[static_cast<size_t>(finding.Severity)]);
    facts.Set("id", Sigil::FindingName(finding.ID));
    facts.Set("message", finding.Text);
    list.emplace_back(std::move(facts));
  }
  return list;
}

void AddSignature(const Sigil::SignatureReport& report, InfoItem& item) {
  InfoFacts& facts = item.Facts.Group("signature");
  facts.Set("state", SignatureStateName(report.State));
  facts.Add("reason", report.Reason());
  InfoList chain;
  for (const Sigil::Certificate& certificate : report.Chain.Chain) chain.emplace_back(CertificateFacts(certificate));
  if (!chain.empty()) facts.Set("chain", std::move(chain));
  if (!report.Findings.empty()) facts.Set("findings", FindingTexts(report.Findings));
  if (report.State == Sigil::SignatureState::Invalid) item.AddProblem("Its signature is invalid. " + report.Reason());
}

void DescribeMessage(const std::string& xml, InfoItem& item) {
  Ferro::MemoryLogSink log;
  Sigil::KeyMessage message;
  if (const auto result = Sigil::KeyMessage::Read(xml, {Ferro::Timestamp(), {}}, message, log); result.Failure())
    return item.AddProblem(log.Entries().empty() ? std::string(result.Label()) : log.Entries().front().Message);
  item.Facts.Add("title", message.ContentTitle);
  item.Facts.Add("annotation", message.Annotation);
  item.Facts.Set("issue_date", message.IssueDate.EncodeString());
  item.Facts.Set("composition_id", message.CompositionID.EncodeString());
  item.Facts.Set("not_before", {message.NotBefore.EncodeString(), WrittenText(message.NotBefore)});
  item.Facts.Set("not_after", {message.NotAfter.EncodeString(), WrittenText(message.NotAfter)});
  item.Facts.Set("recipient", message.Recipient.SubjectName);
  item.Facts.Set("recipient_serial_number", message.Recipient.SerialNumber);
  item.Facts.Set("form", Sigil::FormulationName(message.Formulation()));
  InfoList& keys = item.Facts.List("keys");
  for (const Sigil::KeyEntry& key : message.Keys) {
    InfoFacts facts;
    facts.Add("type", key.Type);
    facts.Set("id", key.ID.EncodeString());
    keys.emplace_back(std::move(facts));
  }
  AddSignature(message.Signature, item);
}

}  // namespace

void DescribeSignature(const std::string& path, Cairn::FileType_t type, InfoItem& item) {
  if (type != Cairn::FT_CPL && type != Cairn::FT_PKL && type != Cairn::FT_KDM) return;
  std::string xml;
  if (Ferro::ReadFileIntoString(path, xml, Cairn::DocumentParser::MaxDocumentSize).Failure())
    return;  // told of already
  if (type == Cairn::FT_KDM) return DescribeMessage(xml, item);
  Sigil::SignatureReport report;
  const Sigil::SignatureContext context{Ferro::Timestamp(), {}};
  if (Sigil::VerifySignature(xml, context, report, Ferro::DefaultLogSink()).Success()) AddSignature(report, item);
}

bool DescribeCertificates(const std::string& path, InfoItem& item) {
  Sigil::SecretBytes secrets;  // it may be a private key
  if (ReadSecrets(path, secrets).Failure()) return false;
  const std::string_view bytes(reinterpret_cast<const char*>(secrets.Bytes().data()), secrets.Size());
  const bool has_key = bytes.find("-----BEGIN") != bytes.npos && bytes.find("PRIVATE") != bytes.npos;
  Sigil::CertificateList certificates;
  if (Sigil::ReadCertificates(bytes, certificates, Ferro::DefaultLogSink()).Failure()) {
    if (has_key) item.Kind = "private key";
    return has_key;
  }
  item.Kind = certificates.size() == 1 ? "certificate" : "certificates";
  InfoList list;
  for (const Sigil::Certificate& certificate : certificates) list.emplace_back(CertificateFacts(certificate));
  item.Facts.Set("certificates", std::move(list));
  if (has_key) item.Facts.Set("private_key", true);
  return true;
}

void DescribeIntegrity(const std::string& path, Cairn::FileType_t type, const Sigil::KeyRing& keys, InfoItem& item) {
  if (keys.Size() == 0) return;
  ProgressBar bar("Verifying frames", ProgressUnit::Frames);
  const auto outcomes = VerifyFrames({{path, type}}, keys, [&](Ferro::ui64_t done, Ferro::ui64_t total) {
    bar.Update(done, total);
    return !Interrupt::Requested();
  });
  const FrameIntegrity& integrity = outcomes.front();
  if (integrity.IsEncrypted && !integrity.HasKey)
    item.AddProblem("Its key is not among those at hand: it was not verified.");
  if (!integrity.WasVerified()) return;
  item.Facts.Set("verified_frames", integrity.Frames);
  if (integrity.Bad > 0)
    item.AddProblem(std::to_string(integrity.Bad) +
                    (integrity.Bad == 1 ? " frame is not as it was written: edit unit "
                                        : " frames are not as they were written, the first of them edit unit ") +
                    std::to_string(integrity.FirstBad) + ": " + integrity.Reason);
  if (!integrity.HasStandardSequence)
    item.AddProblem("The frames of the two eyes are numbered by another rule than the standard's.");
}

}  // namespace Tool
