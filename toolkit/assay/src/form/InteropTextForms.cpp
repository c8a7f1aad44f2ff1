// SPDX-License-Identifier: BSD-3-Clause
#include "CommonForms.h"

namespace Assay {
namespace {

// Interop subtitle document, versions 1.0 and 1.1. It had a document type definition and no schema: what is met in good
// packages is allowed, such as urn:uuid: in front of the identifier.

constexpr AttributeForm PositionAttributes[] = {
    {"HAlign", ValueForm::OneOf, "left center right"},
    {"HPosition", ValueForm::Percent},
    {"VAlign", ValueForm::OneOf, "top center bottom"},
    {"VPosition", ValueForm::Percent},
};
constexpr AttributeForm TextAttributes[] = {
    {"HAlign", ValueForm::OneOf, "left center right"},      {"HPosition", ValueForm::Percent},
    {"VAlign", ValueForm::OneOf, "top center bottom"},      {"VPosition", ValueForm::Percent},
    {"Direction", ValueForm::OneOf, "horizontal vertical"},
};
constexpr AttributeForm FontAttributes[] = {
    {"Id", ValueForm::Text},
    {"Color", ValueForm::Color},
    {"Effect", ValueForm::OneOf, "none border shadow"},
    {"EffectColor", ValueForm::Color},
    {"EffectSize", ValueForm::Decimal},
    {"Italic", ValueForm::OneOf, "yes no"},
    {"Script", ValueForm::OneOf, "normal super sub"},
    {"Size", ValueForm::PositiveInteger},
    {"Underlined", ValueForm::OneOf, "yes no"},
    {"Weight", ValueForm::OneOf, "normal bold"},
    {"AspectAdjust", ValueForm::Aspect},
    {"Spacing", ValueForm::Em},
};
constexpr AttributeForm SubtitleAttributes[] = {
    {"SpotNumber", ValueForm::Text},
    {"TimeIn", ValueForm::InteropTime, "", true},
    {"TimeOut", ValueForm::InteropTime, "", true},
    {"FadeUpTime", ValueForm::InteropFade},
    {"FadeDownTime", ValueForm::InteropFade},
};
constexpr AttributeForm LoadFontAttributes[] = {{"Id", ValueForm::Text, "", true}, {"URI", ValueForm::Text, "", true}};
constexpr AttributeForm VersionAttribute[] = {{"Version", ValueForm::OneOf, "1.0 1.1", true}};
constexpr AttributeForm SpaceAttributes[] = {{"Size", ValueForm::Em}};
constexpr AttributeForm RotateAttributes[] = {{"Direction", ValueForm::OneOf, "none left right"}};
constexpr AttributeForm RubyTextAttributes[] = {{"Size", ValueForm::Em},
                                                {"Position", ValueForm::OneOf, "before after"},
                                                {"Offset", ValueForm::Em},
                                                {"Spacing", ValueForm::Em},
                                                {"AspectAdjust", ValueForm::Aspect}};

/// Fonts stand in fonts.
struct FontForms {
  static const TypeForm InText;
  static const TypeForm InSubtitle;
  static const TypeForm InDocument;
};

constexpr TypeForm SpaceType{ValueForm::Empty, "", SpaceAttributes};
constexpr TypeForm RotateType{ValueForm::Text, "", RotateAttributes};
constexpr TypeForm RubyTextType{ValueForm::Text, "", RubyTextAttributes};
constexpr ElementForm RubyBase[] = {{"Rb", &TextType}};
constexpr ElementForm RubyText[] = {{"Rt", &RubyTextType}};
constexpr Step RubySteps[] = {{RubyBase}, {RubyText}};
constexpr TypeForm RubyType{ValueForm::Anything, "", {}, RubySteps};
constexpr ElementForm TextContent[] = {{"Font", &FontForms::InText},
                                       {"Ruby", &RubyType},
                                       {"Space", &SpaceType},
                                       {"HGroup", &TextType},
                                       {"Rotate", &RotateType}};
constexpr Step TextSteps[] = {{TextContent, 0, Unbounded}};
constexpr TypeForm LineType{ValueForm::Anything, "", TextAttributes, TextSteps, true};
constexpr TypeForm ImageType{ValueForm::Text, "", PositionAttributes};

constexpr ElementForm SubtitleContent[] = {
    {"Font", &FontForms::InSubtitle}, {"Text", &LineType}, {"Image", &ImageType}};
constexpr Step SubtitleSteps[] = {{SubtitleContent, 0, Unbounded}};
constexpr TypeForm SubtitleType{ValueForm::Anything, "", SubtitleAttributes, SubtitleSteps};

constexpr ElementForm DocumentContent[] = {{"Font", &FontForms::InDocument}, {"Subtitle", &SubtitleType}};
constexpr Step DocumentContentSteps[] = {{DocumentContent, 0, Unbounded}};

constexpr TypeForm SubtitleIDType{ValueForm::PlainUUID};
constexpr TypeForm LoadFontType{ValueForm::Empty, "", LoadFontAttributes};
constexpr ElementForm SubtitleID[] = {{"SubtitleID", &SubtitleIDType}};
constexpr ElementForm MovieTitle[] = {{"MovieTitle", &TextType}};
constexpr ElementForm ReelNumber[] = {{"ReelNumber", &TextType}};
constexpr ElementForm Language[] = {{"Language", &TextType}};
constexpr ElementForm LoadFont[] = {{"LoadFont", &LoadFontType}};
constexpr Step DocumentSteps[] = {
    {SubtitleID}, {MovieTitle}, {ReelNumber}, {Language}, {LoadFont, 0, Unbounded}, {DocumentContent, 0, Unbounded}};
constexpr TypeForm DocumentType{ValueForm::Anything, "", VersionAttribute, DocumentSteps};

constexpr Grammar Documents[] = {
    {DocumentKind::InteropText, Cairn::DFT_Interop, {"", "DCSubtitle", &DocumentType}, {}},
};

}  // namespace

constinit const TypeForm FontForms::InText{ValueForm::Anything, "", FontAttributes, TextSteps, true};
constinit const TypeForm FontForms::InSubtitle{ValueForm::Anything, "", FontAttributes, SubtitleSteps, true};
constinit const TypeForm FontForms::InDocument{ValueForm::Anything, "", FontAttributes, DocumentContentSteps, true};

std::span<const Grammar> InteropTextGrammars() {
  return Documents;
}

}  // namespace Assay
