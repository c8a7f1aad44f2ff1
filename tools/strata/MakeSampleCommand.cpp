// SPDX-License-Identifier: BSD-3-Clause
#include "MakeSampleCommand.h"

#include "ExitCode.h"
#include "SampleShow.h"
#include "SampleSound.h"

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

constexpr Ferro::ui32_t Smallest = 64;  // pixels: the figures and the encoder's levels need that much

/// Reads "WIDTHxHEIGHT".
bool read_size(const std::string& text, SampleOptions& options) {
  const char* end = text.data() + text.size();
  const auto width = std::from_chars(text.data(), end, options.Width);
  if (width.ec != std::errc() || width.ptr == end || *width.ptr != 'x') return false;
  const auto height = std::from_chars(width.ptr + 1, end, options.Height);
  return height.ec == std::errc() && height.ptr == end && options.Width >= Smallest && options.Width <= 2048 &&
         options.Height >= Smallest && options.Height <= 1080;
}

ExitCode make_sample(const SampleOptions& options) {
  const auto tell = [](const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
  };
  try {
    if (std::filesystem::exists(options.Folder) && !std::filesystem::is_empty(options.Folder)) {
      std::fprintf(stderr, "strata: %s: there is something already; a sample show is made in a new folder\n",
                   options.Folder.c_str());
      return Usage;
    }
    if (!MakeSampleShow(options, tell)) {
      std::fputs("strata: interrupted; nothing was left behind\n", stderr);
      return Interrupted;
    }
  } catch (const std::exception& error) {
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
  command->add_option("--length", sample.Seconds, "Length of each reel, in seconds")
      ->check(CLI::Range(1, 3600))
      ->capture_default_str();
  command->add_option("--rate", sample.Rate, "Edit units per second")
      ->check(CLI::IsMember({24, 25, 30, 48, 50, 60}))
      ->capture_default_str();
  command->add_option("--size", options->Size, "Pixels of the pictures, 64x64 to 2048x1080 (default: 500x270)")
      ->type_name("WIDTHxHEIGHT")
      ->check([&sample](const std::string& text) {
        return read_size(text, sample) ? "" : "not a size from 64x64 to 2048x1080: " + text;
      });
  command->add_option("--channels", sample.Channels, "Channels of sound")
      ->check(CLI::Range(1U, SampleSound::MostChannels))
      ->capture_default_str();
  command->add_option("--seed", sample.Seed, "A number from which identifiers, dates and keys follow")
      ->capture_default_str();
  command->footer(
      "Equal options make equal files. Pictures tell reel, edit unit and time; each channel has a tone of its own, and "
      "a\n"
      "tick every second. Exit codes: 0 made, 1 the folder is not empty, 2 it cannot be written, 4 interrupted.\n"
      "Example: strata make-sample /tmp/show && strata check /tmp/show && strata play /tmp/show --verify");
  command->callback([options, &exit_code] { exit_code = make_sample(options->Sample); });
}
