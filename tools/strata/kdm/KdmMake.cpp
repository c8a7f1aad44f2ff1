// SPDX-License-Identifier: BSD-3-Clause
#include "KdmMake.h"

#include "keys/CertificateFile.h"
#include "keys/CompositionFile.h"
#include "keys/KeyOpening.h"
#include "keys/MessageReport.h"
#include "keys/SecretFile.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"

#include <Sigil/ContentKeys.h>

#include <cstdio>
#include <memory>

namespace Tool {

namespace {

struct MakeOptions {
  std::string Composition;
  std::string Recipient;
  std::string From;
  std::string Until;
  std::string Out;
  KeyOptions Keys;
  std::string SignerKey;
  std::string SignerPassphraseFile;
  std::vector<std::string> SignerChain;
  std::vector<std::string> Devices;
  std::string DeviceListDescription;
  std::string Annotation;
  bool AsJson = false;
};

/// The keys of the composition, all of them.
std::vector<Sigil::ContentKey> KeysFor(const CompositionFile& composition, const Sigil::KeyRing& ring) {
  std::vector<Sigil::ContentKey> keys;
  for (const Sigil::KeyEntry& entry : composition.Keys) {
    Sigil::ContentKey& key = keys.emplace_back();
    key.Entry = entry;
    if (ring.CopyKey(entry.ID, key.Key).Failure())
      throw CommandError(ExitCode::NotPlayable,
                         "there is no key " + entry.ID.EncodeString() +
                             ", which the composition needs: name it with --key-file, or a message "
                             "that has it with --kdm and --private-key");
  }
  return keys;
}

Sigil::MessageRequest MakeRequest(const MakeOptions& options, const CompositionFile& composition) {
  Sigil::MessageRequest request;
  request.Annotation = options.Annotation;
  request.Recipient = ReadLeaf("--recipient", options.Recipient);
  request.CompositionID = composition.Facts.ID;
  request.ContentTitle = composition.Title;
  request.NotBefore = MomentOf("--from", options.From);
  request.NotAfter = MomentOf("--until", options.Until);
  if (!(request.NotBefore < request.NotAfter))
    throw CommandError(ExitCode::Usage, "--until " + options.Until + ": this is not after --from " + options.From);
  // Interop's servers know no content authenticator.
  if (composition.Format != Cairn::DFT_Interop) request.ContentAuthenticator = composition.Facts.SignerThumbprint;
  for (const std::string& device : options.Devices)
    request.Devices.push_back(ReadLeaf("--device", device).Thumbprint());
  request.DeviceListDescription = options.DeviceListDescription;
  return request;
}

/// Makes the message, and reads it again as others will.
std::string MakeMessage(const Sigil::MessageRequest& request, const Sigil::SignerIdentity& signer,
                        Sigil::KeyMessage& message) {
  QuietLog log;
  std::string xml;
  Sigil::Result_t result = Sigil::MakeKeyMessage(request, signer, xml, Ferro::DefaultLogSink());
  if (result.Success()) result = Sigil::KeyMessage::Read(xml, {}, message, Ferro::DefaultLogSink());
  if (result.Success()) return xml;
  const auto entries = log.Take();
  throw CommandError(ExitCode::NotPlayable,
                     "the key message cannot be made: " + (entries.empty() ? result.Label() : entries.front().Message));
}

ExitCode Make(const MakeOptions& options) {
  DocumentSignatures signatures({});
  const CompositionFile composition = ReadCompositionFile(options.Composition, signatures);
  if (composition.Keys.empty())
    throw CommandError(ExitCode::Usage, options.Composition + ": nothing of this composition is encrypted");
  Sigil::MessageRequest request = MakeRequest(options, composition);
  const Sigil::KeyRing ring = OpenKeys(options.Keys, std::vector<std::string>());
  request.Keys = KeysFor(composition, ring);
  const Sigil::SignerIdentity signer{ReadPrivateKey("--signer-key", options.SignerKey, options.SignerPassphraseFile),
                                     ReadCertificateFiles("--signer", options.SignerChain)};
  Sigil::KeyMessage message;
  const std::string xml = MakeMessage(request, signer, message);
  if (const std::string problem = WriteWholeFile(options.Out, xml); !problem.empty())
    throw CommandError(ExitCode::NotPlayable, problem);
  if (composition.Format != Cairn::DFT_Interop && !composition.Facts.SignerThumbprint)
    TellWarning(DisplayText(options.Composition) +
                ": the composition has no valid signature, so that the message cannot say whose it is to be");
  Json json = NewJsonReport("kdm-make");
  json["file"] = options.Out;
  json.update(MessageJson(message));
  std::fputs((options.AsJson ? JsonText(json) : DisplayText(options.Out) + '\n' + MessageText(message)).c_str(),
             stdout);
  return ExitCode::Fine;
}

void AddOptions(Command& command, MakeOptions& options) {
  command.Add("composition", options.Composition, "The composition playlist that the message opens").Required();
  command.Add("--recipient", options.Recipient, "The certificate of whose private key is to open it")
      .Required()
      .Called("FILE");
  command
      .Add(
          "--from", options.From,
          "When it begins to be valid: \"2026-03-01 20:00\" or 2026-03-01T20:00:00+01:00; local time without an offset")
      .Required()
      .Called("TIME");
  command.Add("--until", options.Until, "When it is valid last").Required().Called("TIME");
  command.Add("--out", options.Out, "The file to write").Required().Called("FILE");
  command.Add("--signer-key", options.SignerKey, "The private key, PEM, that signs it").Required().Called("FILE");
  command
      .Add("--signer", options.SignerChain,
           "The signer's certificate and its issuers' up to the root; may be given several times")
      .Required()
      .Called("FILE");
  command
      .Add("--signer-passphrase-file", options.SignerPassphraseFile,
           "A file with the passphrase of the signer's key in its first line; without it the terminal is asked")
      .Called("FILE");
  options.Keys.AddTo(command);
  command
      .Add("--device", options.Devices,
           "The certificate of a device that may play it; may be given several times (default: any trusted device)")
      .Called("FILE");
  command.Add("--devices-are", options.DeviceListDescription, "What the list of devices is called").Called("TEXT");
  command.Add("--annotation", options.Annotation, "A remark for people").Called("TEXT");
}

}  // namespace

void AddKdmMake(Command& kdm) {
  const auto options = std::make_shared<MakeOptions>();
  Command& command = kdm.AddCommand("make", "Make a key message for a recipient");
  AddOptions(command, *options);
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "The keys come from a key file, or from a message that the private key opens.\n"
      "Exit codes: 0 made, 1 usage, 2 something does not fit or cannot be written.\n"
      "Examples:\n"
      "  strata kdm make secret/CPL.xml --recipient server.pem --from '2026-03-03 09:00' --until '2026-03-06 03:00' "
      "\\\n"
      "    --kdm kdm.xml --private-key server.key --signer chain.pem --signer-key signer.key --out other.xml");
  command.Does([options] { return Make(*options); });
}

}  // namespace Tool
