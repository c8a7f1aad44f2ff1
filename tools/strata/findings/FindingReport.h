// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "SecurityFindings.h"
#include "show/ShowOutline.h"
#include "terminal/ExitCode.h"

#include <cstdio>
#include <string>
#include <vector>

// How the commands show findings.

namespace Tool {

/// FindingsOf, while a progress bar tells how far it is; an interrupt ends it early.
[[nodiscard]] FindingList CheckShow(const ShowOutline& outline, const ShowSecurity* security = nullptr);

/// What they come to: NotPlayable with an error, else AssetsMissing where something is missing, else Fine. What follows
/// from another finding does not count.
[[nodiscard]] ExitCode ExitCodeFor(const FindingList& findings);

/// What a finding says: "What is wrong. Expected this, found that."
[[nodiscard]] std::string SentenceOf(const Finding& finding);
/// "Composition, reel 2, sound: What is wrong. Expected this, found that.": safe to print, without line end.
[[nodiscard]] std::string FindingLine(const Finding& finding);
/// The severity and FindingLine, then lines for identifier, file and advice, where it has them.
/// @param stream  where it is printed, which may show colours.
[[nodiscard]] std::string FindingText(const Finding& finding, std::FILE* stream);
/// All findings as FindingText, worst first, those of one kind together with what to do told once, and below each what
/// follows from it.
[[nodiscard]] std::string FindingsText(const FindingList& findings, std::FILE* stream);
/// "1 picture, 2 sounds": what is missing.
[[nodiscard]] std::string MissingText(const FindingList& findings);

}  // namespace Tool
