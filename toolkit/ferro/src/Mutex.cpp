// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Mutex.h>

namespace Ferro {

void Mutex::Lock() {
  m_Mutex.lock();
}

void Mutex::Unlock() {
  m_Mutex.unlock();
}

}  // namespace Ferro
