// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Identifier.h>

namespace Ferro {

template class Identifier<16>;
template class Identifier<20>;
template class Identifier<32>;

}  // namespace Ferro
