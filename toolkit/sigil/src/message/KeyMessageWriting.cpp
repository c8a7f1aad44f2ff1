// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/ContentKeys.h>

#include "base/OpenSSLPointer.h"
#include "certificate/CertificateState.h"
#include "message/MessageVocabulary.h"
#include "message/PlainKey.h"
#include "signature/SignatureVerification.h"
#include "signature/SignatureWriting.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

#include <openssl/rsa.h>

#include <algorithm>
#include <set>

namespace Sigil {
namespace {

using std::string;

/// Empty, or what is wrong with a request.
string Problem(const MessageRequest& request) {
  if (!request.Recipient) return "it has no recipient";
  const EVP_PKEY* key = X509_get0_pubkey(CertificateState::X509Of(*request.Recipient));
  if (key == nullptr || EVP_PKEY_get_base_id(key) != EVP_PKEY_RSA || EVP_PKEY_get_bits(key) != 2048)
    return "its recipient's key is not RSA of 2048 bits";
  if (!request.CompositionID.HasValue()) return "it has no composition";
  if (request.NotAfter < request.NotBefore) return "its window ends before it begins";
  if (request.Keys.empty()) return "it has no keys";
  std::set<UUID> ids;
  for (const ContentKey& entry : request.Keys) {
    if (!entry.Entry.ID.HasValue() || !ids.insert(entry.Entry.ID).second)
      return "a key identifier is missing or there twice";
    if (entry.Key.Size() != ContentKeys::KeySize) return "a key is not of 16 bytes";
    if (std::ranges::find(KeyTypes, entry.Entry.Type) == KeyTypes.end()) return "a key's type is not known";
  }
  return {};
}

/// Without fractions of seconds, for which plaintexts have no room.
Timestamp WholeSeconds(const Timestamp& time) {
  const i64_t milliseconds = time.UnixMilliseconds();
  const i64_t fraction = (milliseconds % 1000 + 1000) % 1000;
  return Timestamp(milliseconds - fraction, time.OffsetMinutes());
}

string Element(const char* name, const string& text) {
  return string("<") + name + '>' + EscapeXML(text) + "</" + name + '>';
}

string OptionalElement(const char* name, const string& text) {
  return text.empty() ? string() : Element(name, text);
}

string IDOrNew(const UUID& id) {
  return (id.HasValue() ? id : UUID::Random()).EncodeURN();
}

string DeviceInfo(const MessageRequest& request) {
  string text = "<AuthorizedDeviceInfo>" + Element("DeviceListIdentifier", IDOrNew(request.DeviceListID)) +
                OptionalElement("DeviceListDescription", request.DeviceListDescription) + "<DeviceList>";
  for (const SHA1& device : request.Devices) text += Element("CertificateThumbprint", device.EncodeBase64());
  if (request.Devices.empty()) text += Element("CertificateThumbprint", AnyTrustedDevice().EncodeBase64());
  return text + "</DeviceList></AuthorizedDeviceInfo>";
}

string KeyList(const MessageRequest& request) {
  string text = "<KeyIdList>";
  for (const ContentKey& key : request.Keys)
    text += string("<TypedKeyId><KeyType scope=\"") + KeyTypeScope + "\">" + key.Entry.Type + "</KeyType>" +
            Element("KeyId", key.Entry.ID.EncodeURN()) + "</TypedKeyId>";
  return text + "</KeyIdList>";
}

string Extensions(const MessageRequest& request, const PlainKey& window) {
  string text = string("<KDMRequiredExtensions xmlns=\"") + NS_KeyExtensions + "\"><Recipient><ds:X509IssuerSerial>" +
                IssuerSerialElements(*request.Recipient) + "</ds:X509IssuerSerial>" +
                Element("ds:X509SubjectName", request.Recipient->Subject().Text()) + "</Recipient>" +
                Element("CompositionPlaylistId", request.CompositionID.EncodeURN()) +
                Element("ContentTitleText", request.ContentTitle);
  if (request.ContentAuthenticator)
    text += Element("ContentAuthenticator", request.ContentAuthenticator->EncodeBase64());
  text += Element("ContentKeysNotValidBefore", window.NotBefore.EncodeString()) +
          Element("ContentKeysNotValidAfter", window.NotAfter.EncodeString()) + DeviceInfo(request) + KeyList(request);
  if (!request.ForensicMarkFlags.empty()) {
    text += "<ForensicMarkFlagList>";
    for (const string& flag : request.ForensicMarkFlags) text += Element("ForensicMarkFlag", flag);
    text += "</ForensicMarkFlagList>";
  }
  return text + "</KDMRequiredExtensions>";
}

string PublicPart(const MessageRequest& request, const PlainKey& window, const Certificate& signer) {
  return string("<AuthenticatedPublic Id=\"") + ID_Public + "\">" + Element("MessageId", IDOrNew(request.MessageID)) +
         Element("MessageType", MessageType) + OptionalElement("AnnotationText", request.Annotation) +
         Element("IssueDate", WholeSeconds(request.IssueDate).EncodeString()) + "<Signer>" +
         IssuerSerialElements(signer) + "</Signer><RequiredExtensions>" + Extensions(request, window) +
         "</RequiredExtensions><NonCriticalExtensions/></AuthenticatedPublic>";
}

/// Empty when it fails.
std::vector<ui8_t> Encrypt(const SecretBytes& plain, const Certificate& recipient) {
  const KeyContextPointer context(EVP_PKEY_CTX_new(X509_get0_pubkey(CertificateState::X509Of(recipient)), nullptr));
  std::vector<ui8_t> encrypted(EncryptedKeySize);
  size_t size = encrypted.size();
  const bool is_encrypted =
      EVP_PKEY_encrypt_init(context.get()) == 1 &&
      EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_OAEP_PADDING) == 1 &&
      EVP_PKEY_CTX_set_rsa_oaep_md(context.get(), EVP_sha1()) == 1 &&
      EVP_PKEY_CTX_set_rsa_mgf1_md(context.get(), EVP_sha1()) == 1 &&
      EVP_PKEY_encrypt(context.get(), encrypted.data(), &size, plain.Bytes().data(), plain.Size()) == 1;
  encrypted.resize(is_encrypted ? size : 0);
  ERR_clear_error();
  return encrypted;
}

/// Empty when it fails.
string PrivatePart(const MessageRequest& request, PlainKey plain_key) {
  string text = string("<AuthenticatedPrivate Id=\"") + ID_Private + "\">";
  for (const ContentKey& key : request.Keys) {
    SecretBytes plain;
    if (!plain.Resize(PlainKey::TypedSize)) return {};
    plain_key.Entry = key.Entry;
    plain_key.Write(key.Key.Bytes(), plain.Bytes());
    const std::vector<ui8_t> encrypted = Encrypt(plain, *request.Recipient);
    if (encrypted.empty()) return {};
    text += string("<enc:EncryptedKey xmlns:enc=\"") + NS_Encryption + "\"><enc:EncryptionMethod Algorithm=\"" +
            RSA_OAEP + "\"><ds:DigestMethod Algorithm=\"" + DigestOfOAEP +
            "\"/></enc:EncryptionMethod><enc:CipherData><enc:CipherValue>" + Ferro::base64encode(encrypted) +
            "</enc:CipherValue></enc:CipherData></enc:EncryptedKey>";
  }
  return text + "</AuthenticatedPrivate>";
}

Result_t Refuse(Ferro::ILogSink& log, Result_t result, const string& reason) {
  log.Error("Key message not made: %s\n", reason.c_str());
  return result;
}

Result_t Make(const MessageRequest& request, const SignerIdentity& signer, string& xml, Ferro::ILogSink& log) {
  CertificateList chain;
  ChainContext context;
  context.At = request.IssueDate;
  context.Format = Cairn::DFT_DCI_SMPTE;
  if (string problem = Problem(request); !problem.empty()) return Refuse(log, Ferro::RESULT_PARAM, problem);
  if (string problem = OrderSigner(signer, context, chain); !problem.empty())
    return Refuse(log, RESULT_SG_SIGNER, problem);

  PlainKey plain_key;
  plain_key.Signer = chain.front().Thumbprint();
  plain_key.CompositionID = request.CompositionID;
  plain_key.NotBefore = WholeSeconds(request.NotBefore);
  plain_key.NotAfter = WholeSeconds(request.NotAfter);
  const string hidden = PrivatePart(request, plain_key);
  if (hidden.empty()) return Refuse(log, RESULT_SG_SIGN, "its keys could not be encrypted");
  string text = string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<DCinemaSecurityMessage xmlns=\"") + NS_KeyMessage +
                "\" xmlns:ds=\"" + Cairn::NS_XMLDSig + "\">" + PublicPart(request, plain_key, chain.front()) + hidden +
                SignatureElement(chain, {string("#") + ID_Public, string("#") + ID_Private}, false, false) +
                "</DCinemaSecurityMessage>\n";
  if (!FillSignature(text, signer.Key, false, log)) return Refuse(log, RESULT_SG_SIGN, "it could not be signed");
  KeyMessage message;
  const Result_t result = KeyMessage::Read(text, {}, message, log);
  if (result.Failure() || message.Signature.State != SignatureState::Valid)
    return Refuse(log, RESULT_SG_SIGN, "it cannot be read again");
  xml = std::move(text);
  return Ferro::RESULT_OK;
}

}  // namespace

Result_t MakeKeyMessage(const MessageRequest& request, const SignerIdentity& signer, std::string& xml,
                        Ferro::ILogSink& log) {
  try {
    return Make(request, signer, xml, log);
  } catch (...) {
    return Cairn::LogXMLException(log);
  }
}

}  // namespace Sigil
