// SPDX-License-Identifier: BSD-3-Clause
#include "IndexFile.h"

#include "terminal/LogView.h"

#include <array>
#include <cstdlib>

namespace {

struct Advice {
  const char* Reason;  ///< a part of what the store or SQLite says
  const char* Text;
};

constexpr std::array Advices = {
    Advice{"locked", "Another program is working with it: try again when that is done."},
    Advice{"no asset index", "This is a database of another program: name another file with --index."},
    Advice{"not a database", "This is another file, or a damaged index: name another file with --index."},
    Advice{"another version", "Another version of this program made it: name another file with --index."},
    Advice{"malformed", "It is damaged: delete it, and add the folders again; the assets themselves are not touched."},
    Advice{"readonly", "It cannot be changed: see to it that you may write the file and its folder."},
    Advice{"unable to open", "See to it that its folder is there, and that you may write there."},
    Advice{"full", "Make room on its disk."},
};

std::string problem_text(const std::string& index, const std::string& reason) {
  std::string text = "The asset index " + index + " cannot be used: " + reason + ".";
  for (const Advice& advice : Advices)
    if (reason.find(advice.Reason) != std::string::npos) return text + " " + advice.Text;
  return text;
}

}  // namespace

std::string DefaultIndexFile() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && *data == '/') return std::string(data) + "/strata/store.sqlite";
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/.local/share/strata/store.sqlite" : "";
}

bool OpenIndexFile(const std::string& index, Cairn::AssetStore& store, std::string& problem,
                   std::chrono::milliseconds patience) {
  QuietLog log;
  const Cairn::Result_t result = store.Open(index, patience);
  if (result.Success()) return true;
  problem = IndexFailure(log.Take(), index);
  if (problem.empty()) problem = problem_text(index, result.Label());
  return false;
}

std::string IndexFailure(const std::vector<Ferro::LogEntry>& messages, const std::string& index) {
  const std::string start = "Asset index " + index + ": ";
  std::string problem;
  for (const Ferro::LogEntry& entry : messages)
    if (problem.empty() && entry.Level == Ferro::LogLevel::Error && entry.Message.starts_with(start))
      problem = problem_text(index, entry.Message.substr(start.size()));
  return problem;
}
