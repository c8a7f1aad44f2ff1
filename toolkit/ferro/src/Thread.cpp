// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>
#include <Ferro/Thread.h>

#include <chrono>
#include <system_error>

#include <pthread.h>

namespace Ferro {
namespace {

constexpr size_t s_SystemNameLength = 15;

}  // namespace

Thread::~Thread() {
  FERRO_ASSERT(!IsRunning());
  if (m_Thread.joinable()) m_Thread.join();  // ended by itself
}

Result_t Thread::Start(const std::string& name) {
  if (m_Thread.joinable()) return RESULT_STATE;
  m_Name = name;
  m_Running = true;
  m_Result = RESULT_OK;
  try {
    m_Thread = std::thread([this] { Run(); });
  } catch (const std::system_error& error) {
    m_Running = false;
    DefaultLogSink().Error("Thread %s cannot be started: %s\n", name.c_str(), error.what());
    return RESULT_FAIL;
  }
  return RESULT_OK;
}

void Thread::Run() {
  pthread_setname_np(pthread_self(), m_Name.substr(0, s_SystemNameLength).c_str());
  Result_t result = ThreadInit();
  if (result.Success()) result = ThreadBody();
  result = ThreadFini(result);

  const std::lock_guard lock(m_Mutex);
  m_Result = result;
  m_Running = false;
  m_Ended.notify_all();
}

Result_t Thread::Stop(ui32_t timeout_ms, bool wait) {
  if (!m_Thread.joinable()) return RESULT_STATE;
  FERRO_ASSERT(m_Thread.get_id() != std::this_thread::get_id());
  const Result_t asked = ThreadStop();
  if (asked.Failure()) DefaultLogSink().Warn("Thread %s cannot be asked to stop: %s\n", m_Name.c_str(), asked.Label());
  {
    std::unique_lock lock(m_Mutex);
    const bool ended = m_Ended.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return !m_Running; });
    lock.unlock();
    if (!ended) DefaultLogSink().Warn("Thread %s did not stop within %u ms.\n", m_Name.c_str(), timeout_ms);
    if (!ended && !wait) return RESULT_FAIL;
  }
  m_Thread.join();
  return m_Result;
}

bool Thread::IsRunning() const {
  const std::lock_guard lock(m_Mutex);
  return m_Running;
}

}  // namespace Ferro
