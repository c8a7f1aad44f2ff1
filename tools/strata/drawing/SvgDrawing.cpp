// SPDX-License-Identifier: BSD-3-Clause
#include "SvgDrawing.h"

#include "terminal/DisplayText.h"

#include <Ferro/Assert.h>

#include <array>
#include <cstdio>

namespace Tool {

std::string SvgNumber(double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.2f", value);
  std::string number = text.data();
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number == "-0" ? "0" : number;
}

SvgDrawing SvgDrawing::Group(std::string_view style, std::string_view tip) {
  Ferro::XMLElement& group = m_Parent->AddChild("g");
  if (!style.empty()) group.SetAttr("class", style);
  if (!tip.empty()) group.AddChildWithContent("title", DisplayText(tip));
  return SvgDrawing(group);
}

void SvgDrawing::Rectangle(const SvgBox& box, std::string_view style) {
  Ferro::XMLElement& element = m_Parent->AddChild("rect");
  element.SetAttr("class", style);
  element.SetAttr("x", SvgNumber(box.X));
  element.SetAttr("y", SvgNumber(box.Y));
  element.SetAttr("width", SvgNumber(box.Width));
  element.SetAttr("height", SvgNumber(box.Height));
}

void SvgDrawing::Line(double x1, double y1, double x2, double y2, std::string_view style) {
  Ferro::XMLElement& element = m_Parent->AddChild("line");
  element.SetAttr("class", style);
  element.SetAttr("x1", SvgNumber(x1));
  element.SetAttr("y1", SvgNumber(y1));
  element.SetAttr("x2", SvgNumber(x2));
  element.SetAttr("y2", SvgNumber(y2));
}

void SvgDrawing::Path(double x, double y, std::string_view path, std::string_view style) {
  Ferro::XMLElement& element = m_Parent->AddChild("path");
  element.SetAttr("class", style);
  element.SetAttr("transform", "translate(" + SvgNumber(x) + ' ' + SvgNumber(y) + ')');
  element.SetAttr("d", path);
}

void SvgDrawing::Text(double x, double y, std::string_view text, std::string_view style, std::string_view anchor) {
  Ferro::XMLElement& element = m_Parent->AddChildWithContent("text", DisplayText(text));
  element.SetAttr("class", style);
  element.SetAttr("x", SvgNumber(x));
  element.SetAttr("y", SvgNumber(y));
  if (anchor != "start") element.SetAttr("text-anchor", anchor);
}

SvgDocument::SvgDocument(std::string_view title, std::string_view description) : m_Root("svg") {
  m_Root.SetAttr("xmlns", "http://www.w3.org/2000/svg");
  m_Root.SetAttr("role", "img");
  m_Root.AddChildWithContent("title", DisplayText(title));
  if (!description.empty()) m_Root.AddChildWithContent("desc", DisplayText(description));
}

std::string SvgDocument::Render(double width, double height) {
  m_Root.SetAttr("width", SvgNumber(width));
  m_Root.SetAttr("height", SvgNumber(height));
  m_Root.SetAttr("viewBox", "0 0 " + SvgNumber(width) + ' ' + SvgNumber(height));
  std::string document;
  const Ferro::Result_t result = m_Root.Render(document);
  FERRO_ASSERT(result.Success());  // every text went through DisplayText
  return document;
}

}  // namespace Tool
