// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineText.h"

#include "drawing/TimelineLayout.h"
#include "findings/FindingReport.h"
#include "keys/KeyReport.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <sstream>

namespace Tool {

namespace {

constexpr unsigned NameColumns = 13;
constexpr unsigned EventRows = 6;
constexpr size_t MostRows = 200;  // of compositions, of events

/// The characters that a drawing is made of.
struct Glyphs {
  const char* Edge;
  const char* Event;
  const char* Ready;
  const char* Encrypted;
  const char* Unusual;
  const char* Silence;
  const char* Missing;
  const char* Broken;
};

constexpr Glyphs Utf8Glyphs = {"\u2502", "\u25bc", "\u2588", "\u2593", "\u2592", "\u00b7", "X", "#"};
constexpr Glyphs AsciiGlyphs = {"|", "v", "=", "%", "~", ".", "X", "#"};

/// One line of the drawing: a cell per column, filled over what is there. The second cell of a wide letter is empty.
class Row {
 public:
  explicit Row(unsigned columns) : m_Cells(columns, " ") {}

  void Fill(size_t begin, size_t end, const std::string& glyph) {
    for (size_t column = begin; column < std::min(end, m_Cells.size()); ++column) Set(column, glyph);
  }

  /// Writes a text from `begin` on, shortened to end before `end`.
  void Write(size_t begin, size_t end, const std::string& text) {
    end = std::min(end, m_Cells.size());
    if (begin >= end) return;
    size_t column = begin;
    for (const DisplayCharacter& character : DisplayCharacters(FitColumns(text, static_cast<unsigned>(end - begin)))) {
      if (character.Columns == 0 && column > begin) m_Cells[column - 1] += EncodeCharacter(character.Code);
      if (character.Columns == 0) continue;
      Set(column, EncodeCharacter(character.Code));
      if (character.Columns == 2) {
        Set(column + 1, " ");
        m_Cells[column + 1].clear();
      }
      column += character.Columns;
    }
  }

  [[nodiscard]] std::string Text() const {
    std::string text;
    for (const std::string& cell : m_Cells) text += cell;
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }

 private:
  /// What is left of a wide letter that is written over is a blank.
  void Set(size_t column, const std::string& glyph) {
    if (m_Cells[column].empty()) m_Cells[column - 1] = " ";
    if (column + 1 < m_Cells.size() && m_Cells[column + 1].empty()) m_Cells[column + 1] = " ";
    m_Cells[column] = glyph;
  }

  std::vector<std::string> m_Cells;
};

class TextTimeline {
 public:
  TextTimeline(const TimelineModel& model, const TimelineTextForm& form)
      : m_Model(model),
        m_Form(form),
        m_Glyphs(form.IsUtf8 ? Utf8Glyphs : AsciiGlyphs),
        m_Columns(form.Columns - NameColumns),
        m_Scale(model.Seconds, 0, m_Columns) {}

  std::string Draw() {
    AddLine(m_Model.Title);
    AddWrapped(TimelineTimeCode(m_Model, m_Model.Duration) + ", " + std::to_string(m_Model.Duration) + " edit units. " +
               TimelineVerdict(m_Model));
    m_Text += '\n';
    DrawEvents();
    DrawTicks();
    DrawShows();
    DrawCompositions();
    DrawReels();
    for (const TimelineLane& lane : m_Model.Lanes) DrawLane(lane);
    m_Text += '\n';
    AddWrapped(Legend());
    ListCompositions();
    ListEvents();
    ListFindings();
    return m_Form.IsUtf8 ? m_Text : WithoutEllipses(m_Text);
  }

 private:
  struct Cells {
    size_t Begin = 0;
    size_t End = 0;
  };

  /// The columns of a span: those next to each other share none, and each has one at least.
  [[nodiscard]] Cells CellsOf(const TimelineSpan& span) const {
    const auto column = [&](double seconds) { return static_cast<size_t>(m_Scale.Place(seconds) + 1e-6); };
    const size_t begin = std::min<size_t>(column(span.StartSeconds), m_Columns - 1);
    return {begin, std::max(begin + 1, column(span.EndSeconds()))};
  }

  void AddLine(const std::string& text) { m_Text += FitColumns(Plain(text), m_Form.Columns) + '\n'; }

  /// As many lines as it takes, broken at blanks; those after the first stand two columns in.
  void AddWrapped(const std::string& text) {
    std::string line;
    std::istringstream words(Plain(text));
    for (std::string word; words >> word;) {
      if (!line.empty() && ColumnsOf(line) + 1 + ColumnsOf(word) > m_Form.Columns) {
        AddLine(line);
        line = " ";
      }
      line += (line.empty() ? "" : " ") + word;
    }
    AddLine(line);
  }

  /// Without what the terminal cannot show.
  [[nodiscard]] std::string Plain(const std::string& text) const {
    if (m_Form.IsUtf8) return text;
    std::string plain;
    for (const DisplayCharacter& character : DisplayCharacters(text))
      plain += character.Code < 0x80 ? static_cast<char>(character.Code) : character.Code == 0xd7 ? 'x' : '?';  // ×
    return plain;
  }

  void AddRow(const std::string& name, const Row& row) {
    std::string text = FitColumns(name, NameColumns - 1);
    text.append(NameColumns - ColumnsOf(text), ' ');
    text += row.Text();
    m_Text += text.substr(0, text.find_last_not_of(' ') + 1) + '\n';
  }

  /// What FitColumns shortened ends with one character in ASCII too.
  static std::string WithoutEllipses(const std::string& text) {
    std::string plain;
    for (size_t at = 0; at < text.size(); ++at) {
      const bool is_ellipsis = text.compare(at, 3, "\u2026") == 0;
      plain += is_ellipsis ? '>' : text[at];
      if (is_ellipsis) at += 2;
    }
    return plain;
  }

  /// A box of a row of names: an edge, and the text where there is room for some of it.
  void Box(Row& row, const Cells& cells, const std::string& text) const {
    row.Fill(cells.Begin, cells.End, " ");
    row.Fill(cells.Begin, cells.Begin + 1, m_Glyphs.Edge);
    const size_t room = cells.End - cells.Begin - 1;
    if (room >= 2 || ColumnsOf(text) <= room) row.Write(cells.Begin + 1, cells.End, Plain(text));
  }

  void DrawEvents() {
    std::vector<const TimelineMarker*> events;
    for (const TimelineMarker& marker : m_Model.Markers)
      if (!marker.OfComposition) events.push_back(&marker);
    if (events.empty()) return;
    std::vector<std::string> texts;
    std::vector<std::pair<LabelRoom, size_t>> rooms;
    for (const TimelineMarker* event : events) {
      const auto place = std::min(static_cast<double>(CellsOf({0, 0, event->Seconds, 0}).Begin), m_Columns - 1.0);
      const std::string label = FitColumns(Plain(event->Label), m_Columns / 2);
      const double width = ColumnsOf(label) + 1.0;
      const bool is_flipped = place + width > m_Columns;
      rooms.push_back({{is_flipped ? place + 1 - width : place, width}, texts.size()});
      texts.push_back(is_flipped ? label + m_Glyphs.Event : m_Glyphs.Event + label);
    }
    std::stable_sort(rooms.begin(), rooms.end(),
                     [](const auto& a, const auto& b) { return a.first.Left < b.first.Left; });
    std::vector<LabelRoom> labels;
    for (const auto& room : rooms) labels.push_back(room.first);
    const std::vector<int> places = PlaceLabels(labels, EventRows, 1);
    for (int number = 0; number <= *std::max_element(places.begin(), places.end()); ++number) {
      Row row(m_Columns);
      for (size_t index = 0; index < places.size(); ++index)
        if (places[index] == number)
          row.Write(static_cast<size_t>(labels[index].Left), m_Columns, texts[rooms[index].second]);
      AddRow(number == 0 ? "Events" : "", row);
    }
    if (const auto left = std::count(places.begin(), places.end(), -1); left > 0)
      AddRow("", [&] {
        Row row(m_Columns);
        row.Write(0, m_Columns, "and " + std::to_string(left) + " more: see below");
        return row;
      }());
  }

  void DrawTicks() {
    Row row(m_Columns);
    for (const TimelineTick& tick : TimelineTicks(m_Scale, 10)) {
      const auto column = static_cast<size_t>(m_Scale.Place(tick.Seconds) + 1e-6);
      if (column + tick.Label.size() + 1 <= m_Columns) row.Write(column, m_Columns, m_Glyphs.Edge + tick.Label);
    }
    AddRow("Time", row);
  }

  void DrawShows() {
    unsigned deepest = 0;
    for (const TimelineShow& show : m_Model.Shows) deepest = std::max(deepest, show.Depth);
    for (unsigned depth = 1; depth <= std::min(deepest, 4U); ++depth) {
      Row row(m_Columns);
      for (const TimelineShow& show : m_Model.Shows)
        if (show.Depth == depth) {
          const Cells cells = CellsOf(show);
          Box(row, cells, show.Title);
          row.Fill(cells.End, cells.End + 1, m_Glyphs.Edge);
        }
      AddRow(depth == 1 ? "Playlists" : "", row);
    }
  }

  void DrawCompositions() {
    Row row(m_Columns);
    for (size_t index = 0; index < m_Model.Compositions.size(); ++index) {
      const TimelineComposition& composition = m_Model.Compositions[index];
      Box(row, CellsOf(composition), std::to_string(index + 1) + ' ' + composition.Title);
    }
    for (const TimelineComposition& composition : m_Model.Compositions) {
      if (!IsAlarming(composition.State)) continue;
      const Cells cells = CellsOf(composition);
      row.Fill(cells.Begin, cells.End, GlyphOf(composition.State, false));
      row.Write(cells.Begin + 1, cells.End - 1, ' ' + Plain(composition.Title) + ' ');
    }
    AddRow("Compositions", row);
  }

  void DrawReels() {
    Row row(m_Columns);
    for (const TimelineComposition& composition : m_Model.Compositions)
      for (size_t index = 0; index < composition.Reels.size(); ++index)
        Box(row, CellsOf(composition.Reels[index]), std::to_string(index + 1));
    AddRow("Reels", row);
  }

  [[nodiscard]] const char* GlyphOf(TimelineState state, bool encrypted) const {
    switch (state) {
      case TimelineState::Ready:
        return encrypted ? m_Glyphs.Encrypted : m_Glyphs.Ready;
      case TimelineState::Silence:
      case TimelineState::NoSound:
        return m_Glyphs.Silence;
      case TimelineState::Unusual:
        return m_Glyphs.Unusual;
      case TimelineState::Missing:
        return m_Glyphs.Missing;
      case TimelineState::Broken:
        return m_Glyphs.Broken;
    }
    return " ";
  }

  // What is worse is drawn over what is better, so that nothing wrong is too short to be seen.
  void DrawLane(const TimelineLane& lane) {
    Row row(m_Columns);
    std::vector<const TimelineTrack*> tracks;
    for (const TimelineTrack& track : lane.Tracks) tracks.push_back(&track);
    std::stable_sort(tracks.begin(), tracks.end(),
                     [](const TimelineTrack* a, const TimelineTrack* b) { return a->State < b->State; });
    for (const TimelineTrack* track : tracks) {
      const Cells cells = CellsOf(*track);
      row.Fill(cells.Begin, cells.End, GlyphOf(track->State, track->Encrypted()));
      if (cells.End - cells.Begin < 3) continue;
      row.Fill(cells.Begin, cells.Begin + 1, m_Glyphs.Edge);
      const std::string word = WordOf(*track);
      const size_t room = cells.End - cells.Begin;
      if (!word.empty() && ColumnsOf(word) + 3 <= room)
        row.Write(cells.Begin + 2, cells.End, ' ' + word + (ColumnsOf(word) + 3 < room ? " " : ""));
    }
    for (const TimelineTrack* track : tracks) DrawGap(*track, row);
    AddRow(lane.Name, row);
  }

  /// What a track leaves of its reel is seen, however short.
  void DrawGap(const TimelineTrack& track, Row& row) const {
    const TimelineReel& reel = m_Model.Compositions[track.Composition].Reels[track.Reel - 1];
    if (track.EndSeconds() + 1e-9 >= reel.EndSeconds()) return;
    const Cells of_reel = CellsOf(reel);
    const size_t begin = std::min(CellsOf(track).End, of_reel.End - 1);
    row.Fill(begin, of_reel.End, " ");
  }

  [[nodiscard]] std::string WordOf(const TimelineTrack& track) const {
    if (track.State != TimelineState::Ready) return TimelineStateName(track.State);
    std::string text = track.Stereoscopic ? "left/right" : Plain(track.Coding.empty() ? track.Language : track.Coding);
    if (track.HeadTrim() > 0) text += (text.empty() ? "" : ", ") + ("from " + std::to_string(track.HeadTrim()));
    return text;
  }

  [[nodiscard]] std::string Legend() const {
    return std::string(m_Glyphs.Ready) + " plays; " + m_Glyphs.Encrypted + " encrypted; " + m_Glyphs.Unusual +
           " unusual; " + m_Glyphs.Silence + " silence, or no sound; " + m_Glyphs.Missing + " missing; " +
           m_Glyphs.Broken + " broken";
  }

  void ListCompositions() {
    m_Text += '\n';
    AddLine("  #  starts at    takes        title and what it is");
    for (size_t index = 0; index < std::min(m_Model.Compositions.size(), MostRows); ++index) {
      const TimelineComposition& composition = m_Model.Compositions[index];
      std::string number = std::to_string(index + 1);
      number.insert(0, number.size() < 3 ? 3 - number.size() : 0, ' ');
      const std::string what =
          IsAlarming(composition.State) ? TimelineStateName(composition.State) : composition.Description;
      AddLine(number + "  " + TimelineTimeCode(m_Model, composition.Start) + "  " +
              TimeCodeText(composition.Duration, composition.EditRate) + "  " + composition.Title +
              (what.empty() ? "" : "  " + what));
      for (const KeyAnswer& answer : composition.Keys)
        if (answer.Choice.Best != nullptr || composition.Keys.size() > 1) AddLine("       " + KeyAnswerText(answer));
    }
    More(m_Model.Compositions.size());
  }

  void ListEvents() {
    size_t count = 0;
    for (const TimelineMarker& marker : m_Model.Markers) {
      if (marker.OfComposition || ++count > MostRows) continue;
      if (count == 1) m_Text += '\n';
      AddLine(std::string("  ") + m_Glyphs.Event + "  " + TimelineTimeCode(m_Model, marker.Position) + "  " +
              marker.Label);
    }
    More(count);
  }

  void ListFindings() {
    if (!m_Model.Findings.empty()) m_Text += '\n';
    for (const Finding& finding : WorstFirst(m_Model.Findings)) {
      AddWrapped(std::string(SeverityName(SeverityOf(finding))) + ": " + FindingLine(finding));
      if (SeverityOf(finding) <= Severity::Warning && finding.ID != FindingID::FileUnreadable) continue;
      // Whole, however narrow the terminal: they are there to be copied.
      if (finding.Place.Asset.HasValue()) m_Text += "    asset " + finding.Place.Asset.EncodeString() + '\n';
      const std::string file = PathOf(finding.Place);
      if (!file.empty()) m_Text += "    file  " + Plain(DisplayText(file)) + '\n';
    }
  }

  void More(size_t count) {
    if (count > MostRows) AddLine("     and " + std::to_string(count - MostRows) + " more");
  }

  const TimelineModel& m_Model;
  const TimelineTextForm m_Form;
  const Glyphs& m_Glyphs;
  const unsigned m_Columns;
  const TimelineScale m_Scale;
  std::string m_Text;
};

}  // namespace

std::string TimelineText(const TimelineModel& model, const TimelineTextForm& form) {
  return TextTimeline(model, form).Draw();
}

}  // namespace Tool
