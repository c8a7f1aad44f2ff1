// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "keys/KeyOpening.h"
#include "picture/ColourTransform.h"
#include "show/Inputs.h"

#include <Ferro/Types.h>
#include <QUIRE/Rational.h>
#include <Strata/TrackType.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// One channel: of the off-screen texts and the auxiliary data there may be several.
struct FrameChannel {
  Strata::TrackType_t Type = Strata::TRKT_IMAGE;
  Ferro::ui32_t Number = 0;  ///< from 0

  /// "picture", "sound", "subtitle", "caption 2", "data".
  [[nodiscard]] std::string Name() const;
};

enum class FrameCoding { JPEG2000, MPEG2, PCM, TimedText, Data };

struct SoundFormat {
  Ferro::ui32_t SampleRate = 0;  ///< per second and channel
  Ferro::ui32_t Bits = 0;        ///< per sample
  Ferro::ui32_t Channels = 0;
  std::string Configuration;  ///< "51(L,R,C,LFE,Ls,Rs)"; empty when not said

  friend bool operator==(const SoundFormat&, const SoundFormat&) = default;
};

/// A font or an image of a timed-text document.
struct TextResource {
  std::string Name;  ///< of the file beside the document, relative to its folder
  std::vector<Ferro::ui8_t> Bytes;
};

/// One edit unit of one channel, as it is stored.
struct EditUnit {
  FrameCoding Coding = FrameCoding::Data;
  bool Encrypted = false;          ///< and not decrypted
  std::string AssetID;             ///< of the track file; empty for silence that the show fills in
  std::string File;                ///< the track file; empty likewise
  Ferro::ui32_t FilePosition = 0;  ///< edit units from the start of the track file
  std::vector<Ferro::ui8_t> Bytes;
  std::vector<Ferro::ui8_t> RightEye;  ///< empty unless stereoscopic; Bytes are then the left eye
  PictureColour Colour = PictureColour::Unknown;
  SoundFormat Sound;
  std::vector<TextResource> Resources;
};

/// A show or a track file, of which edit units are taken.
class FrameSource {
 public:
  virtual ~FrameSource();

  /// Edit units per second. Of a show whose compositions differ: that of the first.
  [[nodiscard]] virtual QUIRE::Rational EditRate() const = 0;
  /// Edit units.
  [[nodiscard]] virtual Ferro::ui32_t Duration() const = 0;
  /// The channel that there is; no value where there may be several.
  [[nodiscard]] virtual std::optional<FrameChannel> OnlyChannel() const { return std::nullopt; }
  /// Reads one edit unit. Of timed text it is the whole document in force, and what belongs to it.
  /// @param position  below Duration().
  /// Throws CommandError where the channel is not there or cannot be read.
  [[nodiscard]] virtual EditUnit Read(const FrameChannel& channel, Ferro::ui32_t position) = 0;
};

/// Opens what the user named: one track file, or a show with the assets there are for it. Throws CommandError.
/// @param keys  what decrypts encrypted files; outlives the source.
[[nodiscard]] std::unique_ptr<FrameSource> OpenFrameSource(const InputOptions& options, TrackKeys& keys);

/// The name that a resource of a timed-text track file gets: its identifier, with an extension that says what it is.
[[nodiscard]] std::string ResourceName(const Ferro::UUID& id, const std::vector<Ferro::ui8_t>& bytes);

/// What a track file's labels say of its pictures' colours (ST 429-4).
[[nodiscard]] PictureColour ColourOfTrackFile(const std::string& filename);

}  // namespace Tool
