// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "keys/ShowKeys.h"
#include "show/ShowOutline.h"

#include <Sigil/KeyRing.h>

#include <functional>
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

/// A finding of libsigil as one of libassay's.
[[nodiscard]] Finding FindingOf(const Sigil::Finding& finding);

/// Has a finding about a message's window tell its ends as people read them: in local time, with the offset beside.
void TellWindow(const Sigil::KeyMessage& message, Finding& finding);

/// What was told of certificates already: one chain signs many documents.
using ToldCertificates = std::set<std::pair<FindingID, std::string>>;

/// Appends what is to be told of a composition's signature, and of its keys; `number` is its index.
void FindInSecurity(const OutlineComposition& composition, size_t number, const ShowSecurity& security,
                    ToldCertificates& told, FindingList& findings);
/// Appends what is to be told of the packing lists of the packages in those folders.
void FindInPackingLists(const ShowOutline& outline, const std::set<std::string>& folders, const ShowSecurity& security,
                        ToldCertificates& told, FindingList& findings);
/// Appends which of the key messages that the user named cannot be read. It matters where a composition has none.
void FindInMessages(const ShowSecurity& security, FindingList& findings);

/// How many encrypted files were verified frame by frame.
struct VerifiedFiles {
  size_t Files = 0;
  Ferro::ui64_t Frames = 0;
};

/// Verifies every frame of the show's encrypted files whose keys are there, and appends what is wrong with them.
/// @param go_on  as of VerifyFrames.
VerifiedFiles FindInFrames(const ShowOutline& outline, const Sigil::KeyRing& keys, FindingList& findings,
                           const std::function<bool(Ferro::ui64_t, Ferro::ui64_t)>& go_on);

}  // namespace Tool
