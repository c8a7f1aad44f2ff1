// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentSignatures.h"

#include "terminal/LogView.h"

#include <Cairn/DocumentParser.h>
#include <Ferro/FileText.h>

namespace Tool {

std::optional<Sigil::SHA1> DocumentSignatures::Outcome::Signer() const {
  if (Report.State != Sigil::SignatureState::Valid) return std::nullopt;
  return Report.Chain.Chain.front().Thumbprint();
}

const DocumentSignatures::Outcome& DocumentSignatures::Of(const std::string& filename) {
  const auto [place, is_new] = m_Outcomes.try_emplace(filename);
  if (!is_new) return place->second;
  const QuietLog log;  // the result says it all
  Outcome& outcome = place->second;
  std::string xml;
  outcome.Result = Ferro::ReadFileIntoString(filename, xml, Cairn::DocumentParser::MaxDocumentSize);
  if (outcome.Result.Success())
    outcome.Result = Sigil::VerifySignature(xml, m_Context, outcome.Report, Ferro::DefaultLogSink());
  return outcome;
}

}  // namespace Tool
