// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/KeyMessage.h>

#include "base/Quoted.h"
#include "message/MessageVocabulary.h"
#include "signature/SignatureForm.h"

#include <Ferro/SHA1Digest.h>

#include <algorithm>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;

/// True for the rules of certificates, which come first among the rules.
bool IsOfChain(FindingID id) {
  return id <= CertSignerCA;
}

class MessageCheck {
 public:
  MessageCheck(const KeyMessage& message, FindingList& findings) : m_Message(message), m_Findings(findings) {}

  void Signature() {
    const SignatureReport& report = m_Message.Signature;
    if (report.State == SignatureState::NotSigned) Say(KdmSignature, Error, "The key message is not signed.");
    if (report.State != SignatureState::Valid) {
      const auto first = std::ranges::find(report.Findings, Error, &Finding::Severity);
      if (first != report.Findings.end())
        Say(IsOfChain(first->ID) ? KdmChain : KdmSignature, Error,
            "The key message's signature is invalid. " + first->Text);
      return;
    }
    const Certificate& leaf = report.Chain.Chain.front();
    if (m_Message.NotBefore < leaf.NotBefore() || m_Message.NotAfter > leaf.NotAfter())
      Say(KdmWindowSigner, Warning, "The key message's window goes beyond the validity of its signer's certificate.");
  }

  void Window(const std::optional<Timestamp>& from, const std::optional<Timestamp>& until) {
    if (from && *from < m_Message.NotBefore)
      Say(KdmEarly, Error, "The key message is not valid before " + m_Message.NotBefore.EncodeString() + '.');
    const std::optional<Timestamp>& end = until ? until : from;
    if (end && *end > m_Message.NotAfter)
      Say(KdmLate, Error, "The key message is not valid after " + m_Message.NotAfter.EncodeString() + '.');
  }

  void Composition(const MessageContext::CompositionFacts& facts) {
    if (facts.ID != m_Message.CompositionID) {
      Say(KdmComposition, Error,
          "The key message is for another composition, " + m_Message.CompositionID.EncodeString() + '.');
      return;
    }
    if (m_Message.ContentAuthenticator && m_Message.ContentAuthenticator != facts.SignerThumbprint)
      Say(KdmAuthenticator, Error, "The composition is not signed by whom the key message says.");
    for (const UUID& id : facts.KeyIDs)
      if (std::ranges::find(m_Message.Keys, id, &KeyEntry::ID) == m_Message.Keys.end())
        Say(KdmKeyMissing, Error, "The key message has no key " + id.EncodeString() + '.');
  }

  void Recipient(const Certificate& certificate) {
    if (!IssuerSerial{m_Message.Recipient.IssuerName, m_Message.Recipient.SerialNumber}.Names(certificate)) {
      Say(KdmRecipient, Error,
          "The key message is for another recipient, " + Quoted(m_Message.Recipient.SubjectName) + '.');
      return;
    }
    const auto name = DistinguishedName::FromText(m_Message.Recipient.SubjectName);
    if (!name || *name != certificate.Subject())
      Say(KdmRecipientName, Warning, "The key message has another name for its recipient than the certificate.");
  }

  void Devices(const std::vector<SHA1>& devices) {
    if (m_Message.IsForAnyDevice()) return;
    for (const SHA1& device : devices)
      if (std::ranges::find(m_Message.Devices, device) == m_Message.Devices.end())
        Say(KdmDevice, Warning, "The key message does not list the device " + device.EncodeBase64() + '.');
  }

  void KeyTypes() {
    for (const KeyEntry& key : m_Message.Keys) {
      if (key.Type.empty()) continue;
      const bool is_known = key.Scope.empty() && std::ranges::find(Sigil::KeyTypes, key.Type) != Sigil::KeyTypes.end();
      if (!is_known)
        Say(KdmKeyType, Note, "The key " + key.ID.EncodeString() + " is of the unknown type " + Quoted(key.Type) + '.');
    }
  }

 private:
  void Say(FindingID id, Severity severity, std::string text) { m_Findings.push_back({id, severity, std::move(text)}); }

  const KeyMessage& m_Message;
  FindingList& m_Findings;
};

}  // namespace

const char* FormulationName(Sigil::Formulation formulation) {
  static constexpr const char* s_Names[] = {"recipient alone", "any device", "named devices",
                                            "any device, authenticated", "named devices, authenticated"};
  return s_Names[static_cast<size_t>(formulation)];
}

const SHA1& AnyTrustedDevice() {
  static const SHA1 s_Digest = Ferro::DigestText("");
  return s_Digest;
}

bool KeyMessage::IsForAnyDevice() const {
  return std::ranges::find(Devices, AnyTrustedDevice()) != Devices.end();
}

Sigil::Formulation KeyMessage::Formulation() const {
  using enum Sigil::Formulation;
  if (ContentAuthenticator) return IsForAnyDevice() ? AuthenticatedAnyDevice : AuthenticatedNamedDevices;
  if (IsForAnyDevice()) return AnyDevice;
  return Devices.size() == 1 ? RecipientAlone : NamedDevices;
}

FindingList CheckKeyMessage(const KeyMessage& message, const MessageContext& context) {
  FindingList findings;
  MessageCheck check(message, findings);
  check.Signature();
  check.Window(context.From, context.Until);
  if (context.Composition) check.Composition(*context.Composition);
  if (context.Recipient) check.Recipient(*context.Recipient);
  check.Devices(context.Devices);
  check.KeyTypes();
  return findings;
}

}  // namespace Sigil
