// SPDX-License-Identifier: BSD-3-Clause
#include "SecurityFindings.h"

#include <Ferro/LogSink.h>
#include <Sigil/ContentKeys.h>

#include <algorithm>
#include <cmath>

namespace Assay {
namespace {

std::vector<UUID> KeyIDsOf(const Composition& composition) {
  std::vector<UUID> ids;
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets)
      if (asset.IsFile() && asset.KeyID && asset.KeyID->HasValue() && std::ranges::find(ids, *asset.KeyID) == ids.end())
        ids.push_back(*asset.KeyID);
  return ids;
}

double SecondsOf(const Composition& composition) {
  double seconds = 0;
  for (const Reel& reel : composition.Reels) seconds += SecondsOf(reel);
  return seconds;
}

Ferro::Timestamp Later(const Ferro::Timestamp& moment, double seconds) {
  constexpr double Most = 1e9;  // beyond it no show lasts: what the document says is wrong
  return Ferro::Timestamp(moment.UnixMilliseconds() + std::llround(std::clamp(seconds, -Most, Most) * 1000),
                          moment.OffsetMinutes());
}

/// Asks about one composition.
class KeyInquiry {
 public:
  KeyInquiry(const Composition& composition, const std::optional<SHA1>& signer, const KeyQuestion& question)
      : m_Composition(composition), m_Question(question), m_Seconds(SecondsOf(composition)) {
    m_Context.Composition = {composition.ID.value_or(UUID()), signer, KeyIDsOf(composition)};
    m_Context.Recipient = question.Recipient;
    m_Context.Devices = question.Devices;
  }

  /// @param start  the composition's, in seconds from the beginning of the show.
  KeyAnswer Ask(const Ferro::Timestamp& begin, double start) {
    // Both ends are moved towards each other: what is valid so much too late, or not so much long enough, serves.
    const double tolerance = m_Question.Tolerance;
    m_Context.From = Later(begin, start + tolerance);
    m_Context.Until = Later(begin, start + m_Seconds - tolerance);
    KeyAnswer answer;
    answer.Begin = begin;
    answer.Result = Sigil::RESULT_SG_NO_MESSAGE;
    m_Choice = {};
    if (m_Question.Messages != nullptr) answer.Result = m_Question.Messages->FindBest(m_Context, m_Choice);
    if (m_Choice.Best == nullptr) return answer;
    const Sigil::KeyMessage& message = m_Choice.Best->Message;
    answer.Source = m_Choice.Best->Source;
    answer.MessageID = message.ID;
    answer.NotBefore = message.NotBefore;
    answer.NotAfter = message.NotAfter;
    m_IsSoundInside = !IsUnsoundInside(message);
    if (answer.Serves() && !m_IsSoundInside) answer.Result = Sigil::RESULT_SG_CONTENT;
    return answer;
  }

  /// Says what is wrong with the message of the last answer, or that there is none.
  void Tell(FindingList& findings) const {
    if (m_Choice.Best == nullptr) {
      TellNone(findings);
      return;
    }
    for (const Sigil::Finding& from : m_Choice.Findings) Add(findings, WithWindow(from));
    if (!m_IsSoundInside) {
      Finding finding(FindingID::KdmContent);
      finding.Found = m_Choice.Best->Source;
      Add(findings, finding);
    }
  }

 private:
  /// Only the recipient's own key tells: one that does not fit opens as little as a message that is not sound.
  [[nodiscard]] bool IsUnsoundInside(const Sigil::KeyMessage& message) const {
    const bool is_to_open = m_Question.PrivateKey != nullptr && m_Question.Recipient &&
                            m_Question.PrivateKey->Matches(*m_Question.Recipient) &&
                            message.Signature.State == Sigil::SignatureState::Valid;
    const auto is_for_another = [](const Sigil::Finding& finding) {
      return finding.ID == Sigil::FindingID::KdmRecipient;
    };
    if (!is_to_open || std::ranges::any_of(m_Choice.Findings, is_for_another)) return false;
    Ferro::MemoryLogSink log;  // it tells no more than the result
    Sigil::ContentKeys keys;
    const Result_t result = Sigil::ContentKeys::Open(message, *m_Question.PrivateKey, keys, log);
    return result == Sigil::RESULT_SG_CONTENT || result == Sigil::RESULT_SG_MESSAGE;
  }

  /// With the message's file; in place of sentences about its window, the moments in question.
  [[nodiscard]] Finding WithWindow(const Sigil::Finding& from) const {
    Finding finding = FindingOf(from);
    const Sigil::KeyMessage& message = m_Choice.Best->Message;
    if (from.ID == Sigil::FindingID::KdmEarly) {
      finding.Expected = "valid from " + m_Context.From->EncodeString();
      finding.Found = "valid from " + message.NotBefore.EncodeString();
    }
    if (from.ID == Sigil::FindingID::KdmLate) {
      finding.Expected = "valid until " + m_Context.Until->EncodeString();
      finding.Found = "valid until " + message.NotAfter.EncodeString();
    }
    finding.Found = m_Choice.Best->Source + ": " + finding.Found;
    return finding;
  }

  void TellNone(FindingList& findings) const {
    const size_t count = m_Question.Messages == nullptr ? 0 : m_Question.Messages->Entries().size();
    for (size_t i = 0; i < count; ++i) TellOther(m_Question.Messages->Entries()[i], findings);
    Finding none(FindingID::KdmNone, count == 0 ? FindingClass::Note : FindingClass::Error);
    if (count > 0) none.Found = std::to_string(count) + (count == 1 ? " key message" : " key messages") + " for others";
    Add(findings, std::move(none));
  }

  /// A message with this composition's keys is for another version of it: the original's, mostly.
  void TellOther(const Sigil::KeyMessageStore::Entry& entry, FindingList& findings) const {
    const std::vector<UUID>& needed = m_Context.Composition->KeyIDs;
    const bool has_key = std::ranges::any_of(entry.Message.Keys, [&](const Sigil::KeyEntry& key) {
      return std::ranges::find(needed, key.ID) != needed.end();
    });
    if (!has_key) return;
    Finding finding(FindingID::KdmComposition);
    finding.Expected = m_Context.Composition->ID.EncodeString();
    finding.Found = entry.Source + ": " + entry.Message.CompositionID.EncodeString();
    Add(findings, std::move(finding));
  }

  void Add(FindingList& findings, Finding finding) const {
    finding.Place = m_Composition.At(nullptr);
    if (std::ranges::find(findings, finding) == findings.end()) findings.push_back(std::move(finding));
  }

  const Composition& m_Composition;
  const KeyQuestion& m_Question;
  const double m_Seconds;
  Sigil::MessageContext m_Context;
  Sigil::KeyMessageStore::Choice m_Choice;
  bool m_IsSoundInside = true;
};

}  // namespace

bool IsEncrypted(const Composition& composition) {
  return !KeyIDsOf(composition).empty();
}

std::vector<KeyAnswer> FindInKeys(const Composition& composition, const std::optional<SHA1>& signer,
                                  const KeyQuestion& question, const std::vector<double>& starts,
                                  FindingList& findings) {
  std::vector<KeyAnswer> answers;
  if (!IsEncrypted(composition)) return answers;
  KeyInquiry inquiry(composition, signer, question);
  FindingList found;
  for (const double start : starts) {
    answers.push_back(inquiry.Ask(question.Now, start));
    answers.back().IsNow = true;
    if (question.At) answers.push_back(inquiry.Ask(*question.At, start));
    inquiry.Tell(found);
  }
  findings.insert(findings.end(), found.begin(), found.end());
  return answers;
}

void FindInMessageProblems(const std::vector<Sigil::KeyMessageStore::Problem>& problems, bool is_needed,
                           FindingList& findings) {
  for (const Sigil::KeyMessageStore::Problem& problem : problems) {
    const Finding from = FindingOf(problem.What);
    Finding& finding = findings.emplace_back(from.ID, is_needed ? FindingClass::Error : FindingClass::Warning);
    finding.Place.Document = problem.Source;
    finding.Found = from.Found;
  }
}

}  // namespace Assay
