// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/KeyMessageStore.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <tuple>

namespace Sigil {
namespace {

using enum FindingID;

/// How far an error keeps a message from serving: 0 is not at all.
int DistanceOf(const Finding& finding) {
  if (finding.Severity != Severity::Error) return 0;
  switch (finding.ID) {
    case KdmEarly:
      return 1;  // it will be valid
    case KdmLate:
      return 2;
    case KdmKeyMissing:
      return 3;
    case KdmAuthenticator:
      return 4;
    case KdmRecipient:
      return 5;
    default:
      return 6;
  }
}

/// Less is better.
auto RankOf(const KeyMessage& message, const FindingList& findings) {
  int distance = 0;
  for (const Finding& finding : findings) distance = std::max(distance, DistanceOf(finding));
  const auto warnings = std::ranges::count(findings, Severity::Warning, &Finding::Severity);
  return std::tuple(distance, warnings, -message.NotAfter.UnixMilliseconds(), -message.IssueDate.UnixMilliseconds());
}

Result_t ResultOf(const FindingList& findings) {
  Result_t result = Ferro::RESULT_OK;
  for (const Finding& finding : findings) {
    if (finding.Severity != Severity::Error) continue;
    if (finding.ID != KdmKeyMissing) return RESULT_SG_NO_VALID_MESSAGE;
    result = RESULT_SG_NO_KEY;
  }
  return result;
}

}  // namespace

Result_t KeyMessageStore::FindBest(const MessageContext& context, Choice& out) const {
  FERRO_ASSERT(context.Composition.has_value());
  out = {};
  for (const Entry& entry : m_Entries) {
    if (entry.Message.CompositionID != context.Composition->ID) continue;
    FindingList findings = CheckKeyMessage(entry.Message, context);
    if (out.Best != nullptr && !(RankOf(entry.Message, findings) < RankOf(out.Best->Message, out.Findings))) continue;
    out.Best = &entry;
    out.Findings = std::move(findings);
  }
  return out.Best == nullptr ? RESULT_SG_NO_MESSAGE : ResultOf(out.Findings);
}

}  // namespace Sigil
