// SPDX-License-Identifier: BSD-3-Clause
#include "InfoPicture.h"

#include "show/Description.h"

#include <cstdio>

namespace Tool {

void SetPictureSize(InfoFacts& picture, Ferro::ui32_t width, Ferro::ui32_t height, const DisplaySize& displayed) {
  std::string shown = PictureFormatText(width, height);
  picture.Set("width", width).ShownAs("");
  picture.Set("height", height).ShownAs("");
  if (displayed.Width != 0 && displayed.Height != 0) {
    picture.Set("display_width", displayed.Width).ShownAs("");
    picture.Set("display_height", displayed.Height).ShownAs("");
    const std::string of_display = PictureFormatText(displayed.Width, displayed.Height);
    shown += of_display == shown ? ", all of it displayed" : " stored, " + of_display + " displayed";
  }
  picture.Tell("size", shown.empty() ? "unknown" : shown);
}

std::string BitRateText(Ferro::ui32_t bits_per_second) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f Mbit/s", bits_per_second / 1e6);
  return text;
}

}  // namespace Tool
