// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Assay {

/// A field of a title that does not follow the naming convention.
struct TitleFault {
  std::string Field;  ///< "aspect"; "title" where the whole is no such title
  std::string Expected;
  std::string Found;
};

/// What a title claims by the digital cinema naming convention, version 9.6. What is not claimed, or not in the
/// convention's form, has no value.
struct TitleClaims {
  std::vector<TitleFault> Faults;  ///< empty: the title follows the convention
  std::string Kind;                ///< "FTR"; empty when not told
  std::optional<bool> Is3D;
  std::optional<ui32_t> Rate;                  ///< frames per second, where it is told
  char Aspect = '\0';                          ///< 'F', 'S', 'C'
  std::optional<bool> HasSubtitles;            ///< not burned in
  std::vector<std::string> SubtitleLanguages;  ///< "FR": of those
  std::optional<bool> HasCaptions;             ///< closed ones
  std::string SoundLanguage;                   ///< "EN", of the sound; empty when not told
  std::string Audio;                           ///< "51", "MOS"; empty when not told
  bool HasHI = false;                          ///< sound for the hearing impaired
  bool HasVI = false;                          ///< narration for the visually impaired
  std::optional<bool> HasImmersive;            ///< a track of its own
  std::string Resolution;                      ///< "2K", "4K"
  std::optional<std::string> Date;             ///< eight digits of a date; empty: no date
  std::optional<bool> IsInterop;
  std::optional<bool> IsVersionFile;
};

/// Reads a title. Nothing may be refused over it.
[[nodiscard]] TitleClaims ReadTitle(std::string_view title);

}  // namespace Assay
