// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/CompositionPlaylist.h>
#include <Ferro/Timestamp.h>
#include <Sigil/ContentKeys.h>
#include <Sigil/DocumentSignature.h>

#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// Who signs the documents of sample shows and makes their key messages. Every call throws std::runtime_error with what is
/// wrong.
class SampleSigner {
 public:
  SampleSigner();

  /// Signs a composition or a packing list. Equal documents are signed equally.
  void Sign(std::string& xml, const std::string& filename) const;
  /// A key message for the sample's server, valid from the day before `now` for a year and a day.
  /// @param has_authenticator  the message says who signed the composition, as for SMPTE compositions.
  [[nodiscard]] std::string MakeMessage(const Cairn::CompositionPlaylist& composition,
                                        std::vector<Sigil::ContentKey> keys, const Ferro::Timestamp& now,
                                        bool has_authenticator) const;

 private:
  std::optional<Sigil::SignerIdentity> m_Identity;  // set from construction on
  std::optional<Sigil::Certificate> m_Recipient;    // likewise
};

/// Writes the folder with a sample show's key message, certificates and private keys.
/// @param folder  must not exist.
void WriteSampleKeys(const std::string& folder, const std::string& message);

}  // namespace Tool
