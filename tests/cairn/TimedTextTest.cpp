// SPDX-License-Identifier: BSD-3-Clause
#include "TimedTextFixture.h"

#include "SampleDocuments.h"

namespace {

using Cairn::TextField;
using CairnTest::SampleID;
using testing::ElementsAre;
using testing::IsEmpty;

class TimedText : public CairnTest::TimedTextTest {};

TextField<std::string> Said(const std::string& text, Cairn::ui64_t line) {
  return {text, line};
}

TEST_F(TimedText, AnSMPTEDocumentIsReadWhole) {
  Read(
      "<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/2014/DCST' IntrinsicPictureResolution='1998x1080'>\n"
      "<Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id>\n<ContentTitleText language='en'>Ferry</ContentTitleText>"
      "\n<AnnotationText>reel 1</AnnotationText>\n<IssueDate>2024-03-01T09:00:00+00:00</IssueDate>\n"
      "<ReelNumber>1</ReelNumber>\n<Language>fr</Language>\n<EditRate>48 1</EditRate>\n<TimeCodeRate>24</TimeCodeRate>"
      "\n<StartTime>00:00:00:00</StartTime>\n<DisplayType>MainSubtitle</DisplayType>\n"
      "<LoadFont ID='F'>urn:uuid:00000000-0000-4000-8000-000000000002</LoadFont>\n<SubtitleList>\n<Font ID='F'>\n"
      "<Subtitle SpotNumber='1' TimeIn='00:00:04:00'\n TimeOut='00:00:06:03'><Text>a</Text></Subtitle>\n"
      "<Subtitle TimeIn='00:00:07:01' TimeOut='00:00:09:23'>\n"
      "<Image Valign='bottom' Vposition='8'> urn:uuid:00000000-0000-4000-8000-000000000003 </Image></Subtitle>\n"
      "</Font></SubtitleList></SubtitleReel>");
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(m_Document.DCPFormat, Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(m_Document.Edition, Cairn::TimedTextEdition_t::SMPTE2014);
  EXPECT_EQ(m_Document.NamespaceName, "http://www.smpte-ra.org/schemas/428-7/2014/DCST");
  EXPECT_EQ(m_Document.PictureResolution, Said("1998x1080", 1));
  EXPECT_EQ(m_Document.ID, (TextField<Cairn::UUID>{SampleID(1), 2}));
  EXPECT_EQ(m_Document.ContentTitle, Said("Ferry", 3));
  EXPECT_EQ(m_Document.Annotation, Said("reel 1", 4));
  EXPECT_EQ(m_Document.IssueDate, Said("2024-03-01T09:00:00+00:00", 5));
  EXPECT_EQ(m_Document.ReelNumber, (TextField<Cairn::ui32_t>{1, 6}));
  EXPECT_EQ(m_Document.Language, Said("fr", 7));
  EXPECT_EQ(m_Document.EditRate, (TextField<QUIRE::Rational>{{48, 1}, 8}));
  EXPECT_EQ(m_Document.TimeCodeRate, (TextField<Cairn::ui32_t>{24, 9}));
  EXPECT_EQ(m_Document.StartTime, (TextField<Cairn::i64_t>{0, 10}));
  EXPECT_EQ(m_Document.DisplayType, Said("MainSubtitle", 11));
  EXPECT_THAT(m_Document.LoadFontList, ElementsAre(Cairn::LoadedFont{"F", {SampleID(2), ""}, 12}));
  ASSERT_EQ(m_Document.InstanceList.size(), 2U);
  EXPECT_EQ(m_Document.InstanceList[0].Line, 16U);  // on which the start tag ends
  EXPECT_EQ(m_Document.InstanceList[0].SpotNumber, Said("1", 16));
  EXPECT_EQ(m_Document.EditUnits(m_Document.InstanceList[0].TimeOut.Value, m_Document.EditRate.Value), 294);
  EXPECT_FALSE(m_Document.InstanceList[1].SpotNumber.IsPresent());
  const Cairn::TextImage& image = m_Document.InstanceList[1].ImageList.at(0);
  EXPECT_EQ(image.Resource.ID, SampleID(3));
  EXPECT_EQ(image.Line, 18U);
  EXPECT_EQ(image.Place.Valign, (TextField<Cairn::TextValign_t>{Cairn::TextValign_t::Bottom, 18}));
  EXPECT_EQ(image.Place.Vposition, (TextField<double>{8, 18}));
}

TEST_F(TimedText, AnInteropDocumentIsReadWhole) {
  Read(
      "<DCSubtitle Version='1.1'>\n<SubtitleID>00000000-0000-4000-8000-000000000001</SubtitleID>\n"
      "<MovieTitle>Ferry</MovieTitle>\n<ReelNumber>2</ReelNumber>\n<Language>French</Language>\n"
      "<LoadFont Id='F' URI='f.ttf'/>\n<Font Id='F' Effect='border'>\n"
      "<Subtitle SpotNumber='1' TimeIn='00:00:04:000' TimeOut='00:00:06:125' FadeUpTime='20' FadeDownTime='0'>\n"
      "<Text HAlign='left' HPosition='-12.5' VAlign='bottom' VPosition='14'>one</Text>\n"
      "<Image VAlign='top' VPosition='8'> a.png </Image></Subtitle></Font></DCSubtitle>");
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(m_Document.DCPFormat, Cairn::DFT_Interop);
  EXPECT_EQ(m_Document.Edition, Cairn::TimedTextEdition_t::Interop);
  EXPECT_EQ(m_Document.Version, Said("1.1", 1));
  EXPECT_EQ(m_Document.ID, (TextField<Cairn::UUID>{SampleID(1), 2}));
  EXPECT_EQ(m_Document.ContentTitle, Said("Ferry", 3));
  EXPECT_EQ(m_Document.ReelNumber, (TextField<Cairn::ui32_t>{2, 4}));
  EXPECT_EQ(m_Document.Language, Said("French", 5));
  EXPECT_FALSE(m_Document.EditRate.IsPresent());
  EXPECT_EQ(m_Document.UnitRate(), 1000U);
  EXPECT_THAT(m_Document.LoadFontList, ElementsAre(Cairn::LoadedFont{"F", {{}, "f.ttf"}, 6}));
  const Cairn::TextInstance& instance = m_Document.InstanceList.at(0);
  EXPECT_EQ(instance.TimeIn, (TextField<Cairn::i64_t>{4'000, 8}));
  EXPECT_EQ(instance.TimeOut, (TextField<Cairn::i64_t>{6'500, 8}));
  EXPECT_EQ(Line().Place.Halign, (TextField<Cairn::TextHalign_t>{Cairn::TextHalign_t::Left, 9}));
  EXPECT_EQ(Line().Place.Hposition, (TextField<double>{-12.5, 9}));
  EXPECT_EQ(Line().Direction, (TextField<Cairn::TextDirection_t>{Cairn::TextDirection_t::Horizontal, 0}));
  EXPECT_EQ(Font().Effect, (TextField<Cairn::TextEffect_t>{Cairn::TextEffect_t::Border, 7}));
  EXPECT_EQ(instance.ImageList.at(0).Resource.Path, "a.png");
}

TEST_F(TimedText, WhatAnSMPTEDocumentDoesNotSayHasItsDefault) {
  Read(SMPTE(""));
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(m_Document.Language, Said("en", 0));
  EXPECT_EQ(m_Document.DisplayType, Said("MainSubtitle", 0));
  EXPECT_EQ(m_Document.StartTime, (TextField<Cairn::i64_t>{0, 0}));
  EXPECT_FALSE(m_Document.ReelNumber.IsPresent());
  EXPECT_FALSE(m_Document.Annotation.IsPresent());
  EXPECT_EQ(m_Document.FontList.size(), 1U);
}

TEST_F(TimedText, ResourcesAreFontsThenImagesEachOnce) {
  Read(Interop("<LoadFont Id='a' URI='a.ttf'/><LoadFont Id='b' URI=' b.ttf '/><LoadFont Id='c' URI='a.ttf'/>" +
               Instance("<Image>2.PNG</Image><Image>1.png</Image><Image>2.PNG</Image><Image/>")));
  std::vector<std::string> paths;
  for (const Cairn::TextResource& resource : m_Document.Resources()) paths.push_back(resource.Path);
  EXPECT_THAT(paths, ElementsAre("a.ttf", "b.ttf", "2.PNG", "1.png"));
  EXPECT_THAT(Problems(), ElementsAre("2 malformed Image [] []"));
}

struct EditionForm {
  std::string Namespace;
  Cairn::TimedTextEdition_t Edition;
  std::vector<std::string> Problems;
};

TEST_F(TimedText, TheEditionIsThatOfTheNamespace) {
  using enum Cairn::TimedTextEdition_t;
  const std::string base = "http://www.smpte-ra.org/schemas/428-7/";
  const EditionForm forms[] = {
      {base + "2007/DCST", SMPTE2007, {}},
      {base + "2010/DCST", SMPTE2010, {}},
      {base + "2014/DCST", SMPTE2014, {}},
      {base + "2031/DCST", Other, {"1 other edition SubtitleReel [" + base + "2031/DCST] []"}},
  };
  for (const EditionForm& form : forms) {
    const std::string year = form.Namespace.substr(base.size(), 4);
    Read(SMPTE(Instance("<Text>a</Text>"), "", year));
    EXPECT_EQ(m_Document.Edition, form.Edition);
    EXPECT_EQ(m_Document.InstanceList.size(), 1U);
    EXPECT_EQ(Problems(), form.Problems);
  }
}

TEST_F(TimedText, RequiredElementsAreMissed) {
  Read("<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/2014/DCST'/>");
  EXPECT_THAT(Problems(),
              ElementsAre("1 missing Id [] []", "1 missing ContentTitleText [] []", "1 missing IssueDate [] []",
                          "1 missing EditRate [] []", "1 missing TimeCodeRate [] []", "1 missing SubtitleList [] []"));
  EXPECT_FALSE(m_Document.ID.IsPresent());
  Read("<DCSubtitle/>");
  EXPECT_THAT(Problems(),
              ElementsAre("1 missing DCSubtitle/@Version [] []", "1 missing SubtitleID [] []",
                          "1 missing MovieTitle [] []", "1 missing ReelNumber [] []", "1 missing Language [] []"));
}

struct HeadForm {
  std::string Heading;
  std::vector<std::string> Problems;
};

TEST_F(TimedText, ProblemsOfTheHeadingNameTheirLine) {
  const HeadForm forms[] = {
      {"\n<Language>fr</Language>\n<Language>de</Language>", {"3 repeated Language [de] []"}},
      {"\n<ReelNumber>0</ReelNumber>", {"2 out of range ReelNumber [0] []"}},
      {"\n<ReelNumber>one</ReelNumber>", {"2 malformed ReelNumber [one] []"}},
      {"\n<StartTime>0</StartTime>", {"2 malformed StartTime [0] [00:00:00:00]"}},
      {"\n<Producer>me</Producer>", {"2 unknown Producer [me] []"}},
      {"\n<x:Language xmlns:x='urn:x'>fr</x:Language>", {"2 unknown Language [fr] []"}},
      {"\nstray", {"1 misplaced SubtitleReel [stray] []"}},
      {"\n<LoadFont ID='F'>f.ttf</LoadFont>", {"2 malformed LoadFont [f.ttf] []"}},
      {"\n<LoadFont ID='F'>00000000-0000-4000-8000-000000000002</LoadFont>",
       {"2 malformed LoadFont [00000000-0000-4000-8000-000000000002] "
        "[urn:uuid:00000000-0000-4000-8000-000000000002]"}},
      {"\n<LoadFont Id='F'>urn:uuid:00000000-0000-4000-8000-000000000002</LoadFont>",
       {"2 other edition LoadFont/@Id [F] [F]"}},
      {"\n<LoadFont ID='F'>urn:uuid:00000000-0000-4000-8000-000000000002</LoadFont>\n<LoadFont ID='F' Size='2'>"
       "urn:uuid:00000000-0000-4000-8000-000000000003</LoadFont>",
       {"3 unknown LoadFont/@Size [2] []", "3 repeated LoadFont [F] []"}},
  };
  for (const HeadForm& form : forms) {
    Read(SMPTE("", form.Heading));
    EXPECT_EQ(Problems(), form.Problems) << form.Heading;
  }
}

TEST_F(TimedText, InteropFormsMetInThePracticeAreReadAndNamed) {
  Read(
      "<DCSubtitle Version='1.0'><SubtitleID>\nurn:uuid:00000000-0000-4000-8000-000000000001 </SubtitleID><MovieTitle/>"
      "<ReelNumber>1</ReelNumber><Language>en</Language><TimeCodeRate>24</TimeCodeRate><LoadFont Id='f'/>"
      "<Font Id='f' Color='ffffffff' EffectColor='0000FF' Underline='yes'>" +
      Instance("<Text>a</Text>") + "</Font></DCSubtitle>");
  EXPECT_EQ(m_Document.ID.Value, SampleID(1));
  EXPECT_EQ(Font().Color.Value, 0xFFFFFFFFU);
  EXPECT_EQ(Font().EffectColor.Value, 0xFF0000FFU);
  EXPECT_TRUE(Font().Underline.Value);
  EXPECT_THAT(Problems(), ElementsAre("1 other edition SubtitleID [urn:uuid:00000000-0000-4000-8000-000000000001] "
                                      "[00000000-0000-4000-8000-000000000001]",
                                      "2 missing LoadFont/@URI [] []", "2 unknown TimeCodeRate [24] []",
                                      "2 other edition Font/@Underline [yes] [yes]",
                                      "2 malformed Font/@EffectColor [0000FF] [FF0000FF]"));
}

TEST_F(TimedText, InstancesOutsideTheirListAreReadAndNamed) {
  Read("<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/2014/DCST'>\n" + Instance("<Text>a</Text>") +
       "</SubtitleReel>");
  EXPECT_EQ(m_Document.InstanceList.size(), 1U);
  EXPECT_THAT(Problems(), testing::Contains("2 misplaced Subtitle [] []"));
  Read(Interop("<SubtitleList>" + Instance("<Text>a</Text>") + "</SubtitleList>"));
  EXPECT_EQ(m_Document.InstanceList.size(), 1U);
  EXPECT_THAT(Problems(), ElementsAre("2 misplaced SubtitleList [] []"));
}

TEST_F(TimedText, AnotherDocumentIsNoTimedText) {
  for (const char* root : {"<CompositionPlaylist xmlns='http://www.smpte-ra.org/schemas/429-7/2006/CPL'/>",
                           "<Subtitle xmlns='http://www.smpte-ra.org/schemas/428-7/2014/DCST'/>"})
    EXPECT_EQ(m_Document.DecodeXML(root), Cairn::RESULT_NOT_SUBTITLE) << root;
  EXPECT_EQ(m_Document.DecodeXML("<SubtitleReel/>"), Cairn::RESULT_XML_NAMESPACE);
  EXPECT_EQ(m_Document.DecodeXML(""), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(m_Document.DecodeXML("noise"), Cairn::RESULT_XML_PARSE);
}

TEST_F(TimedText, NothingIsLeftOfADocumentThatIsNotWellFormed) {
  Read(SMPTE(Instance("<Text>a</Text>")));
  EXPECT_EQ(m_Document.DecodeXML(SMPTE("<Subtitle>")), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(m_Document, Cairn::TimedText());
}

}  // namespace
