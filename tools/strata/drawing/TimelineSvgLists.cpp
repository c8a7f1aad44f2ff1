// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineSvgLists.h"

#include "findings/FindingReport.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <algorithm>

namespace Tool {

namespace {

constexpr double Line = 18;
constexpr size_t MostFindings = 12;
constexpr size_t MostRows = 40;  // of compositions, and of events

void Pattern(Ferro::XMLElement& definitions, std::string_view name, std::string_view size, std::string_view path,
             std::string_view style) {
  Ferro::XMLElement& element = definitions.AddChild("pattern");
  element.SetAttr("id", name);
  element.SetAttr("patternUnits", "userSpaceOnUse");
  element.SetAttr("width", size);
  element.SetAttr("height", size);
  Ferro::XMLElement& drawn = element.AddChild("path");
  drawn.SetAttr("class", style);
  drawn.SetAttr("d", path);
}

/// A sample of each look with its name, in rows.
class Legend {
 public:
  Legend(SvgDrawing& out, const SvgBox& place) : m_Out(out), m_Place(place), m_X(place.X), m_Y(place.Y) {}

  void Add(std::string_view text, const std::vector<const char*>& styles) {
    MakeRoom(28 + PixelsOf(text, 11));
    for (const char* style : styles) m_Out.Rectangle({m_X + 0.5, m_Y + 0.5, 22, 14}, style);
    Name(text);
  }

  void AddTrim(std::string_view text) {
    MakeRoom(28 + PixelsOf(text, 11));
    m_Out.Rectangle({m_X + 0.5, m_Y + 0.5, 22, 14}, "picture");
    m_Out.Path(m_X + 0.5, m_Y + 0.5, "M0 0H8L0 8z", "trim");
    m_Out.Path(m_X + 22.5, m_Y + 0.5, "M0 0H-8L0 8z", "trim");
    Name(text);
  }

  void AddWords(std::string_view text) {
    MakeRoom(PixelsOf(text, 11));
    m_Out.Text(m_X, m_Y + 12, text, "small");
  }

  [[nodiscard]] double End() const { return m_Y + 26; }

 private:
  void MakeRoom(double width) {
    if (m_X == m_Place.X || m_X + width <= m_Place.X + m_Place.Width) return;
    m_X = m_Place.X;
    m_Y += 20;
  }

  void Name(std::string_view text) {
    m_Out.Text(m_X + 28, m_Y + 12, text, "small");
    m_X += 28 + PixelsOf(text, 11) + 14;
  }

  SvgDrawing& m_Out;
  const SvgBox m_Place;
  double m_X;
  double m_Y;
};

class Lists {
 public:
  Lists(const TimelineModel& model, SvgDrawing& out, const SvgBox& place)
      : m_Model(model), m_Out(out), m_Place(place), m_Y(place.Y) {}

  double Draw() {
    m_Out.Line(m_Place.X, m_Y, m_Place.X + m_Place.Width, m_Y, "rule");
    m_Y = DrawTimelineLegend(m_Model, m_Out, {m_Place.X, m_Y + 10, m_Place.Width, 0});
    DrawFindings();
    const double top = m_Y;
    DrawCompositions();
    const double end = m_Y;
    m_Y = top;
    DrawEvents();
    return std::max(m_Y, end) + 12;
  }

 private:
  void DrawFindings() {
    const FindingList worst = WorstFirst(m_Model.Findings);
    if (worst.empty()) return;
    Heading(m_Place.X, "Findings");
    for (size_t index = 0; index < std::min(worst.size(), MostFindings); ++index) {
      Finding shown = worst[index];
      shown.Place.CompositionTitle = FitColumns(shown.Place.CompositionTitle, 60);
      const std::string text = std::string(SeverityName(SeverityOf(shown))) + ": " + FindingLine(shown);
      const bool alarm = SeverityOf(shown) > Severity::Warning;
      m_Out.Text(m_Place.X, m_Y + 12, FitPixels(text, 11, m_Place.Width), alarm ? "small alarm" : "small");
      m_Y += Line;
    }
    More(m_Place.X, worst.size(), MostFindings);
    m_Y += 10;
  }

  void DrawCompositions() {
    const double x = m_Place.X;
    const bool has_events = std::any_of(m_Model.Markers.begin(), m_Model.Markers.end(),
                                        [](const TimelineMarker& marker) { return !marker.OfComposition; });
    const double room = has_events ? 206 : m_Place.Width - 746;  // for what a composition is
    Heading(x, "Compositions");
    Number(x + 120, "starts at", "faint");
    Number(x + 200, "edit unit", "faint");
    Cell(x + 216, "title", "faint");
    Number(x + 650, "duration", "faint");
    Number(x + 730, "edit units", "faint");
    m_Y += Line;
    for (size_t index = 0; index < std::min(m_Model.Compositions.size(), MostRows); ++index) {
      const TimelineComposition& composition = m_Model.Compositions[index];
      const bool alarm = IsAlarming(composition.State);
      Number(x + 22, std::to_string(index + 1));
      Number(x + 120, TimelineTimeCode(m_Model, composition.Start));
      Number(x + 200, std::to_string(composition.Start));
      Cell(x + 216, FitPixels(composition.Title, 12, 330));
      Number(x + 650, TimeCodeText(composition.Duration, composition.EditRate));
      Number(x + 730, std::to_string(composition.Duration));
      Cell(x + 746, alarm ? TimelineStateName(composition.State) : FitPixels(composition.Description, 11, room),
           alarm ? "small alarm" : "small");
      m_Y += Line;
    }
    More(x + 34, m_Model.Compositions.size(), MostRows);
  }

  void DrawEvents() {
    const double x = m_Place.X + 960;
    std::vector<const TimelineMarker*> events;
    for (const TimelineMarker& marker : m_Model.Markers)
      if (!marker.OfComposition) events.push_back(&marker);
    if (events.empty()) return;
    Heading(x, "Events");
    Number(x + 84, "at", "faint");
    Number(x + 164, "edit unit", "faint");
    Cell(x + 180, "label", "faint");
    m_Y += Line;
    for (size_t index = 0; index < std::min(events.size(), MostRows); ++index) {
      Number(x + 84, TimelineTimeCode(m_Model, events[index]->Position));
      Number(x + 164, std::to_string(events[index]->Position));
      Cell(x + 180, FitPixels(events[index]->Label, 12, 220));
      m_Y += Line;
    }
    More(x, events.size(), MostRows);
  }

  /// Right of `x` and left of it, in the line at hand.
  void Cell(double x, std::string_view text, std::string_view style = "small") { m_Out.Text(x, m_Y + 12, text, style); }
  void Number(double x, std::string_view text, std::string_view style = "number") {
    m_Out.Text(x, m_Y + 12, text, style, "end");
  }

  void Heading(double x, std::string_view text) {
    m_Out.Text(x, m_Y + 12, text, "lane");
    m_Y += Line + 2;
  }

  void More(double x, size_t count, size_t shown) {
    if (count <= shown) return;
    m_Out.Text(x, m_Y + 12, "and " + std::to_string(count - shown) + " more", "faint");
    m_Y += Line;
  }

  const TimelineModel& m_Model;
  SvgDrawing& m_Out;
  const SvgBox m_Place;
  double m_Y;
};

}  // namespace

const char* TimelineLaneStyle(AssetKind kind) {
  switch (kind) {
    case AssetKind::Picture:
      return "picture";
    case AssetKind::Sound:
      return "sound";
    case AssetKind::OnScreenText:
      return "subtitle";
    case AssetKind::OffScreenText:
      return "caption";
    case AssetKind::AuxData:
      return "data";
  }
  return "";
}

void AddTimelinePatterns(Ferro::XMLElement& root) {
  Ferro::XMLElement& definitions = root.AddChild("defs");
  Pattern(definitions, "missing", "10", "M-2 2L2-2M0 10L10 0M8 12L12 8", "hatch");
  Pattern(definitions, "broken", "10", "M-2 2L2-2M0 10L10 0M8 12L12 8M-2 8L2 12M0 0L10 10M8-2L12 2", "hatch");
  Pattern(definitions, "cipher", "6", "M1 1h1.5v1.5H1zM4 4h1.5v1.5H4z", "dot");
}

double DrawTimelineLegend(const TimelineModel& model, SvgDrawing& out, const SvgBox& place) {
  Legend legend(out, place);
  std::vector<AssetKind> kinds;
  for (const TimelineLane& lane : model.Lanes)
    if (std::find(kinds.begin(), kinds.end(), lane.Kind) == kinds.end()) kinds.push_back(lane.Kind);
  for (const AssetKind kind : kinds) legend.Add(AssetKindName(kind), {TimelineLaneStyle(kind)});
  legend.Add("encrypted", {"picture", "cipher"});
  legend.Add("silence, no sound", {"silence"});
  legend.Add("missing", {"hatched", "missing"});
  legend.Add("broken", {"hatched", "broken"});
  legend.AddTrim("begins, ends within its file");
  if (std::any_of(model.Compositions.begin(), model.Compositions.end(),
                  [](const TimelineComposition& composition) { return composition.Stereoscopic; }))
    legend.AddWords("L, R: left and right eye");
  return legend.End();
}

double DrawTimelineLists(const TimelineModel& model, SvgDrawing& out, const SvgBox& place) {
  return Lists(model, out, place).Draw();
}

}  // namespace Tool
