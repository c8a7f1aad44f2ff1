// SPDX-License-Identifier: BSD-3-Clause
#include "MessageReport.h"

#include "CertificateFile.h"
#include "Moment.h"
#include "terminal/DisplayText.h"

namespace Tool {

namespace {

constexpr size_t LabelWidth = 24;

std::string Line(const std::string& label, const std::string& value) {
  return "  " + label + std::string(LabelWidth - 2 - label.size(), ' ') + DisplayText(value) + '\n';
}

std::string DevicesText(const Sigil::KeyMessage& message) {
  std::string text = Sigil::FormulationName(message.Formulation());
  if (message.IsForAnyDevice()) return text;
  text += ':';
  for (const Sigil::SHA1& device : message.Devices) text += ' ' + device.EncodeBase64();
  return text;
}

}  // namespace

const char* SignatureStateName(Sigil::SignatureState state) {
  switch (state) {
    case Sigil::SignatureState::NotSigned:
      return "not signed";
    case Sigil::SignatureState::Valid:
      return "valid";
    case Sigil::SignatureState::Invalid:
      return "invalid";
  }
  return "";
}

std::string SignatureText(const Sigil::SignatureReport& report) {
  std::string text = SignatureStateName(report.State);
  if (report.State == Sigil::SignatureState::Valid) text += ", by " + NameOf(report.Chain.Chain.front().Subject());
  if (report.State == Sigil::SignatureState::Invalid) text += ": " + report.Reason();
  return text;
}

std::string KeyListText(const Sigil::KeyMessage& message) {
  std::string text;
  for (const Sigil::KeyEntry& key : message.Keys)
    text += (text.empty() ? "" : ", ") + key.Type + (key.Type.empty() ? "" : " ") + key.ID.EncodeString();
  return text;
}

std::string MessageText(const Sigil::KeyMessage& message) {
  std::string text = Line("composition", message.ContentTitle + " (" + message.CompositionID.EncodeString() + ')');
  if (!message.Annotation.empty()) text += Line("annotation", message.Annotation);
  text += Line("valid", "from " + WrittenText(message.NotBefore) + " until " + WrittenText(message.NotAfter));
  text += Line("recipient", message.Recipient.SubjectName + ", serial number " + message.Recipient.SerialNumber);
  text += Line("devices", DevicesText(message));
  text += Line("issued", WrittenText(message.IssueDate));
  text += Line("signature", SignatureText(message.Signature));
  text += Line("keys", KeyListText(message));
  for (const std::string& flag : message.ForensicMarkFlags) text += Line("forensic marking", flag);
  return text;
}

Json MessageJson(const Sigil::KeyMessage& message) {
  Json json{{"id", message.ID.EncodeString()},
            {"composition_id", message.CompositionID.EncodeString()},
            {"title", message.ContentTitle}};
  AddUnlessEmpty(json, "annotation", message.Annotation);
  json["issue_date"] = message.IssueDate.EncodeString();
  json["not_before"] = message.NotBefore.EncodeString();
  json["not_after"] = message.NotAfter.EncodeString();
  json["recipient"] = Json{{"issuer", message.Recipient.IssuerName},
                           {"serial_number", message.Recipient.SerialNumber},
                           {"subject", message.Recipient.SubjectName}};
  json["form"] = Sigil::FormulationName(message.Formulation());
  json["devices"] = Json::Array();
  for (const Sigil::SHA1& device : message.Devices) json["devices"].push_back(device.EncodeBase64());
  if (message.ContentAuthenticator) json["content_authenticator"] = message.ContentAuthenticator->EncodeBase64();
  json["keys"] = Json::Array();
  for (const Sigil::KeyEntry& key : message.Keys) {
    Json& added = json["keys"].push_back(Json{{"id", key.ID.EncodeString()}});
    AddUnlessEmpty(added, "type", key.Type);
  }
  if (!message.ForensicMarkFlags.empty()) json["forensic_marking"] = message.ForensicMarkFlags;
  json["signature"] = SignatureStateName(message.Signature.State);
  if (message.Signature.State == Sigil::SignatureState::Valid)
    json["signer"] = message.Signature.Chain.Chain.front().Subject().Text();
  AddUnlessEmpty(json, "reason", message.Signature.Reason());
  return json;
}

}  // namespace Tool
