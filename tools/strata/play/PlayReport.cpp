// SPDX-License-Identifier: BSD-3-Clause
#include "PlayReport.h"

#include "terminal/TextForms.h"

#include <cstdio>

namespace Tool {

namespace {

std::string SecondsText(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", seconds);
  return text;
}

std::string ChannelText(const ChannelStatistics& channel) {
  char line[256];
  std::snprintf(line, sizeof line,
                "  %-18s %8llu delivered  %llu late  %llu repeated  wait p50 %.2f p99 %.2f max %.2f ms\n",
                channel.Name.c_str(), static_cast<unsigned long long>(channel.Delivered),
                static_cast<unsigned long long>(channel.Late), static_cast<unsigned long long>(channel.Repeated),
                channel.Latency.Percentile(0.5), channel.Latency.Percentile(0.99), channel.Latency.Longest());
  return line;
}

}  // namespace

Ferro::ui64_t PlayReport::BytesPerSecond() const {
  Ferro::ui64_t bytes = 0;
  for (const ChannelStatistics& channel : Channels) bytes += channel.Bytes;
  return Seconds > 0 ? static_cast<Ferro::ui64_t>(double(bytes) / Seconds) : 0;
}

Ferro::ui64_t PlayReport::FramesLacking() const {
  Ferro::ui64_t count = 0;
  for (const ChannelStatistics& channel : Channels) count += channel.Repeated;
  return count;
}

Ferro::ui64_t PlayReport::FramesMissing() const {
  Ferro::ui64_t count = 0;
  for (const ChannelStatistics& channel : Channels) count += channel.Missing;
  return count;
}

ExitCode PlayReport::Code() const {
  if (Interrupted) return ExitCode::Interrupted;
  const bool differs = Verified && Verified->Different + Verified->Altered > 0;
  return differs || FramesLacking() + FramesMissing() > 0 ? ExitCode::NotPlayable : ExitCode::Fine;
}

std::string PlayText(const PlayReport& report) {
  std::string text = "Played " + std::to_string(report.EditUnits) + " edit units in " + DurationText(report.Seconds) +
                     ", " + BytesText(report.BytesPerSecond()) + "/s\n";
  if (report.HeldUpSeconds > 0)
    text += "It was held up for " + SecondsText(report.HeldUpSeconds) + " s, as while the program was stopped.\n";
  for (const ChannelStatistics& channel : report.Channels) text += ChannelText(channel);
  if (const auto lacking = report.FramesLacking(); lacking > 0)
    text += std::to_string(lacking) + " frames could not be read: `strata check --hash` says which file is damaged.\n";
  if (const auto missing = report.FramesMissing(); missing > 0)
    text += std::to_string(missing) + " frames are of files that could not be opened: `strata check` names them.\n";
  if (report.Verified)
    text +=
        "Verified " + std::to_string(report.Verified->Compared) + " frames: " +
        (report.Verified->Different == 0 ? "all were read as they stand in their files"
                                         : std::to_string(report.Verified->Different) + " differ from their files") +
        ". Whether files are damaged is for `strata check --hash` to say.\n";
  if (report.Verified && report.Verified->Decrypted > 0)
    text +=
        "Of these " + std::to_string(report.Verified->Decrypted) + " were encrypted: " +
        (report.Verified->Altered == 0 ? "all are as they were written.\n"
                                       : std::to_string(report.Verified->Altered) + " are not as they were written.\n");
  return text;
}

}  // namespace Tool
