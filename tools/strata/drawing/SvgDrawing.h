// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/XMLElement.h>

#include <string>
#include <string_view>

namespace Tool {

/// A rectangle in pixels, y growing downwards.
struct SvgBox {
  double X = 0;
  double Y = 0;
  double Width = 0;
  double Height = 0;
};

/// Draws into one SVG element. Texts are made fit for XML. `style` is always the names of classes.
class SvgDrawing {
 public:
  explicit SvgDrawing(Ferro::XMLElement& parent) : m_Parent(&parent) {}

  /// A group that is drawn after what is here; `tip`, unless empty, is what a viewer shows when it is pointed at.
  [[nodiscard]] SvgDrawing Group(std::string_view style, std::string_view tip = "");
  void Rectangle(const SvgBox& box, std::string_view style);
  void Line(double x1, double y1, double x2, double y2, std::string_view style);
  /// `path` is the SVG path's data, from (x, y) on.
  void Path(double x, double y, std::string_view path, std::string_view style);
  /// A line of text with its base line at `y`; `anchor` "start", "middle" or "end" is the part of it at `x`.
  void Text(double x, double y, std::string_view text, std::string_view style, std::string_view anchor = "start");

 private:
  Ferro::XMLElement* m_Parent;
};

/// An SVG document without references to anything outside. `title` says what it shows to those who do not see it, and
/// `description`, unless empty, what it tells.
class SvgDocument {
 public:
  explicit SvgDocument(std::string_view title, std::string_view description = "");

  [[nodiscard]] Ferro::XMLElement& Root() { return m_Root; }
  /// As large as that, in pixels.
  [[nodiscard]] std::string Render(double width, double height);

 private:
  Ferro::XMLElement m_Root;
};

/// A coordinate: at most two decimals.
[[nodiscard]] std::string SvgNumber(double value);

}  // namespace Tool
