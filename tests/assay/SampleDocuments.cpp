// SPDX-License-Identifier: BSD-3-Clause
#include "SampleDocuments.h"

namespace testsupport {
namespace {

constexpr char Declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr char SMPTETitle[] = "SoundFilm_FTR-1_F_EN-FR-CCAP_US-13_51-HI-VI-IAB_2K_ST_20240301_FAC_SMPTE_OV";
constexpr char InteropTitle[] = "SoundFilm_FTR-1_F_EN-FR_US-13_51_2K_ST_20240301_FAC_IOP_OV";
constexpr char MadeUpHash[] = "<Hash>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</Hash>";

std::string ID(const char* last) {
  return std::string("<Id>urn:uuid:0f0f0f0f-1111-4222-8333-0000000000") + last + "</Id>\n";
}

std::string Lengths(const std::string& rate, const std::string& length) {
  return "<EditRate>" + rate + "</EditRate>\n<IntrinsicDuration>" + length +
         "</IntrinsicDuration>\n<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n";
}

std::string TrackFile(const char* id, const std::string& length = "240") {
  return ID(id) + Lengths("24 1", length) + MadeUpHash + "\n";
}

std::string Markers(const char* id, const std::string& markers) {
  return "<MainMarkers>\n" + ID(id) + "<EditRate>24 1</EditRate>\n<IntrinsicDuration>240</IntrinsicDuration>\n" +
         "<MarkerList>\n" + markers + "</MarkerList>\n</MainMarkers>\n";
}

std::string Marker(const std::string& label, const std::string& offset) {
  return "<Marker><Label>" + label + "</Label><Offset>" + offset + "</Offset></Marker>\n";
}

constexpr char Metadata[] =
    R"(<meta:CompositionMetadataAsset xmlns:meta="http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata">
<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000018</Id>
<EditRate>24 1</EditRate>
<IntrinsicDuration>240</IntrinsicDuration>
<meta:FullContentTitleText language="en">Sound Film</meta:FullContentTitleText>
<meta:ReleaseTerritory>840</meta:ReleaseTerritory>
<meta:VersionNumber status="final">1</meta:VersionNumber>
<meta:Chain>Chain</meta:Chain>
<meta:Distributor>Distributor</meta:Distributor>
<meta:Facility>Facility</meta:Facility>
<meta:AlternateContentVersionList><meta:ContentVersion><Id>urn:x:1</Id><LabelText>other</LabelText></meta:ContentVersion></meta:AlternateContentVersionList>
<meta:Luminance units="foot-lambert">14</meta:Luminance>
<meta:MainSoundConfiguration>51/L,R,C,LFE,Ls,Rs,HI,VIN</meta:MainSoundConfiguration>
<meta:MainSoundSampleRate>48000 1</meta:MainSoundSampleRate>
<meta:MainPictureStoredArea><meta:Width>1998</meta:Width><meta:Height>1080</meta:Height></meta:MainPictureStoredArea>
<meta:MainPictureActiveArea><meta:Width>1998</meta:Width><meta:Height>1080</meta:Height></meta:MainPictureActiveArea>
<meta:MainSubtitleLanguageList>fr</meta:MainSubtitleLanguageList>
<meta:ExtensionMetadataList>
<meta:ExtensionMetadata scope="http://isdcf.com/ns/cplmd/app">
<meta:Name>Application</meta:Name>
<meta:PropertyList><meta:Property><meta:Name>DCP Constraints Profile</meta:Name><meta:Value>SMPTE-RDD-52:2020-Bv2.1</meta:Value></meta:Property></meta:PropertyList>
</meta:ExtensionMetadata>
</meta:ExtensionMetadataList>
</meta:CompositionMetadataAsset>
)";

std::string SMPTEReel(int number) {
  const bool is_first = number == 1;
  const std::string tens = is_first ? "1" : "2";
  const auto id = [&](const char* ones) { return tens + ones; };
  const std::string markers =
      is_first ? Marker("FFOC", "1") : Marker("FFEC", "100") + Marker("FFMC", "200") + Marker("LFOC", "239");
  return "<Reel>\n" + ID(id("0").c_str()) + "<AssetList>\n" + Markers(id("1").c_str(), markers) + "<MainPicture>\n" +
         TrackFile(id("2").c_str()) +
         "<FrameRate>24 1</FrameRate>\n<ScreenAspectRatio>1998 1080</ScreenAspectRatio>\n</MainPicture>\n" +
         "<MainSound>\n" + TrackFile(id("3").c_str()) + "<Language>en</Language>\n</MainSound>\n" + "<MainSubtitle>\n" +
         TrackFile(id("4").c_str()) + "<Language>fr</Language>\n</MainSubtitle>\n" +
         "<tt:ClosedCaption xmlns:tt=\"http://www.smpte-ra.org/schemas/429-12/2008/TT\">\n" +
         TrackFile(id("5").c_str()) + "<tt:Language>en</tt:Language>\n</tt:ClosedCaption>\n" +
         "<axd:AuxData xmlns:axd=\"http://www.dolby.com/schemas/2012/AD\">\n" + TrackFile(id("6").c_str()) +
         "<axd:DataType>urn:smpte:ul:060e2b34.04010105.0e090604.00000000</axd:DataType>\n</axd:AuxData>\n" +
         (is_first ? Metadata : "") + "</AssetList>\n</Reel>\n";
}

std::string SMPTEHead(const std::string& title) {
  return std::string(Declaration) + "<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\">\n" +
         ID("03") + "<AnnotationText>" + title +
         "</AnnotationText>\n<IssueDate>2024-03-01T09:30:00+00:00</IssueDate>\n<Issuer>Issuer</Issuer>\n"
         "<Creator>Creator 1.0</Creator>\n<ContentTitleText>" +
         title + "</ContentTitleText>\n<ContentKind>feature</ContentKind>\n<ContentVersion>\n" +
         "<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000004</Id>\n<LabelText>" + title +
         "</LabelText>\n</ContentVersion>\n<RatingList>\n<Rating><Agency>http://www.mpaa.org/2003-ratings</Agency>"
         "<Label>PG-13</Label></Rating>\n</RatingList>\n<ReelList>\n";
}

std::string MapAsset(const char* id, const std::string& path, const std::string& mark = "") {
  return "<Asset>\n" + ID(id) + mark + "<ChunkList><Chunk><Path>" + path +
         "</Path><VolumeIndex>1</VolumeIndex><Offset>0</Offset>" +
         (path.ends_with(".xml") ? "" : "<Length>1</Length>") + "</Chunk></ChunkList>\n</Asset>\n";
}

std::string ListAsset(const char* id, const std::string& type, const std::string& name) {
  return "<Asset>\n" + ID(id) + MadeUpHash + "\n<Size>1</Size>\n<Type>" + type + "</Type>\n<OriginalFileName>" + name +
         "</OriginalFileName>\n</Asset>\n";
}

constexpr const char* TrackFiles[] = {"12", "13", "14", "15", "16", "22", "23", "24", "25", "26"};

constexpr char Signature[] =
    R"(<Signer xmlns:ds="http://www.w3.org/2000/09/xmldsig#"><ds:X509Data><ds:X509IssuerSerial><ds:X509IssuerName>CN=.made.up</ds:X509IssuerName><ds:X509SerialNumber>5</ds:X509SerialNumber></ds:X509IssuerSerial></ds:X509Data></Signer>
<ds:Signature xmlns:ds="http://www.w3.org/2000/09/xmldsig#">
<ds:SignedInfo>
<ds:CanonicalizationMethod Algorithm="http://www.w3.org/TR/2001/REC-xml-c14n-20010315"/>
<ds:SignatureMethod Algorithm="http://www.w3.org/2001/04/xmldsig-more#rsa-sha256"/>
<ds:Reference URI=""><ds:Transforms><ds:Transform Algorithm="http://www.w3.org/2000/09/xmldsig#enveloped-signature"/></ds:Transforms><ds:DigestMethod Algorithm="http://www.w3.org/2000/09/xmldsig#sha1"/><ds:DigestValue>AAAAAAAAAAAAAAAAAAAAAAAAAAA=</ds:DigestValue></ds:Reference>
</ds:SignedInfo>
<ds:SignatureValue>AAAA</ds:SignatureValue>
<ds:KeyInfo><ds:X509Data><ds:X509IssuerSerial><ds:X509IssuerName>CN=.made.up</ds:X509IssuerName><ds:X509SerialNumber>5</ds:X509SerialNumber></ds:X509IssuerSerial><ds:X509Certificate>AAAA</ds:X509Certificate></ds:X509Data></ds:KeyInfo>
</ds:Signature>
)";

}  // namespace

std::string SMPTEAssetMap() {
  std::string assets = MapAsset("02", "PKL.xml", "<PackingList>true</PackingList>\n") + MapAsset("03", "CPL.xml");
  for (const char* id : TrackFiles) assets += MapAsset(id, std::string("file_") + id + ".mxf");
  return std::string(Declaration) + "<AssetMap xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\">\n" + ID("01") +
         "<AnnotationText>" + SMPTETitle +
         "</AnnotationText>\n<Creator>Creator 1.0</Creator>\n<VolumeCount>1</VolumeCount>\n"
         "<IssueDate>2024-03-01T09:32:00+00:00</IssueDate>\n<Issuer>Issuer</Issuer>\n<AssetList>\n" +
         assets + "</AssetList>\n</AssetMap>\n";
}

std::string SMPTEVolumeIndex() {
  return std::string(Declaration) +
         "<VolumeIndex xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\">\n<Index>1</Index>\n</VolumeIndex>\n";
}

std::string SMPTEPackingList() {
  std::string assets = ListAsset("03", "text/xml", "CPL.xml");
  for (const char* id : TrackFiles) assets += ListAsset(id, "application/mxf", std::string("file_") + id + ".mxf");
  return std::string(Declaration) + "<PackingList xmlns=\"http://www.smpte-ra.org/schemas/429-8/2007/PKL\">\n" +
         ID("02") + "<AnnotationText>" + SMPTETitle +
         "</AnnotationText>\n<IssueDate>2024-03-01T09:31:00+00:00</IssueDate>\n<Issuer>Issuer</Issuer>\n"
         "<Creator>Creator 1.0</Creator>\n<AssetList>\n" +
         assets + "</AssetList>\n</PackingList>\n";
}

std::string SignedPackingList() {
  std::string list = SMPTEPackingList();
  return list.insert(list.rfind("</PackingList>"), Signature);
}

std::string SMPTEComposition() {
  return SMPTEHead(SMPTETitle) + SMPTEReel(1) + SMPTEReel(2) + "</ReelList>\n</CompositionPlaylist>\n";
}

std::string SMPTEStereoscopicComposition() {
  return SMPTEHead("Stereo") + "<Reel>\n" + ID("10") + "<AssetList>\n<MainSound>\n" + TrackFile("13") +
         "</MainSound>\n<msp:MainStereoscopicPicture "
         "xmlns:msp=\"http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-CPL\">\n" +
         TrackFile("12") +
         "<FrameRate>48 1</FrameRate>\n<ScreenAspectRatio>1998 1080</ScreenAspectRatio>\n"
         "</msp:MainStereoscopicPicture>\n<axd:AuxData "
         "xmlns:axd=\"http://www.smpte-ra.org/schemas/429-14/2014/Aux-Data\">\n" +
         TrackFile("16") +
         "<axd:DataEssenceCoding>urn:smpte:ul:060e2b34.04010105.0e090604.00000000</axd:DataEssenceCoding>\n"
         "<x:Other xmlns:x=\"urn:x\"/>\n</axd:AuxData>\n</AssetList>\n</Reel>\n</ReelList>\n</CompositionPlaylist>\n";
}

std::string InteropAssetMap() {
  return std::string(Declaration) + "<AssetMap xmlns=\"http://www.digicine.com/PROTO-ASDCP-AM-20040311#\">\n" +
         ID("01") + "<AnnotationText>" + InteropTitle +
         "</AnnotationText>\n<VolumeCount>1</VolumeCount>\n<IssueDate>2024-03-01T09:32:00+00:00</IssueDate>\n"
         "<Issuer>Issuer</Issuer>\n<Creator>Creator 1.0</Creator>\n<AssetList>\n" +
         MapAsset("02", "PKL.xml", "<PackingList/>\n") + MapAsset("03", "CPL.xml") + MapAsset("12", "file_12.mxf") +
         MapAsset("13", "file_13.mxf") + MapAsset("14", "text/text.xml") + MapAsset("17", "text/font.ttf") +
         MapAsset("18", "text/spot.png") + "</AssetList>\n</AssetMap>\n";
}

std::string InteropVolumeIndex() {
  return std::string(Declaration) +
         "<VolumeIndex xmlns=\"http://www.digicine.com/PROTO-ASDCP-VL-20040311#\">\n<Index>1</Index>\n"
         "</VolumeIndex>\n";
}

std::string InteropPackingList() {
  return std::string(Declaration) + "<PackingList xmlns=\"http://www.digicine.com/PROTO-ASDCP-PKL-20040311#\">\n" +
         ID("02") + "<AnnotationText>" + InteropTitle +
         "</AnnotationText>\n<IssueDate>2024-03-01T09:31:00+00:00</IssueDate>\n<Issuer>Issuer</Issuer>\n"
         "<Creator>Creator 1.0</Creator>\n<AssetList>\n" +
         ListAsset("03", "text/xml;asdcpKind=CPL", "CPL.xml") +
         ListAsset("12", "application/x-smpte-mxf;asdcpKind=Picture", "file_12.mxf") +
         ListAsset("13", "application/x-smpte-mxf;asdcpKind=Sound", "file_13.mxf") +
         ListAsset("14", "text/xml;asdcpKind=Subtitle", "text.xml") + ListAsset("17", "application/ttf", "font.ttf") +
         ListAsset("18", "image/png", "spot.png") + "</AssetList>\n</PackingList>\n";
}

std::string InteropComposition() {
  return std::string(Declaration) +
         "<CompositionPlaylist xmlns=\"http://www.digicine.com/PROTO-ASDCP-CPL-20040511#\">\n" + ID("03") +
         "<AnnotationText xml:lang=\"en\">" + InteropTitle +
         "</AnnotationText>\n<IssueDate>2024-03-01T09:30:00+00:00</IssueDate>\n<Issuer>Issuer</Issuer>\n"
         "<Creator>Creator 1.0</Creator>\n<ContentTitleText>" +
         InteropTitle + "</ContentTitleText>\n<ContentKind>feature</ContentKind>\n<RatingList/>\n<ReelList>\n<Reel>\n" +
         ID("10") + "<AssetList>\n" + Markers("11", Marker("FFOC", "1") + Marker("LFOC", "239")) + "<MainPicture>\n" +
         TrackFile("12") +
         "<FrameRate>24 1</FrameRate>\n<ScreenAspectRatio>1.85</ScreenAspectRatio>\n</MainPicture>\n<MainSound>\n" +
         TrackFile("13") + "<Language>en</Language>\n</MainSound>\n<MainSubtitle>\n" + TrackFile("14") +
         "<Language>fr</Language>\n</MainSubtitle>\n</AssetList>\n</Reel>\n</ReelList>\n</CompositionPlaylist>\n";
}

std::string InteropText() {
  return std::string(Declaration) + R"(<DCSubtitle Version="1.1">
<SubtitleID>0f0f0f0f-1111-4222-8333-000000000014</SubtitleID>
<MovieTitle>Sound Film</MovieTitle>
<ReelNumber>1</ReelNumber>
<Language>French</Language>
<LoadFont Id="Main" URI="font.ttf"/>
<Font Id="Main" Color="FFFFFFFF" Effect="border" EffectColor="FF000000" Italic="no" Script="normal" Size="42" Underlined="no" Weight="normal" AspectAdjust="1.0" Spacing="0em">
<Subtitle SpotNumber="1" TimeIn="00:00:04:000" TimeOut="00:00:06:125" FadeUpTime="20" FadeDownTime="00:00:00:020">
<Text Direction="horizontal" HAlign="center" HPosition="0" VAlign="bottom" VPosition="14">one <Font Italic="yes">two</Font><Space Size="1em"/></Text>
<Text VAlign="bottom" VPosition="8"><Ruby><Rb>base</Rb><Rt Size="0.5em" Position="before">over</Rt></Ruby><HGroup>x</HGroup><Rotate Direction="left">y</Rotate></Text>
</Subtitle>
<Subtitle SpotNumber="2" TimeIn="00:00:07.5" TimeOut="00:00:09:249"><Image HAlign="center" VPosition="8">spot.png</Image></Subtitle>
</Font>
</DCSubtitle>
)";
}

std::string SMPTEText(int year) {
  const bool is_2014 = year == 2014;
  return std::string(Declaration) + "<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/" +
         std::to_string(year) + "/DCST\">\n" + ID("30") +
         "<ContentTitleText language=\"en\">Sound Film</ContentTitleText>\n<AnnotationText>French</AnnotationText>\n"
         "<IssueDate>2024-03-01T09:00:00Z</IssueDate>\n<ReelNumber>1</ReelNumber>\n<Language>fr</Language>\n"
         "<EditRate>24 1</EditRate>\n<TimeCodeRate>24</TimeCodeRate>\n<StartTime>00:00:00:00</StartTime>\n" +
         (year == 2007 ? "" : "<DisplayType>MainSubtitle</DisplayType>\n") +
         "<LoadFont ID=\"Main\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>\n<SubtitleList>\n"
         "<Font ID=\"Main\" Color=\"FFFFFFFF\" Effect=\"border\" EffectColor=\"FF000000\" Size=\"42\" "
         "Weight=\"normal\" Underline=\"no\">\n"
         "<Subtitle SpotNumber=\"1\" TimeIn=\"00:00:04:00\" TimeOut=\"00:00:06:03\" FadeUpTime=\"00:00:00:02\">\n" +
         (is_2014 ? "<LoadVariableZ ID=\"z\">0:24 1:24</LoadVariableZ>\n" : "") +
         "<Text Halign=\"center\" Hposition=\"0\" Valign=\"bottom\" Vposition=\"14\" Direction=\"ltr\"" +
         (is_2014 ? " Zposition=\"1.5\"" : "") +
         ">one <Font Italic=\"yes\">two</Font><Space Size=\"0.5\"/></Text>\n"
         "<Font Size=\"40\"><Text Valign=\"bottom\"><Ruby><Rb>base</Rb><Rt Size=\"0.5\" Position=\"after\" "
         "Offset=\"-0.5\">over</Rt></Ruby><HGroup>x</HGroup><Rotate Direction=\"left\">y</Rotate></Text></Font>\n"
         "</Subtitle>\n</Font>\n<Subtitle TimeIn=\"00:00:07:00\" TimeOut=\"00:00:09:00\"><Image Valign=\"bottom\" "
         "Vposition=\"8\">urn:uuid:0f0f0f0f-1111-4222-8333-000000000032</Image></Subtitle>\n</SubtitleList>\n"
         "</SubtitleReel>\n";
}

}  // namespace testsupport
