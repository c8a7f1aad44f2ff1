// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Grammar.h"

namespace Assay {

// Types that several documents have.

inline constexpr TypeForm TextType{ValueForm::Text};
inline constexpr TypeForm URIType{ValueForm::URI};
inline constexpr TypeForm UUIDType{ValueForm::UUID};
inline constexpr TypeForm DateTimeType{ValueForm::DateTime};
inline constexpr TypeForm LongType{ValueForm::Long};
inline constexpr TypeForm CountType{ValueForm::PositiveInteger};
inline constexpr TypeForm OffsetType{ValueForm::NonNegativeInteger};
inline constexpr TypeForm Base64Type{ValueForm::Base64};
inline constexpr TypeForm LanguageType{ValueForm::Language};
inline constexpr TypeForm RationalType{ValueForm::Rational};
inline constexpr TypeForm AnyType{ValueForm::Anything};

inline constexpr AttributeForm SMPTELanguageAttribute[] = {{"language", ValueForm::Language}};
inline constexpr AttributeForm InteropLanguageAttribute[] = {{"xml:lang", ValueForm::Language}};
inline constexpr AttributeForm ScopeAttribute[] = {{"scope", ValueForm::URI}};

inline constexpr TypeForm SMPTEUserText{ValueForm::Text, "", SMPTELanguageAttribute};
inline constexpr TypeForm InteropUserText{ValueForm::Text, "", InteropLanguageAttribute};
inline constexpr TypeForm ScopedText{ValueForm::Text, "", ScopeAttribute};

// Elements that stand alone in their step.
inline constexpr ElementForm IDElement[] = {{"Id", &UUIDType}};
inline constexpr ElementForm IconIDElement[] = {{"IconId", &UUIDType}};
inline constexpr ElementForm IssueDateElement[] = {{"IssueDate", &DateTimeType}};
inline constexpr ElementForm SMPTEAnnotation[] = {{"AnnotationText", &SMPTEUserText}};
inline constexpr ElementForm InteropAnnotation[] = {{"AnnotationText", &InteropUserText}};
inline constexpr ElementForm SMPTEIssuer[] = {{"Issuer", &SMPTEUserText}};
inline constexpr ElementForm InteropIssuer[] = {{"Issuer", &InteropUserText}};
inline constexpr ElementForm SMPTECreator[] = {{"Creator", &SMPTEUserText}};
inline constexpr ElementForm InteropCreator[] = {{"Creator", &InteropUserText}};

/// Of XML signatures (RFC 3275).
struct SignatureForms {
  static const TypeForm Signature;
  static const TypeForm KeyInfo;
};
inline constexpr ElementForm SignerElement[] = {{"Signer", &SignatureForms::KeyInfo}};
inline constexpr ElementForm SignatureElement[] = {{"Signature", &SignatureForms::Signature, Space::Signature}};

}  // namespace Assay
