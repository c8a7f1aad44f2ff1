// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Lantern/Export.h>
#include <Lantern/Types.h>

#include <QUIRE/ChannelRole.h>
#include <QUIRE/SampleLayout.h>

#include <optional>
#include <span>
#include <vector>

namespace Lantern {

/// The loudspeakers of a device. Its channels are in the order of WAVE files:
///
///     Mono      C
///     Stereo    L R
///     FiveOne   L R C LFE Ls Rs
///     SevenOne  L R C LFE back left, back right, side left, side right
enum class Speakers : ui8_t { Mono, Stereo, FiveOne, SevenOne };

/// 1, 2, 6 or 8.
[[nodiscard]] LANTERN_API size_t ChannelCountOf(Speakers speakers);
/// The loudspeakers to mix for where a device has so many channels: the most that fit; mono for none.
[[nodiscard]] LANTERN_API Speakers SpeakersFor(size_t channels);

/// What of a sound is to be heard, and how.
struct SoundChoice {
  bool WithHearingImpaired = false;  ///< its channel is added in the center
  bool WithNarration = false;        ///< the same for the visually impaired
  std::optional<ui32_t> Alone;       ///< this channel of the track and no other, from 0
  /// Plays a channel alone that may hold a signal at full level. Without it such a channel is silent.
  bool AllowsSignals = false;
  /// Of the surrounds: 1, or 0.7079 for the balance of a cinema on loudspeakers that are all set alike (ISO 22234).
  float SurroundGain = 1;
  /// Of the LFE channel: 1, or 3.1623 where nothing behind the player adds the 10 dB that a cinema adds.
  float LFEGain = 1;
  /// Puts the LFE channel into a mix for loudspeakers that have none, at 0.7071 to each side; ITU-R BS.775 leaves it out.
  bool KeepsLFE = false;

  friend bool operator==(const SoundChoice&, const SoundChoice&) = default;
};

/// What speaks against what was asked for.
enum class MixWarning : ui8_t {
  None,
  Signal,   ///< the one channel is a synchronisation signal, motion data or sign language: full-level noise
  Unknown,  ///< nothing tells what the one channel is; it may be such a signal
  Missing,  ///< there is no such channel
};

/// Gains from the channels of a track to those of a device. A plain value.
class LANTERN_API MixMatrix {
 public:
  /// All gains are 0.
  MixMatrix(size_t device_channels, size_t track_channels);

  [[nodiscard]] size_t DeviceChannels() const { return m_DeviceChannels; }
  [[nodiscard]] size_t TrackChannels() const { return m_TrackChannels; }
  /// From 0, within the numbers above (assertion).
  [[nodiscard]] float Gain(size_t device_channel, size_t track_channel) const;
  void Add(size_t device_channel, size_t track_channel, float gain);
  /// The largest sum of gains of one device channel: how far above full scale its samples can get, at most.
  [[nodiscard]] float LargestSum() const;

 private:
  size_t m_DeviceChannels;
  size_t m_TrackChannels;
  std::vector<float> m_Gains;  // by device channel, then by track channel
};

/// How a sound is mixed for a device.
struct Mix {
  MixMatrix Matrix;
  MixWarning Warning = MixWarning::None;
};

/// Mixes by what each channel is for. Sound for the hall goes to the loudspeakers that the device has, with the usual
/// gains: center, and surrounds into two channels, at 0.7071 (ITU-R BS.775-3, annex 4); Lc into L and C, and Cs into both
/// surrounds, at 0.7071; both surrounds of a side at 1 into the one that there is; stereo into mono at 0.7071. Sums are not
/// scaled. Channels for the impaired are heard only when asked for, signals and channels of unknown use never but alone.
/// One channel alone goes to the center, or to both sides at 1 where there is none.
/// @param roles  of the track's channels, in order.
[[nodiscard]] LANTERN_API Mix MakeMix(std::span<const QUIRE::PCM::ChannelRole_t> roles, Speakers speakers,
                                      const SoundChoice& choice = {});

/// Mixes the frames of a track into samples for a device. Constant; any thread may call it.
class LANTERN_API SoundMixer {
 public:
  /// @param layout  has as many channels as the matrix has for the track (assertion).
  SoundMixer(const QUIRE::PCM::SampleLayout& layout, const MixMatrix& matrix);

  [[nodiscard]] size_t DeviceChannels() const { return m_DeviceChannels; }
  /// Device channels times the samples of each channel in so many bytes; one that is cut does not count.
  [[nodiscard]] size_t OutputSize(size_t bytes) const;
  /// Mixes a frame.
  /// @param out  receives interleaved samples, full scale being -1 to 1, sums unclipped; has OutputSize of them (assertion).
  void MixFrame(std::span<const ui8_t> frame, std::span<float> out) const;

 private:
  struct Term {
    size_t Offset;  // bytes of the channel's sample from the start of those of all channels
    size_t Device;
    float Gain;  // with the scale of the samples in it
  };

  QUIRE::PCM::SampleLayout m_Layout;
  size_t m_DeviceChannels;
  std::vector<Term> m_Terms;
};

}  // namespace Lantern
