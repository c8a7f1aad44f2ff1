// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>
#include <Ferro/mem_ptr.h>

#include <string>

namespace Ferro {

/// A named thread as a base class. On the new thread run ThreadInit, then, if that succeeded, ThreadBody, and at last
/// ThreadFini with the result so far. The owner of a started thread stops it before destroying it: the destructor
/// asserts that no thread is running (one that has ended by itself it only joins). Start and Stop belong to the owner's
/// thread, which must not be this one. An exception that leaves one of the four operations ends the process.
class FERRO_API Thread {
 public:
  virtual Result_t ThreadInit() = 0;
  virtual Result_t ThreadBody() = 0;
  /// Receives the result of ThreadInit or ThreadBody; what it returns is the thread's result.
  virtual Result_t ThreadFini(Result_t result) = 0;
  /// Called on the stopping thread: wakes ThreadBody wherever it waits and makes it return.
  virtual Result_t ThreadStop() = 0;
  virtual ~Thread();

  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// Starts the thread under `name`, which the system shows too (cut to its 15 bytes).
  /// @return RESULT_OK; RESULT_STATE when it was started before and not stopped; RESULT_FAIL, logged, when the
  /// system refuses or memory is out.
  [[nodiscard]] Result_t Start(const std::string& name);
  /// Calls ThreadStop and waits up to `timeout_ms` milliseconds for the thread to end. When the time runs out a warning
  /// that names the thread is logged; with `wait` true the call then goes on waiting without limit.
  /// @return the thread's own result; RESULT_STATE when it is not started; RESULT_FAIL when the time ran out and `wait`
  /// is false (the thread then still runs and Stop may be called again).
  Result_t Stop(ui32_t timeout_ms, bool wait);
  /// True from Start until the body has returned.
  [[nodiscard]] bool IsRunning() const;
  [[nodiscard]] const std::string& Name() const { return m_Name; }

 protected:
  Thread();

 private:
  void Run();

  struct State;

  std::string m_Name;  // owner's thread only
  const mem_ptr<State> m_State;
};

}  // namespace Ferro
