// SPDX-License-Identifier: BSD-3-Clause
#include "TitleConvention.h"

#include "base/Text.h"
#include "form/DateTime.h"

#include <algorithm>
#include <charconv>

namespace Assay {
namespace {

using Parts = std::vector<std::string_view>;

constexpr size_t FieldCount = 12;
constexpr size_t MaxNameLength = 14;

bool IsOneOf(std::string_view text, std::string_view choices) {
  const auto words = Words(choices);
  return std::ranges::find(words, text) != words.end();
}

bool AreAll(std::string_view text, bool (*fits)(char)) {
  return !text.empty() && std::ranges::all_of(text, fits);
}

bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}
bool IsUpperOrDigit(char c) {
  return IsUpper(c) || IsDigit(c);
}
bool IsNameCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '-';
}

/// Reads the fields one by one.
class TitleReader {
 public:
  explicit TitleReader(std::string_view title) : m_Fields(Split(title, '_')), m_Title(title) {}

  TitleClaims Read() {
    if (m_Fields.size() != FieldCount) {
      Fault("title", "twelve fields with underscores between", m_Title);
      return m_Claims;
    }
    ReadName(m_Fields[0]);
    ReadKind(m_Fields[1]);
    ReadAspect(m_Fields[2]);
    ReadLanguage(m_Fields[3]);
    ReadTerritory(m_Fields[4]);
    ReadAudio(m_Fields[5]);
    ReadResolution(m_Fields[6]);
    ReadCompany("studio", m_Fields[7], 2, 4);
    ReadDate(m_Fields[8]);
    ReadCompany("facility", m_Fields[9], 2, 3);
    ReadStandard(m_Fields[10]);
    ReadPackage(m_Fields[11]);
    return m_Claims;
  }

 private:
  void Fault(const char* field, const char* expected, std::string_view found) {
    m_Claims.Faults.push_back({field, expected, Quoted(found)});
  }

  void ReadName(std::string_view text) {
    if (text.size() > MaxNameLength || !AreAll(text, IsNameCharacter))
      Fault("film title", "at most 14 letters, digits and hyphens", text);
  }

  void ReadKind(std::string_view text) {
    Parts parts = Split(text, '-');
    static constexpr char Kinds[] = "FTR TLR TSR PRO TST RTG SHR ADV XSN PSA POL EPS";
    if (!IsOneOf(parts[0], Kinds)) return Fault("kind", Kinds, text);
    m_Claims.Kind = parts[0];
    m_Claims.Is3D = false;
    bool is_right = m_Claims.Kind != "RTG" || (parts.size() > 1 && IsOneOf(parts[1], "F T"));
    for (size_t i = m_Claims.Kind == "RTG" ? 2 : 1; i < parts.size(); ++i) is_right &= ReadKindDetail(parts[i]);
    if (!is_right) Fault("kind", "a version number, Temp, Pre, RedBand, 2D, 3D, a rate, ...", text);
  }

  bool ReadKindDetail(std::string_view part) {
    if (part == "2D" || part == "3D") {
      m_Claims.Is3D = part == "3D";
      return true;
    }
    if (part.size() <= 3 && AreAll(part, IsDigit)) {
      ui32_t number = 0;
      std::from_chars(part.data(), part.data() + part.size(), number);
      if (number >= 16) m_Claims.Rate = number;  // below that it numbers the version
      return true;
    }
    const bool is_luminance =
        part.size() >= 3 && part.ends_with("fl") && AreAll(part.substr(0, part.size() - 2), IsDigit);
    return is_luminance || AreAll(part, IsLetter);
  }

  void ReadAspect(std::string_view text) {
    const Parts parts = Split(text, '-');
    const bool has_active = parts.size() == 2 && parts[1].size() <= 3 && AreAll(parts[1], IsDigit);
    if (!IsOneOf(parts[0], "F S C") || (parts.size() > 1 && !has_active))
      return Fault("aspect", "F, S or C, the active ratio behind, such as F-178", text);
    m_Claims.Aspect = parts[0].front();
  }

  void ReadLanguage(std::string_view text) {
    Parts parts = Split(text, '-');
    const auto takes = [&](std::string_view word) {
      const bool has = parts.size() > 2 && parts.back() == word;
      if (has) parts.pop_back();
      return has;
    };
    bool is_captioned = false;
    bool is_open = false;
    for (int i = 0; i < 2; ++i) {
      is_captioned |= takes("CCAP");
      is_open |= takes("OCAP");
    }
    if (parts.size() < 2 || std::ranges::any_of(parts, [](std::string_view part) {
          return part.size() < 2 || part.size() > 4 || !std::ranges::all_of(part, IsUpperOrLowerOrDigit);
        }))
      return Fault("language", "the language of the sound, then of the subtitles, such as EN-FR or EN-XX", text);
    m_Claims.SoundLanguage = parts[0];
    m_Claims.HasCaptions = is_captioned;
    const bool has_text = parts[1] != "XX" && AreAll(parts[1], IsUpperOrDigit);
    if (parts[1] == "XX" || has_text) m_Claims.HasSubtitles = has_text || is_open;
    if (has_text) m_Claims.SubtitleLanguages.assign(parts.begin() + 1, parts.end());
  }
  static bool IsUpperOrLowerOrDigit(char c) { return IsLetter(c) || IsDigit(c); }

  void ReadTerritory(std::string_view text) {
    const Parts parts = Split(text, '-');
    const bool is_territory = parts[0].size() >= 2 && parts[0].size() <= 4 && AreAll(parts[0], IsUpperOrDigit);
    if (!is_territory || std::ranges::any_of(parts, [](std::string_view part) { return part.empty(); }))
      Fault("territory", "a territory and a rating, such as US-13 or INT-TL", text);
  }

  void ReadAudio(std::string_view text) {
    const Parts parts = Split(text, '-');
    static constexpr char Details[] = "HI VI SL ATMOS Atmos AURO Auro DTS X DBOX Dbox IAB ISXD";
    const bool is_known = std::all_of(parts.begin() + 1, parts.end(), [](std::string_view part) {
      return IsOneOf(part, Details) || (part.size() <= 4 && AreAll(part, IsUpperOrDigit));
    });
    if (!IsOneOf(parts[0], "10 20 30 40 50 51 61 71 MOS") || !is_known)
      return Fault("audio", "10, 20, 51, 71 or MOS, then HI, VI, SL, ATMOS, IAB, ...", text);
    m_Claims.Audio = parts[0];
    m_Claims.HasHI = std::ranges::find(parts, "HI") != parts.end();
    m_Claims.HasVI = std::ranges::find(parts, "VI") != parts.end();
    m_Claims.HasImmersive =
        std::ranges::any_of(parts, [](std::string_view part) { return IsOneOf(part, "ATMOS Atmos IAB"); });
  }

  void ReadResolution(std::string_view text) {
    if (!IsOneOf(text, "2K 4K")) return Fault("resolution", "2K or 4K", text);
    m_Claims.Resolution = text;
  }

  void ReadCompany(const char* field, std::string_view text, size_t least, size_t most) {
    if (text.size() < least || text.size() > most || !AreAll(text, IsUpperOrDigit))
      Fault(field, most == 4 ? "2 to 4 capitals or digits" : "2 or 3 capitals or digits", text);
  }

  void ReadDate(std::string_view text) {
    m_Claims.Date = std::string();
    if (text.size() != 8 || !AreAll(text, IsDigit)) return;
    const std::string date(text);
    const std::string time = date.substr(0, 4) + '-' + date.substr(4, 2) + '-' + date.substr(6) + "T00:00:00Z";
    if (DateTime::FromText(time)) m_Claims.Date = date;
  }

  void ReadStandard(std::string_view text) {
    const Parts parts = Split(text, '-');
    if (!IsOneOf(parts[0], "IOP SMPTE") || parts.size() > 2 || (parts.size() == 2 && parts[1] != "3D"))
      return Fault("standard", "IOP or SMPTE, 3D behind", text);
    m_Claims.IsInterop = parts[0] == "IOP";
    if (parts.size() == 2) m_Claims.Is3D = true;
  }

  void ReadPackage(std::string_view text) {
    const Parts parts = Split(text, '-');
    const bool has_number = parts.size() == 2 && AreAll(parts[1], IsDigit);
    if (!IsOneOf(parts[0], "OV VF") || (parts.size() > 1 && !has_number))
      return Fault("package", "OV, VF or VF-2", text);
    m_Claims.IsVersionFile = parts[0] == "VF";
  }

  Parts m_Fields;
  std::string_view m_Title;
  TitleClaims m_Claims;
};

}  // namespace

TitleClaims ReadTitle(std::string_view title) {
  return TitleReader(title).Read();
}

}  // namespace Assay
