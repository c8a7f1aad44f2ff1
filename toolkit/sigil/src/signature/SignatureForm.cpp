// SPDX-License-Identifier: BSD-3-Clause
#include "signature/SignatureForm.h"

#include "base/Quoted.h"
#include "signature/KeyInfo.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <array>
#include <vector>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;
using xercesc::DOMElement;

constexpr std::array CanonicalForms = {
    std::string_view("http://www.w3.org/TR/2001/REC-xml-c14n-20010315"),
    std::string_view("http://www.w3.org/TR/2001/REC-xml-c14n-20010315#WithComments")};
constexpr std::string_view RSA_SHA1 = "http://www.w3.org/2000/09/xmldsig#rsa-sha1";
constexpr std::string_view RSA_SHA256 = "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256";
constexpr std::string_view DigestSHA1 = "http://www.w3.org/2000/09/xmldsig#sha1";
constexpr std::string_view DigestSHA256 = "http://www.w3.org/2001/04/xmlenc#sha256";
constexpr std::string_view Enveloped = "http://www.w3.org/2000/09/xmldsig#enveloped-signature";

/// Thrown to stop reading: what is wrong with the form.
struct Refusal {
  FindingID ID;
  std::string Text;
};

[[noreturn]] void Refuse(FindingID id, std::string text) {
  throw Refusal{id, std::move(text)};
}

std::string Attribute(const DOMElement* element, const XMLCh* name) {
  return Cairn::XMLChToUTF8(element->getAttributeNS(nullptr, name));
}

std::string Algorithm(const DOMElement* element) {
  return Attribute(element, u"Algorithm");
}

bool IsSignatureElement(const DOMElement* element, std::string_view name) {
  return Cairn::LocalName(element) == name && Cairn::NamespaceName(element) == Cairn::NS_XMLDSig;
}

/// Exactly these children, in this order.
std::vector<const DOMElement*> Children(const DOMElement* parent, std::initializer_list<std::string_view> names) {
  std::vector<const DOMElement*> children;
  const DOMElement* child = Cairn::FirstChildElement(parent);
  for (const std::string_view name : names) {
    if (!IsSignatureElement(child, name))
      Refuse(SignForm, "The signature has no " + std::string(name) + " in its place.");
    children.push_back(child);
    child = Cairn::NextSiblingElement(child);
  }
  if (child != nullptr)
    Refuse(SignForm, "The signature has an element " + Quoted(Cairn::LocalName(child)) + ", which is not followed.");
  return children;
}

void RequireNoChildren(const DOMElement* element) {
  if (Cairn::FirstChildElement(element) != nullptr)
    Refuse(SignMethod, "The signature has an algorithm with parameters.");
}

/// A child of the document element, null where there is none or an empty one.
DOMElement* FindSignature(const SignedDocument& document) {
  const auto* found = document.Document()->getElementsByTagNameNS(u"http://www.w3.org/2000/09/xmldsig#", u"Signature");
  if (found->getLength() == 0) return nullptr;
  if (found->getLength() > 1) Refuse(SignForm, "The document has more than one signature.");
  auto* signature = static_cast<DOMElement*>(found->item(0));
  if (signature->getParentNode() != document.Root())
    Refuse(SignForm, "The signature is not a child of the document element.");
  return Cairn::FirstChildElement(signature) == nullptr ? nullptr : signature;
}

void CheckMethods(const DOMElement* canonicalization, const DOMElement* method, const SignedDocument& document,
                  FindingList& findings) {
  RequireNoChildren(canonicalization);
  RequireNoChildren(method);
  if (std::ranges::find(CanonicalForms, Algorithm(canonicalization)) == CanonicalForms.end())
    Refuse(SignMethod, "The canonicalization " + Quoted(Algorithm(canonicalization)) + " is not allowed.");
  const std::string name = Algorithm(method);
  const bool is_message = document.Kind() == DocumentKind::KeyMessage;
  if (name != RSA_SHA256 && (name != RSA_SHA1 || is_message))
    Refuse(SignMethod, "The signature method " + Quoted(name) + " is not allowed.");
  if (name == RSA_SHA1 && document.Format() != Cairn::DFT_Interop)
    findings.push_back({SignMethod, Warning, "The signature method is rsa-sha1, which only Interop documents have."});
  if (name == RSA_SHA256 && document.Format() == Cairn::DFT_Interop)
    findings.push_back({SignMethod, Warning, "The signature method is rsa-sha256, which only SMPTE documents have."});
}

void CheckTransforms(const DOMElement* transforms) {
  const DOMElement* transform = Cairn::FirstChildElement(transforms);
  for (const DOMElement* child = transform; child != nullptr; child = Cairn::NextSiblingElement(child)) {
    if (!IsSignatureElement(child, "Transform"))
      Refuse(SignForm, "The signature has an element among its transforms that is none.");
    if (Algorithm(child) != Enveloped)
      Refuse(SignMethod, "The transform " + Quoted(Algorithm(child)) + " is not allowed.");
    RequireNoChildren(child);
  }
  if (transform == nullptr || Cairn::NextSiblingElement(transform) != nullptr)
    Refuse(SignMethod, "The signature has not exactly one transform.");
}

void CheckReference(const DOMElement* reference, const SignedDocument& document) {
  if (!IsSignatureElement(reference, "Reference"))
    Refuse(SignForm,
           "The signature has an element " + Quoted(Cairn::LocalName(reference)) + ", which is not followed.");
  if (reference->hasAttributeNS(nullptr, u"Type")) Refuse(SignForm, "The signature's reference is of a type.");
  std::vector<const DOMElement*> children;
  if (document.Kind() == DocumentKind::KeyMessage) {
    children = Children(reference, {"DigestMethod", "DigestValue"});
  } else {
    children = Children(reference, {"Transforms", "DigestMethod", "DigestValue"});
    CheckTransforms(children.front());
    children.erase(children.begin());
  }
  RequireNoChildren(children[0]);
  RequireNoChildren(children[1]);
  const std::string digest = Algorithm(children[0]);
  const bool is_message = document.Kind() == DocumentKind::KeyMessage;
  if (digest != DigestSHA256 && (digest != DigestSHA1 || is_message))
    Refuse(SignMethod, "The digest method " + Quoted(digest) + " is not allowed.");
}

/// What the references point to is what is used: the whole document, or both signed parts of a key message.
void CheckReferences(const DOMElement* first, const SignedDocument& document) {
  std::vector<std::string> targets;
  for (const DOMElement* reference = first; reference != nullptr; reference = Cairn::NextSiblingElement(reference)) {
    if (targets.size() == 2) Refuse(SignForm, "The signature has more than two references.");
    CheckReference(reference, document);
    if (!reference->hasAttributeNS(nullptr, u"URI")) Refuse(SignForm, "The signature's reference points nowhere.");
    targets.push_back(Attribute(reference, u"URI"));
  }
  if (document.Kind() != DocumentKind::KeyMessage) {
    if (targets.size() != 1) Refuse(SignForm, "The signature has not exactly one reference.");
    if (!targets[0].empty())
      Refuse(SignForm, "The signature covers " + Quoted(targets[0]) + " in place of the whole document.");
    return;
  }
  std::ranges::sort(targets);
  if (targets != std::vector<std::string>{std::string("#") + ID_Private, std::string("#") + ID_Public})
    Refuse(SignForm, "The signature does not cover the message's two parts.");
}

void CheckSignedPart(DOMElement* element, const char* name, const char* id) {
  if (Cairn::LocalName(element) != name || Cairn::NamespaceName(element) != NS_KeyMessage)
    Refuse(SignForm, "The message has no " + std::string(name) + " in its place.");
  if (Attribute(element, u"Id") != id)
    Refuse(SignForm, "The message's " + std::string(name) + " has not the Id " + id + '.');
  element->setIdAttributeNS(nullptr, u"Id", true);
}

/// Which attributes identify elements is known from the schema alone: they are told to the signature library here, and no
/// other attribute may have their values.
void CheckIdentifiers(const SignedDocument& document) {
  auto* open = document.Root()->getFirstElementChild();
  auto* hidden = open == nullptr ? nullptr : open->getNextElementSibling();
  auto* signature = hidden == nullptr ? nullptr : hidden->getNextElementSibling();
  CheckSignedPart(open, "AuthenticatedPublic", ID_Public);
  CheckSignedPart(hidden, "AuthenticatedPrivate", ID_Private);
  if (signature == nullptr || signature->getNextElementSibling() != nullptr)
    Refuse(SignForm, "The message has other parts than its signed ones and the signature.");
  size_t count = 0;
  const auto* all = document.Document()->getElementsByTagNameNS(u"*", u"*");
  for (XMLSize_t i = 0; i < all->getLength(); ++i) {
    const auto* attributes = all->item(i)->getAttributes();
    for (XMLSize_t k = 0; k < attributes->getLength(); ++k) {
      const XMLCh* value = attributes->item(k)->getNodeValue();
      if (xercesc::XMLString::equals(value, u"ID_AuthenticatedPublic") ||
          xercesc::XMLString::equals(value, u"ID_AuthenticatedPrivate"))
        ++count;
    }
  }
  if (count != 2) Refuse(SignForm, "The message has an Id of a signed part at more than one element.");
}

void ReadForm(const SignedDocument& document, SignatureForm& form, FindingList& findings, Ferro::ILogSink& log) {
  DOMElement* signature = FindSignature(document);
  if (signature == nullptr) return;
  form.Signature = signature;
  const auto parts = Children(signature, {"SignedInfo", "SignatureValue", "KeyInfo"});
  const DOMElement* canonicalization = Cairn::FirstChildElement(parts[0]);
  const DOMElement* method = Cairn::NextSiblingElement(canonicalization);
  if (!IsSignatureElement(canonicalization, "CanonicalizationMethod") || !IsSignatureElement(method, "SignatureMethod"))
    Refuse(SignForm, "The signature does not tell its methods.");
  CheckMethods(canonicalization, method, document, findings);
  if (document.Kind() == DocumentKind::KeyMessage) CheckIdentifiers(document);
  CheckReferences(Cairn::NextSiblingElement(method), document);
  RequireNoChildren(parts[1]);
  form.KeyInfo = const_cast<DOMElement*>(parts[2]);
  if (std::string reason = ReadKeyInfo(parts[2], form.Certificates, findings, log); !reason.empty())
    Refuse(SignForm, std::move(reason));
}

}  // namespace

void ReadSignatureForm(const SignedDocument& document, SignatureForm& form, FindingList& findings,
                       Ferro::ILogSink& log) {
  try {
    ReadForm(document, form, findings, log);
  } catch (const Refusal& refusal) {
    findings.push_back({refusal.ID, Error, refusal.Text});
  }
}

}  // namespace Sigil
