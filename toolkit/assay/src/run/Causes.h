// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>

namespace Assay {

/// Links findings to those that they follow from, by the consequences in the table of rules: of several to the first, and
/// where that one follows from another, to that. A finding never follows from one that is worth less. Then as below.
void LinkCauses(FindingList& findings);

/// Puts each finding with a cause directly behind that one and what follows from it, too. The others stay in their order.
void PutBehindCauses(FindingList& findings);

}  // namespace Assay
