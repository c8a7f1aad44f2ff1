// SPDX-License-Identifier: BSD-3-Clause
#include "IndexFile.h"

#include "terminal/LogView.h"
#include "terminal/ReasonText.h"

#include <cstdlib>

namespace Tool {

namespace {

const char* AdviceFor(Cairn::StoreFailure_t failure) {
  switch (failure) {
    case Cairn::SF_LOCKED:
      return " Another program is working with it: try again when that is done.";
    case Cairn::SF_NOT_AN_INDEX:
      return " This is a database of another program: name another file with --index.";
    case Cairn::SF_NOT_A_DATABASE:
      return " This is another file, or a damaged index: name another file with --index.";
    case Cairn::SF_OTHER_VERSION:
      return " Another version of this program made it: name another file with --index.";
    case Cairn::SF_TOO_LARGE:
    case Cairn::SF_CORRUPT:
      return " It is damaged: delete it, and add the folders again; the assets themselves are not touched.";
    case Cairn::SF_READ_ONLY:
      return " It cannot be changed: see to it that you may write the file and its folder.";
    case Cairn::SF_CANNOT_OPEN:
      return " See to it that its folder is there, and that you may write there.";
    case Cairn::SF_FULL:
      return " Make room on its disk.";
    case Cairn::SF_NONE:
    case Cairn::SF_IO:
    case Cairn::SF_OTHER:
      break;
  }
  return "";
}

std::string ProblemText(const std::string& index, const std::string& reason, Cairn::StoreFailure_t kind) {
  return "The asset index " + index + " cannot be used: " + reason + "." + AdviceFor(kind);
}

}  // namespace

std::string DefaultIndexFile() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && *data == '/') return std::string(data) + "/strata/store.sqlite";
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/.local/share/strata/store.sqlite" : "";
}

bool OpenIndexFile(const std::string& index, Cairn::AssetStore& store, std::string& problem,
                   Ferro::ui32_t busy_timeout_ms) {
  const QuietLog log;
  const Cairn::Result_t result = store.Open(index, busy_timeout_ms);
  if (result.Success()) return true;
  problem = IndexFailure(store, index);
  if (problem.empty()) problem = ProblemText(index, ReasonText(result), Cairn::SF_NONE);
  return false;
}

std::string IndexFailure(const Cairn::AssetStore& store, const std::string& index) {
  const Cairn::StoreFailure failure = store.LastFailure();
  return failure.Kind == Cairn::SF_NONE ? std::string() : ProblemText(index, failure.Reason, failure.Kind);
}

}  // namespace Tool
