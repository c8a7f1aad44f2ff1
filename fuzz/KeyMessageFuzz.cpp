// SPDX-License-Identifier: BSD-3-Clause
// Key delivery messages: reading, and the questions asked of them.
#include "QuietLog.h"

#include <Sigil/KeyMessage.h>

#include <Ferro/Assert.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static QuietLog log;
  Sigil::KeyMessage message;
  if (Sigil::KeyMessage::Read(std::string(data, data + size), {}, message, log).Failure()) return 0;
  FERRO_ASSERT(!message.Keys.empty() && message.Keys.size() == message.EncryptedKeys.size());
  for (const auto& encrypted : message.EncryptedKeys) FERRO_ASSERT(encrypted.size() == 256);
  FERRO_ASSERT(*Sigil::FormulationName(message.Formulation()) != '\0');
  Sigil::MessageContext context;
  context.From = message.NotBefore;
  context.Until = message.NotAfter;
  context.Composition = {message.CompositionID, message.ContentAuthenticator, {message.Keys.front().ID}};
  context.Devices = message.Devices;
  // Asked for nothing but what it says, only its signature can fail.
  const bool is_valid = message.Signature.State == Sigil::SignatureState::Valid;
  FERRO_ASSERT(HasErrors(Sigil::CheckKeyMessage(message, context)) == !is_valid);
  return 0;
}
