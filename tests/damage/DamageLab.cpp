// SPDX-License-Identifier: BSD-3-Clause
#include "DamageLab.h"

#include "sample/SampleShow.h"
#include "sample/SampleTrackFiles.h"
#include "terminal/LogView.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace testsupport {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds Patience(60);  // with sanitizers, on a busy machine

/// What a process wrote, until it ended or ran out of time.
struct Answer {
  std::string Text;
  std::string Failure;
};

Answer Listen(pid_t child, int input) {
  Answer answer;
  const auto end = std::chrono::steady_clock::now() + Patience;
  char bytes[4096];
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd ready = {input, POLLIN, 0};
    if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) == 0) {
      answer.Failure = "hung";
      kill(child, SIGKILL);
      break;
    }
    const ssize_t count = read(input, bytes, sizeof bytes);
    if (count <= 0) break;
    answer.Text.append(bytes, static_cast<size_t>(count));
  }
  close(input);
  int status = 0;
  waitpid(child, &status, 0);
  if (!answer.Failure.empty()) return answer;
  if (WIFSIGNALED(status)) answer.Failure = std::string("ended by signal ") + strsignal(WTERMSIG(status));
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0)
    answer.Failure = "ended with code " + std::to_string(WEXITSTATUS(status));
  return answer;
}

}  // namespace

const char* DamageModeName(DamageMode mode) {
  return mode == DamageMode::AsDamaged ? "as damaged" : "recomputed";
}

bool DamageCase::IsSpokenAgainst() const {
  return std::ranges::any_of(
      Told, [](const std::string& each) { return each.starts_with("error ") || each.starts_with("warning "); });
}

std::string DamageCase::Line() const {
  return "seed " + std::to_string(Seed) + ", " + Package + ", " + Done.Line();
}

DamageLab::DamageLab() : m_Case(m_Folder.Path("case")) {
  AddShow(false);
  AddShow(true);
}

void DamageLab::AddShow(bool is_interop) {
  Tool::SampleOptions options;
  options.Folder = m_Folder.Path(is_interop ? "interop" : "smpte");
  options.Seconds = 1;
  options.Width = 96;
  options.Height = 64;
  options.Unsigned = true;
  if (is_interop) options.Flavour = Cairn::DFT_Interop;
  FERRO_ASSERT(Tool::MakeSampleShow(
      options, [](const std::string&) {}, [](Ferro::ui64_t, Ferro::ui64_t) {}));
  const Tool::SampleSeed seed(options);
  const Tool::SampleTrackFiles::Reel encrypted = {"ENCRYPTED", 1};
  for (const char* kind : {"picture", "sound"})
    FERRO_ASSERT(m_Keys
                     .AddKey(seed.ID(encrypted.NameOf(std::string(kind) + "-key")), seed.Key(encrypted.NameOf(kind)),
                             Ferro::DefaultLogSink())
                     .Success());
  std::set<std::string> packages;
  for (const auto& entry : fs::directory_iterator(options.Folder))
    if (entry.is_directory()) packages.insert(entry.path().filename());
  const Tool::QuietLog quiet;
  for (const std::string& name : packages) {
    Sound& sound = m_Sound.emplace_back();
    sound.Name = (is_interop ? "interop " : "smpte ") + name;
    sound.Files = ReadPackage(options.Folder + '/' + name);
    WritePackage(sound.Files, m_Case);
    sound.Facts = FactsOf(m_Case);
    for (const DamageMode mode : {DamageMode::AsDamaged, DamageMode::Recomputed})
      sound.Findings[static_cast<size_t>(mode)] = FindingsIn(mode);
  }
}

Assay::DepthSet DamageLab::DepthsOf(DamageMode mode) {
  using Assay::Depth;
  if (mode == DamageMode::AsDamaged) return {Depth::Files, Depth::Hash};
  return {Depth::Files, Depth::Frames, Depth::Decode};
}

std::set<std::string> DamageLab::FindingsIn(DamageMode mode) const {
  Assay::CheckRequest request;
  request.Folders = {m_Case};
  request.Depths = DepthsOf(mode);
  request.Profile = Assay::Profile::All;
  request.Keys = &m_Keys;
  Assay::CheckReport report;
  FERRO_ASSERT(Assay::Check(request, report).Success());
  std::set<std::string> findings;
  for (const Assay::Finding& finding : report.Findings) {
    const Assay::FindingPlace& place = finding.Place;
    std::ostringstream line;
    line << Assay::FindingClassName(finding.Class) << ' ' << Assay::RuleOf(finding.ID).Name << '\t' << place.Document
         << '\t' << place.Reel << '\t' << place.EditUnit.value_or(0) << '\t' << place.Channel << '\t'
         << finding.Expected << '\t' << finding.Found;
    findings.insert(line.str());
  }
  return findings;
}

std::pair<FileKind, const DamageLab::Sound*> DamageLab::ChoiceOf(uint32_t seed) const {
  Dice dice(~seed);
  const auto kind = static_cast<FileKind>(dice.Below(FileKindCount));
  std::vector<const Sound*> candidates;
  for (const Sound& sound : m_Sound)
    if (std::ranges::any_of(sound.Files, [&](const auto& file) { return KindOfFile(file.first) == kind; }))
      candidates.push_back(&sound);
  return {kind, dice.Of(candidates)};
}

DamageCase DamageLab::Make(uint32_t seed, DamageMode mode, PackageFiles& files) const {
  const auto& [kind, sound] = ChoiceOf(seed);
  DamageCase result;
  result.Seed = seed;
  result.Mode = mode;
  result.Package = sound->Name;
  files = sound->Files;
  result.Done = DamagePackage(files, kind, seed);
  if (mode == DamageMode::Recomputed) RecomputeDigests(files, sound->Files);
  return result;
}

DamageCase DamageLab::Run(uint32_t seed, DamageMode mode) const {
  PackageFiles files;
  DamageCase result = Make(seed, mode, files);
  WritePackage(files, m_Case);
  int ends[2];
  FERRO_ASSERT(pipe(ends) == 0);
  const pid_t child = fork();
  FERRO_ASSERT(child >= 0);
  if (child == 0) {
    close(ends[0]);
    Look(*ChoiceOf(seed).second, mode, ends[1]);
    _exit(0);
  }
  close(ends[1]);
  const Answer answer = Listen(child, ends[0]);
  result.Failure = answer.Failure;
  std::istringstream lines(answer.Text);
  for (std::string kind, rest; lines >> kind && std::getline(lines >> std::ws, rest);) {
    if (kind == "told") result.Told.insert(rest);
    if (kind == "difference") result.Differences.insert(static_cast<Difference>(std::stoi(rest)));
  }
  return result;
}

void DamageLab::Look(const Sound& sound, DamageMode mode, int output) const {
  std::ostringstream out;
  {
    const Tool::QuietLog quiet;
    const std::set<std::string>& before = sound.Findings[static_cast<size_t>(mode)];
    for (const std::string& finding : FindingsIn(mode))
      if (!before.contains(finding)) out << "told " << finding.substr(0, finding.find('\t')) << '\n';
    for (const Difference difference : DifferencesOf(sound.Facts, FactsOf(m_Case, &sound.Facts)))
      out << "difference " << static_cast<int>(difference) << '\n';
  }
  const std::string text = out.str();
  const ssize_t count = write(output, text.data(), text.size());
  FERRO_ASSERT(count == static_cast<ssize_t>(text.size()));
}

}  // namespace testsupport
