// SPDX-License-Identifier: BSD-3-Clause
#include "CommonForms.h"

#include <array>
#include <span>

namespace Assay {
namespace {

// Timed text of ST 428-7 in its editions of 2007, 2010 and 2014. What is the same in all stands here; what differs is a
// table that each edition takes more of: the later ones have what the earlier have, and more.

constexpr char YesNo[] = "yes no";

// Attributes of the three editions, the oldest first.
constexpr AttributeForm FontAttributes[] = {
    {"Script", ValueForm::OneOf, "normal super sub"},
    {"Effect", ValueForm::OneOf, "none border shadow"},
    {"Italic", ValueForm::OneOf, YesNo},
    {"Underline", ValueForm::OneOf, YesNo},
    {"Weight", ValueForm::OneOf, "bold normal"},
    {"ID", ValueForm::Text},
    {"Color", ValueForm::Color},
    {"EffectColor", ValueForm::Color},
    {"Size", ValueForm::PositiveInteger},
    {"AspectAdjust", ValueForm::Aspect},
    {"Spacing", ValueForm::DecimalFromMinusOne},
};
constexpr std::span FontAttributes2010(FontAttributes);
constexpr std::span FontAttributes2007 = FontAttributes2010.first(std::size(FontAttributes) - 2);
constexpr AttributeForm FontAttributes2014[] = {
    {"Script", ValueForm::OneOf, "normal super sub"},
    {"Effect", ValueForm::OneOf, "none border shadow"},
    {"Italic", ValueForm::OneOf, "yes no left right"},
    {"Underline", ValueForm::OneOf, YesNo},
    {"Weight", ValueForm::OneOf, "bold normal"},
    {"ID", ValueForm::Text},
    {"Color", ValueForm::Color},
    {"EffectColor", ValueForm::Color},
    {"Size", ValueForm::PositiveInteger},
    {"AspectAdjust", ValueForm::Aspect},
    {"Spacing", ValueForm::DecimalFromMinusOne},
    {"EffectSize", ValueForm::NonNegativeDecimal},
    {"Feather", ValueForm::OneOf, YesNo},
};

constexpr char Horizontal[] = "center left right";
constexpr char Vertical[] = "center bottom top";
constexpr AttributeForm ImageAttributes2014[] = {
    {"Halign", ValueForm::OneOf, Horizontal}, {"Hposition", ValueForm::Percent}, {"Valign", ValueForm::OneOf, Vertical},
    {"Vposition", ValueForm::Percent},        {"Zposition", ValueForm::Percent}, {"VariableZ", ValueForm::Text},
};
constexpr std::span ImageAttributes2010 = std::span(ImageAttributes2014).first(4);
constexpr AttributeForm TextAttributes2014[] = {
    {"Halign", ValueForm::OneOf, Horizontal},
    {"Hposition", ValueForm::Percent},
    {"Valign", ValueForm::OneOf, Vertical},
    {"Vposition", ValueForm::Percent},
    {"Zposition", ValueForm::Percent},
    {"VariableZ", ValueForm::Text},
    {"Direction", ValueForm::OneOf, "ltr rtl ttb btt hor"},
};
constexpr AttributeForm TextAttributes2010[] = {
    {"Halign", ValueForm::OneOf, Horizontal},
    {"Hposition", ValueForm::Percent},
    {"Valign", ValueForm::OneOf, Vertical},
    {"Vposition", ValueForm::Percent},
    {"Direction", ValueForm::OneOf, "ltr rtl ttb btt"},
};
constexpr AttributeForm SubtitleAttributes[] = {
    {"SpotNumber", ValueForm::Text},
    {"TimeIn", ValueForm::TimeCode, "", true},
    {"TimeOut", ValueForm::TimeCode, "", true},
    {"FadeUpTime", ValueForm::TimeCode},
    {"FadeDownTime", ValueForm::TimeCode},
};
constexpr AttributeForm ReelAttributes2014[] = {{"IntrinsicPictureResolution", ValueForm::Text}};

// Inside of texts.
constexpr AttributeForm SpaceAttributes[] = {{"Size", ValueForm::DecimalFromMinusOne}};
constexpr AttributeForm RotateAttributes[] = {{"Direction", ValueForm::OneOf, "none left right"}};
constexpr AttributeForm RubyTextAttributes[] = {{"Size", ValueForm::PositiveDecimal},
                                                {"Position", ValueForm::OneOf, "before after"},
                                                {"Offset", ValueForm::DecimalFromMinusOne},
                                                {"Spacing", ValueForm::DecimalFromMinusOne},
                                                {"AspectAdjust", ValueForm::Aspect}};
constexpr TypeForm SpaceType{ValueForm::Empty, "", SpaceAttributes};
constexpr TypeForm RotateType{ValueForm::Text, "", RotateAttributes};
constexpr TypeForm NonEmptyType{ValueForm::NonEmptyText};
constexpr TypeForm RubyTextType{ValueForm::Text, "", RubyTextAttributes};
constexpr ElementForm RubyBase2014[] = {{"Rb", &NonEmptyType}};
constexpr ElementForm RubyBase2010[] = {{"Rb", &TextType}};
constexpr ElementForm RubyText[] = {{"Rt", &RubyTextType}};
constexpr Step RubySteps2014[] = {{RubyBase2014}, {RubyText}};
constexpr Step RubySteps2010[] = {{RubyBase2010}, {RubyText}};
constexpr TypeForm RubyType2014{ValueForm::Anything, "", {}, RubySteps2014};
constexpr TypeForm RubyType2010{ValueForm::Anything, "", {}, RubySteps2010};

constexpr TypeForm InnerFont2014{ValueForm::Text, "", FontAttributes2014};
constexpr TypeForm InnerFont2010{ValueForm::Text, "", FontAttributes2010};
constexpr TypeForm InnerFont2007{ValueForm::Text, "", FontAttributes2007};

constexpr ElementForm TextContent2014[] = {{"Font", &InnerFont2014},
                                           {"Ruby", &RubyType2014},
                                           {"Space", &SpaceType},
                                           {"HGroup", &TextType},
                                           {"Rotate", &RotateType}};
constexpr ElementForm TextContent2010[] = {{"Font", &InnerFont2010},
                                           {"Ruby", &RubyType2010},
                                           {"Space", &SpaceType},
                                           {"HGroup", &TextType},
                                           {"Rotate", &RotateType}};
constexpr ElementForm TextContent2007[] = {{"Font", &InnerFont2007},
                                           {"Ruby", &RubyType2010},
                                           {"Space", &SpaceType},
                                           {"HGroup", &TextType},
                                           {"Rotate", &RotateType}};
constexpr Step TextSteps2014[] = {{TextContent2014, 0, Unbounded}};
constexpr Step TextSteps2010[] = {{TextContent2010, 0, Unbounded}};
constexpr Step TextSteps2007[] = {{TextContent2007, 0, Unbounded}};
constexpr TypeForm Text2014{ValueForm::Anything, "", TextAttributes2014, TextSteps2014, true};
constexpr TypeForm Text2010{ValueForm::Anything, "", TextAttributes2010, TextSteps2010, true};
constexpr TypeForm Text2007{ValueForm::Anything, "", TextAttributes2010, TextSteps2007, true};

// Around texts: a font of a subtitle, a subtitle, a font of the document.
constexpr TypeForm Image2014{ValueForm::URI, "", ImageAttributes2014};
constexpr TypeForm Image2010{ValueForm::URI, "", ImageAttributes2010};
constexpr ElementForm FontTexts2014[] = {{"Text", &Text2014}};
constexpr ElementForm FontTexts2010[] = {{"Text", &Text2010}};
constexpr ElementForm FontTexts2007[] = {{"Text", &Text2007}};
constexpr Step FontTextSteps2014[] = {{FontTexts2014, 1, Unbounded}};
constexpr Step FontTextSteps2010[] = {{FontTexts2010, 1, Unbounded}};
constexpr Step FontTextSteps2007[] = {{FontTexts2007, 1, Unbounded}};
constexpr TypeForm SubtitleFont2014{ValueForm::Anything, "", FontAttributes2014, FontTextSteps2014, true};
constexpr TypeForm SubtitleFont2010{ValueForm::Anything, "", FontAttributes2010, FontTextSteps2010, true};
constexpr TypeForm SubtitleFont2007{ValueForm::Anything, "", FontAttributes2007, FontTextSteps2007, true};

constexpr AttributeForm RequiredID[] = {{"ID", ValueForm::Text, "", true}};
constexpr TypeForm VariableZType{ValueForm::Text, "", RequiredID};
constexpr ElementForm VariableZ[] = {{"LoadVariableZ", &VariableZType}};
constexpr ElementForm SubtitleContent2014[] = {{"Text", &Text2014}, {"Image", &Image2014}, {"Font", &SubtitleFont2014}};
constexpr ElementForm SubtitleContent2010[] = {{"Text", &Text2010}, {"Image", &Image2010}, {"Font", &SubtitleFont2010}};
constexpr ElementForm SubtitleContent2007[] = {{"Text", &Text2007}, {"Image", &Image2010}, {"Font", &SubtitleFont2007}};
constexpr Step SubtitleSteps2014[] = {{VariableZ, 0, Unbounded}, {SubtitleContent2014, 1, Unbounded}};
constexpr Step SubtitleSteps2010[] = {{SubtitleContent2010, 1, Unbounded}};
constexpr Step SubtitleSteps2007[] = {{SubtitleContent2007, 1, Unbounded}};
constexpr TypeForm Subtitle2014{ValueForm::Anything, "", SubtitleAttributes, SubtitleSteps2014};
constexpr TypeForm Subtitle2010{ValueForm::Anything, "", SubtitleAttributes, SubtitleSteps2010};
constexpr TypeForm Subtitle2007{ValueForm::Anything, "", SubtitleAttributes, SubtitleSteps2007};

constexpr ElementForm FontSubtitles2014[] = {{"Subtitle", &Subtitle2014}};
constexpr ElementForm FontSubtitles2010[] = {{"Subtitle", &Subtitle2010}};
constexpr ElementForm FontSubtitles2007[] = {{"Subtitle", &Subtitle2007}};
constexpr Step FontSubtitleSteps2014[] = {{FontSubtitles2014, 1, Unbounded}};
constexpr Step FontSubtitleSteps2010[] = {{FontSubtitles2010, 1, Unbounded}};
constexpr Step FontSubtitleSteps2007[] = {{FontSubtitles2007, 1, Unbounded}};
constexpr TypeForm DocumentFont2014{ValueForm::Anything, "", FontAttributes2014, FontSubtitleSteps2014, true};
constexpr TypeForm DocumentFont2010{ValueForm::Anything, "", FontAttributes2010, FontSubtitleSteps2010, true};
constexpr TypeForm DocumentFont2007{ValueForm::Anything, "", FontAttributes2007, FontSubtitleSteps2007, true};

constexpr ElementForm ListContent2014[] = {{"Subtitle", &Subtitle2014}, {"Font", &DocumentFont2014}};
constexpr ElementForm ListContent2010[] = {{"Subtitle", &Subtitle2010}, {"Font", &DocumentFont2010}};
constexpr ElementForm ListContent2007[] = {{"Subtitle", &Subtitle2007}, {"Font", &DocumentFont2007}};
constexpr Step ListSteps2014[] = {{ListContent2014, 1, Unbounded}};
constexpr Step ListSteps2010[] = {{ListContent2010, 1, Unbounded}};
constexpr Step ListSteps2007[] = {{ListContent2007, 1, Unbounded}};
constexpr TypeForm List2014{ValueForm::Anything, "", {}, ListSteps2014};
constexpr TypeForm List2010{ValueForm::Anything, "", {}, ListSteps2010};
constexpr TypeForm List2007{ValueForm::Anything, "", {}, ListSteps2007};

// The document.
constexpr AttributeForm FontID[] = {{"ID", ValueForm::Text}};
constexpr TypeForm LoadFontType{ValueForm::URI, "", FontID};
constexpr TypeForm DefaultLanguageType{ValueForm::Language, "", {}, {}, false, true};
constexpr TypeForm TimeCodeType{ValueForm::TimeCode};
constexpr ElementForm Title[] = {{"ContentTitleText", &SMPTEUserText}};
constexpr ElementForm ReelNumber[] = {{"ReelNumber", &CountType}};
constexpr ElementForm Language[] = {{"Language", &DefaultLanguageType}};
constexpr ElementForm EditRate[] = {{"EditRate", &RationalType}};
constexpr ElementForm TimeCodeRate[] = {{"TimeCodeRate", &CountType}};
constexpr ElementForm StartTime[] = {{"StartTime", &TimeCodeType}};
constexpr ElementForm DisplayType[] = {{"DisplayType", &ScopedText}};
constexpr ElementForm LoadFont[] = {{"LoadFont", &LoadFontType}};
constexpr ElementForm List2014Element[] = {{"SubtitleList", &List2014}};
constexpr ElementForm List2010Element[] = {{"SubtitleList", &List2010}};
constexpr ElementForm List2007Element[] = {{"SubtitleList", &List2007}};
/// The children of the document element since 2010, which differ in their list alone.
constexpr std::array<Step, 12> ReelStepsWith(std::span<const ElementForm> list) {
  return {{{IDElement},
           {Title},
           {SMPTEAnnotation, 0, 1},
           {IssueDateElement},
           {ReelNumber, 0, 1},
           {Language, 0, 1},
           {EditRate},
           {TimeCodeRate},
           {StartTime, 0, 1},
           {DisplayType, 0, 1},
           {LoadFont, 0, Unbounded},
           {list}}};
}
constexpr auto ReelSteps2014 = ReelStepsWith(List2014Element);
constexpr auto ReelSteps2010 = ReelStepsWith(List2010Element);
constexpr Step ReelSteps2007[] = {
    {IDElement},      {Title},    {SMPTEAnnotation, 0, 1}, {IssueDateElement}, {ReelNumber, 0, 1},
    {Language, 0, 1}, {EditRate}, {TimeCodeRate},          {StartTime, 0, 1},  {LoadFont, 1, Unbounded},
    {List2007Element}};
constexpr TypeForm Reel2014{ValueForm::Anything, "", ReelAttributes2014, ReelSteps2014};
constexpr TypeForm Reel2010{ValueForm::Anything, "", {}, ReelSteps2010};
constexpr TypeForm Reel2007{ValueForm::Anything, "", {}, ReelSteps2007};

constexpr Grammar Documents[] = {
    {DocumentKind::SMPTEText,
     Cairn::DFT_DCI_SMPTE,
     {"http://www.smpte-ra.org/schemas/428-7/2014/DCST", "SubtitleReel", &Reel2014},
     {}},
    {DocumentKind::SMPTEText,
     Cairn::DFT_DCI_SMPTE,
     {"http://www.smpte-ra.org/schemas/428-7/2010/DCST", "SubtitleReel", &Reel2010},
     {}},
    {DocumentKind::SMPTEText,
     Cairn::DFT_DCI_SMPTE,
     {"http://www.smpte-ra.org/schemas/428-7/2007/DCST", "SubtitleReel", &Reel2007},
     {}},
};

}  // namespace

std::span<const Grammar> SMPTETextGrammars() {
  return Documents;
}

}  // namespace Assay
