// SPDX-License-Identifier: BSD-3-Clause
#include "Characters.h"
#include "FontFile.h"
#include "PNGFile.h"
#include "TextFindings.h"
#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <map>

namespace Assay {
namespace {

using Cairn::TextResource;

constexpr size_t MaxFonts = 100;  // that are looked at

std::string NameOf(const TextResource& resource) {
  return resource.Path.empty() ? resource.ID.EncodeString() : Quoted(resource.Path);
}

/// When something is needed first.
template <class KeyT>
using FirstNeeds = std::map<KeyT, TextMoment>;

template <class KeyT>
void NoteNeed(FirstNeeds<KeyT>& needs, const KeyT& key, const TextMoment& moment) {
  const auto [known, is_new] = needs.try_emplace(key, moment);
  if (!is_new && moment.Time < known->second.Time) known->second = moment;
}

/// All characters of a stretch of a line, those beside it too.
std::string CharactersOf(const Cairn::TextRun& run) {
  struct Visitor {
    std::string operator()(const Cairn::TextCharacters& content) const { return content.Text; }
    std::string operator()(const Cairn::TextRuby& content) const { return content.Base + content.Annotation; }
    std::string operator()(const Cairn::TextSpace& /*content*/) const { return {}; }
    std::string operator()(const Cairn::TextGroup& content) const { return content.Text; }
    std::string operator()(const Cairn::TextRotate& content) const { return content.Text; }
  };
  return std::visit(Visitor(), run.Content);
}

std::string Counted(const std::string& first, size_t count) {
  return count > 1 ? first + ", " + std::to_string(count - 1) + " more" : first;
}

/// text-font-missing. The first line stands for all.
class LineTally {
 public:
  void Note(ui64_t line, const std::string& name, const char* fault) {
    if (m_Count++ > 0 && m_Line <= line) return;
    m_Line = line;
    m_Name = name;
    m_Fault = fault;
  }
  void Tell(TextFile& file) const {
    if (m_Count > 0)
      Add(file.Findings, Finding(FindingID::TextFontMissing), file.At(m_Line), m_Name, Counted(m_Fault, m_Count));
  }

 private:
  ui64_t m_Line = 0;
  std::string m_Name;
  std::string m_Fault;
  size_t m_Count = 0;
};

class ResourceCheck {
 public:
  ResourceCheck(const Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file)
      : m_Document(document), m_Resources(resources), m_IsWhole(depth == Depth::Frames), m_File(file) {}

  void Run() {
    if (m_IsWhole) NoteCharacters();
    LookAtFonts();
    LookAtPictures();
    if (m_Altered > 0) FindUnreadable(m_AlteredResult, Counted(m_FirstAltered, m_Altered), m_File);
    if (m_TooLarge > 0) FindTooLarge(MaxTextPart, m_FirstSize, Counted(m_FirstTooLarge, m_TooLarge), m_File);
  }

 private:
  /// What a font is needed for.
  struct FontNeeds {
    const Cairn::LoadedFont* Font = nullptr;  // the first that is stored as it
    FirstNeeds<char32_t> Characters;
  };

  void NoteCharacters() {
    for (const Cairn::TextInstance& instance : m_Document.InstanceList)
      for (const Cairn::TextLine& line : instance.TextList)
        for (const Cairn::TextRun& run : line.RunList) {
          const std::string characters = CharactersOf(run);
          FirstNeeds<char32_t>& needs = m_Characters[m_Document.FontList[run.Font].LoadFont.Value];
          for (std::string_view rest = characters; !rest.empty();) {
            const char32_t character = TakeCharacter(rest);
            if (!IsShapeless(character)) NoteNeed(needs, character, MomentOf(instance, run.Line));
          }
        }
  }

  /// Each font once, however many elements load it.
  void LookAtFonts() {
    std::map<std::string, FontNeeds> fonts;
    LineTally faulty;
    for (size_t i = 0; i < m_Document.LoadFontList.size(); ++i) {
      const Cairn::LoadedFont& font = m_Document.LoadFontList[i];
      if (!font.Resource.HasValue()) continue;  // told with the form
      const std::string stored = m_Resources.Find(font.Resource);
      if (stored.empty()) {
        faulty.Note(font.Line, NameOf(font.Resource), "missing");
        continue;
      }
      FontNeeds& needs = fonts[stored];
      if (needs.Font == nullptr) needs.Font = &font;
      for (const auto& [character, moment] : m_Characters[static_cast<ui32_t>(i)])
        NoteNeed(needs.Characters, character, moment);
    }
    size_t count = 0;
    for (const auto& [stored, needs] : fonts) {
      if (!m_IsWhole || ++count > MaxFonts) break;
      if (const char* fault = LookAtFont(needs); *fault != '\0')
        faulty.Note(needs.Font->Line, NameOf(needs.Font->Resource), fault);
    }
    faulty.Tell(m_File);
    if (count > MaxFonts)
      Add(m_File.SubtitleFindings, Finding(FindingID::TextGlyphMissing), m_File.File,
          std::to_string(MaxFonts) + " fonts at most", std::to_string(fonts.size()) + ", the rest was not looked at");
    m_Glyphs.Tell(m_File, Finding(FindingID::TextGlyphMissing), "a shape in the font", m_File.SubtitleFindings);
  }

  /// @return what is wrong with it; empty where nothing is.
  const char* LookAtFont(const FontNeeds& needs) {
    std::vector<ui8_t> bytes;
    if (!Read(needs.Font->Resource, bytes)) return m_Fault;
    if (bytes.size() > FontFile::MaxSize) {
      Add(m_File.SubtitleFindings, Finding(FindingID::TextGlyphMissing), m_File.At(needs.Font->Line),
          std::to_string(FontFile::MaxSize) + " bytes at most",
          std::to_string(bytes.size()) + " bytes, which were not looked at");
      return "";
    }
    FontFile file;
    if (!file.Open(bytes)) return "not a font";
    for (const auto& [character, moment] : needs.Characters)
      if (!file.CanDraw(character)) m_Glyphs.Note(moment, DescribeCharacter(character));
    return "";
  }

  /// @return false: m_Fault says why, empty where it is told otherwise.
  bool Read(const TextResource& resource, std::vector<ui8_t>& bytes) {
    const QUIRE::Result_t result = m_Resources.Read(resource, bytes);
    if (result.Success()) return true;
    m_Fault = "";
    if (result == Ferro::RESULT_TOOLARGE) {
      if (m_TooLarge++ == 0) {
        m_FirstTooLarge = NameOf(resource);
        m_FirstSize = m_Resources.SizeBound(resource);
      }
    } else if (IsAltered(result)) {
      if (m_Altered++ == 0) {
        m_FirstAltered = NameOf(resource);
        m_AlteredResult = result;
      }
    } else {
      m_Fault = "unreadable";
    }
    return false;
  }

  void LookAtPictures() {
    struct PictureNeed {
      TextResource Resource;
      TextMoment At;
    };
    std::map<std::pair<UUID, std::string>, TextMoment> named;
    for (const Cairn::TextInstance& instance : m_Document.InstanceList)
      for (const Cairn::TextImage& image : instance.ImageList)
        if (image.Resource.HasValue())
          NoteNeed(named, {image.Resource.ID, image.Resource.Path}, MomentOf(instance, image.Line));
    TextTally faulty;
    std::map<std::string, PictureNeed> pictures;
    for (const auto& [name, moment] : named) {
      const TextResource resource{name.first, name.second};
      const std::string stored = m_Resources.Find(resource);
      if (stored.empty()) {
        faulty.Note(moment, NameOf(resource) + ": missing");
        continue;
      }
      const auto [known, is_new] = pictures.try_emplace(stored, PictureNeed{resource, moment});
      if (!is_new && moment.Time < known->second.At.Time) known->second = {resource, moment};
    }
    if (m_IsWhole)
      for (const auto& [stored, need] : pictures)
        if (const std::string fault = LookAtPicture(need.Resource, need.At); !fault.empty())
          faulty.Note(need.At, NameOf(need.Resource) + ": " + fault);
    faulty.Tell(m_File, Finding(FindingID::TextImageMissing), "a PNG picture", m_File.Findings);
    m_Longer.Tell(m_File, Finding(FindingID::TextImageMissing, FindingClass::Warning), "a PNG picture alone",
                  m_File.Findings);
  }

  /// @return what is wrong with it; empty where nothing is.
  std::string LookAtPicture(const TextResource& resource, const TextMoment& moment) {
    std::vector<ui8_t> bytes;
    if (!Read(resource, bytes)) return m_Fault;
    const PNGPicture png = ReadPNG(bytes);
    if (!png.Fault.empty()) return png.Fault;
    if (png.Behind > 0)
      m_Longer.Note(moment, NameOf(resource) + ": " + std::to_string(png.Behind) + " bytes behind it");
    const TextPicture picture{moment, png.Width, png.Height};
    if (!m_File.Widest || picture.Width > m_File.Widest->Width) m_File.Widest = picture;
    if (!m_File.Tallest || picture.Height > m_File.Tallest->Height) m_File.Tallest = picture;
    return {};
  }

  const Cairn::TimedText& m_Document;
  ITextResources& m_Resources;
  bool m_IsWhole;
  TextFile& m_File;
  std::map<ui32_t, FirstNeeds<char32_t>> m_Characters;  // by the index of the font
  TextTally m_Glyphs;
  TextTally m_Longer;        // pictures with something behind them
  const char* m_Fault = "";  // of the last resource that could not be read
  size_t m_Altered = 0;
  std::string m_FirstAltered;
  QUIRE::Result_t m_AlteredResult = Ferro::RESULT_OK;
  size_t m_TooLarge = 0;
  std::string m_FirstTooLarge;
  ui64_t m_FirstSize = 0;  // bytes
};

}  // namespace

void FindInTextResources(const Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file) {
  ResourceCheck(document, resources, depth, file).Run();
}

}  // namespace Assay
