// SPDX-License-Identifier: BSD-3-Clause
#include "signature/SignatureWriting.h"

#include "base/OpenSSLPointer.h"
#include "key/PrivateKeyState.h"
#include "signature/SignatureForm.h"
#include "signature/XMLSignature.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/dom/DOMText.hpp>

#include <string_view>
#include <vector>

namespace Sigil {
namespace {

using std::string;
using xercesc::DOMElement;

constexpr std::string_view EmptyDigest = "<ds:DigestValue></ds:DigestValue>";
constexpr std::string_view EmptyValue = "<ds:SignatureValue></ds:SignatureValue>";
constexpr std::string_view SignatureStart = "<ds:Signature xmlns:ds=";

string ReferenceElement(const string& uri, bool uses_sha1) {
  string text = "<ds:Reference URI=\"" + uri + "\">";
  if (uri.empty())
    text +=
        "<ds:Transforms><ds:Transform Algorithm=\"http://www.w3.org/2000/09/xmldsig#enveloped-signature\"/>"
        "</ds:Transforms>";
  text += string("<ds:DigestMethod Algorithm=\"") +
          (uses_sha1 ? "http://www.w3.org/2000/09/xmldsig#sha1" : "http://www.w3.org/2001/04/xmlenc#sha256") + "\"/>";
  return text + string(EmptyDigest) + "</ds:Reference>";
}

void Insert(string& xml, size_t& at, std::string_view empty, const string& value) {
  at = xml.find(empty, at) + empty.find("></") + 1;
  xml.insert(at, value);
}

/// Base64 in lines of 64 characters.
string Lines(std::span<const ui8_t> bytes) {
  const string base64 = Ferro::base64encode(bytes);
  string lines;
  for (size_t i = 0; i < base64.size(); i += 64) lines += base64.substr(i, 64) + '\n';
  return lines;
}

/// Empty when the key does not sign.
std::vector<ui8_t> SignatureOf(std::span<const ui8_t> bytes, const PrivateKey& key, bool uses_sha1) {
  const std::unique_ptr<EVP_MD_CTX, FreeWith<EVP_MD_CTX_free>> context(EVP_MD_CTX_new());
  std::vector<ui8_t> value(static_cast<size_t>(EVP_PKEY_get_size(PrivateKeyState::KeyOf(key))));
  size_t length = value.size();
  const EVP_MD* digest = uses_sha1 ? EVP_sha1() : EVP_sha256();
  const bool is_signed =
      EVP_DigestSignInit(context.get(), nullptr, digest, nullptr, PrivateKeyState::KeyOf(key)) == 1 &&
      EVP_DigestSign(context.get(), value.data(), &length, bytes.data(), bytes.size()) == 1;
  value.resize(is_signed ? length : 0);
  ERR_clear_error();
  return value;
}

/// The document's digest values, in the order of its references.
std::vector<DOMElement*> DigestValues(const SignedDocument& document) {
  std::vector<DOMElement*> values;
  const auto* found =
      document.Document()->getElementsByTagNameNS(u"http://www.w3.org/2000/09/xmldsig#", u"DigestValue");
  for (XMLSize_t i = 0; i < found->getLength(); ++i) values.push_back(static_cast<DOMElement*>(found->item(i)));
  return values;
}

}  // namespace

string OrderSigner(const SignerIdentity& signer, const ChainContext& context, CertificateList& chain) {
  SignatureReport report;
  report.Chain = CheckChain(signer.Chain, context);
  report.Findings = report.Chain.Findings;
  if (!report.Chain.Holds()) return report.Reason();
  if (!signer.Key.Matches(report.Chain.Chain.front())) return "the private key is not that of the chain's leaf";
  chain = std::move(report.Chain.Chain);
  return {};
}

string EscapeXML(const string& text) {
  string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else
      escaped += c;
  }
  return escaped;
}

string IssuerSerialElements(const Certificate& certificate) {
  return "<ds:X509IssuerName>" + EscapeXML(certificate.Issuer().Text()) + "</ds:X509IssuerName><ds:X509SerialNumber>" +
         certificate.SerialNumber() + "</ds:X509SerialNumber>";
}

string SignatureElement(const CertificateList& chain, std::initializer_list<string> uris, bool uses_sha1_method,
                        bool uses_sha1_digest) {
  string text = string(SignatureStart) + '"' + Cairn::NS_XMLDSig + "\"><ds:SignedInfo>";
  text += "<ds:CanonicalizationMethod Algorithm=\"http://www.w3.org/TR/2001/REC-xml-c14n-20010315\"/>";
  text += string("<ds:SignatureMethod Algorithm=\"") +
          (uses_sha1_method ? "http://www.w3.org/2000/09/xmldsig#rsa-sha1"
                            : "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256") +
          "\"/>";
  for (const string& uri : uris) text += ReferenceElement(uri, uses_sha1_digest);
  text += "</ds:SignedInfo>" + string(EmptyValue) + "<ds:KeyInfo>";
  for (const Certificate& certificate : chain)
    text += "<ds:X509Data><ds:X509IssuerSerial>" + IssuerSerialElements(certificate) +
            "</ds:X509IssuerSerial><ds:X509Certificate>" + Lines(certificate.DER()) +
            "</ds:X509Certificate></ds:X509Data>";
  return text + "</ds:KeyInfo></ds:Signature>";
}

bool FillSignature(string& xml, const PrivateKey& key, bool uses_sha1_method, Ferro::ILogSink& log) {
  SignedDocument document;
  if (document.Parse(xml, log).Failure()) return false;
  SignatureForm form;
  FindingList findings;
  ReadSignatureForm(document, form, findings, log);
  if (form.Signature == nullptr || HasErrors(findings)) return false;
  form.Signature->removeChild(form.KeyInfo);
  XMLSignature signature(document, form.Signature);
  const auto digests = signature.ComputeDigests();
  const auto elements = DigestValues(document);
  size_t at = xml.rfind(SignatureStart);
  if (at == string::npos || elements.size() != digests.size()) return false;
  for (size_t i = 0; i < digests.size(); ++i) {
    const string value = Ferro::base64encode(digests[i]);
    elements[i]->appendChild(document.Document()->createTextNode(std::u16string(value.begin(), value.end()).c_str()));
    Insert(xml, at, EmptyDigest, value);
  }
  const std::vector<ui8_t> value = SignatureOf(signature.SignedInfo(), key, uses_sha1_method);
  Insert(xml, at, EmptyValue, Lines(value));
  return !value.empty();
}

}  // namespace Sigil
