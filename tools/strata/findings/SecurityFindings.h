// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "keys/ShowKeys.h"
#include "show/ShowOutline.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Tool {

/// What is known of a show's signatures and keys.
struct ShowSecurity {
  ShowSecurity(ShowKeys& keys, const ShowOutline& outline) : Keys(keys), Answers(keys.AnswersFor(outline)) {}

  ShowKeys& Keys;
  const std::vector<std::vector<KeyAnswer>> Answers;  ///< of each composition of the show
};

/// A finding of libsigil as one of this program's.
[[nodiscard]] FindingID FindingOf(Sigil::FindingID id);
[[nodiscard]] Finding FindingOf(const Sigil::Finding& finding);

/// What was told of certificates already: one chain signs many documents.
using ToldCertificates = std::set<std::pair<FindingID, std::string>>;

/// Appends what is to be told of a composition's signature, and of its keys; `number` is its index.
void FindInSecurity(const OutlineComposition& composition, size_t number, const ShowSecurity& security,
                    ToldCertificates& told, std::vector<Finding>& findings);
/// Appends what is to be told of the packing lists of the packages in those folders.
void FindInPackingLists(const ShowOutline& outline, const std::set<std::string>& folders, const ShowSecurity& security,
                        ToldCertificates& told, std::vector<Finding>& findings);
/// Appends which of the key messages that the user named cannot be read. It matters where a composition has none.
void FindInMessages(const ShowSecurity& security, std::vector<Finding>& findings);

}  // namespace Tool
