// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/IPlaylist.h>

namespace Strata {

IPlaylist::~IPlaylist() = default;

}  // namespace Strata
