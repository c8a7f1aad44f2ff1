// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Timestamp.h>
#include <Ferro/UUID.h>

#include <string>
#include <vector>

namespace Tool {

/// The timed text of one reel of a sample show. In each second stands a line of text; where there is an image, it takes
/// the second half of the second.
class SampleText {
 public:
  struct Facts {
    Ferro::UUID DocumentID;
    Ferro::UUID FontID;
    Ferro::UUID ImageID;  ///< no value: no image
    std::string Title;
    std::string Kind;  ///< "subtitle" or "caption"
    Ferro::ui32_t ReelNumber = 1;
    Ferro::ui32_t Seconds = 0;
    Ferro::ui32_t Rate = 0;           ///< edit units per second
    Ferro::ui32_t PictureHeight = 0;  ///< pixels of the picture that the image is shown on
    Ferro::Timestamp Date;
  };

  // The files beside an Interop document.
  static constexpr char FontName[] = "font.ttf";
  static constexpr char ImageName[] = "image.png";

  static constexpr char Namespace[] = "http://www.smpte-ra.org/schemas/428-7/2010/DCST";

  explicit SampleText(Facts facts);

  [[nodiscard]] const Facts& About() const { return m_Facts; }
  /// The document as it stands in a timed-text track file (ST 428-7:2010), its font and image named by identifiers.
  [[nodiscard]] std::string SMPTEDocument() const;
  /// The document as Interop packages have it, beside FontName and ImageName.
  [[nodiscard]] std::string InteropDocument() const;
  /// The image as a PNG file: the reel's number in white figures with a black border on a transparent ground.
  [[nodiscard]] std::vector<Ferro::ui8_t> Image() const;

 private:
  /// What is shown from one moment to another, both in half seconds from the start.
  struct Spot {
    std::string Line;  ///< empty: the image
    Ferro::ui32_t In;
    Ferro::ui32_t Out;
  };
  [[nodiscard]] std::vector<Spot> Spots() const;

  Facts m_Facts;
};

}  // namespace Tool
