// SPDX-License-Identifier: BSD-3-Clause
#include "signature/KeyInfo.h"

#include "base/Quoted.h"
#include "signature/SignatureForm.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

#include <optional>
#include <vector>

namespace Sigil {
namespace {

using xercesc::DOMElement;

constexpr size_t MaxCertificateCount = 20;
constexpr size_t MaxCertificateBytes = 65'536;  // of all together

/// Reads the X509Data elements one after another.
class KeyInfoReader {
 public:
  KeyInfoReader(CertificateList& out, FindingList& findings, Ferro::ILogSink& log)
      : m_Out(out), m_Findings(findings), m_Log(log) {}

  std::string Read(const DOMElement* key_info) {
    for (const DOMElement* child = Cairn::FirstChildElement(key_info); child != nullptr;
         child = Cairn::NextSiblingElement(child)) {
      const std::string name = Cairn::LocalName(child);
      if (Cairn::NamespaceName(child) != Cairn::NS_XMLDSig || (name != "X509Data" && name != "KeyValue"))
        return "The signature's KeyInfo has an element " + Quoted(name) + ", which is not followed.";
      if (name != "X509Data") continue;
      if (std::string reason = ReadData(child); !reason.empty()) return reason;
    }
    return m_Out.empty() ? "The signature has no certificate." : std::string();
  }

 private:
  std::string ReadData(const DOMElement* data) {
    std::optional<IssuerSerial> named;
    for (const DOMElement* child = Cairn::FirstChildElement(data); child != nullptr;
         child = Cairn::NextSiblingElement(child)) {
      const std::string name = Cairn::LocalName(child);
      if (Cairn::NamespaceName(child) != Cairn::NS_XMLDSig) continue;
      if (name == "X509CRL") return "The signature has a list of revoked certificates, which is not followed.";
      if (name == "X509IssuerSerial") named = ReadIssuerSerial(child);
      if (name != "X509Certificate") continue;
      if (std::string reason = ReadCertificate(child); !reason.empty()) return reason;
      if (named && !named->Names(m_Out.back()))
        m_Findings.push_back({FindingID::SignKeyInfo, Severity::Warning,
                              "The signature has a certificate under another issuer or serial number."});
      named.reset();
    }
    return {};
  }

  std::string ReadCertificate(const DOMElement* element) {
    if (m_Out.size() == MaxCertificateCount) return "The signature has more than 20 certificates.";
    std::vector<ui8_t> der;
    std::optional<Certificate> certificate;
    if (!Ferro::base64decode(Cairn::TextContent(element), der))
      return "The signature has a certificate that is not Base64.";
    m_Bytes += der.size();
    if (m_Bytes > MaxCertificateBytes) return "The signature has more than 65536 bytes of certificates.";
    if (Certificate::FromDER(der, certificate, m_Log).Failure())
      return "The signature has a certificate that cannot be read.";
    m_Out.push_back(*certificate);
    return {};
  }

  CertificateList& m_Out;
  FindingList& m_Findings;
  Ferro::ILogSink& m_Log;
  size_t m_Bytes = 0;
};

std::string WithoutLeadingZeros(const std::string& number) {
  const size_t first = number.find_first_not_of('0');
  return first == std::string::npos ? std::string(number.empty() ? "" : "0") : number.substr(first);
}

}  // namespace

std::string ReadKeyInfo(const DOMElement* key_info, CertificateList& out, FindingList& findings, Ferro::ILogSink& log) {
  return KeyInfoReader(out, findings, log).Read(key_info);
}

bool IssuerSerial::Names(const Certificate& certificate) const {
  const auto name = DistinguishedName::FromText(IssuerName);
  return name && *name == certificate.Issuer() &&
         WithoutLeadingZeros(SerialNumber) == WithoutLeadingZeros(certificate.SerialNumber());
}

IssuerSerial ReadIssuerSerial(const DOMElement* parent) {
  return {Cairn::TrimmedText(Cairn::FirstChildNamed(parent, "X509IssuerName")),
          Cairn::TrimmedText(Cairn::FirstChildNamed(parent, "X509SerialNumber"))};
}

}  // namespace Sigil
