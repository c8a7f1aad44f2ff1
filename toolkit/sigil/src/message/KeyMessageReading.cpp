// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/KeyMessage.h>

#include "base/Quoted.h"
#include "message/MessageVocabulary.h"
#include "signature/SignatureForm.h"
#include "signature/SignatureVerification.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <set>

namespace Sigil {
namespace {

using std::string;
using xercesc::DOMElement;

/// Thrown to stop reading: why the document is refused.
struct Refusal {
  string Reason;
};

[[noreturn]] void Refuse(string reason) {
  throw Refusal{std::move(reason)};
}

const DOMElement* NextNamed(const DOMElement* element, std::string_view space, std::string_view name) {
  while (element != nullptr && (Cairn::LocalName(element) != name || Cairn::NamespaceName(element) != space))
    element = Cairn::NextSiblingElement(element);
  return element;
}

/// Null when there is none; two are refused.
const DOMElement* Optional(const DOMElement* parent, std::string_view space, std::string_view name) {
  const DOMElement* found = NextNamed(Cairn::FirstChildElement(parent), space, name);
  if (found != nullptr && NextNamed(Cairn::NextSiblingElement(found), space, name) != nullptr)
    Refuse("it has more than one " + string(name));
  return found;
}

const DOMElement* Required(const DOMElement* parent, std::string_view space, std::string_view name) {
  const DOMElement* found = Optional(parent, space, name);
  if (found == nullptr) Refuse("it has no " + string(name));
  return found;
}

UUID ReadID(const DOMElement* element) {
  const auto id = UUID::FromURN(Cairn::TrimmedText(element));
  if (!id) Refuse(Cairn::LocalName(element) + " is " + Quoted(Cairn::TrimmedText(element)) + ", not a UUID");
  return *id;
}

/// A time without offset would be another moment in each cinema.
Timestamp ReadTime(const DOMElement* element) {
  const string text = Cairn::TrimmedText(element);
  const bool has_offset = text.ends_with('Z') || (text.size() > 19 && text.find_first_of("+-", 19) != string::npos);
  Timestamp time;
  if (!has_offset || !time.DecodeString(text))
    Refuse(Cairn::LocalName(element) + " is " + Quoted(text) + ", not a time with its offset");
  return time;
}

SHA1 ReadThumbprint(const DOMElement* element) {
  SHA1 thumbprint;
  if (!thumbprint.DecodeBase64(Cairn::TrimmedText(element)))
    Refuse(Cairn::LocalName(element) + " is " + Quoted(Cairn::TrimmedText(element)) + ", not a thumbprint");
  return thumbprint;
}

string Attribute(const DOMElement* element, const XMLCh* name) {
  return Cairn::XMLChToUTF8(element->getAttributeNS(nullptr, name));
}

/// Reads the parts of a message one after another.
class MessageReader {
 public:
  explicit MessageReader(KeyMessage& message) : m_Message(message) {}

  void Read(const DOMElement* root) {
    const DOMElement* open = Required(root, NS_KeyMessage, "AuthenticatedPublic");
    m_Message.ID = ReadID(Required(open, NS_KeyMessage, "MessageId"));
    if (Cairn::TrimmedText(Required(open, NS_KeyMessage, "MessageType")) != MessageType)
      Refuse("its type is not that of key messages");
    m_Message.Annotation = Cairn::TrimmedText(Optional(open, NS_KeyMessage, "AnnotationText"));
    m_Message.IssueDate = ReadTime(Required(open, NS_KeyMessage, "IssueDate"));
    const DOMElement* extensions = Required(open, NS_KeyMessage, "RequiredExtensions");
    const DOMElement* keys = Required(extensions, NS_KeyExtensions, "KDMRequiredExtensions");
    ReadRecipient(Required(keys, NS_KeyExtensions, "Recipient"));
    ReadContent(keys);
    ReadDevices(Required(keys, NS_KeyExtensions, "AuthorizedDeviceInfo"));
    ReadKeys(Required(keys, NS_KeyExtensions, "KeyIdList"));
    ReadFlags(Optional(keys, NS_KeyExtensions, "ForensicMarkFlagList"));
    ReadEncryptedKeys(Required(root, NS_KeyMessage, "AuthenticatedPrivate"));
  }

 private:
  void ReadRecipient(const DOMElement* recipient) {
    const IssuerSerial named = ReadIssuerSerial(Required(recipient, Cairn::NS_XMLDSig, "X509IssuerSerial"));
    if (named.IssuerName.empty() || named.SerialNumber.empty()) Refuse("it does not name its recipient");
    m_Message.Recipient = {named.IssuerName, named.SerialNumber,
                           Cairn::TrimmedText(Required(recipient, Cairn::NS_XMLDSig, "X509SubjectName"))};
  }

  void ReadContent(const DOMElement* keys) {
    m_Message.CompositionID = ReadID(Required(keys, NS_KeyExtensions, "CompositionPlaylistId"));
    m_Message.ContentTitle = Cairn::TrimmedText(Required(keys, NS_KeyExtensions, "ContentTitleText"));
    if (const auto* authenticator = Optional(keys, NS_KeyExtensions, "ContentAuthenticator"))
      m_Message.ContentAuthenticator = ReadThumbprint(authenticator);
    m_Message.NotBefore = ReadTime(Required(keys, NS_KeyExtensions, "ContentKeysNotValidBefore"));
    m_Message.NotAfter = ReadTime(Required(keys, NS_KeyExtensions, "ContentKeysNotValidAfter"));
    if (m_Message.NotAfter < m_Message.NotBefore) Refuse("its window ends before it begins");
  }

  void ReadDevices(const DOMElement* info) {
    m_Message.DeviceListID = Cairn::TrimmedText(Required(info, NS_KeyExtensions, "DeviceListIdentifier"));
    m_Message.DeviceListDescription = Cairn::TrimmedText(Optional(info, NS_KeyExtensions, "DeviceListDescription"));
    const DOMElement* list = Required(info, NS_KeyExtensions, "DeviceList");
    for (const DOMElement* device = Cairn::FirstChildElement(list); device != nullptr;
         device = Cairn::NextSiblingElement(device)) {
      if (NextNamed(device, NS_KeyExtensions, "CertificateThumbprint") != device)
        Refuse("its device list has an element " + Quoted(Cairn::LocalName(device)));
      m_Message.Devices.push_back(ReadThumbprint(device));
    }
    if (m_Message.Devices.empty()) Refuse("its device list is empty");
  }

  void AddKey(const DOMElement* id, const string& type, const string& scope) {
    m_Message.Keys.push_back({ReadID(id), type, scope});
    if (!m_KnownKeys.insert(m_Message.Keys.back().ID).second)
      Refuse("it has the key " + m_Message.Keys.back().ID.EncodeString() + " twice");
  }

  // Without key types the identifiers stand in the list itself.
  void ReadKeys(const DOMElement* list) {
    for (const DOMElement* entry = Cairn::FirstChildElement(list); entry != nullptr;
         entry = Cairn::NextSiblingElement(entry)) {
      if (NextNamed(entry, NS_KeyExtensions, "KeyId") == entry) {
        AddKey(entry, {}, {});
      } else if (NextNamed(entry, NS_KeyExtensions, "TypedKeyId") == entry) {
        ReadTypedKeys(entry);
      } else {
        Refuse("its key list has an element " + Quoted(Cairn::LocalName(entry)));
      }
    }
    if (m_Message.Keys.empty()) Refuse("its key list is empty");
  }

  void ReadTypedKeys(const DOMElement* entry) {
    const DOMElement* type = Required(entry, NS_KeyExtensions, "KeyType");
    string scope = Attribute(type, u"scope");
    if (scope == KeyTypeScope) scope.clear();
    const DOMElement* id = NextNamed(Cairn::FirstChildElement(entry), NS_KeyExtensions, "KeyId");
    if (id == nullptr) Refuse("it has a key type without keys");
    for (; id != nullptr; id = NextNamed(Cairn::NextSiblingElement(id), NS_KeyExtensions, "KeyId"))
      AddKey(id, Cairn::TrimmedText(type), scope);
  }

  void ReadFlags(const DOMElement* list) {
    for (const DOMElement* flag = Cairn::FirstChildElement(list); flag != nullptr;
         flag = Cairn::NextSiblingElement(flag))
      m_Message.ForensicMarkFlags.push_back(Cairn::TrimmedText(flag));
  }

  void ReadEncryptedKeys(const DOMElement* hidden) {
    for (const DOMElement* key = Cairn::FirstChildElement(hidden); key != nullptr;
         key = Cairn::NextSiblingElement(key)) {
      if (NextNamed(key, NS_Encryption, "EncryptedKey") != key)
        Refuse("it has " + Quoted(Cairn::LocalName(key)) + " among its encrypted keys");
      ReadEncryptedKey(key);
    }
    if (m_Message.EncryptedKeys.size() != m_Message.Keys.size())
      Refuse("it lists " + std::to_string(m_Message.Keys.size()) + " keys and has " +
             std::to_string(m_Message.EncryptedKeys.size()));
  }

  void ReadEncryptedKey(const DOMElement* key) {
    const DOMElement* method = Required(key, NS_Encryption, "EncryptionMethod");
    const DOMElement* digest = Optional(method, Cairn::NS_XMLDSig, "DigestMethod");  // SHA-1 by default
    if (Attribute(method, u"Algorithm") != RSA_OAEP ||
        (digest != nullptr && Attribute(digest, u"Algorithm") != DigestOfOAEP) ||
        !Cairn::TextContent(Optional(method, NS_Encryption, "OAEPparams")).empty())
      Refuse("its keys are not encrypted by RSA-OAEP with SHA-1");
    const DOMElement* data = Required(key, NS_Encryption, "CipherData");
    std::vector<ui8_t> bytes;
    if (!Ferro::base64decode(Cairn::TextContent(Required(data, NS_Encryption, "CipherValue")), bytes) ||
        bytes.size() != EncryptedKeySize)
      Refuse("it has an encrypted key that is not Base64 of 256 bytes");
    m_Message.EncryptedKeys.push_back(std::move(bytes));
  }

  KeyMessage& m_Message;
  std::set<UUID> m_KnownKeys;
};

Result_t ReadParsed(const SignedDocument& document, const SignatureContext& context, KeyMessage& out,
                    Ferro::ILogSink& log) {
  KeyMessage message;
  try {
    if (document.Kind() != DocumentKind::KeyMessage) Refuse("it is a document of another kind");
    MessageReader(message).Read(document.Root());
  } catch (const Refusal& refusal) {
    log.Error("Key message refused: %s\n", refusal.Reason.c_str());
    return RESULT_SG_MESSAGE;
  }
  message.Signature = VerifyParsed(document, context, log);
  out = std::move(message);
  return Ferro::RESULT_OK;
}

}  // namespace

Result_t KeyMessage::Read(const std::string& xml, const SignatureContext& context, KeyMessage& out,
                          Ferro::ILogSink& log) {
  if (xml.size() > MaxSize) {
    log.Error("Key message refused: it has more than %zu bytes\n", MaxSize);
    return Ferro::RESULT_TOOLARGE;
  }
  try {
    SignedDocument document;
    if (const Result_t result = document.Parse(xml, log); result.Failure()) return result;
    return ReadParsed(document, context, out, log);
  } catch (...) {
    return Cairn::LogXMLException(log);
  }
}

}  // namespace Sigil
