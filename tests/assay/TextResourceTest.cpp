// SPDX-License-Identifier: BSD-3-Clause
#include "../support/FontMaker.h"
#include "../support/LogCapture.h"
#include "SamplePackage.h"
#include "SampleText.h"

#include "text/Characters.h"
#include "text/FontFile.h"
#include "text/PNGFile.h"
#include "text/TextFindings.h"

#include <QUIRE/TimedTextReader.h>
#include <Sigil/KeyRing.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

namespace {

using testsupport::Bytes;
using testsupport::FindIn;
using testsupport::MakePNGHeader;
using testsupport::MakeTrueType;
using testsupport::NamesIn;
using testsupport::NamesOf;
using testsupport::SampleText;
using testsupport::TextCheck;
using enum testsupport::SampleText::Kind;
using Names = std::vector<std::string>;

constexpr char SystemFont[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

Bytes ReadSystemFont() {
  std::ifstream file(SystemFont, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

SampleText WithFont(std::optional<Bytes> font, SampleText::Kind kind = SMPTE) {
  SampleText text(kind);
  text.Font = std::move(font);
  return text;
}

SampleText WithImage(std::optional<Bytes> image, SampleText::Kind kind = SMPTE) {
  SampleText text(kind);
  text.Image = std::move(image);
  return text;
}

TEST(TextResources, FontsAreThere) {
  for (const SampleText::Kind kind : {SMPTE, Interop}) {
    EXPECT_EQ(NamesIn(WithFont(std::nullopt, kind), Assay::Depth::Files), Names{"text-font-missing"});
    EXPECT_EQ(NamesIn(WithFont(std::nullopt, kind)), Names{"text-font-missing"});
    EXPECT_EQ(NamesIn(WithFont(Bytes{'n', 'o'}, kind)), Names{"text-font-missing"});
    EXPECT_EQ(NamesIn(WithFont(Bytes{'n', 'o'}, kind), Assay::Depth::Files), Names{});  // fonts are not opened
  }
}

TEST(TextResources, FilesLieInsideOfThePackage) {
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit("font.ttf", "../../../../../../" + std::string(SystemFont).substr(1))),
            Names{"text-font-missing"});
}

TEST(TextResources, FontsHaveTheCharacters) {
  const auto with = [](const std::string& text) {
    return FindIn({SampleText().Edit(">two<", '>' + text + '<').Edit(">one<", '>' + text + '<')}, {});
  };
  EXPECT_EQ(NamesOf(with("abc 123")), Names{});
  EXPECT_EQ(NamesOf(with("soft\xC2\xADhyphen")), Names{});
  const Assay::FindingList findings = with("a\xD0\x96\xD0\x97");
  ASSERT_EQ(NamesOf(findings), Names{"text-glyph-missing"});
  EXPECT_EQ(findings[0].Found, "U+0416 \xD0\x96, 1 more");
  EXPECT_EQ(findings[0].Place.EditUnit, 96U);
  EXPECT_EQ(findings[0].Place.Line, 16U);
  EXPECT_EQ(NamesIn(SampleText().Edit(">two<", ">\xD0\x96<"), Assay::Depth::Files), Names{});
  EXPECT_EQ(NamesIn(SampleText().Edit(">two<", ">\xD0\x96<").AsCaption()), Names{});  // devices have their own font
  EXPECT_EQ(NamesIn(SampleText(Interop).Edit(">two<", ">\xD0\x96<")), Names{"text-glyph-missing"});
  EXPECT_EQ(NamesIn(SampleText().Edit(">two<", "><Ruby><Rb>a</Rb><Rt>\xD0\x96</Rt></Ruby><")),
            Names{"text-glyph-missing"});
}

TEST(TextResources, ATrueFontHasTheCharactersOfManyLanguages) {
  SampleText text = WithFont(ReadSystemFont());
  text.Edit(">two<",
            ">Stra\xC3\x9F"
            "e \xD0\x96 \xCE\xA9<");
  EXPECT_EQ(NamesIn(text), Names{});
  EXPECT_EQ(NamesIn(text.Edit(">one<", ">\xE6\xBC\xA2<")), Names{"text-glyph-missing"});
}

TEST(TextResources, InteropFontsAreSmall) {
  const auto with = [](size_t size) {
    Bytes font = *SampleText().Font;
    font.resize(size);
    return NamesIn(WithFont(font, Interop));
  };
  EXPECT_EQ(with(655'360), Names{});
  EXPECT_EQ(with(655'361), Names{"text-font-size"});
}

TEST(TextResources, PicturesAreThere) {
  for (const SampleText::Kind kind : {SMPTE, Interop}) {
    EXPECT_EQ(NamesIn(WithImage(std::nullopt, kind), Assay::Depth::Files), Names{"text-image-missing"});
    EXPECT_EQ(NamesIn(WithImage(Bytes{'n', 'o'}, kind)), Names{"text-image-missing"});
  }
}

TEST(TextResources, BytesBehindAPictureAreTold) {
  Bytes longer = MakePNGHeader(640, 120);
  longer.push_back(0);
  EXPECT_EQ(NamesIn(WithImage(longer)), Names{"text-image-missing warning"});
  EXPECT_EQ(NamesIn(WithImage(longer, Interop)), Names{"text-image-missing warning"});
}

TEST(TextResources, PicturesFitOnThePicture) {
  EXPECT_EQ(NamesIn(WithImage(MakePNGHeader(1998, 1080))), Names{});
  EXPECT_EQ(NamesIn(WithImage(MakePNGHeader(1999, 1080))), Names{"text-image-missing warning"});
  EXPECT_EQ(NamesIn(WithImage(MakePNGHeader(1998, 1081))), Names{"text-image-missing warning"});
  EXPECT_EQ(NamesIn(WithImage(MakePNGHeader(1999, 1080), Interop)), Names{"text-image-missing warning"});
}

TEST(TextResources, CaptionsAndResourcesAreSmall) {
  constexpr size_t MaxCaption = 256 * 1024;
  const auto caption = [](size_t size) {
    SampleText text = SampleText().AsCaption();
    text.Xml.append(size - text.Xml.size(), '\n');
    return NamesIn(text);
  };
  EXPECT_EQ(caption(MaxCaption), Names{});
  EXPECT_EQ(caption(MaxCaption + 1), Names{"text-size"});
  const auto font = [](size_t size) {
    Bytes bytes = *SampleText().Font;
    bytes.resize(size);
    return NamesIn(WithFont(bytes));
  };
  constexpr size_t MaxFonts = 10 * 1024 * 1024;
  EXPECT_EQ(font(MaxFonts), Names{});
  EXPECT_EQ(font(MaxFonts + 1), Names{"text-size"});
}

TEST(TextResources, WhatIsTooLargeIsNotLookedAt) {
  EXPECT_EQ(NamesIn(WithImage(Bytes(65 * 1024 * 1024))), Names{"text-size warning"});
}

TEST(TextResources, EncryptedTextNeedsAKey) {
  SampleText text = WithImage(Bytes{'n', 'o'});
  text.Key = testsupport::TrackFileKey();
  EXPECT_EQ(NamesIn(text), Names{"text-key"});
  Sigil::KeyRing keys;
  testsupport::LogCapture log;
  ASSERT_TRUE(keys.AddKey(text.Key->KeyID, text.Key->Key, Ferro::DefaultLogSink()).Success());
  TextCheck check;
  check.Keys = &keys;
  EXPECT_EQ(NamesOf(FindIn({text}, check)), Names{"text-image-missing"});
  Sigil::KeyRing wrong;
  ASSERT_TRUE(wrong.AddKey(text.Key->KeyID, std::array<QUIRE::ui8_t, 16>{7}, Ferro::DefaultLogSink()).Success());
  check.Keys = &wrong;
  EXPECT_EQ(NamesOf(FindIn({text}, check)), Names{"mic-invalid"});
}

void Overwrite(const std::string& path, QUIRE::ui64_t offset, size_t count) {
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(offset));
  file << std::string(count, '\xA5');
}

/// Overwrites bytes in the middle of a part of a track file: 0 for the document, then its resources.
std::function<void(const std::string&)> DamageTo(size_t part) {
  return [part](const std::string& path) {
    QUIRE::TimedText::MXFReader reader;
    ASSERT_TRUE(reader.OpenRead(path).Success());
    std::vector<QUIRE::MXF::RIP::Pair> pairs = reader.RIP().PairArray;
    size_t met = 0;
    for (size_t i = 0; i + 1 < pairs.size(); ++i)
      if (pairs[i].BodySID != 0 && met++ == part)
        Overwrite(path, (pairs[i].ByteOffset + pairs[i + 1].ByteOffset) / 2, 8);
  };
}

TEST(TextResources, WhatWasAlteredIsNotMissing) {
  Sigil::KeyRing keys;
  testsupport::LogCapture log;
  const testsupport::TrackFileKey key;
  ASSERT_TRUE(keys.AddKey(key.KeyID, key.Key, Ferro::DefaultLogSink()).Success());
  TextCheck check;
  check.Keys = &keys;
  for (size_t part = 0; part < 3; ++part) {
    SampleText text;
    text.Key = key;
    text.Damage = DamageTo(part);
    EXPECT_EQ(NamesOf(FindIn({text}, check)), Names{"mic-invalid"}) << part;
  }
}

TEST(TextResources, WhatCannotBeReadIsDamaged) {
  testsupport::LogCapture log;
  SampleText text;
  text.Damage = [](const std::string& path) { std::filesystem::resize_file(path, 1000); };
  EXPECT_EQ(NamesIn(text), Names{"file-damaged"});
  text.Damage = [](const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    Overwrite(path, bytes.find("<?xml") - 30, 30);
  };
  EXPECT_EQ(NamesIn(text), Names{"file-damaged"});
}

TEST(TextResources, DocumentsHaveUpTo16MiB) {
  constexpr size_t Most = 16 * 1024 * 1024;
  SampleText text(Interop);
  text.Xml.append(Most - text.Xml.size(), '\n');
  EXPECT_EQ(NamesIn(text, Assay::Depth::Documents), Names{});
  text.Xml += '\n';
  EXPECT_EQ(NamesIn(text, Assay::Depth::Documents), Names{"text-size warning"});
  SampleText inside;
  inside.Xml.append(Most, '\n');
  EXPECT_EQ(NamesIn(inside), Names{"text-size warning"});
}

TEST(TextResources, AllTogetherHaveUpTo115MiB) {
  constexpr size_t MiB = 1024 * 1024;
  EXPECT_EQ(NamesIn(WithImage(Bytes(114 * MiB)), Assay::Depth::Files), Names{});
  EXPECT_EQ(NamesIn(WithImage(Bytes(116 * MiB)), Assay::Depth::Files), Names{"text-size"});
}

TEST(TextResources, ALargePartKeepsNoOtherFromBeingLookedAt) {
  SampleText text = WithImage(Bytes(65 * 1024 * 1024));
  text.Font = Bytes{'n', 'o'};
  EXPECT_EQ(NamesIn(text), (Names{"text-font-missing", "text-size warning"}));
}

/// As many fonts as anybody asks for.
class EndlessFonts final : public Assay::ITextResources {
 public:
  [[nodiscard]] std::string Find(const Cairn::TextResource& resource) const override { return resource.Path; }
  [[nodiscard]] QUIRE::Result_t Read(const Cairn::TextResource& /*resource*/,
                                     std::vector<QUIRE::ui8_t>& bytes) override {
    ++ReadCount;
    bytes = MakeTrueType(U"a");
    return Ferro::RESULT_OK;
  }
  [[nodiscard]] QUIRE::ui64_t SizeBound(const Cairn::TextResource& /*resource*/) const override { return 1000; }

  size_t ReadCount = 0;
};

TEST(TextResources, EachFontIsReadOnceAndAHundredOfThem) {
  const auto read = [](size_t count, bool are_same, Assay::TextFile& file) {
    Cairn::TimedText document;
    for (size_t i = 0; i < count; ++i) {
      Cairn::LoadedFont& font = document.LoadFontList.emplace_back();
      font.ID = std::to_string(i);
      font.Resource.Path = are_same ? "font" : font.ID;
    }
    EndlessFonts fonts;
    FindInTextResources(document, fonts, Assay::Depth::Frames, file);
    return fonts.ReadCount;
  };
  Assay::TextFile same, few, many;
  EXPECT_EQ(read(1000, true, same), 1U);
  EXPECT_EQ(read(100, false, few), 100U);
  EXPECT_EQ(NamesOf(few.SubtitleFindings), Names{});
  EXPECT_EQ(read(101, false, many), 100U);
  EXPECT_EQ(NamesOf(many.SubtitleFindings), Names{"text-glyph-missing"});
}

TEST(TextResources, OneFontStandsForAllThatAreMissing) {
  SampleText text(Interop);
  text.Edit("<LoadFont Id=\"Main\"", "<LoadFont Id=\"Other\" URI=\"other.ttf\"/>\n<LoadFont Id=\"Main\"");
  text.Font.reset();
  TextCheck check;
  check.IsInterop = true;
  const Assay::FindingList findings = FindIn({text}, check);
  ASSERT_EQ(NamesOf(findings), Names{"text-font-missing"});
  EXPECT_EQ(findings[0].Found, "missing, 1 more");
}

TEST(FontFile, OpensFontsAlone) {
  Assay::FontFile font;
  EXPECT_FALSE(font.CanDraw('a'));
  EXPECT_FALSE(font.Open({}));
  const Bytes made = MakeTrueType(U"ab");
  ASSERT_TRUE(font.Open(made));
  EXPECT_TRUE(font.CanDraw('a'));
  EXPECT_FALSE(font.CanDraw('c'));
  EXPECT_FALSE(font.Open(testsupport::MakeFont(5000)));
  EXPECT_FALSE(font.CanDraw('a'));
}

TEST(FontFile, ReadsAThousandShapesAndBelievesTheRest) {
  std::u32string characters;
  for (char32_t i = 0; i <= Assay::FontFile::MaxTried; ++i) characters += U'\x4E00' + i;
  Bytes made = MakeTrueType(characters);
  const std::string_view bytes(reinterpret_cast<const char*>(made.data()), made.size());
  const size_t row = bytes.find("glyf");
  made[size_t{made[row + 10]} << 8U | made[row + 11]] = 0x7F;  // far more contours than there are bytes
  Assay::FontFile font;
  ASSERT_TRUE(font.Open(made));
  for (size_t i = 0; i < Assay::FontFile::MaxTried; ++i) EXPECT_FALSE(font.CanDraw(characters[i]));
  EXPECT_TRUE(font.CanDraw(characters.back()));
}

TEST(FontFile, DamagedFontsDoNoHarm) {
  const Bytes made = MakeTrueType(U"abc");
  for (size_t size = 0; size < made.size(); ++size) {
    Assay::FontFile font;
    const Bytes cut(made.begin(), made.begin() + static_cast<std::ptrdiff_t>(size));
    if (font.Open(cut)) static_cast<void>(font.CanDraw('a'));
  }
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    Bytes damaged = made;
    for (int i = 0; i < 3; ++i) damaged[random() % damaged.size()] = static_cast<unsigned char>(random());
    Assay::FontFile font;
    if (font.Open(damaged)) static_cast<void>(font.CanDraw('a'));
  }
}

TEST(PNGFile, WalksThroughTheChunks) {
  const Bytes sound = MakePNGHeader(640, 120);
  const Assay::PNGPicture picture = Assay::ReadPNG(sound);
  EXPECT_EQ(picture.Fault, "");
  EXPECT_EQ(picture.Width, 640U);
  EXPECT_EQ(picture.Height, 120U);
  for (size_t size = 0; size < sound.size(); ++size)
    EXPECT_NE(Assay::ReadPNG(std::span(sound).first(size)).Fault, "") << size;
  for (size_t at = 0; at < sound.size(); ++at) {
    Bytes damaged = sound;
    damaged[at] ^= 1;
    EXPECT_NE(Assay::ReadPNG(damaged).Fault, "") << at;
  }
  EXPECT_NE(Assay::ReadPNG(MakePNGHeader(0, 120)).Fault, "");
  EXPECT_EQ(Assay::ReadPNG(testsupport::MakePNG(500)).Fault, "");
}

TEST(Characters, AreTakenOffOneByOne) {
  using Assay::CountCharacters;
  EXPECT_EQ(CountCharacters(""), 0U);
  EXPECT_EQ(CountCharacters("a\xC3\xA9\xE6\xBC\xA2\xF0\x9F\x8E\xAC"), 4U);
  EXPECT_EQ(CountCharacters("\xC3"), 1U);
  EXPECT_EQ(CountCharacters("\xE6\xBC"), 2U);
  std::string_view text = "\xF0\x9F\x8E\xAC!";
  EXPECT_EQ(Assay::TakeCharacter(text), U'\x1F3AC');
  EXPECT_EQ(text, "!");
  EXPECT_EQ(Assay::DescribeCharacter(U'\x1F3AC'), "U+1F3AC \xF0\x9F\x8E\xAC");
  EXPECT_EQ(Assay::DescribeCharacter(U' '), "U+0020");
}

}  // namespace
