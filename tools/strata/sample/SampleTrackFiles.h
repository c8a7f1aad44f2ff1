// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SampleOptions.h"
#include "SamplePicture.h"
#include "SampleSeed.h"
#include "SampleText.h"

#include <QUIRE/Crypto.h>
#include <QUIRE/Rational.h>
#include <QUIRE/WriterInfo.h>
#include <QUIRE/WriterOptions.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Tool {

/// Thrown when the user stopped the work.
struct SampleStopped {};

/// Writes the track files of one reel. Every call throws std::runtime_error where a file cannot be written.
class SampleTrackFiles {
 public:
  /// What belongs to one reel: the title on its pictures, its number from 1, and the identifiers of its files.
  struct Reel {
    std::string Title;  ///< capital letters, digits and blanks
    Ferro::ui32_t Number = 1;
    SamplePicture::Colour Background = {};
    bool Stereoscopic = false;
    bool Encrypted = false;

    /// What the identifiers and keys of one of its files follow from.
    [[nodiscard]] std::string NameOf(const std::string& kind) const;
  };

  /// @param on_picture  called when a picture was written.
  explicit SampleTrackFiles(
      const SampleOptions& options, std::function<void()> on_picture = [] {})
      : m_Options(options), m_Seed(options), m_OnPicture(std::move(on_picture)) {}

  void WritePicture(const std::string& filename, const Reel& reel) const;
  void WriteSound(const std::string& filename, const Reel& reel) const;
  /// Text with its font and, if it has one, its image (ST 429-5; Interop has no such files).
  void WriteText(const std::string& filename, const Reel& reel, const std::string& kind) const;
  /// Silence: the sample has no encoder of immersive audio.
  void WriteImmersive(const std::string& filename, const Reel& reel) const;

  /// What is in the text of a reel. `kind` is "subtitle", which has an image, or "caption".
  [[nodiscard]] SampleText Text(const Reel& reel, const std::string& kind) const;
  /// The picture of one edit unit before it is encoded. `eye` is blank, 'L' or 'R'.
  [[nodiscard]] SamplePicture Draw(const Reel& reel, Ferro::ui32_t number, char eye = ' ') const;

  [[nodiscard]] Ferro::ui32_t Duration() const { return m_Options.Seconds * m_Options.Rate; }
  /// What each channel is for: "51/L,R,C,LFE,Ls,Rs,HI,VIN", with "-" for what has no use.
  [[nodiscard]] std::string SoundConfiguration() const;
  [[nodiscard]] QUIRE::Rational EditRate() const { return {static_cast<Ferro::i32_t>(m_Options.Rate), 1}; }

 private:
  using Bytes = std::vector<Ferro::ui8_t>;

  /// The codestreams of all edit units in order, each picture encoded once, on all cores; for stereoscopic pictures left and right by turns.
  void ForEachCodestream(const Reel& reel, const std::function<void(const Bytes&, char eye)>& take) const;
  [[nodiscard]] QUIRE::LabelSet_t Labels() const {
    return m_Options.Flavour == Cairn::DFT_Interop ? QUIRE::LS_MXF_INTEROP : QUIRE::LS_MXF_SMPTE;
  }
  [[nodiscard]] QUIRE::WriterInfo Info(const Reel& reel, const std::string& kind) const;
  [[nodiscard]] QUIRE::WriterOptions Options(const Reel& reel, const std::string& kind) const;

  SampleOptions m_Options;
  SampleSeed m_Seed;
  std::function<void()> m_OnPicture;
};

}  // namespace Tool
