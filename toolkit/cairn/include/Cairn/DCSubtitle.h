// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <list>
#include <string>

namespace Cairn {

/// An Interop subtitle document: its identity, the files it refers to, and its spots without their typography. A plain
/// value.
class CAIRN_API DCSubtitle {
 public:
  struct Font {
    std::string ID;   ///< the name by which Font elements refer to it; may be empty
    std::string URI;  ///< path relative to the document's folder, as written, trimmed

    friend bool operator==(const Font&, const Font&) = default;
  };

  struct Spot {
    std::string SpotNumber;
    std::string TimeIn;  ///< "HH:MM:SS:TTT" in ticks of 4 ms, or "HH:MM:SS.sss", as written
    std::string TimeOut;
    std::list<std::string> TextList;   ///< one per line
    std::list<std::string> ImageList;  ///< paths as Font::URI

    friend bool operator==(const Spot&, const Spot&) = default;
  };

  std::string Version;  ///< attribute of the document element, "1.0" or "1.1"
  UUID SubtitleID;
  std::string MovieTitle;
  ui32_t ReelNumber = 0;     ///< from 1; 0: the document does not say
  std::string Language;      ///< English name or code, as written
  std::list<Font> FontList;  ///< LoadFont elements in document order
  std::list<Spot> SpotList;  ///< in document order
  Cairn::DCPFormat_t DCPFormat = DFT_NONE;

  /// The files the document refers to: font URIs, then image names, in document order, each once.
  [[nodiscard]] std::list<std::string> AncillaryNames() const;

  /// As CompositionPlaylist::DecodeXML; RESULT_NOT_SUBTITLE for another document.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);
  /// Writes a document in which every spot's lines stand at the bottom of the screen, in the first font.
  /// @return as CompositionPlaylist::EncodeXML.
  [[nodiscard]] Result_t EncodeXML(std::string& out) const;

  friend bool operator==(const DCSubtitle&, const DCSubtitle&) = default;
};

}  // namespace Cairn
