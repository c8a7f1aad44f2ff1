// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

#include <QUIRE/Rational.h>

#include <list>
#include <string>

namespace Cairn {

// What the assets of a composition's reel say (ST 429-7:2006, 7; 429-10, 429-12, 429-14, 429-18). Plain values.

/// What every asset of a reel has. Counts are in edit units of EditRate. An asset without AssetID is absent.
struct GenericAsset {
  UUID AssetID;                  ///< no value: the reel has no such asset
  std::string Annotation;        ///< empty when absent
  QUIRE::Rational EditRate;      ///< edit units per second, reduced
  ui32_t IntrinsicDuration = 0;  ///< length of the track file
  ui32_t EntryPoint = 0;         ///< first edit unit to play; 0 when the document has none
  ui32_t Duration = 0;           ///< edit units to play; IntrinsicDuration - EntryPoint when the document has none
  UUID KeyID;                    ///< no value: the track file is not encrypted
  SHA1 Digest;                   ///< of the track file; no value when the document has none

  friend bool operator==(const GenericAsset&, const GenericAsset&) = default;
};

/// MainPicture or MainStereoscopicPicture. EditRate counts stereoscopic pairs in the latter.
struct PictureAsset : GenericAsset {
  QUIRE::Rational FrameRate;          ///< images per second: twice the EditRate of a stereoscopic picture
  QUIRE::Rational ScreenAspectRatio;  ///< width to height, as written ("1998 1080", "1.85" as 185/100); 0/0: unknown

  friend bool operator==(const PictureAsset&, const PictureAsset&) = default;
};

/// MainSound.
struct SoundAsset : GenericAsset {
  std::string Language;  ///< RFC 5646 tag or display name, as written; empty when absent

  friend bool operator==(const SoundAsset&, const SoundAsset&) = default;
};

enum TimedTextPurpose_t : ui32_t { TT_SUBTITLE = 0, TT_CAPTION = 1 };

/// MainSubtitle and MainCaption (on screen), ClosedCaption and ClosedSubtitle (off screen).
struct TimedTextAsset : GenericAsset {
  TimedTextPurpose_t Purpose = TT_SUBTITLE;
  std::string Language;  ///< as SoundAsset

  friend bool operator==(const TimedTextAsset&, const TimedTextAsset&) = default;
};

/// The two forms in which auxiliary data stands in a composition.
enum AuxDataForm_t : ui32_t {
  ADF_DataType = 0,           ///< element DataType, as immersive audio has it (ST 429-18)
  ADF_DataEssenceCoding = 1,  ///< element DataEssenceCoding (ST 429-14)
};

/// AuxData. An asset without EditRate in the document has that of its reel's picture.
struct AuxDataAsset : GenericAsset {
  AuxDataForm_t Form = ADF_DataType;
  std::string DataType;  ///< the coding's label, "urn:smpte:ul:…", as written; empty when absent

  friend bool operator==(const AuxDataAsset&, const AuxDataAsset&) = default;
};

/// A labelled position in a reel.
struct Marker {
  std::string Label;
  std::string Scope;  ///< empty: the scope of the standard's own labels
  std::string Annotation;
  ui32_t Offset = 0;  ///< edit units of the marker asset, from its start

  friend bool operator==(const Marker&, const Marker&) = default;
};

/// MainMarkers. Its identifier names no file.
struct MarkerAsset : GenericAsset {
  std::list<Marker> MarkerList;

  friend bool operator==(const MarkerAsset&, const MarkerAsset&) = default;
};

/// One reel of a composition. An asset without AssetID is absent.
struct Reel {
  UUID ID;
  std::string Annotation;
  MarkerAsset MainMarkers;
  PictureAsset MainPicture;  ///< stereoscopic where the composition says StereoscopicImage
  SoundAsset MainSound;
  TimedTextAsset MainSubtitle;
  std::list<TimedTextAsset> OffScreenText;  ///< in document order, which is the order of the text channels
  std::list<AuxDataAsset> AuxData;          ///< in document order

  friend bool operator==(const Reel&, const Reel&) = default;
};

}  // namespace Cairn
