// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ITransportNotify.h>

namespace Strata {

ITransportNotify::~ITransportNotify() = default;

}  // namespace Strata
