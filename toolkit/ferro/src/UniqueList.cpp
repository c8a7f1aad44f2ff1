// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/UniqueList.h>

#include <set>

namespace Ferro {

void create_unique_list(const std::list<UUID>& in, std::list<UUID>& out) {
  std::set<UUID> seen;
  for (const UUID& id : in)
    if (seen.insert(id).second) out.push_back(id);
}

}  // namespace Ferro
