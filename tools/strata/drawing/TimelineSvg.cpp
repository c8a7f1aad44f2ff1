// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineSvg.h"

#include "DrawingStyles.h"
#include "SvgDrawing.h"
#include "TimelineLayout.h"
#include "TimelineSvgLists.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <Ferro/Path.h>

#include <algorithm>

namespace Tool {

namespace {

constexpr double WholeWidth = 1400;
constexpr double Gap = 5;          // between lanes
constexpr double LabelRow = 16;    // height of a row of labels
constexpr unsigned EventRows = 6;  // of show events, at most
constexpr unsigned EdgeRows = 3;   // of positions below the lanes, at most
constexpr double Narrowest = 2.5;  // what is narrower is drawn together with its neighbours
constexpr double LeastSeen = 3;    // so wide is drawn whatever is wrong

constexpr const char* Lock = "M2 5v-1.5a3 3 0 0 1 6 0V5h1v6H1V5zM3.5 5h3V3.5a1.5 1.5 0 0 0-3 0z";
constexpr const char* Warning = "M5.5 0L11 10H0zM5 3.5v3.5h1V3.5zM5 8v1h1V8z";

/// The part of a title that says which composition and reel something is in.
std::string PlaceText(const TimelineModel& model, const TimelineTrack& track) {
  const TimelineComposition& composition = model.Compositions[track.Composition];
  return composition.Title + ", reel " + std::to_string(track.Reel) + " of " + std::to_string(composition.Reels.size());
}

std::string TipOf(const TimelineModel& model, const TimelineLane& lane, const TimelineTrack& track) {
  std::string tip = lane.Name + ", " + PlaceText(model, track) + ": " + TimelineStateName(track.State);
  if (!track.Asset.AssetID.HasValue()) return tip;
  tip += ", asset " + track.Asset.AssetID.EncodeString();
  if (!track.Description.empty()) tip += ", " + track.Description;
  if (!track.File.empty()) tip += ", " + Ferro::PathBasename(track.File);
  tip += ", edit units " + std::to_string(track.Asset.EntryPoint) + " to " +
         std::to_string(Ferro::ui64_t{track.Asset.EntryPoint} + track.Asset.Duration) + " of " +
         std::to_string(track.Asset.IntrinsicDuration);
  if (track.Encrypted()) tip += ", encrypted with key " + track.Asset.KeyID.EncodeString();
  for (const std::string& problem : track.Problems) tip += ". " + problem;
  return tip;
}

std::string WordOf(const TimelineTrack& track) {
  if (IsAlarming(track.State) || IsSilent(track.State)) return TimelineStateName(track.State);
  const std::string& word = track.Coding.empty() ? track.Language : track.Coding;
  std::string text = word;
  if (track.HeadTrim() > 0) text += (text.empty() ? "" : ", ") + ("from " + std::to_string(track.HeadTrim()));
  return text;
}

class SvgTimeline {
 public:
  SvgTimeline(const TimelineModel& model, double width, Ferro::XMLElement& root)
      : m_Model(model),
        m_Width(width),
        m_Grid(SvgDrawing(root).Group("")),
        m_Boxes(SvgDrawing(root).Group("")),
        m_Lines(SvgDrawing(root).Group("")),
        m_Labels(SvgDrawing(root).Group("")),
        m_Scale(model.Seconds, TimelineLeft, width - TimelineMargin - TimelineLeft) {}

  /// Heading, lanes and lists. Returns the height.
  double DrawAll() {
    DrawHeading();
    DrawTracks();
    return DrawTimelineLists(m_Model, m_Labels, {16, m_Y + 10, m_Width - 32, 0});
  }

  /// What plays when, and what the looks mean. Returns the height.
  double DrawLanes() {
    DrawTracks();
    return DrawTimelineLegend(m_Model, m_Labels, {0, m_Y + 6, m_Width, 0});
  }

 private:
  /// All that stands above each other on the axis of time.
  void DrawTracks() {
    PlaceEvents();
    DrawRuler();
    DrawShows();
    DrawCompositions();
    DrawReels();
    DrawOwnMarkers();
    for (const TimelineLane& lane : m_Model.Lanes) DrawLane(lane);
    const double end = m_Y;
    for (const TimelineTick& tick : m_Ticks)
      m_Grid.Line(m_Scale.Place(tick.Seconds), m_Top, m_Scale.Place(tick.Seconds), end, "grid");
    DrawEdges(end);
    DrawEvents(end);
  }

  [[nodiscard]] TimelineItem ItemOf(const TimelineSpan& span, size_t index, unsigned item_class) const {
    return {m_Scale.Place(span.StartSeconds), m_Scale.Place(span.EndSeconds()), item_class, index, 1};
  }

  template <class Spans>
  [[nodiscard]] std::vector<TimelineItem> ItemsOf(const Spans& spans) const {
    std::vector<TimelineItem> items;
    for (const auto& span : spans) items.push_back(ItemOf(span, items.size(), 0));
    return JoinNarrow(items, Narrowest);
  }

  /// A box with room between it and the next one where it is wide enough.
  [[nodiscard]] SvgBox BoxOf(const TimelineItem& item, double height) const {
    const double width = item.Right - item.Left;
    return {item.Left + 0.5, m_Y, std::max(width - (width > 4 ? 1.5 : 0.0), 1.0), height};
  }

  /// A box that is wide enough to be seen, before the end of the show.
  [[nodiscard]] SvgBox Seen(const SvgBox& box) {
    const double width = std::max(box.Width, LeastSeen);
    return {std::min(box.X, m_Scale.Right() - width), box.Y, width, box.Height};
  }

  void NameLane(std::string_view name, double height) {
    m_Labels.Text(TimelineLeft - 10, m_Y + height / 2 + 4, name, "lane", "end");
  }

  /// Text in a box, shortened to what fits; nothing where little would be left.
  void Label(const SvgBox& box, std::string_view text, std::string_view style) {
    const std::string fitted = FitPixels(text, 12, box.Width - 8);
    if (!fitted.empty()) m_Labels.Text(box.X + 4, box.Y + box.Height / 2 + 4, fitted, style);
  }

  void DrawHeading() {
    m_Labels.Text(16, 34, FitPixels(m_Model.Title, 20, 800), "title");
    m_Labels.Text(m_Width - 24, 34, TimelineVerdict(m_Model), m_Model.Code == ExitCode::Fine ? "fine" : "alarm", "end");
    size_t reels = 0;
    for (const TimelineComposition& composition : m_Model.Compositions) reels += composition.Reels.size();
    const size_t count = m_Model.Compositions.size();
    m_Labels.Text(16, 56,
                  TimelineTimeCode(m_Model, m_Model.Duration) + "  \u00b7  " + std::to_string(m_Model.Duration) +
                      " edit units  \u00b7  " + std::to_string(count) +
                      (count == 1 ? " composition, " : " compositions, ") + std::to_string(reels) +
                      (reels == 1 ? " reel" : " reels"),
                  "faint");
    m_Y = 68;
  }

  /// Finds out where the labels of the show's events stand: those near the right end stand left of their lines.
  void PlaceEvents() {
    for (const TimelineMarker& marker : m_Model.Markers) {
      if (marker.OfComposition) continue;
      Event event;
      event.Place = m_Scale.Place(marker.Seconds);
      event.Text = FitPixels(marker.Label, 11, std::min(260.0, m_Width / 2 - 30));
      const double width = PixelsOf(event.Text, 11) + 10;
      event.IsFlipped = event.Place + width > m_Width - 8;
      event.Room = {event.IsFlipped ? event.Place - width : event.Place, width};
      m_Events.push_back(event);
    }
    std::stable_sort(m_Events.begin(), m_Events.end(),
                     [](const Event& a, const Event& b) { return a.Room.Left < b.Room.Left; });
    std::vector<LabelRoom> rooms;
    for (const Event& event : m_Events) rooms.push_back(event.Room);
    m_EventRow = PlaceLabels(rooms, EventRows, 4);
    const int last = m_EventRow.empty() ? -1 : *std::max_element(m_EventRow.begin(), m_EventRow.end());
    if (!m_Events.empty()) m_Labels.Text(TimelineLeft - 10, m_Y + 12, "Events", "lane", "end");
    m_EventTop = m_Y;
    m_Y += LabelRow * (last + 1) + 4;
    const auto left = std::count(m_EventRow.begin(), m_EventRow.end(), -1);
    if (left > 0)
      m_Labels.Text(TimelineLeft - 10, m_EventTop + 27, "and " + std::to_string(left) + " more", "faint", "end");
  }

  void DrawEvents(double end) {
    double drawn = -1;
    for (size_t index = 0; index < m_Events.size(); ++index) {
      const Event& event = m_Events[index];
      const bool has_label = m_EventRow[index] >= 0;
      const double top = m_EventTop + LabelRow * (has_label ? m_EventRow[index] : EventRows);
      if (has_label || event.Place > drawn + 1) m_Lines.Line(event.Place, top, event.Place, end, "event");
      drawn = event.Place;
    }
    for (size_t index = 0; index < m_Events.size(); ++index) {
      if (m_EventRow[index] < 0) continue;
      const Event& event = m_Events[index];
      const double top = m_EventTop + LabelRow * m_EventRow[index];
      m_Labels.Path(event.Place, top, event.IsFlipped ? "M0 0L-5 3.5L0 7z" : "M0 0L5 3.5L0 7z", "flag");
      m_Labels.Text(event.Place + (event.IsFlipped ? -8 : 8), top + 10, event.Text, "small strong",
                    event.IsFlipped ? "end" : "start");
    }
  }

  void DrawRuler() {
    m_Ticks = TimelineTicks(m_Scale, 70);
    m_Labels.Text(TimelineLeft - 10, m_Y + 14, "Time", "lane", "end");
    for (const TimelineTick& tick : m_Ticks) {
      const double x = m_Scale.Place(tick.Seconds);
      m_Grid.Line(x, m_Y + 17, x, m_Y + 22, "tick");
      m_Labels.Text(x, m_Y + 13, tick.Label, "number over",
                    x > m_Scale.Right() - 20 ? "end"
                    : x < TimelineLeft + 20  ? "start"
                                             : "middle");
    }
    m_Grid.Line(TimelineLeft, m_Y + 22, m_Scale.Right(), m_Y + 22, "axis");
    m_Top = m_Y + 22;
    m_Y += 26;
  }

  /// The show playlists within the show, a row per depth; the whole show is no news.
  void DrawShows() {
    unsigned deepest = 0;
    for (const TimelineShow& show : m_Model.Shows) deepest = std::max(deepest, show.Depth);
    constexpr unsigned most = 4;
    for (unsigned depth = 1; depth <= std::min(deepest, most); ++depth) {
      if (depth == 1) NameLane("Playlists", 18);
      std::vector<TimelineItem> items;
      for (size_t index = 0; index < m_Model.Shows.size(); ++index)
        if (m_Model.Shows[index].Depth == depth) items.push_back(ItemOf(m_Model.Shows[index], index, 0));
      for (const TimelineItem& item : JoinNarrow(items, Narrowest)) {
        const SvgBox box = BoxOf(item, 18);
        m_Boxes.Rectangle(box, "show");
        Label(box, m_Model.Shows[item.Index].Title, "small");
      }
      m_Y += 18 + Gap;
    }
  }

  void DrawCompositions() {
    constexpr double height = 38;
    NameLane("Compositions", height);
    std::vector<TimelineItem> items;
    for (const TimelineComposition& composition : m_Model.Compositions)
      items.push_back(ItemOf(composition, items.size(), static_cast<unsigned>(composition.State)));
    for (const TimelineItem& item : JoinNarrow(items, Narrowest)) {
      const TimelineComposition& composition = m_Model.Compositions[item.Index];
      const bool alarm = IsAlarming(composition.State);
      SvgBox box = BoxOf(item, height);
      if (alarm) box = Seen(box);
      const std::string name = std::to_string(item.Index + 1) + "  " + composition.Title;
      SvgDrawing group = m_Boxes.Group(
          "", item.Count > 1 ? std::to_string(item.Count) + " compositions" : name + ", " + composition.Description);
      if (alarm) group.Rectangle(box, "hatched");
      group.Rectangle(box, alarm ? TimelineStateName(composition.State) : "composition");
      const std::string second = item.Count > 1 ? std::to_string(item.Count) + " compositions"
                                 : alarm        ? TimelineStateName(composition.State)
                                                : composition.Description;
      if (item.Count == 1) Label({box.X, box.Y, box.Width, 20}, name, alarm ? "plate" : "strong");
      Label({box.X, box.Y + 17, box.Width, 18}, second, alarm ? "plate" : "small");
    }
    m_Y += height + Gap;
  }

  void DrawReels() {
    NameLane("Reels", 18);
    std::vector<TimelineReel> reels;
    std::vector<size_t> numbers;
    for (const TimelineComposition& composition : m_Model.Compositions)
      for (const TimelineReel& reel : composition.Reels) {
        numbers.push_back(static_cast<size_t>(&reel - composition.Reels.data()) + 1);
        reels.push_back(reel);
      }
    for (const TimelineItem& item : ItemsOf(reels)) {
      const SvgBox box = BoxOf(item, 18);
      m_Boxes.Rectangle(box, "reel");
      Label(box, item.Count > 1 ? std::to_string(item.Count) + " reels" : std::to_string(numbers[item.Index]), "small");
    }
    m_Y += 18 + Gap;
  }

  /// The compositions' own markers: each label where there is room until the next one.
  void DrawOwnMarkers() {
    std::vector<const TimelineMarker*> own;
    for (const TimelineMarker& marker : m_Model.Markers)
      if (marker.OfComposition) own.push_back(&marker);
    if (own.empty()) return;
    NameLane("Markers", 16);
    double drawn = 0;
    for (size_t index = 0; index < own.size(); ++index) {
      const double x = m_Scale.Place(own[index]->Seconds);
      const double next = index + 1 < own.size() ? m_Scale.Place(own[index + 1]->Seconds) : m_Width;
      if (x >= drawn + 1) m_Labels.Path(x, m_Y + 4, "M0 0L4 4L0 8L-4 4z", "flag own");
      drawn = std::max(x, drawn);
      const std::string text = FitPixels(own[index]->Label, 11, next - x - 14);
      if (!text.empty()) m_Labels.Text(x + 7, m_Y + 12, text, "small");
    }
    m_Y += 16 + Gap;
  }

  void DrawLane(const TimelineLane& lane) {
    const double height = lane.Kind == AssetKind::Picture ? 38 : lane.Kind == AssetKind::Sound ? 28 : 24;
    NameLane(lane.Name, height);
    std::vector<TimelineItem> items;
    for (const TimelineTrack& track : lane.Tracks) {
      const unsigned looks = static_cast<unsigned>(track.State) * 2 + (track.Encrypted() ? 1 : 0);
      items.push_back(ItemOf(track, items.size(), looks));
    }
    items = JoinNarrow(items, Narrowest);
    const auto alarms_last = [](const TimelineItem& a, const TimelineItem& b) { return a.Class < b.Class; };
    std::stable_sort(items.begin(), items.end(), alarms_last);
    for (const TimelineItem& item : items) DrawTrack(lane, item, BoxOf(item, height));
    m_Y += height + Gap;
  }

  void DrawTrack(const TimelineLane& lane, const TimelineItem& item, SvgBox box) {
    const TimelineTrack& track = lane.Tracks[item.Index];
    const bool alarm = IsAlarming(track.State);
    const bool silent = IsSilent(track.State);
    if (alarm) box = Seen(box);
    const std::string many = std::to_string(item.Count) + " reels";
    SvgDrawing group = m_Boxes.Group("", item.Count > 1 ? lane.Name + ", " + many : TipOf(m_Model, lane, track));
    if (alarm) group.Rectangle(box, "hatched");
    group.Rectangle(box, alarm ? TimelineStateName(track.State) : silent ? "silence" : TimelineLaneStyle(lane.Kind));
    if (track.Encrypted() && !alarm) group.Rectangle(box, "cipher");
    if (item.Count > 1) return Label(box, alarm ? many + ": " + TimelineStateName(track.State) : many, "small");
    if (track.HeadTrim() > 0 && box.Width > 20) m_Labels.Path(box.X, box.Y, "M0 0H9L0 9z", "trim");
    if (track.TailTrim() > 0 && box.Width > 20) m_Labels.Path(box.X + box.Width, box.Y, "M0 0H-9L0 9z", "trim");
    SvgBox inner = box;
    const auto take = [&](double width) { inner = {inner.X + width, inner.Y, inner.Width - width, inner.Height}; };
    if (track.HeadTrim() > 0) take(8);
    if (track.Stereoscopic && !alarm && box.Width > 14) {
      m_Labels.Line(box.X, box.Y + box.Height / 2, box.X + box.Width, box.Y + box.Height / 2, "half");
      m_Labels.Text(inner.X + 4, box.Y + box.Height / 2 - 5, "L", "small strong");
      m_Labels.Text(inner.X + 4, box.Y + box.Height - 5, "R", "small strong");
      take(14);
    }
    if (track.Encrypted() && inner.Width > 16) {
      m_Labels.Path(inner.X + 3, inner.Y + inner.Height / 2 - 6, Lock, "lock");
      take(14);
    }
    if (track.State == TimelineState::Unusual && inner.Width > 18) {
      m_Labels.Path(inner.X + 3, inner.Y + inner.Height / 2 - 5, Warning, "warning");
      take(15);
    }
    Label(inner, WordOf(track), alarm ? "plate" : silent ? "faint" : track.Encrypted() ? "small over" : "small");
  }

  /// Where compositions start, as time code and edit units, below the lanes.
  void DrawEdges(double end) {
    std::vector<LabelRoom> rooms;
    for (const TimelineComposition& composition : m_Model.Compositions) {
      const double x = m_Scale.Place(composition.StartSeconds);
      rooms.push_back({std::min(x, m_Width - 100), 84});
      if (rooms.size() > 1 && x < m_LastEdge + 6) continue;
      m_Grid.Line(x, m_Top, x, end + 4, "edge");
      m_LastEdge = x;
    }
    const std::vector<int> rows = PlaceLabels(rooms, EdgeRows, 4);
    int last = -1;
    for (size_t index = 0; index < rooms.size(); ++index) {
      if (rows[index] < 0) continue;
      last = std::max(last, rows[index]);
      const Ferro::ui32_t start = m_Model.Compositions[index].Start;
      const double y = end + 15 + rows[index] * 28;
      m_Labels.Text(rooms[index].Left + 2, y, TimelineTimeCode(m_Model, start), "number");
      m_Labels.Text(rooms[index].Left + 2, y + 12, std::to_string(start), "faint");
    }
    m_Grid.Line(TimelineLeft, end, m_Scale.Right(), end, "axis");
    m_Labels.Text(TimelineLeft - 10, end + 15, "Time code", "faint", "end");
    m_Labels.Text(TimelineLeft - 10, end + 27, "Edit unit", "faint", "end");
    m_Y = end + 12 + std::max(last + 1, 1) * 28;
  }

  struct Event {
    double Place = 0;
    std::string Text;
    LabelRoom Room;
    bool IsFlipped = false;
  };

  const TimelineModel& m_Model;
  const double m_Width;
  // From back to front.
  SvgDrawing m_Grid;
  SvgDrawing m_Boxes;
  SvgDrawing m_Lines;
  SvgDrawing m_Labels;
  const TimelineScale m_Scale;
  std::vector<TimelineTick> m_Ticks;
  std::vector<Event> m_Events;
  std::vector<int> m_EventRow;
  double m_EventTop = 0;
  double m_Top = 0;  // of the lanes
  double m_Y = 0;    // where the next lane goes
  double m_LastEdge = 0;
};

}  // namespace

std::string TimelineSvg(const TimelineModel& model) {
  SvgDocument document("Timeline of " + model.Title);
  Ferro::XMLElement& root = document.Root();
  root.AddChildWithContent("style", TimelineStyle());
  AddTimelinePatterns(root);
  Ferro::XMLElement& paper = root.AddChild("rect");
  const double height = SvgTimeline(model, WholeWidth, root).DrawAll();
  paper.SetAttr("class", "paper");
  paper.SetAttr("width", SvgNumber(WholeWidth));
  paper.SetAttr("height", SvgNumber(height));
  return document.Render(WholeWidth, height);
}

std::string TimelineLanes(const TimelineModel& model, double width) {
  SvgDocument document("Timeline of " + model.Title, TimelineVerdict(model));
  const double height = SvgTimeline(model, width, document.Root()).DrawLanes();
  return document.Render(width, height);
}

std::string TimelinePatterns() {
  SvgDocument document("");
  AddTimelinePatterns(document.Root());
  return document.Render(0, 0);
}

}  // namespace Tool
