// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <Ferro/Thread.h>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include <pthread.h>

namespace Ferro {
namespace {

constexpr size_t s_SystemNameLength = 15;

/// Where memory is out, the line is lost rather than the caller's result.
void LogRefusal(const std::string& name, const char* reason) {
  try {
    DefaultLogSink().Error("Thread %s cannot be started: %s\n", name.c_str(), reason);
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace

struct Thread::State {
  std::thread Running;  // owner's thread only

  std::mutex Mutex;
  std::condition_variable Ended;
  bool IsRunning = false;       // guarded by Mutex
  Result_t Result = RESULT_OK;  // guarded by Mutex
};

Thread::Thread() : m_State(new State) {}

Thread::~Thread() {
  FERRO_ASSERT(!IsRunning());
  if (m_State->Running.joinable()) m_State->Running.join();  // ended by itself
}

Result_t Thread::Start(const std::string& name) {
  if (m_State->Running.joinable()) return RESULT_STATE;
  m_State->Result = RESULT_OK;
  try {
    m_Name = name;
    m_State->IsRunning = true;
    m_State->Running = std::thread([this] { Run(); });
    return RESULT_OK;
  } catch (const std::exception& error) {  // no thread to be had, or no memory for one
    m_State->IsRunning = false;
    LogRefusal(name, error.what());
    return RESULT_FAIL;
  }
}

void Thread::Run() {
  pthread_setname_np(pthread_self(), m_Name.substr(0, s_SystemNameLength).c_str());
  Result_t result = ThreadInit();
  if (result.Success()) result = ThreadBody();
  result = ThreadFini(result);

  const std::lock_guard lock(m_State->Mutex);
  m_State->Result = result;
  m_State->IsRunning = false;
  m_State->Ended.notify_all();
}

Result_t Thread::Stop(ui32_t timeout_ms, bool wait) {
  if (!m_State->Running.joinable()) return RESULT_STATE;
  FERRO_ASSERT(m_State->Running.get_id() != std::this_thread::get_id());
  const Result_t asked = ThreadStop();
  if (asked.Failure()) DefaultLogSink().Warn("Thread %s cannot be asked to stop: %s\n", m_Name.c_str(), asked.Label());
  {
    std::unique_lock lock(m_State->Mutex);
    const bool ended =
        m_State->Ended.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return !m_State->IsRunning; });
    lock.unlock();
    if (!ended) DefaultLogSink().Warn("Thread %s did not stop within %u ms.\n", m_Name.c_str(), timeout_ms);
    if (!ended && !wait) return RESULT_FAIL;
  }
  m_State->Running.join();
  return m_State->Result;
}

bool Thread::IsRunning() const {
  const std::lock_guard lock(m_State->Mutex);
  return m_State->IsRunning;
}

}  // namespace Ferro
