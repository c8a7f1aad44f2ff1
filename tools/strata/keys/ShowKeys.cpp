// SPDX-License-Identifier: BSD-3-Clause
#include "ShowKeys.h"

#include "CertificateFile.h"
#include "Moment.h"

#include <algorithm>

namespace Tool {

namespace {

std::vector<Ferro::UUID> KeyIDsOf(const OutlineComposition& composition) {
  std::vector<Ferro::UUID> ids;
  for (const OutlineReel& reel : composition.Reels)
    for (const OutlineAsset& asset : reel.Assets) {
      const Ferro::UUID& id = asset.Asset.KeyID;
      if (id.HasValue() && std::ranges::find(ids, id) == ids.end()) ids.push_back(id);
    }
  return ids;
}

}  // namespace

bool IsEncrypted(const OutlineComposition& composition) {
  return !KeyIDsOf(composition).empty();
}

ShowKeys::ShowKeys(const KeyOptions& keys, const ShowTimeOptions& times, const std::vector<std::string>& folders)
    : m_Context{m_Now, ReadCertificateFiles("--trust", times.TrustedRoots)},
      m_At(times.At.empty() ? std::nullopt : std::optional(MomentOf("--at", times.At))),
      m_Tolerance(times.Tolerance),
      m_Signatures(m_Context),
      m_Messages(m_Context) {
  if (!times.Recipient.empty()) m_Recipient = ReadLeaf("--recipient", times.Recipient);
  for (const std::string& device : times.Devices) m_Devices.push_back(ReadLeaf("--device", device).Thumbprint());
  AddMessages(keys.Messages, m_Messages);
  m_Problems = m_Messages.Problems();
  for (const std::string& folder : folders) static_cast<void>(m_Messages.AddFolder(folder));
}

void ShowKeys::SetUp(Assay::CheckRequest& request) const {
  request.Messages = &m_Messages;
  request.MessageProblems = m_Problems;
  request.At = m_At;
  request.Tolerance = m_Tolerance;
  request.Recipient = m_Recipient;
  request.Devices = m_Devices;
  request.TrustedRoots = m_Context.TrustedRoots;
}

KeyAnswer ShowKeys::AnswerFor(const OutlineComposition& composition, double start, const Ferro::Timestamp& begin) {
  // Both ends are moved towards each other: what is valid so much too late, or not so much long enough, serves.
  const double tolerance = m_Tolerance;
  Sigil::MessageContext context;
  context.From = Later(begin, start + tolerance);
  context.Until = Later(begin, start + SecondsOf(composition) - tolerance);
  context.Composition = {composition.ID, m_Signatures.Of(composition.Path).Signer(), KeyIDsOf(composition)};
  context.Recipient = m_Recipient;
  context.Devices = m_Devices;
  KeyAnswer answer;
  answer.Begin = begin;
  answer.Result = m_Messages.FindBest(context, answer.Choice);
  return answer;
}

std::vector<std::vector<KeyAnswer>> ShowKeys::AnswersFor(const ShowOutline& outline) {
  std::vector<std::vector<KeyAnswer>> answers;
  double start = 0;
  for (const OutlineComposition& composition : outline.Compositions()) {
    std::vector<KeyAnswer>& some = answers.emplace_back();
    if (IsEncrypted(composition)) {
      some.push_back(AnswerFor(composition, start, m_Now));
      some.back().IsNow = true;
      if (m_At) some.push_back(AnswerFor(composition, start, *m_At));
    }
    start += SecondsOf(composition);
  }
  return answers;
}

}  // namespace Tool
