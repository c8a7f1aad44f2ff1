// SPDX-License-Identifier: BSD-3-Clause
#include "SampleText.h"

#include "../support/FontMaker.h"
#include "../support/TemporaryFolder.h"
#include "SamplePackage.h"

#include <QUIRE/TimedTextReader.h>
#include <QUIRE/TimedTextWriter.h>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace testsupport {
namespace {

namespace fs = std::filesystem;

const std::string Base = "0f0f0f0f-1111-4222-8333-0000000000";

Assay::UUID ID(const std::string& last) {
  return *Assay::UUID::FromHex(Base + last);
}

constexpr char SMPTEText[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<SubtitleReel xmlns="http://www.smpte-ra.org/schemas/428-7/2014/DCST">
<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000030</Id>
<ContentTitleText>Sound Film</ContentTitleText>
<IssueDate>2024-03-01T09:00:00Z</IssueDate>
<ReelNumber>1</ReelNumber>
<Language>fr</Language>
<EditRate>24 1</EditRate>
<TimeCodeRate>24</TimeCodeRate>
<StartTime>00:00:00:00</StartTime>
<DisplayType>MainSubtitle</DisplayType>
<LoadFont ID="Main">urn:uuid:0f0f0f0f-1111-4222-8333-000000000031</LoadFont>
<SubtitleList>
<Font ID="Main">
<Subtitle SpotNumber="1" TimeIn="00:00:04:00" TimeOut="00:00:06:00" FadeUpTime="00:00:00:02" FadeDownTime="00:00:00:02">
<Text Valign="bottom" Vposition="14">one</Text>
<Text Valign="bottom" Vposition="8">two</Text>
</Subtitle>
</Font>
<Subtitle SpotNumber="2" TimeIn="00:00:07:00" TimeOut="00:00:09:00">
<Image Valign="bottom" Vposition="8">urn:uuid:0f0f0f0f-1111-4222-8333-000000000032</Image>
</Subtitle>
</SubtitleList>
</SubtitleReel>
)";

constexpr char InteropText[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<DCSubtitle Version="1.1">
<SubtitleID>0f0f0f0f-1111-4222-8333-000000000014</SubtitleID>
<MovieTitle>Sound Film</MovieTitle>
<ReelNumber>1</ReelNumber>
<Language>French</Language>
<LoadFont Id="Main" URI="font.ttf"/>
<Font Id="Main">
<Subtitle SpotNumber="1" TimeIn="00:00:04:000" TimeOut="00:00:06:000" FadeUpTime="20" FadeDownTime="20">
<Text VAlign="bottom" VPosition="14">one</Text>
<Text VAlign="bottom" VPosition="8">two</Text>
</Subtitle>
</Font>
<Subtitle SpotNumber="2" TimeIn="00:00:07:000" TimeOut="00:00:09:000">
<Image VAlign="bottom" VPosition="8">spot.png</Image>
</Subtitle>
</DCSubtitle>
)";

constexpr char Assets[] = R"(<MainPicture>
<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000012</Id>
<EditRate>24 1</EditRate><IntrinsicDuration>240</IntrinsicDuration><EntryPoint>0</EntryPoint><Duration>240</Duration>
</MainPicture>
<MainSubtitle>
<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000014</Id>
<EditRate>24 1</EditRate><IntrinsicDuration>240</IntrinsicDuration><EntryPoint>0</EntryPoint><Duration>240</Duration>
<Language>fr</Language>
</MainSubtitle>
)";

void Replace(std::string& text, const std::string& from, const std::string& to, bool all) {
  size_t at = text.find(from);
  if (at == std::string::npos) {
    std::cerr << "the sample has no " << from << '\n';
    std::abort();
  }
  for (; at != std::string::npos; at = all ? text.find(from, at + to.size()) : std::string::npos)
    text.replace(at, from.size(), to);
}

void Check(QUIRE::Result_t result) {
  if (result.Failure()) {
    std::cerr << result.Label() << '\n';
    std::abort();
  }
}

TrackFileSpec SpecOf(const SampleText& text) {
  TrackFileSpec spec;
  spec.AssetID = text.FileID;
  spec.Key = text.Key;
  return spec;
}

void WriteTrackFile(const SampleText& text, const std::string& path) {
  const TrackFileSpec spec = SpecOf(text);
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  descriptor.EditRate = text.FileRate;
  descriptor.ContainerDuration = 240;
  descriptor.AssetID = text.ResourceID;
  descriptor.NamespaceName = "http://www.smpte-ra.org/schemas/428-7/2014/DCST";
  std::vector<const Bytes*> resources;
  const auto add = [&](const std::optional<Bytes>& bytes, const char* id, QUIRE::TimedText::MIMEType_t type) {
    if (!bytes) return;
    descriptor.ResourceList.push_back({ID(id), type});
    resources.push_back(&*bytes);
  };
  add(text.Font, "31", QUIRE::TimedText::MT_OPENTYPE);
  add(text.Image, "32", QUIRE::TimedText::MT_PNG);
  QUIRE::TimedText::MXFWriter writer;
  WriteContexts contexts(spec);
  Check(writer.OpenWrite(path, MakeWriterInfo(spec), descriptor, MakeWriterOptions()));
  Check(writer.WriteTimedTextResource(text.Xml, contexts.Encryption(), contexts.Integrity()));
  for (size_t i = 0; i < resources.size(); ++i) {
    QUIRE::TimedText::FrameBuffer buffer;
    FillBuffer(*resources[i], buffer);
    buffer.AssetID(descriptor.ResourceList[i].ResourceID);
    Check(writer.WriteAncillaryResource(buffer, contexts.Encryption(), contexts.Integrity()));
  }
  Check(writer.Finalize());
}

void WriteBytes(const std::string& path, const std::optional<Bytes>& bytes) {
  if (bytes)
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes->data()), static_cast<std::streamsize>(bytes->size()));
}

/// What a track file's header tells of a text.
Assay::TrackFile TextTrackFile(const SampleText& text, const std::string& folder, const std::string& name) {
  WriteTrackFile(text, folder + '/' + name);
  Assay::TrackFile file;
  file.Package = folder;
  file.Path = name;
  file.ID = ID("14");
  file.Size = fs::file_size(fs::path(folder) / name);
  QUIRE::TimedText::MXFReader reader;
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  Check(reader.OpenRead(folder + '/' + name));
  Check(reader.FillWriterInfo(file.Info));
  Check(reader.FillTimedTextDescriptor(descriptor));
  file.Opened = Ferro::RESULT_OK;
  file.EditRate = descriptor.EditRate;
  file.Essence = descriptor;
  if (text.Damage) text.Damage(folder + '/' + name);
  return file;
}

Assay::TrackFile PictureTrackFile() {
  Assay::TrackFile file;
  file.Opened = Ferro::RESULT_OK;
  QUIRE::JP2K::PictureDescriptor picture;
  picture.StoredWidth = 1998;
  picture.StoredHeight = 1080;
  file.Essence = picture;
  return file;
}

std::string Composition(const std::vector<SampleText>& reels, const TextCheck& check) {
  std::string text = "<CompositionPlaylist xmlns=\"";
  text += check.IsInterop ? "http://www.digicine.com/PROTO-ASDCP-CPL-20040511#"
                          : "http://www.smpte-ra.org/schemas/429-7/2006/CPL";
  text +=
      "\">\n<Id>urn:uuid:" + Base + "03</Id>\n<ContentTitleText>" + check.Title + "</ContentTitleText>\n<ReelList>\n";
  for (const SampleText& reel : reels) text += "<Reel>\n<AssetList>\n" + reel.Asset + "</AssetList>\n</Reel>\n";
  return text + "</ReelList>\n</CompositionPlaylist>\n";
}

}  // namespace

SampleText::SampleText(Kind kind)
    : Flavour(kind),
      Xml(kind == Kind::SMPTE ? SMPTEText : InteropText),
      Asset(Assets),
      Font(MakeTrueType(U" abcdefghijklmnopqrstuvwxyz0123456789")),
      Image(MakePNG(200)),
      FileID(ID("14")),
      ResourceID(ID("30")) {}

SampleText& SampleText::Edit(const std::string& from, const std::string& to) {
  Replace(Xml, from, to, false);
  return *this;
}

SampleText& SampleText::EditAll(const std::string& from, const std::string& to) {
  Replace(Xml, from, to, true);
  return *this;
}

SampleText& SampleText::EditAsset(const std::string& from, const std::string& to) {
  Replace(Asset, from, to, false);
  return *this;
}

SampleText& SampleText::Subtitles(const std::string& subtitles) {
  const std::string close = Flavour == Kind::SMPTE ? "</SubtitleList>" : "</DCSubtitle>";
  const size_t begin = Xml.find("<Font");
  Xml.replace(begin, Xml.find(close) - begin, subtitles);
  return *this;
}

SampleText& SampleText::AsCaption() {
  Replace(Asset, "MainSubtitle", "ClosedCaption", true);
  if (Flavour == Kind::SMPTE) Edit("MainSubtitle", "ClosedCaption");
  return *this;
}

Assay::FindingList FindIn(const std::vector<SampleText>& reels, const TextCheck& check) {
  const TemporaryFolder temporary;
  const std::string folder = temporary.Folder().string();
  const auto document = Assay::DocumentFile::FromText(folder, "CPL.xml", Composition(reels, check));
  const Assay::Composition composition = Assay::ReadComposition(document);
  const Assay::TrackFile picture = PictureTrackFile();
  std::deque<Assay::TrackFile> files;
  std::deque<Assay::DocumentPlace> documents;
  Assay::CompositionFiles uses;
  uses.Composition = &composition;
  for (size_t i = 0; i < reels.size(); ++i)
    for (const Assay::ReelAsset& asset : composition.Reels[i].Assets) {
      Assay::AssetFile& use = uses.Assets.emplace_back();
      use.Reel = &composition.Reels[i];
      use.Asset = &asset;
      const std::string number = std::to_string(i);
      if (asset.Role == Assay::AssetRole::Picture) {
        use.File = &picture;
      } else if (reels[i].Flavour == SampleText::Kind::SMPTE) {
        use.File = &files.emplace_back(TextTrackFile(reels[i], folder, number + ".mxf"));
      } else {
        fs::create_directory(fs::path(folder) / number);
        std::ofstream(folder + '/' + number + "/text.xml") << reels[i].Xml;
        WriteBytes(folder + '/' + number + "/font.ttf", reels[i].Font);
        WriteBytes(folder + '/' + number + "/spot.png", reels[i].Image);
        use.Document = &documents.emplace_back(Assay::DocumentPlace{folder, number + "/text.xml"});
      }
    }
  const std::deque<Assay::Package> packages;
  Assay::TextFiles texts(packages, {check.Depth, check.Keys});
  Assay::FindingList findings;
  FindInTexts(uses, texts, findings);
  return findings;
}

std::vector<std::string> NamesIn(const SampleText& text, Assay::Depth depth) {
  TextCheck check;
  check.Depth = depth;
  check.IsInterop = text.Flavour == SampleText::Kind::Interop;
  return NamesOf(FindIn({text}, check));
}

}  // namespace testsupport
