// SPDX-License-Identifier: BSD-3-Clause
#include "MakeSampleCommand.h"

#include "SampleShow.h"
#include "SampleSound.h"
#include "terminal/Command.h"
#include "terminal/ExitCode.h"
#include "terminal/ProgressBar.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace Tool {

namespace {

constexpr Ferro::ui64_t Rates[] = {24, 25, 30, 48, 50, 60};
constexpr Ferro::ui32_t Smallest = 64;  // pixels: the figures and the encoder's levels need that much

/// Reads a whole number and moves `at` behind it; false where there is none that T holds.
template <class T>
bool ReadNumber(const char*& at, const char* end, T& number) {
  const auto read = std::from_chars(at, end, number);
  at = read.ptr;
  return read.ec == std::errc();
}

/// Reads "WIDTHxHEIGHT". Returns what is wrong; empty: nothing.
std::string ReadSize(const std::string& text, SampleOptions& options) {
  const char* at = text.data();
  const char* end = at + text.size();
  const bool is_size = ReadNumber(at, end, options.Width) && at != end && *at++ == 'x' &&
                       ReadNumber(at, end, options.Height) && at == end;
  if (!is_size) return "\"" + text + "\" is not a size like 2048x1080";
  if (options.Width < Smallest || options.Height < Smallest || options.Width > 2048 || options.Height > 1080)
    return text + ": pictures are made from 64x64 to 2048x1080 pixels; 4K is not made";
  return "";
}

/// Accepts a whole number of those that `allowed` tells of, which `range` names.
TakeText NumberThat(bool (*allowed)(Ferro::ui64_t), const std::string& range) {
  return [allowed, range](const std::string& text) {
    Ferro::ui64_t number = 0;
    const char* at = text.data();
    const char* end = at + text.size();
    const bool fits = ReadNumber(at, end, number) && at == end && allowed(number);
    return fits ? "" : "\"" + text + "\" is not " + range;
  };
}

/// Reads "smpte" or "interop". Returns what is wrong; empty: nothing.
std::string ReadFlavour(const std::string& text, Cairn::DCPFormat_t& flavour) {
  if (text != "smpte" && text != "interop") return "\"" + text + "\" is neither smpte nor interop";
  flavour = text == "interop" ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE;
  return "";
}

ExitCode MakeSample(const SampleOptions& options) {
  ProgressBar bar("Drawing", ProgressUnit::Pictures);
  const auto tell = [&bar](const std::string& line) {
    bar.Hide();
    std::puts(line.c_str());
    std::fflush(stdout);
  };
  try {
    if (std::filesystem::exists(options.Folder) && !std::filesystem::is_empty(options.Folder)) {
      std::fprintf(stderr, "strata: %s: there is something already; a sample show is made in a new folder\n",
                   options.Folder.c_str());
      return ExitCode::Usage;
    }
    if (!MakeSampleShow(options, tell, [&bar](auto done, auto total) { bar.Update(done, total); })) {
      bar.Hide();
      std::fputs("strata: interrupted; nothing was left behind\n", stderr);
      return ExitCode::Interrupted;
    }
  } catch (const std::exception& error) {
    bar.Hide();
    std::fprintf(stderr, "strata: the sample show cannot be made: %s\n", error.what());
    return ExitCode::NotPlayable;
  }
  tell("The show is in " + options.Folder + ".");
  return ExitCode::Fine;
}

}  // namespace

void AddMakeSampleCommand(Command& program) {
  const auto options = std::make_shared<SampleOptions>();
  SampleOptions& sample = *options;
  Command& command = program.AddCommand("make-sample", "Make a complete show to try things with");
  command.Add("folder", sample.Folder, "Where the show is to be: a new folder").Required();
  command.Add("--length", sample.Seconds, "Length of each reel, in seconds, 1 to 3600")
      .Called("SECONDS")
      .CheckedBy(NumberThat([](auto number) { return number >= 1 && number <= 3600; }, "a whole number from 1 to 3600"))
      .ShowsDefault();
  command.Add("--rate", sample.Rate, "Edit units per second: 24, 25, 30, 48, 50 or 60")
      .Called("RATE")
      .CheckedBy(NumberThat([](auto number) { return std::ranges::count(Rates, number) != 0; },
                            "a rate of cinema packages: 24, 25, 30, 48, 50 or 60"))
      .ShowsDefault();
  command
      .AddText(
          "--size", [&sample](const std::string& text) { return ReadSize(text, sample); },
          "Pixels of the pictures, 64x64 to 2048x1080 (default: 500x270)")
      .Called("WIDTHxHEIGHT");
  command
      .Add("--channels", sample.Channels,
           "Channels of sound, 2 to 16, an even number; labelled: 2 and 4 (mono), 6 (5.1), 8 and more (5.1, HI, VI-N)")
      .Called("NUMBER")
      .CheckedBy(
          NumberThat([](auto number) { return number >= 2 && number <= SampleSound::MostChannels && number % 2 == 0; },
                     "an even number from 2 to 16"))
      .ShowsDefault();
  command
      .AddText(
          "--flavour", [&sample](const std::string& text) { return ReadFlavour(text, sample.Flavour); },
          "Standard that the packages follow: smpte or interop, which has no immersive audio")
      .Called("NAME")
      .Default = "smpte";
  command
      .Add("--seed", sample.Seed,
           "A whole number from which, with the other options, identifiers, dates and keys follow")
      .Called("NUMBER")
      .CheckedBy(NumberThat([](auto) { return true; }, "a whole number from 0 to 18446744073709551615"))
      .ShowsDefault();
  command.Add("--still", sample.Still, "One picture for each second, so that large ones are soon made");
  command.Add("--unsigned", sample.Unsigned, "Sign only documents of encrypted content, and make no key message");
  command.SetFooter(
      "Equal options make equal files, but for the key message of the encrypted composition, which is valid for\n"
      "a year. It is in the folder worthless-test-keys, with certificates and private keys. Pictures tell reel, edit\n"
      "unit and time; each channel has a tone of its own, and a tick every second. Exit codes: 0 made, 1 the folder\n"
      "is not empty, 2 it cannot be written, 4 interrupted.\n"
      "Examples:\n"
      "  strata make-sample sample --length 2\n"
      "  strata make-sample flat --size 1998x1080 --still\n"
      "  strata make-sample small --length 1 --size 96x64 --flavour interop");
  command.Does([options] { return MakeSample(*options); });
}

}  // namespace Tool
