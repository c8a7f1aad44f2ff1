// SPDX-License-Identifier: BSD-3-Clause
#include "WrapCommand.h"

#include "WrapEssence.h"
#include "WrapReport.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"
#include "terminal/ReasonText.h"

#include <Ferro/Path.h>
#include <Ferro/SHA1Digest.h>

#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>

namespace Tool {

namespace {

struct CommandOptions {
  WrapOptions Wrap;
  bool AsJson = false;
};

Ferro::SHA1 DigestOf(const std::string& filename, Ferro::ui64_t size) {
  ProgressBar bar("Computing the digest");
  Ferro::SHA1 digest;
  const Ferro::Result_t result = Ferro::DigestFile(filename, digest, [&](Ferro::fsize_t done) {
    bar.Update(done, size);
    return !Interrupt::Requested();
  });
  if (result == Ferro::RESULT_CANCELLED) throw CommandStopped();
  if (result.Failure()) throw CommandError(ExitCode::NotPlayable, filename + ": " + ReasonText(result));
  return digest;
}

WrapReport MakeReport(const WrapJob& job, EssenceKind kind, const Wrapped& wrapped) {
  const std::string& filename = job.Options().Out;
  const Ferro::ui64_t size = std::filesystem::file_size(filename);
  return {.File = filename,
          .Kind = kind,
          .ID = job.Info().AssetUUID,
          .EditRate = wrapped.EditRate,
          .Duration = wrapped.Duration,
          .Padding = wrapped.Padding,
          .Size = size,
          .Digest = DigestOf(filename, size),
          .Interop = job.Options().Interop,
          .Encrypted = job.Info().EncryptedEssence,
          .KeyID = job.Info().CryptographicKeyID,
          .Warnings = job.Warnings()};
}

Wrapped WrapKind(WrapJob& job, const WrapSources& sources) {
  switch (sources.Kind) {
    case EssenceKind::Picture:
      return WrapPicture(job, sources);
    case EssenceKind::Video:
      return WrapVideo(job, sources);
    case EssenceKind::Sound:
      return WrapSound(job, sources);
    case EssenceKind::Text:
      return WrapText(job, sources);
    case EssenceKind::Data:
    case EssenceKind::Immersive:
      break;
  }
  return WrapData(job, sources);
}

/// A file interrupted while its digest is computed is complete, but nobody learns its identifier: it goes too.
ExitCode Wrap(const CommandOptions& options) {
  WrapJob job(options.Wrap);
  const WrapSources sources = FindWrapSources(options.Wrap);
  const Wrapped wrapped = WrapKind(job, sources);
  try {
    const WrapReport report = MakeReport(job, sources.Kind, wrapped);
    for (const std::string& warning : report.Warnings) TellWarning(warning);
    std::fputs((options.AsJson ? WrapReportJson(report) : WrapReportText(report)).c_str(), stdout);
  } catch (const CommandStopped&) {
    std::error_code ignored;
    std::filesystem::remove(options.Wrap.Out, ignored);
    throw;
  }
  return ExitCode::Fine;
}

void AddOptions(Command& command, WrapOptions& options) {
  command.Add("source", options.Sources,
              "Codestreams (.j2c), an MPEG-2 stream, WAVE files, a text document or data, or a folder of one of "
              "them, taken in the order of their names");
  command.Add("--out", options.Out, "The track file to write").Required().Called("FILE");
  command.Add("--left", options.Left, "Codestreams of the left eye, with --right").Called("FOLDER");
  command.Add("--right", options.Right, "Codestreams of the right eye, with --left").Called("FOLDER");
  std::vector<std::pair<const char*, std::optional<EssenceKind>>> kinds = {{"auto", std::nullopt}};
  for (const EssenceKind kind : {EssenceKind::Picture, EssenceKind::Video, EssenceKind::Sound, EssenceKind::Text,
                                 EssenceKind::Data, EssenceKind::Immersive})
    kinds.emplace_back(EssenceKindName(kind), kind);
  command.AddChoice("--kind", options.Kind, kinds, "What the sources are; auto: what they look like");
  command
      .Add("--rate", options.Rate,
           "Edit units per second, as 24 or 30000/1001 (default: what the source says, else 24)")
      .Called("RATE");
  command.Add("--id", options.ID, "Identifier of the track file (default: a new one)").Called("UUID");
  command.Add("--interop", options.Interop, "Interop labels; without it those of SMPTE").NegatedBy = "--smpte";
  Option& key = command
                    .Add("--key", options.Key,
                         "Encrypt with this key, 32 hexadecimal digits, which others on this machine may see meanwhile")
                    .Called("HEX");
  command.Add("--key-file", options.KeyFile, "Encrypt with the key in this file, 32 hexadecimal digits")
      .Called("FILE")
      .Excludes(key);
  command.Add("--key-id", options.KeyID, "Identifier of that key").Called("UUID");
  command
      .Add("--channels", options.Channels,
           "Sound: its channels, as 51(L,R,C,LFE,Ls,Rs) (default: 5.1 for six, else no loudspeakers); Interop has none")
      .Called("NAMES");
  command.Add("--language", options.Language, "Sound and text: language, RFC 5646 (default: the document's)")
      .Called("TAG");
  command.Add("--coding", options.Coding, "Data: label of what they are, 32 hexadecimal digits").Called("UL");
  command.Add("--duration", options.Duration, "Text: length in edit units (default: up to the last line's end)")
      .Called("NUMBER")
      .CheckedBy(WholeNumber(1, std::numeric_limits<Ferro::ui32_t>::max()));
  command.Add("--force", options.Force, "Immersive: wrap also what has not the form of immersive audio");
}

}  // namespace

void AddWrapCommand(Command& program) {
  const auto options = std::make_shared<CommandOptions>();
  Command& command = program.AddCommand("wrap", "Make a track file of codestreams, sound, text or data");
  AddOptions(command, options->Wrap);
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "Sound has 24 bits at 48 or 96 kHz: one file with all channels, or several with one each. Fonts and images of a\n"
      "text lie beside it, named by their identifiers. The digest is what a packing list has.\n"
      "Codestreams that are not as D-Cinema has them are wrapped, with a warning.\n"
      "Exit codes: 0 written, 1 there is no such thing, 2 broken or not to be written, 3 a font or image is missing,\n"
      "4 interrupted.\n"
      "Examples:\n"
      "  strata frame show --at 0 --out still.j2c\n"
      "  strata wrap still.j2c --rate 24 --out picture.mxf\n"
      "  strata frame show/Trailer/sound-1.mxf --at 0 --count 24 --out second.wav\n"
      "  strata wrap second.wav --rate 24 --out sound.mxf");
  command.Does([options] { return Wrap(*options); });
}

}  // namespace Tool
