// SPDX-License-Identifier: BSD-3-Clause
#include "MakeSampleCommand.h"

#include "SampleShow.h"
#include "SampleSound.h"
#include "terminal/ExitCode.h"
#include "terminal/ProgressBar.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace {

struct MakeSampleOptions {
  SampleOptions Sample;
  std::string Size;
};

constexpr Ferro::ui64_t Rates[] = {24, 25, 30, 48, 50, 60};
constexpr Ferro::ui32_t Smallest = 64;  // pixels: the figures and the encoder's levels need that much

/// Reads a whole number and moves `at` behind it; false where there is none that T holds.
template <class T>
bool read_number(const char*& at, const char* end, T& number) {
  const auto read = std::from_chars(at, end, number);
  at = read.ptr;
  return read.ec == std::errc();
}

/// Reads "WIDTHxHEIGHT". Returns what is wrong; empty: nothing.
std::string read_size(const std::string& text, SampleOptions& options) {
  const char* at = text.data();
  const char* end = at + text.size();
  const bool is_size = read_number(at, end, options.Width) && at != end && *at++ == 'x' &&
                       read_number(at, end, options.Height) && at == end;
  if (!is_size) return "\"" + text + "\" is not a size like 2048x1080";
  if (options.Width < Smallest || options.Height < Smallest || options.Width > 2048 || options.Height > 1080)
    return text + ": pictures are made from 64x64 to 2048x1080 pixels; 4K is not made";
  return "";
}

/// Accepts a whole number of those that `allowed` tells of, which `range` names.
CLI::Validator number_that(bool (*allowed)(Ferro::ui64_t), const std::string& range) {
  return CLI::Validator(
      [allowed, range](const std::string& text) {
        Ferro::ui64_t number = 0;
        const char* at = text.data();
        const char* end = at + text.size();
        const bool fits = read_number(at, end, number) && at == end && allowed(number);
        return fits ? "" : "\"" + text + "\" is not " + range;
      },
      "");
}

ExitCode make_sample(const SampleOptions& options) {
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
      return Usage;
    }
    if (!MakeSampleShow(options, tell, [&bar](auto done, auto total) { bar.Update(done, total); })) {
      bar.Hide();
      std::fputs("strata: interrupted; nothing was left behind\n", stderr);
      return Interrupted;
    }
  } catch (const std::exception& error) {
    bar.Hide();
    std::fprintf(stderr, "strata: the sample show cannot be made: %s\n", error.what());
    return NotPlayable;
  }
  tell("The show is in " + options.Folder + ".");
  return Fine;
}

}  // namespace

void AddMakeSampleCommand(CLI::App& app, int& exit_code) {
  const auto options = std::make_shared<MakeSampleOptions>();
  SampleOptions& sample = options->Sample;
  CLI::App* command = app.add_subcommand("make-sample", "Make a complete show to try things with");
  command->add_option("folder", sample.Folder, "Where the show is to be: a new folder")->required();
  command->add_option("--length", sample.Seconds, "Length of each reel, in seconds, 1 to 3600")
      ->type_name("SECONDS")
      ->check(number_that([](auto number) { return number >= 1 && number <= 3600; }, "a whole number from 1 to 3600"))
      ->capture_default_str();
  command->add_option("--rate", sample.Rate, "Edit units per second: 24, 25, 30, 48, 50 or 60")
      ->type_name("RATE")
      ->check(number_that([](auto number) { return std::ranges::count(Rates, number) != 0; },
                          "a rate of cinema packages: 24, 25, 30, 48, 50 or 60"))
      ->capture_default_str();
  command->add_option("--size", options->Size, "Pixels of the pictures, 64x64 to 2048x1080 (default: 500x270)")
      ->type_name("WIDTHxHEIGHT")
      ->check([&sample](const std::string& text) { return read_size(text, sample); });
  command
      ->add_option("--channels", sample.Channels,
                   "Channels of sound, 1 to 16; labelled: 1 (mono), 6 (5.1), 8 and more (5.1, HI, VI-N)")
      ->type_name("NUMBER")
      ->check(number_that([](auto number) { return number >= 1 && number <= SampleSound::MostChannels; },
                          "a whole number from 1 to 16"))
      ->capture_default_str();
  command
      ->add_option_function<std::string>(
          "--flavour",
          [&sample](const std::string& text) {
            sample.Flavour = text == "interop" ? Cairn::DFT_Interop : Cairn::DFT_DCI_SMPTE;
          },
          "Standard that the packages follow: smpte or interop, which has no immersive audio")
      ->type_name("NAME")
      ->check([](const std::string& text) {
        return text == "smpte" || text == "interop" ? "" : "\"" + text + "\" is neither smpte nor interop";
      })
      ->default_str("smpte");
  command
      ->add_option("--seed", sample.Seed,
                   "A whole number from which, with the other options, identifiers, dates and keys follow")
      ->type_name("NUMBER")
      ->check(number_that([](auto) { return true; }, "a whole number from 0 to 18446744073709551615"))
      ->capture_default_str();
  command->footer(
      "Equal options make equal files. Pictures tell reel, edit unit and time; each channel has a tone of its own, and "
      "a\n"
      "tick every second. Exit codes: 0 made, 1 the folder is not empty, 2 it cannot be written, 4 interrupted.\n"
      "Examples:\n"
      "  strata make-sample sample --length 2\n"
      "  strata make-sample small --length 1 --size 96x64 --flavour interop");
  command->callback([options, &exit_code] { exit_code = make_sample(options->Sample); });
}
