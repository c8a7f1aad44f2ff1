// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>

#include <Ferro/UUID.h>

#include <string>
#include <vector>

namespace QUIRE::TimedText {

/// What kind of thing an ancillary resource is.
enum MIMEType_t : ui32_t {
  MT_BIN = 0,       ///< anything else
  MT_PNG = 1,       ///< PNG image
  MT_OPENTYPE = 2,  ///< OpenType or TrueType font
};

/// An ancillary resource of a timed-text document: a font or an image.
struct TimedTextResourceDescriptor {
  Ferro::UUID ResourceID;
  MIMEType_t Type = MT_BIN;

  friend bool operator==(const TimedTextResourceDescriptor&, const TimedTextResourceDescriptor&) = default;
};

using ResourceList_t = std::vector<TimedTextResourceDescriptor>;

/// What a track file says of its timed text (ST 429-5, annex A; ST 429-2 for the language and what follows it). What the
/// file does not give is 0 or empty.
struct TimedTextDescriptor {
  Rational EditRate;             ///< edit units per second
  ui32_t ContainerDuration = 0;  ///< edit units of display time
  Ferro::UUID AssetID;           ///< the document's identifier (the descriptor's ResourceID)
  std::string NamespaceName;     ///< XML namespace of the document's root element
  std::string EncodingName;      ///< "UTF-8"
  ResourceList_t ResourceList;   ///< in the order of the file's sub-descriptors; each identifier once

  std::string RFC5646LanguageTagList;
  std::string DisplayType;
  std::string IntrinsicPictureResolution;

  friend bool operator==(const TimedTextDescriptor&, const TimedTextDescriptor&) = default;
};

}  // namespace QUIRE::TimedText
