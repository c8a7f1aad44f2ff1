// SPDX-License-Identifier: BSD-3-Clause
#include "CommonForms.h"

namespace Assay {
namespace {

// What stands in signatures of documents. Keys of other kinds than certificates, and objects, are taken as they come:
// whoever verifies a signature refuses them.

constexpr AttributeForm IDAttribute[] = {{"Id", ValueForm::Name}};
constexpr AttributeForm AlgorithmAttribute[] = {{"Algorithm", ValueForm::URI, "", true}};
constexpr AttributeForm ReferenceAttributes[] = {
    {"Id", ValueForm::Name}, {"URI", ValueForm::URI}, {"Type", ValueForm::URI}};
constexpr AttributeForm RetrievalAttributes[] = {{"URI", ValueForm::URI}, {"Type", ValueForm::URI}};

constexpr TypeForm IntegerType{ValueForm::Integer};
constexpr TypeForm SignatureValueType{ValueForm::Base64, "", IDAttribute};

constexpr Step AnySteps[] = {{{}, 0, Unbounded, Others::AnyNamespace}};
constexpr TypeForm CanonicalizationType{ValueForm::Anything, "", AlgorithmAttribute, AnySteps, true};

constexpr ElementForm OutputLength[] = {{"HMACOutputLength", &IntegerType, Space::Signature}};
constexpr Step MethodSteps[] = {{OutputLength, 0, 1}, {{}, 0, Unbounded, Others::NotSignature}};
constexpr TypeForm MethodType{ValueForm::Anything, "", AlgorithmAttribute, MethodSteps, true};

constexpr ElementForm XPath[] = {{"XPath", &TextType, Space::Signature}};
constexpr Step TransformSteps[] = {{XPath, 0, Unbounded, Others::NotSignature}};
constexpr TypeForm TransformType{ValueForm::Anything, "", AlgorithmAttribute, TransformSteps, true};
constexpr ElementForm Transform[] = {{"Transform", &TransformType, Space::Signature}};
constexpr Step TransformsSteps[] = {{Transform, 1, Unbounded}};
constexpr TypeForm TransformsType{ValueForm::Anything, "", {}, TransformsSteps};

constexpr Step DigestMethodSteps[] = {{{}, 0, Unbounded, Others::NotSignature}};
constexpr TypeForm DigestMethodType{ValueForm::Anything, "", AlgorithmAttribute, DigestMethodSteps, true};

constexpr ElementForm Transforms[] = {{"Transforms", &TransformsType, Space::Signature}};
constexpr ElementForm DigestMethod[] = {{"DigestMethod", &DigestMethodType, Space::Signature}};
constexpr ElementForm DigestValue[] = {{"DigestValue", &Base64Type, Space::Signature}};
constexpr Step ReferenceSteps[] = {{Transforms, 0, 1}, {DigestMethod}, {DigestValue}};
constexpr TypeForm ReferenceType{ValueForm::Anything, "", ReferenceAttributes, ReferenceSteps};

constexpr ElementForm Canonicalization[] = {{"CanonicalizationMethod", &CanonicalizationType, Space::Signature}};
constexpr ElementForm SignatureMethod[] = {{"SignatureMethod", &MethodType, Space::Signature}};
constexpr ElementForm Reference[] = {{"Reference", &ReferenceType, Space::Signature}};
constexpr Step SignedInfoSteps[] = {{Canonicalization}, {SignatureMethod}, {Reference, 1, Unbounded}};
constexpr TypeForm SignedInfoType{ValueForm::Anything, "", IDAttribute, SignedInfoSteps};

constexpr ElementForm IssuerName[] = {{"X509IssuerName", &TextType, Space::Signature}};
constexpr ElementForm SerialNumber[] = {{"X509SerialNumber", &IntegerType, Space::Signature}};
constexpr Step IssuerSerialSteps[] = {{IssuerName}, {SerialNumber}};
constexpr TypeForm IssuerSerialType{ValueForm::Anything, "", {}, IssuerSerialSteps};

constexpr ElementForm X509Choices[] = {{"X509IssuerSerial", &IssuerSerialType, Space::Signature},
                                       {"X509SKI", &Base64Type, Space::Signature},
                                       {"X509SubjectName", &TextType, Space::Signature},
                                       {"X509Certificate", &Base64Type, Space::Signature},
                                       {"X509CRL", &Base64Type, Space::Signature}};
constexpr Step X509Steps[] = {{X509Choices, 1, Unbounded, Others::NotSignature}};
constexpr TypeForm X509DataType{ValueForm::Anything, "", {}, X509Steps};

constexpr Step RetrievalSteps[] = {{Transforms, 0, 1}};
constexpr TypeForm RetrievalType{ValueForm::Anything, "", RetrievalAttributes, RetrievalSteps};

constexpr ElementForm KeyInfoChoices[] = {{"KeyName", &TextType, Space::Signature},
                                          {"KeyValue", &AnyType, Space::Signature},
                                          {"RetrievalMethod", &RetrievalType, Space::Signature},
                                          {"X509Data", &X509DataType, Space::Signature},
                                          {"PGPData", &AnyType, Space::Signature},
                                          {"SPKIData", &AnyType, Space::Signature},
                                          {"MgmtData", &TextType, Space::Signature}};
constexpr Step KeyInfoSteps[] = {{KeyInfoChoices, 1, Unbounded, Others::NotSignature}};

constexpr ElementForm SignedInfo[] = {{"SignedInfo", &SignedInfoType, Space::Signature}};
constexpr ElementForm SignatureValue[] = {{"SignatureValue", &SignatureValueType, Space::Signature}};
constexpr ElementForm KeyInfo[] = {{"KeyInfo", &SignatureForms::KeyInfo, Space::Signature}};
constexpr ElementForm Object[] = {{"Object", &AnyType, Space::Signature}};
constexpr Step SignatureSteps[] = {{SignedInfo}, {SignatureValue}, {KeyInfo, 0, 1}, {Object, 0, Unbounded}};

}  // namespace

constinit const TypeForm SignatureForms::KeyInfo{ValueForm::Anything, "", IDAttribute, KeyInfoSteps, true};
constinit const TypeForm SignatureForms::Signature{ValueForm::Anything, "", IDAttribute, SignatureSteps};

}  // namespace Assay
