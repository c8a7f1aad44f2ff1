// SPDX-License-Identifier: BSD-3-Clause
#include "FrameCommand.h"

#include "FrameOutput.h"
#include "FrameReport.h"
#include "FrameSource.h"
#include "WaveFile.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

namespace Tool {

namespace {

using Ferro::ui32_t;

struct FrameOptions {
  InputOptions Inputs;
  KeyOptions Keys;
  std::string At;
  std::string Channel;
  ui32_t Count = 1;
  FrameOutputOptions Output;
  bool AsJson = false;
};

struct ChannelChoice {
  FrameChannel Channel;
  Eye Eyes = Eye::Both;
};

/// Reads "picture", "left", "caption2"; no value where it is none of them.
std::optional<ChannelChoice> ReadChannel(const std::string& text) {
  struct Name {
    std::string_view Text;
    Strata::TrackType_t Type;
    Eye Eyes = Eye::Both;
    bool Several = false;
  };
  constexpr Name Names[] = {{"picture", Strata::TRKT_IMAGE},
                            {"left", Strata::TRKT_IMAGE, Eye::Left},
                            {"right", Strata::TRKT_IMAGE, Eye::Right},
                            {"sound", Strata::TRKT_SOUND},
                            {"subtitle", Strata::TRKT_ON_SCREEN_TEXT},
                            {"caption", Strata::TRKT_OFF_SCREEN_TEXT, Eye::Both, true},
                            {"data", Strata::TRKT_AUX_DATA, Eye::Both, true}};
  for (const Name& name : Names) {
    if (!text.starts_with(name.Text)) continue;
    if (text == name.Text) return ChannelChoice{{name.Type, 0}, name.Eyes};
    ui32_t number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + name.Text.size(), end, number);
    if (name.Several && read.ec == std::errc() && read.ptr == end && number > 0)
      return ChannelChoice{{name.Type, number - 1}, name.Eyes};
  }
  return std::nullopt;
}

/// The channel that a kind of file usually means.
const char* UsualChannel(FrameForm form) {
  switch (form) {
    case FrameForm::Sound:
      return "sound";
    case FrameForm::Document:
      return "subtitle";
    case FrameForm::Raw:
      return "data";
    default:
      return "picture";
  }
}

/// Reads an edit unit, or a time code with whole edit units per second.
ui32_t ReadPosition(const std::string& text, const FrameSource& source) {
  const auto refuse = [&] {
    throw CommandError(ExitCode::Usage, "--at " + text +
                                            ": this is neither an edit unit nor a time code HH:MM:SS:FF at " +
                                            RateText(source.EditRate()) + " edit units per second");
  };
  std::vector<ui32_t> numbers;
  const char* at = text.data();
  const char* end = at + text.size();
  for (bool more = true; more;) {
    const auto read = std::from_chars(at, end, numbers.emplace_back());
    if (read.ec != std::errc()) refuse();
    more = read.ptr != end && *read.ptr == ':';
    at = read.ptr + (more ? 1 : 0);
  }
  if (at != end || (numbers.size() != 1 && numbers.size() != 4)) refuse();
  if (numbers.size() == 1) return numbers[0];
  const QUIRE::Rational rate = source.EditRate();
  const double base = rate.Denominator > 0 ? std::ceil(rate.Quotient()) : 0;
  if (numbers[0] > 999 || numbers[1] > 59 || numbers[2] > 59 || !(numbers[3] < base)) refuse();
  return (numbers[0] * 3600 + numbers[1] * 60 + numbers[2]) * static_cast<ui32_t>(base) + numbers[3];
}

void CheckRange(ui32_t position, ui32_t count, const FrameSource& source) {
  const ui32_t duration = source.Duration();
  if (position < duration && count <= duration - position) return;
  const std::string what = count == 1 ? "edit unit " + std::to_string(position)
                                      : std::to_string(count) + " edit units from " + std::to_string(position) + " on";
  if (duration == 0) throw CommandError(ExitCode::NotPlayable, what + " cannot be taken: there are none");
  throw CommandError(ExitCode::Usage, what + " cannot be taken: there are only " + std::to_string(duration) +
                                          ", and the last is number " + std::to_string(duration - 1) + ", at " +
                                          TimeCodeText(duration - 1, source.EditRate()));
}

void WriteSound(FrameSource& source, const FrameChannel& channel, ui32_t position, const FrameOptions& options,
                EditUnit unit) {
  CheckFrameFits(unit, options.Output);
  const SoundFormat format = unit.Sound;
  WaveFile wave(options.Output.Filename, format);
  ProgressBar bar("Writing sound");
  for (ui32_t done = 0; done < options.Count; ++done) {
    if (Interrupt::Requested()) throw CommandStopped();
    if (done > 0) unit = source.Read(channel, position + done);
    CheckFrameFits(unit, options.Output);
    if (!(unit.Sound == format))
      throw CommandError(ExitCode::Usage, "the sound has another format from edit unit " +
                                              std::to_string(position + done) + " on: it does not go into one file");
    wave.Write(unit.Bytes);
    bar.Update(Ferro::ui64_t{unit.Bytes.size()} * (done + 1), Ferro::ui64_t{unit.Bytes.size()} * options.Count);
  }
  wave.Finish();
}

/// How sound that is written as it is stored is laid out; empty for anything else.
std::string RawSoundText(const EditUnit& unit) {
  if (unit.Coding != FrameCoding::PCM || unit.Encrypted) return "";
  return std::to_string(unit.Sound.Channels) + " channels in turn, samples of " + std::to_string(unit.Sound.Bits) +
         " bits with the lowest byte first, " + SamplingRateText({static_cast<Ferro::i32_t>(unit.Sound.SampleRate), 1});
}

ExitCode Frame(FrameOptions& options) {
  const auto form = FrameFormOf(options.Output.Filename);
  if (!form)
    throw CommandError(
        ExitCode::Usage,
        options.Output.Filename + ": what is written follows the extension: .png, .j2c, .m2v, .wav, .xml or .bin");
  options.Output.Form = *form;
  auto choice = ReadChannel(options.Channel.empty() ? UsualChannel(*form) : options.Channel);
  if (!choice) throw CommandError(ExitCode::Usage, "--channel " + options.Channel + ": there is no such channel");
  if (options.Count > 1 && *form != FrameForm::Sound)
    throw CommandError(ExitCode::Usage, "--count: several edit units go only into a file *.wav");
  options.Output.Eyes = choice->Eyes;
  const Sigil::KeyRing ring = OpenKeys(options.Keys, FoldersOf(options.Inputs));
  TrackKeys keys(ring);
  const auto source = OpenFrameSource(options.Inputs, keys);
  if (const auto only = source->OnlyChannel(); only && options.Channel.empty() && *form == FrameForm::Raw)
    choice->Channel = *only;
  const ui32_t position = ReadPosition(options.At, *source);
  CheckRange(position, options.Count, *source);
  const EditUnit unit = source->Read(choice->Channel, position);
  std::vector<std::string> files = {options.Output.Filename};
  if (*form == FrameForm::Sound)
    WriteSound(*source, choice->Channel, position, options, unit);
  else
    files = WriteFrame(unit, options.Output);
  if (unit.Encrypted) TellWarning("the track file is encrypted; ciphertext was written");
  const FrameReport report = {.Channel = choice->Channel.Name(),
                              .Position = position,
                              .Count = options.Count,
                              .TimeCode = TimeCodeText(position, source->EditRate()),
                              .AssetID = unit.AssetID,
                              .FilePosition = unit.FilePosition,
                              .File = unit.File,
                              .Encrypted = unit.Encrypted,
                              .Files = files,
                              .Bytes = *form == FrameForm::Raw ? RawSoundText(unit) : ""};
  std::fputs((options.AsJson ? FrameJson(report) : FrameText(report)).c_str(), stdout);
  return ExitCode::Fine;
}

}  // namespace

void AddFrameCommand(Command& program) {
  const auto options = std::make_shared<FrameOptions>();
  Command& command = program.AddCommand("frame", "Take one edit unit out of a show or a track file");
  options->Inputs.AddTo(command, "show", "A folder, an asset map, a playlist file, an identifier, or a track file");
  command.Add("--at", options->At, "Which one: an edit unit, counted from 0, or a time code HH:MM:SS:FF")
      .Required()
      .Called("POSITION");
  command
      .Add("--out", options->Output.Filename,
           "The file to write; its extension says what: .png the picture for viewing, .j2c or .m2v its "
           "codestream, .wav the sound, .xml the text document and what belongs to it, .bin any bytes as stored")
      .Required()
      .Called("FILE");
  command
      .Add("--channel", options->Channel,
           "picture, left, right, sound, subtitle, caption, caption2..., data, data2... (default: what the "
           "extension means)")
      .Called("NAME");
  command.Add("--count", options->Count, "Edit units of sound to write into one .wav")
      .Called("NUMBER")
      .CheckedBy(WholeNumber(1, std::numeric_limits<Ferro::ui32_t>::max()))
      .ShowsDefault();
  command.AddChoice("--colour", options->Output.Colour,
                    {{"auto", PictureColour::Unknown}, {"xyz", PictureColour::XYZ}, {"rgb", PictureColour::RGB}},
                    "What the samples of pictures are: auto follows the track file");
  command.AddChoice("--white", options->Output.White, {{"dci", WhitePoint::DCI}, {"d65", WhitePoint::D65}},
                    "The white of the cinema that shows as white: the projector's, or D65");
  options->Keys.AddTo(command);
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "With keys, what is encrypted is verified and decrypted.\n"
      "Both eyes of a stereoscopic picture go into two files, X-left.png and X-right.png.\n"
      "Exit codes: 0 written, 1 there is no such thing, 2 broken, encrypted or not to be written, 3 assets are "
      "missing,\n"
      "4 interrupted.\n"
      "Examples:\n"
      "  strata frame show --at 00:00:02:12 --out still.png\n"
      "  strata frame show/Trailer/sound-1.mxf --at 0 --count 24 --out second.wav\n"
      "  strata frame secret --at 0 --out still.j2c --kdm kdm.xml --private-key server.key");
  command.Does([options] { return Frame(*options); });
}

}  // namespace Tool
