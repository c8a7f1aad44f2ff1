// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Strata {

/// A track that is ready at some times and at rest at others; one without this is always ready.
class Readiness {
 public:
  [[nodiscard]] virtual bool IsReady() const = 0;

 protected:
  ~Readiness() = default;
};

}  // namespace Strata
