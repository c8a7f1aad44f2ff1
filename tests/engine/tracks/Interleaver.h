// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>
#include <functional>
#include <limits>
#include <string>
#include <unordered_set>
#include <vector>

#include <ucontext.h>

namespace testsupport {

/// Runs two parties through every interleaving of their steps. A step is what a party does between two calls of Point,
/// which the mutex and the event below make; both parties are coroutines of one thread, so nothing else interleaves.
///
/// The runs are a depth-first search. Each run takes up one choice that an earlier run left; where it meets a state that
/// is known, every continuation is known too, and it only runs to its end. A state is what both parties did and saw so
/// far, with the counts of the events; orders of steps that do not touch each other come to the same state.
class Interleaver {
 public:
  using ui64_t = Ferro::ui64_t;

  /// What a party may have to wait for.
  class Gate {
   public:
    [[nodiscard]] virtual bool IsOpen() const = 0;

   protected:
    ~Gate() = default;
  };

  Interleaver();
  ~Interleaver();
  Interleaver(const Interleaver&) = delete;
  Interleaver& operator=(const Interleaver&) = delete;

  /// The one that exists.
  static Interleaver& Current();

  /// Calls `run` once for each run; it makes what it needs anew and calls Both. False when some run locked up.
  bool ForEachInterleaving(const std::function<void()>& run);
  /// Runs both parties to their ends, in the order that is this run's.
  void Both(const std::function<void()>& first, const std::function<void()>& second);

  /// The end of a step of the party that runs, which goes on when `gate` is open, if there is one, and it is chosen.
  /// @param what  what it is about to do; two steps that may differ in effect differ in it.
  void Point(ui64_t what, const Gate* gate = nullptr);
  /// Takes down what the party that runs has seen of the other's work.
  void Saw(ui64_t value) { Mix(m_Parties[m_Running].History, value); }
  /// Takes part in the state from now on, in the order of registration; until the end of the run.
  ui64_t Register(const ui64_t* count);

  [[nodiscard]] ui64_t Runs() const { return m_Runs; }

 private:
  struct Party {
    std::vector<char> Stack;
    ucontext_t Context{};
    const std::function<void()>* Body = nullptr;
    const Gate* Wait = nullptr;
    ui64_t History = 0;
    bool Done = false;
  };

  static void Enter(int party);
  static void Mix(ui64_t& hash, ui64_t value);
  void End();
  [[nodiscard]] bool CanRun(size_t party) const;
  [[nodiscard]] ui64_t State() const;
  [[nodiscard]] size_t Choose();
  [[nodiscard]] bool Backtrack();

  std::array<Party, 2> m_Parties;
  ucontext_t m_Main{};
  size_t m_Running = 0;
  std::vector<const ui64_t*> m_Counts;
  std::vector<char> m_Trail;  // at each choice so far: 0 the party that ran goes on, 1 the other
  size_t m_Depth = 0;
  bool m_IsKnown = false;  // this run has left what is new
  bool m_LockedUp = false;
  bool m_IsRunning = false;  // between the begin and the end of Both
  std::unordered_set<ui64_t> m_Known;
  ui64_t m_Runs = 0;
};

/// A mutex and a counted event in the interleaver's hands.
struct InterleavedHandOver {
  class Mutex final : private Interleaver::Gate {
   public:
    void Lock() {
      Interleaver::Current().Point(1, this);
      m_IsLocked = true;
    }
    void Unlock() { m_IsLocked = false; }

   private:
    [[nodiscard]] bool IsOpen() const override { return !m_IsLocked; }
    bool m_IsLocked = false;
  };

  class Event final : private Interleaver::Gate {
   public:
    static constexpr Ferro::ui64_t NoCeiling = std::numeric_limits<Ferro::ui64_t>::max();
    explicit Event(std::string, Ferro::ui64_t ceiling = NoCeiling)
        : m_Ceiling(ceiling), m_Number(Interleaver::Current().Register(&m_Count)) {}

    void Post() {
      Interleaver::Current().Point(2 * m_Number + 2);
      if (m_Count < m_Ceiling) ++m_Count;
    }
    void Pend() {
      Interleaver::Current().Point(2 * m_Number + 3, this);
      --m_Count;
    }

   private:
    [[nodiscard]] bool IsOpen() const override { return m_Count > 0; }
    const Ferro::ui64_t m_Ceiling;
    Ferro::ui64_t m_Count = 0;
    const Ferro::ui64_t m_Number;
  };
};

}  // namespace testsupport
