// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/UUID.h>

#include <list>

namespace Ferro {

/// Appends to `out` the members of `in`, each identifier once, in the order of their first occurrence. What `out` held
/// before stays in front and is not considered.
FERRO_API void create_unique_list(const std::list<UUID>& in, std::list<UUID>& out);

}  // namespace Ferro
