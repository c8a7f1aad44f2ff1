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

class ResourceCheck {
 public:
  ResourceCheck(const Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file)
      : m_Document(document), m_Resources(resources), m_IsWhole(depth == Depth::Frames), m_File(file) {}

  void Run() {
    if (m_IsWhole) NoteCharacters();
    for (size_t i = 0; i < m_Document.LoadFontList.size(); ++i) LookAtFont(i);
    m_Glyphs.Tell(m_File, Finding(FindingID::TextGlyphMissing), "a shape in the font", m_File.SubtitleFindings);
    LookAtPictures();
  }

 private:
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

  void LookAtFont(size_t index) {
    const Cairn::LoadedFont& font = m_Document.LoadFontList[index];
    if (!font.Resource.HasValue()) return;  // told with the form
    const auto say = [&](std::string found) {
      Add(m_File.Findings, Finding(FindingID::TextFontMissing), m_File.At(font.Line), NameOf(font.Resource),
          std::move(found));
    };
    if (!m_Resources.Has(font.Resource)) return say("none there");
    if (!m_IsWhole) return;
    const auto bytes = m_Resources.Read(font.Resource);
    if (!bytes) return say("one that cannot be read");
    if (bytes->size() > FontFile::MaxSize)
      return Add(m_File.SubtitleFindings, Finding(FindingID::TextGlyphMissing), m_File.At(font.Line),
                 std::to_string(FontFile::MaxSize) + " bytes at most",
                 std::to_string(bytes->size()) + " bytes, which were not looked at");
    FontFile file;
    if (!file.Open(*bytes)) return say("no font");
    for (const auto& [character, moment] : m_Characters[static_cast<ui32_t>(index)])
      if (!file.CanDraw(character)) m_Glyphs.Note(moment, DescribeCharacter(character));
  }

  void LookAtPictures() {
    std::map<std::pair<UUID, std::string>, TextMoment> pictures;
    for (const Cairn::TextInstance& instance : m_Document.InstanceList)
      for (const Cairn::TextImage& image : instance.ImageList)
        if (image.Resource.HasValue())
          NoteNeed(pictures, {image.Resource.ID, image.Resource.Path}, MomentOf(instance, image.Line));
    TextTally faulty;
    for (const auto& [picture, moment] : pictures) {
      const TextResource resource{picture.first, picture.second};
      if (const std::string fault = LookAtPicture(resource, moment); !fault.empty())
        faulty.Note(moment, NameOf(resource) + ": " + fault);
    }
    faulty.Tell(m_File, Finding(FindingID::TextImageMissing), "a PNG picture", m_File.Findings);
  }

  /// @return what is wrong with it; empty where nothing is.
  std::string LookAtPicture(const TextResource& resource, const TextMoment& moment) {
    if (!m_Resources.Has(resource)) return "none there";
    if (!m_IsWhole) return {};
    const auto bytes = m_Resources.Read(resource);
    if (!bytes) return "one that cannot be read";
    const PNGPicture png = ReadPNG(*bytes);
    if (!png.Fault.empty()) return png.Fault;
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
};

}  // namespace

void FindInTextResources(const Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file) {
  ResourceCheck(document, resources, depth, file).Run();
}

}  // namespace Assay
