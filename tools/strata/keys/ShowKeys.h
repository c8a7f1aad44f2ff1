// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentSignatures.h"
#include "KeyAnswer.h"
#include "KeyOptions.h"
#include "show/ShowOutline.h"

#include <Assay/Check.h>

#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// True where some track file of the composition is encrypted.
[[nodiscard]] bool IsEncrypted(const OutlineComposition& composition);

/// What there is to tell of a show's signatures and keys: its key messages, who signed its documents, and the moments in
/// question. One thread at a time.
class ShowKeys {
 public:
  /// Reads the messages that the user named, those that lie in `folders`, and the certificates. Throws CommandError.
  ShowKeys(const KeyOptions& keys, const ShowTimeOptions& times, const std::vector<std::string>& folders);

  [[nodiscard]] const Sigil::KeyMessageStore& Messages() const { return m_Messages; }
  /// What could not be read of what the user named. Files that merely lie beside the show may be another's.
  [[nodiscard]] const std::vector<Sigil::KeyMessageStore::Problem>& Problems() const { return m_Problems; }
  /// Has a check of packages judge keys and signatures by the same: it refers to the messages.
  void SetUp(Assay::CheckRequest& request) const;
  [[nodiscard]] DocumentSignatures& Signatures() { return m_Signatures; }

  /// For each composition of a show its answers: now, and at the time that the user named, which comes last and is the one
  /// that counts. None for a composition without encrypted files.
  [[nodiscard]] std::vector<std::vector<KeyAnswer>> AnswersFor(const ShowOutline& outline);

 private:
  /// `start` is the composition's, in seconds from the beginning of the show.
  [[nodiscard]] KeyAnswer AnswerFor(const OutlineComposition& composition, double start, const Ferro::Timestamp& begin);

  const Ferro::Timestamp m_Now;
  const Sigil::SignatureContext m_Context;
  const std::optional<Ferro::Timestamp> m_At;
  const Ferro::ui32_t m_Tolerance;
  std::optional<Sigil::Certificate> m_Recipient;
  std::vector<Sigil::SHA1> m_Devices;
  DocumentSignatures m_Signatures;
  Sigil::KeyMessageStore m_Messages;
  std::vector<Sigil::KeyMessageStore::Problem> m_Problems;
};

}  // namespace Tool
