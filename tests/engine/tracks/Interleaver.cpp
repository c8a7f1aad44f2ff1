// SPDX-License-Identifier: BSD-3-Clause
#include "Interleaver.h"

#include <Ferro/Assert.h>

namespace testsupport {

namespace {

constexpr size_t StackBytes = 256 * 1024;

Interleaver* s_Current = nullptr;

}  // namespace

Interleaver::Interleaver() {
  FERRO_ASSERT(s_Current == nullptr);
  s_Current = this;
  for (Party& party : m_Parties) party.Stack.resize(StackBytes);
}

Interleaver::~Interleaver() {
  s_Current = nullptr;
}

Interleaver& Interleaver::Current() {
  FERRO_ASSERT(s_Current != nullptr);
  return *s_Current;
}

bool Interleaver::ForEachInterleaving(const std::function<void()>& run) {
  m_Trail.clear();
  m_Known.clear();
  m_LockedUp = false;
  do {
    ++m_Runs;
    m_Depth = 0;
    m_IsKnown = false;
    m_Counts.clear();
    run();
  } while (!m_LockedUp && Backtrack());
  return !m_LockedUp;
}

void Interleaver::Both(const std::function<void()>& first, const std::function<void()>& second) {
  for (size_t i = 0; i < m_Parties.size(); ++i) {
    Party& party = m_Parties[i];
    party.Body = i == 0 ? &first : &second;
    party.Wait = nullptr;
    party.History = 0;
    party.Done = false;
    getcontext(&party.Context);
    party.Context.uc_stack.ss_sp = party.Stack.data();
    party.Context.uc_stack.ss_size = party.Stack.size();
    party.Context.uc_link = nullptr;
    makecontext(&party.Context, reinterpret_cast<void (*)()>(&Interleaver::Enter), 1, static_cast<int>(i));
  }
  m_Running = 0;
  m_IsRunning = true;
  swapcontext(&m_Main, &m_Parties[0].Context);
  m_IsRunning = false;
}

void Interleaver::Enter(int party) {
  (*Current().m_Parties[static_cast<size_t>(party)].Body)();
  Current().End();
}

void Interleaver::End() {
  m_Parties[m_Running].Done = true;
  const size_t other = 1 - m_Running;
  if (CanRun(other)) {
    m_Running = other;
    setcontext(&m_Parties[other].Context);
  }
  m_LockedUp = !m_Parties[other].Done;
  setcontext(&m_Main);
}

void Interleaver::Point(ui64_t what, const Gate* gate) {
  if (!m_IsRunning) return;  // the test alone is at work, and nothing makes it wait
  Party& party = m_Parties[m_Running];
  Mix(party.History, what);
  party.Wait = gate;
  const size_t running = m_Running;
  m_Running = Choose();
  if (m_Running != running) swapcontext(&party.Context, &m_Parties[m_Running].Context);
}

Interleaver::ui64_t Interleaver::Register(const ui64_t* count) {
  m_Counts.push_back(count);
  return m_Counts.size();
}

void Interleaver::Mix(ui64_t& hash, ui64_t value) {
  hash = (hash ^ (value + 0x9e3779b97f4a7c15)) * 0xff51afd7ed558ccd;
  hash ^= hash >> 32;
}

bool Interleaver::CanRun(size_t party) const {
  const Party& one = m_Parties[party];
  return !one.Done && (one.Wait == nullptr || one.Wait->IsOpen());
}

Interleaver::ui64_t Interleaver::State() const {
  ui64_t hash = 0;
  for (const Party& party : m_Parties) {
    Mix(hash, party.History);
    Mix(hash, party.Done ? 1 : 0);
  }
  for (const ui64_t* count : m_Counts) Mix(hash, *count);
  return hash;
}

size_t Interleaver::Choose() {
  const size_t other = 1 - m_Running;
  const bool both = CanRun(m_Running) && CanRun(other);
  if (!both) {
    if (CanRun(m_Running)) return m_Running;
    if (CanRun(other)) return other;
    m_LockedUp = true;
    setcontext(&m_Main);  // for good: what lies on the stacks is left there
  }
  if (m_Depth == m_Trail.size()) {
    m_IsKnown = m_IsKnown || !m_Known.insert(State()).second;
    if (m_IsKnown) return m_Running;
    m_Trail.push_back(0);
  }
  return m_Trail[m_Depth++] == 0 ? m_Running : other;
}

bool Interleaver::Backtrack() {
  while (!m_Trail.empty() && m_Trail.back() == 1) m_Trail.pop_back();
  if (m_Trail.empty()) return false;
  m_Trail.back() = 1;
  return true;
}

}  // namespace testsupport
