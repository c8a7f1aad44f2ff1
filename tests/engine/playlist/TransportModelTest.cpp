// SPDX-License-Identifier: BSD-3-Clause
// Random moves, requests for readers and notifications on random timelines, compared step by step with a plain model of
// the rules: no search, no shared state, everything counted from the start.
#include "../../support/FakeTimeline.h"
#include "../../support/RecordingNotifier.h"
#include "../../support/TestSeed.h"

#include <Ferro/LogSink.h>

#include <gtest/gtest.h>

#include <random>

namespace {

using Strata::CompositionInfo;
using Strata::TrackType_t;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::NumberedID;
using testsupport::ui32_t;

constexpr unsigned StepCount = 1'000'000;
constexpr unsigned StepsPerTimeline = 2'000;
constexpr ui32_t Largest = 0xffffffff;

class Random {
 public:
  explicit Random(unsigned seed) : m_Engine(seed) {}
  ui32_t Below(ui32_t limit) { return static_cast<ui32_t>(m_Engine() % limit); }
  bool OneIn(ui32_t count) { return Below(count) == 0; }

 private:
  std::mt19937 m_Engine;
};

// What a timeline is made of, from which both the model and the playlist are built.

struct ReelPlan {
  ui32_t Length = 1;
  enum { NoSound, Silence, Sound } Audio = Sound;
  bool Text = false;
  ui32_t ClosedCount = 0;
  ui32_t AuxCount = 0;
};

struct CompositionPlan {
  CompositionInfo Info;
  std::vector<ReelPlan> Reels;
};

CompositionPlan RandomComposition(Random& random, ui32_t number) {
  CompositionPlan plan;
  plan.Info = testsupport::Composition(number);
  plan.Info.EditRate = QUIRE::Rational(random.OneIn(4) ? 48 : 24, 1);
  plan.Info.ImageFormat = random.OneIn(4) ? Cairn::FT_QUIRE_JP2K_J2C_S : Cairn::FT_QUIRE_JP2K_J2C;
  plan.Info.ImageWidth = std::array{1998u, 2048u, 2049u, 4096u}[random.Below(4)];
  plan.Info.ImageHeight = std::array{858u, 1080u}[random.Below(2)];
  plan.Info.SoundFormat = random.OneIn(4) ? 8 : 6;
  plan.Reels.resize(1 + random.Below(4));
  for (ReelPlan& reel : plan.Reels) {
    reel.Length = 1 + random.Below(random.OneIn(3) ? 40 : 4);
    reel.Audio = std::array{ReelPlan::NoSound, ReelPlan::Silence, ReelPlan::Sound, ReelPlan::Sound}[random.Below(4)];
    reel.Text = random.OneIn(3);
    reel.ClosedCount = random.Below(3);
    reel.AuxCount = random.Below(3);
    plan.Info.Duration += reel.Length;
  }
  plan.Info.TotalReels = static_cast<ui32_t>(plan.Reels.size());
  return plan;
}

/// Compositions in playing order; those of one number are the same wherever they appear.
std::vector<CompositionPlan> RandomShow(Random& random) {
  std::vector<CompositionPlan> known;
  for (ui32_t number = 1; number <= 4; ++number) known.push_back(RandomComposition(random, number));
  std::vector<CompositionPlan> show(1 + random.Below(6));
  for (CompositionPlan& appearance : show) appearance = known[random.Below(4)];
  return show;
}

// The playlist under test.

void AddTracks(Strata::TimelineReel& reel, const ReelPlan& plan) {
  if (plan.Audio != ReelPlan::NoSound)
    FakeTimeline::Add(reel.MainSound).Is.AlwaysPutToRest = plan.Audio == ReelPlan::Silence;
  if (plan.Text) FakeTimeline::Add(reel.OnScreenText);
  for (ui32_t i = 0; i < plan.ClosedCount; ++i) FakeTimeline::Add(reel.OffScreenText);
  for (ui32_t i = 0; i < plan.AuxCount; ++i) FakeTimeline::Add(reel.AuxData);
}

void Build(FakeTimeline& fake, const std::vector<CompositionPlan>& show) {
  for (const CompositionPlan& appearance : show) {
    std::vector<ui32_t> lengths;
    for (const ReelPlan& reel : appearance.Reels) lengths.push_back(reel.Length);
    CompositionInfo info = appearance.Info;
    info.Duration = 0;
    const size_t first = fake.State.Timeline.size();
    fake.Append(info, lengths);
    for (size_t i = 0; i < lengths.size(); ++i) AddTracks(fake.Reel(first + i), appearance.Reels[i]);
  }
}

// The model.

struct ModelTrack {
  bool AlwaysPutToRest = false;
  bool Ready = false;
  ui32_t ReadyCalls = 0;
  ui32_t DormantCalls = 0;

  void MakeReady() {
    Ready = true;
    ++ReadyCalls;
  }
  bool MakeDormant() {
    ++DormantCalls;
    const bool was_ready = Ready;
    Ready = false;
    return was_ready || AlwaysPutToRest;
  }
};

struct ModelReel {
  ReelPlan Plan;
  const CompositionInfo* Composition = nullptr;
  ui32_t NumberInComposition = 0;
  ui32_t Start = 0;
  ui32_t CompositionStart = 0;
  ModelTrack Picture;
  std::optional<ModelTrack> Sound;
  std::vector<ModelTrack> Aux;
};

class Model {
 public:
  explicit Model(const std::vector<CompositionPlan>& show) {
    for (const CompositionPlan& appearance : show) {
      const ui32_t start = Duration;
      ui32_t number = 0;
      for (const ReelPlan& plan : appearance.Reels) {
        ModelReel reel;
        reel.Plan = plan;
        reel.Composition = &appearance.Info;
        reel.NumberInComposition = number++;
        reel.Start = Duration;
        reel.CompositionStart = start;
        if (plan.Audio != ReelPlan::NoSound) reel.Sound = ModelTrack{plan.Audio == ReelPlan::Silence};
        reel.Aux.resize(plan.AuxCount);
        Reels.push_back(reel);
        Duration += plan.Length;
      }
      CurrentReelOf[appearance.Info.ID] = 1;
    }
    Arrive(0);
  }

  std::vector<ModelReel> Reels;
  ui32_t Duration = 0;
  ui32_t Position = 0;
  bool PositionChanged = true;
  bool ReelChanged = true;
  bool CodingChanged = false;
  Strata::ImageEssenceChangeMode_t Mode = Strata::EECM_2K_4K;
  std::map<Ferro::UUID, ui32_t> CurrentReelOf;  // by composition, from 1
  std::multimap<ui32_t, std::string> Events;    // by position; those at one position in order of adding
  std::string Log;                              // of the present step

  /// The reel of an edit unit: the last that starts at or before it, unless the timeline ended before.
  [[nodiscard]] std::optional<size_t> ReelAt(ui32_t position) const {
    if (position > Duration) return std::nullopt;
    size_t found = 0;
    for (size_t i = 0; i < Reels.size(); ++i)
      if (Reels[i].Start <= position) found = i;
    return found;
  }
  [[nodiscard]] const ModelReel& Current() const { return Reels[*ReelAt(Position)]; }

  bool MoveForward(ui32_t count) { return MoveTo(Position + count); }
  bool MoveBackward(ui32_t count) {
    const bool clamped = count > Position;
    MoveTo(clamped ? 0 : Position - count);
    return clamped;
  }
  bool MoveTo(ui32_t target) {
    const bool clamped = target >= Duration;
    if (clamped) target = Duration - 1;
    if (target != Position) Arrive(target);
    return clamped;
  }

  /// Moves the readiness of one type to around a reel.
  void Request(TrackType_t type, size_t reel) {
    const size_t first = reel < 2 ? 0 : reel - 2;
    const size_t last = std::min(Reels.size() - 1, reel + 2);
    for (size_t i = first; i > 0 && Rest(Reels[i - 1], type); --i) {
    }
    for (size_t i = first; i <= last; ++i) {
      if (type == Strata::TRKT_IMAGE) Reels[i].Picture.MakeReady();
      if (type == Strata::TRKT_SOUND && Reels[i].Sound) Reels[i].Sound->MakeReady();
      if (type == Strata::TRKT_AUX_DATA)
        for (ModelTrack& track : Reels[i].Aux) track.MakeReady();
    }
    for (size_t i = last + 1; i < Reels.size() && Rest(Reels[i], type); ++i) {
    }
  }

 private:
  static bool Rest(ModelReel& reel, TrackType_t type) {
    if (type == Strata::TRKT_IMAGE) return reel.Picture.MakeDormant();
    if (type == Strata::TRKT_SOUND) return reel.Sound && reel.Sound->MakeDormant();
    if (type == Strata::TRKT_AUX_DATA)
      for (ModelTrack& track : reel.Aux) track.MakeDormant();
    return false;
  }

  void Arrive(ui32_t target) {
    const size_t before = *ReelAt(Position);
    Position = target;
    const size_t now = *ReelAt(Position);
    PositionChanged = true;
    CurrentReelOf[Reels[now].Composition->ID] = Reels[now].NumberInComposition + 1;
    if (now == before) return;
    ReelChanged = true;
    if (SameCoding(*Reels[before].Composition, *Reels[now].Composition)) return;
    CodingChanged = true;
    Log += "Essence format has changed.\n";
  }

  [[nodiscard]] bool SameCoding(const CompositionInfo& a, const CompositionInfo& b) const {
    const bool same_size =
        Mode == Strata::EECM_NONE ||
        (Mode == Strata::EECM_ANY && a.ImageWidth == b.ImageWidth && a.ImageHeight == b.ImageHeight) ||
        (Mode == Strata::EECM_2K_4K && (a.ImageWidth <= 2048) == (b.ImageWidth <= 2048));
    return same_size && a.EditRate == b.EditRate && a.ImageFormat == b.ImageFormat && a.SoundFormat == b.SoundFormat;
  }
};

/// Gathers the text of what is logged.
class LogText final : public Ferro::ILogSink {
 public:
  LogText() : m_Before(Ferro::SetDefaultLogSink(this)) {}
  ~LogText() override { Ferro::SetDefaultLogSink(m_Before); }
  LogText(const LogText&) = delete;
  LogText& operator=(const LogText&) = delete;
  void WriteEntry(const Ferro::LogEntry& entry) override { Text += entry.Message; }
  std::string Text;

 private:
  Ferro::ILogSink* m_Before;
};

/// One timeline, as playlist and as model. Each step does the same to both and answers whether they agree.
class Comparison {
 public:
  Comparison(const std::vector<CompositionPlan>& show, Random& random) : m_Random(random), m_Model(show) {
    Build(m_Fake, show);
    m_Fake.State.ChangeMode = m_Model.Mode = static_cast<Strata::ImageEssenceChangeMode_t>(random.Below(3));
    m_Fake.Finish();
  }

  bool Step() {
    m_Log.Text.clear();
    m_Model.Log.clear();
    switch (m_Random.Below(12)) {
      case 0:
      case 1:
      case 2:
        return Move() && Agree();
      case 3:
      case 4:
      case 5:
        return RequestReader() && Agree();
      case 6:
        return NotifyTransport() && Agree();
      case 7:
        return NotifyPlaylist() && Agree();
      case 8:
        return NotifyEvents() && Agree();
      case 9:
        return AddEvent() && Agree();
      case 10:
        return AskCoding() && Agree();
      default:
        return Translate() && Agree();
    }
  }

 private:
  Strata::IPlaylist& Playlist() { return m_Fake.Playlist; }

  /// Any position up to some beyond the end, now and then one far beyond.
  ui32_t AnyPosition() {
    return m_Random.OneIn(50) ? Largest - m_Random.Below(3) : m_Random.Below(m_Model.Duration + 4);
  }
  /// Mostly small counts, sometimes any, sometimes such as wrap round.
  ui32_t AnyCount() { return m_Random.OneIn(3) ? AnyPosition() : m_Random.Below(3); }

  bool Move() {
    switch (m_Random.Below(4)) {
      case 0: {
        const ui32_t position = AnyPosition();
        return Playlist().MoveToEditUnit(position) == m_Model.MoveTo(position);
      }
      case 1: {
        const ui32_t count = AnyCount();
        return Playlist().MoveBackward(count) == m_Model.MoveBackward(count);
      }
      default: {
        const ui32_t count = AnyCount();
        return Playlist().MoveForward(count) == m_Model.MoveForward(count);
      }
    }
  }

  bool RequestReader() {
    const auto type = static_cast<TrackType_t>(m_Random.Below(Strata::TRKT_MAX));
    const ui32_t channel = m_Random.Below(4);
    const ui32_t frame = m_Random.OneIn(2) ? m_Model.Position : AnyPosition();
    const std::optional<size_t> reel = m_Model.ReelAt(frame);
    if (!reel) {
      const std::string line =
          "Playlist does not contain edit unit " + std::to_string(static_cast<Ferro::i32_t>(frame)) + "\n";
      m_Model.Log += line + line;
      return Playlist().GetReaderForChannel(type, channel, frame) == nullptr &&
             Playlist().GetChannelCountForType(type, frame) == 0;
    }
    m_Model.Request(type, *reel);
    const ReelPlan& plan = m_Model.Reels[*reel].Plan;
    const std::array<ui32_t, 5> counts = {1, 1, 1, plan.ClosedCount, plan.AuxCount};
    return Playlist().GetReaderForChannel(type, channel, frame) == ExpectedTrack(*reel, type, channel) &&
           Playlist().GetChannelCountForType(type, frame) == counts[type];
  }

  Strata::ITimelineTrack* ExpectedTrack(size_t index, TrackType_t type, ui32_t channel) {
    Strata::TimelineReel& reel = m_Fake.Reel(index);
    const auto listed = [channel](const std::vector<Strata::TrackPtr>& list) {
      return channel < list.size() ? list[channel].get() : nullptr;
    };
    if (type == Strata::TRKT_OFF_SCREEN_TEXT) return listed(reel.OffScreenText);
    if (type == Strata::TRKT_AUX_DATA) return listed(reel.AuxData);
    if (channel > 0) return nullptr;
    return (type == Strata::TRKT_IMAGE   ? reel.MainPicture
            : type == Strata::TRKT_SOUND ? reel.MainSound
                                         : reel.OnScreenText)
        .get();
  }

  bool NotifyTransport() {
    const bool force = m_Random.OneIn(4);
    const bool expected = force || m_Model.PositionChanged;
    m_Model.PositionChanged = false;
    m_Notifier.Transport.clear();
    Playlist().TransportStatusNotify(&m_Notifier, Strata::CMD_PLAY, m_Status, force);
    if (m_Notifier.Transport.size() != (expected ? 1 : 0)) return false;
    return !expected ||
           PositionsAgree(m_Notifier.Transport[0].Show, m_Notifier.Transport[0].CPL, m_Notifier.Transport[0].Reel);
  }

  bool NotifyPlaylist() {
    const bool force = m_Random.OneIn(4);
    const bool expected = force || m_Model.ReelChanged;
    m_Model.ReelChanged = false;
    m_Notifier.Compositions.clear();
    Playlist().PlaylistStatusNotify(&m_Notifier, force);
    if (m_Notifier.Compositions.size() != (expected ? 1 : 0)) return false;
    return !expected || (m_Notifier.Compositions[0].ID == m_Model.Current().Composition->ID &&
                         m_Notifier.Compositions[0].CurrentReel == m_Model.Current().NumberInComposition + 1);
  }

  bool NotifyEvents() {
    std::vector<std::string> expected;
    const auto [first, end] = m_Model.Events.equal_range(m_Model.Position);
    for (auto event = first; event != end; ++event) expected.push_back(event->second);
    m_Notifier.Events.clear();
    Playlist().PlaylistEventNotify(&m_Notifier);
    if (m_Notifier.Events.size() != (expected.empty() ? 0 : 1)) return false;
    std::vector<std::string> labels;
    for (const auto& report : m_Notifier.Events)
      for (const auto& event : report) labels.push_back(event.Label);
    return labels == expected;
  }

  bool AddEvent() {
    if (m_Model.Events.size() >= 60) return true;
    const ui32_t position = AnyPosition();
    const std::string label = std::to_string(m_Model.Events.size());
    m_Model.Events.emplace(std::min(position, m_Model.Duration - 1), label);
    return Playlist().AddEventToTimeline(label, "", position) == Ferro::RESULT_OK;
  }

  bool AskCoding() {
    const bool expected = m_Model.CodingChanged;
    m_Model.CodingChanged = false;
    return Playlist().EssenceCodingChanged() == expected;
  }

  bool Translate() {
    const ui32_t position = AnyPosition();
    const std::optional<size_t> index = m_Model.ReelAt(position);
    const ModelReel none;
    const CompositionInfo no_composition;
    const ModelReel& reel = index ? m_Model.Reels[*index] : none;
    const CompositionInfo& composition = index ? *reel.Composition : no_composition;
    const ui32_t expected = index ? position - reel.Start : 0;

    ui32_t reel_position = 1, number = 1, length = 1;
    Ferro::UUID id = NumberedID(99);
    QUIRE::Rational rate{9, 9};
    bool distinct = true;
    Playlist().TranslateReelPosition(position, reel_position, number, length, id, rate, distinct);
    return Playlist().TranslateReelPosition(position) == expected && reel_position == expected &&
           number == reel.NumberInComposition && length == (index ? reel.Plan.Length : 0) && id == composition.ID &&
           rate == (index ? composition.EditRate : QUIRE::Rational()) && !distinct &&
           Playlist().GetCompositionInfoForPosition(position).ID == composition.ID;
  }

  /// Whether everything that shows is as in the model.
  bool Agree() {
    const Strata::PlaylistInspector& state = m_Fake.State;
    const ui32_t changes =
        (m_Model.PositionChanged ? 1u : 0u) | (m_Model.ReelChanged ? 2u : 0u) | (m_Model.CodingChanged ? 4u : 0u);
    if (state.HasChanges != changes || m_Log.Text != m_Model.Log) return false;
    if (Playlist().GetPosition() != m_Model.Position || Playlist().GetDuration() != m_Model.Duration) return false;
    if (state.CurrentReel != &m_Fake.Reel(*m_Model.ReelAt(m_Model.Position))) return false;
    for (const auto& [id, number] : m_Model.CurrentReelOf)
      if (state.Compositions.at(id).CurrentReel != number) return false;
    if (!PositionsAgree(state.ShowPosition, state.CPLPosition, state.ReelPosition)) return false;
    for (size_t i = 0; i < m_Model.Reels.size(); ++i)
      if (!TracksAgree(m_Model.Reels[i], m_Fake.Reel(i))) return false;
    return true;
  }

  bool PositionsAgree(const Strata::TimelinePosition& show, const Strata::TimelinePosition& cpl,
                      const Strata::TimelinePosition& reel) {
    const ModelReel& current = m_Model.Current();
    const auto number = static_cast<ui32_t>(&current - m_Model.Reels.data());
    return show.Duration == m_Model.Duration && show.Position == m_Model.Position && !show.AssetID.HasValue() &&
           cpl.Duration == current.Composition->Duration &&
           cpl.Position == m_Model.Position - current.CompositionStart && cpl.AssetID == current.Composition->ID &&
           reel.Duration == current.Plan.Length && reel.Position == m_Model.Position - current.Start &&
           reel.AssetID == NumberedID(1000 + number);
  }

  static bool TrackAgrees(const ModelTrack& model, const Strata::TrackPtr& slot) {
    const FakeTrack& track = FakeTimeline::Fake(slot);
    return track.Ready == model.Ready && track.Calls.MakeReady == model.ReadyCalls &&
           track.Calls.MakeDormant == model.DormantCalls;
  }
  static bool IsUntouched(const Strata::TrackPtr& slot) { return TrackAgrees(ModelTrack(), slot); }

  static bool TracksAgree(const ModelReel& model, const Strata::TimelineReel& reel) {
    if (!TrackAgrees(model.Picture, reel.MainPicture)) return false;
    if (model.Sound && !TrackAgrees(*model.Sound, reel.MainSound)) return false;
    for (size_t i = 0; i < model.Aux.size(); ++i)
      if (!TrackAgrees(model.Aux[i], reel.AuxData[i])) return false;
    return (reel.OnScreenText.empty() || IsUntouched(reel.OnScreenText)) &&
           std::all_of(reel.OffScreenText.begin(), reel.OffScreenText.end(), IsUntouched);
  }

  Random& m_Random;
  Model m_Model;
  LogText m_Log;
  FakeTimeline m_Fake;
  testsupport::RecordingNotifier m_Notifier;
  const Strata::DeviceStatus m_Status;
};

TEST(TransportModel, PlaylistDoesWhatThePlainModelDoes) {
  const unsigned seed = testsupport::TestSeed(std::random_device()());
  Random random(seed);
  for (unsigned step = 0; step < StepCount;) {
    const std::vector<CompositionPlan> show = RandomShow(random);
    Comparison comparison(show, random);
    for (unsigned end = step + StepsPerTimeline; step < end; ++step)
      ASSERT_TRUE(comparison.Step()) << "at step " << step << " of STRATA_TEST_SEED=" << seed;
  }
}

}  // namespace
