// SPDX-License-Identifier: BSD-3-Clause
#include "KdmCheck.h"

#include "KdmList.h"
#include "findings/FindingJson.h"
#include "findings/FindingReport.h"
#include "findings/SecurityFindings.h"
#include "keys/CertificateFile.h"
#include "keys/CompositionFile.h"
#include "keys/MessageReport.h"
#include "keys/Moment.h"
#include "keys/SecretFile.h"
#include "terminal/Command.h"
#include "terminal/DisplayText.h"
#include "terminal/LogView.h"

#include <Sigil/ContentKeys.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace Tool {

namespace {

struct CheckOptions {
  std::vector<std::string> Names;
  std::string Composition;
  std::string PrivateKey;
  std::string PassphraseFile;
  ShowTimeOptions Times;
  bool AsJson = false;
};

struct CheckedMessage {
  const Sigil::KeyMessageStore::Entry& Entry;
  FindingList Findings;

  [[nodiscard]] bool Serves() const { return ExitCodeFor(Findings) == ExitCode::Fine; }
};

/// What is asked of all messages.
struct Question {
  Sigil::MessageContext Context;
  std::optional<Sigil::PrivateKey> Key;
};

Question MakeQuestion(const CheckOptions& options, const Sigil::SignatureContext& trust, const Ferro::Timestamp& now) {
  Question question;
  Sigil::MessageContext& context = question.Context;
  const Ferro::Timestamp begin = options.Times.At.empty() ? now : MomentOf("--at", options.Times.At);
  const double tolerance = options.Times.Tolerance;
  double seconds = 0;
  if (!options.Composition.empty()) {
    DocumentSignatures signatures(trust);
    const CompositionFile composition = ReadCompositionFile(options.Composition, signatures);
    context.Composition = composition.Facts;
    seconds = composition.Seconds;
  }
  context.From = Later(begin, tolerance);
  context.Until = Later(begin, seconds - tolerance);
  if (!options.Times.Recipient.empty()) context.Recipient = ReadLeaf("--recipient", options.Times.Recipient);
  for (const std::string& device : options.Times.Devices)
    context.Devices.push_back(ReadLeaf("--device", device).Thumbprint());
  if (!options.PrivateKey.empty())
    question.Key = ReadPrivateKey("--private-key", options.PrivateKey, options.PassphraseFile);
  return question;
}

CheckedMessage CheckMessage(const Sigil::KeyMessageStore::Entry& entry, const Question& question) {
  CheckedMessage checked{entry, {}};
  for (const Sigil::Finding& from : Sigil::CheckKeyMessage(entry.Message, question.Context)) {
    Finding& finding = checked.Findings.emplace_back(FindingOf(from));
    TellWindow(entry.Message, finding);
  }
  if (!question.Key || entry.Message.Signature.State != Sigil::SignatureState::Valid) return checked;
  const QuietLog log;  // the result says it all
  Sigil::ContentKeys keys;
  if (Sigil::ContentKeys::Open(entry.Message, *question.Key, keys, Ferro::DefaultLogSink()).Failure())
    checked.Findings.emplace_back(FindingID::KdmContent).Found = "the private key does not open it";
  return checked;
}

std::string Verdict(const std::vector<CheckedMessage>& messages) {
  const auto serving = static_cast<size_t>(std::ranges::count_if(messages, &CheckedMessage::Serves));
  if (messages.empty()) return "There is no key message.";
  if (messages.size() == 1) return serving == 1 ? "The key message serves." : "The key message does not serve.";
  return std::to_string(serving) + " of " + std::to_string(messages.size()) + " key messages serve.";
}

std::string CheckText(const std::vector<CheckedMessage>& messages, const Sigil::KeyMessageStore& store) {
  std::string text;
  for (const CheckedMessage& message : messages) {
    text += DisplayText(message.Entry.Source) + '\n' + MessageText(message.Entry.Message);
    for (const Finding& finding : message.Findings) text += FindingText(finding, stdout);
  }
  return text + ProblemLines(store.Problems()) + Verdict(messages) + '\n';
}

std::string CheckJson(const std::vector<CheckedMessage>& messages, const Sigil::KeyMessageStore& store,
                      const Question& question, ExitCode code) {
  Json json = NewJsonReport("kdm-check");
  json["exit_code"] = static_cast<int>(code);
  json["at"] = question.Context.From->EncodeString();
  json["messages"] = Json::Array();
  for (const CheckedMessage& message : messages) {
    Json& added = json["messages"].push_back(Json{{"file", message.Entry.Source}, {"serves", message.Serves()}});
    added.update(MessageJson(message.Entry.Message));
    added["findings"] = FindingsJson(message.Findings);
  }
  json["problems"] = ProblemsJson(store.Problems());
  json["verdict"] = Verdict(messages);
  return JsonText(json);
}

ExitCode Check(const CheckOptions& options) {
  const Ferro::Timestamp now;
  const Sigil::SignatureContext trust{now, ReadCertificateFiles("--trust", options.Times.TrustedRoots)};
  const Question question = MakeQuestion(options, trust, now);
  Sigil::KeyMessageStore store(trust);
  AddMessages(options.Names, store);
  std::vector<CheckedMessage> messages;
  for (const Sigil::KeyMessageStore::Entry& entry : store.Entries()) messages.push_back(CheckMessage(entry, question));
  const bool is_fine =
      !messages.empty() && store.Problems().empty() && std::ranges::all_of(messages, &CheckedMessage::Serves);
  const ExitCode code = is_fine ? ExitCode::Fine : ExitCode::NotPlayable;
  std::fputs((options.AsJson ? CheckJson(messages, store, question, code) : CheckText(messages, store)).c_str(),
             stdout);
  return code;
}

}  // namespace

void AddKdmCheck(Command& kdm) {
  const auto options = std::make_shared<CheckOptions>();
  Command& command = kdm.AddCommand("check", "Say whether key messages serve, and what is wrong with them");
  command.Add("path", options->Names, "A key message, a ZIP archive or a folder of them").Required();
  command.Add("--composition", options->Composition, "The composition playlist that they are to open").Called("FILE");
  options->Times.AddTo(command);
  command.Add("--private-key", options->PrivateKey, "The recipient's private key, PEM: try whether it opens them")
      .Called("FILE");
  command
      .Add("--passphrase-file", options->PassphraseFile,
           "A file with the private key's passphrase in its first line; without it the terminal is asked")
      .Called("FILE");
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "A message serves that is signed and valid when the composition begins, now or at the time named, until it "
      "ends,\n"
      "and that is for the composition and the recipient where those are named.\n"
      "Exit codes: 0 all serve, 1 there is no such thing, 2 some do not.\n"
      "Examples:\n"
      "  strata kdm check kdm.xml --composition secret/CPL.xml --at '2026-03-05 20:00'\n"
      "  strata kdm check kdm.xml --recipient server.pem --at '2026-03-05 20:00'");
  command.Does([options] { return Check(*options); });
}

}  // namespace Tool
