// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/DocumentSignature.h>

#include <map>
#include <string>

namespace Tool {

/// Who signed documents, and whether that holds. Each document is read once. One thread at a time.
class DocumentSignatures {
 public:
  struct Outcome {
    Sigil::Result_t Result = Ferro::RESULT_OK;  ///< of reading and verifying; the report is empty where it is a failure
    Sigil::SignatureReport Report;

    /// The thumbprint of the one who signed; no value unless the signature is valid.
    [[nodiscard]] std::optional<Sigil::SHA1> Signer() const;
  };

  explicit DocumentSignatures(Sigil::SignatureContext context) : m_Context(std::move(context)) {}

  /// The outcome for a document file; valid as long as this lives.
  [[nodiscard]] const Outcome& Of(const std::string& filename);

 private:
  const Sigil::SignatureContext m_Context;
  std::map<std::string, Outcome> m_Outcomes;
};

}  // namespace Tool
