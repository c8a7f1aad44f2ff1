// SPDX-License-Identifier: BSD-3-Clause
#include "StoreCommand.h"

#include "StoreChanges.h"
#include "StoreList.h"
#include "StoreVerify.h"
#include "terminal/Command.h"

#include <memory>

namespace Tool {

namespace {

constexpr Ferro::ui32_t MaxBusyTimeout = 86'400;

using Operation = ExitCode (*)(const StoreOptions&);

/// Adds one of the operations, with the options that all have.
Command& AddOperation(Command& command, const std::string& name, const std::string& description, Operation run,
                      const std::shared_ptr<StoreOptions>& options) {
  Command& operation = command.AddCommand(name, description);
  operation
      .Add("--index", options->Index,
           "The index (default: $XDG_DATA_HOME/strata/store.sqlite, else ~/.local/share/strata/store.sqlite)")
      .Called("FILE");
  operation
      .Add("--wait", options->BusyTimeout, "Seconds to wait while another program keeps the index locked, 0 to 86400")
      .Within(0U, MaxBusyTimeout)
      .Called("SECONDS")
      .ShowsDefault();
  operation.Does([options, run] { return run(*options); });
  return operation;
}

void AddNames(Command& operation, StoreOptions& options, const std::string& description) {
  operation.Add("names", options.Names, description).Called("FOLDER|ID");
}

}  // namespace

void AddStoreCommand(Command& program) {
  const auto options = std::make_shared<StoreOptions>();
  Command& command = program.AddCommand("store", "Keep an index of the folders that hold shows and packages");
  command.SetFooter(
      "With an index, the files of a large library are read once, and digests are computed once. Other "
      "commands\n"
      "use it with --index. Nothing in the folders is ever changed, and an index can be deleted at any time.\n"
      "Exit codes: 0 fine, 1 usage, 2 something is broken or the index cannot be used, 3 files are missing,\n"
      "4 interrupted.\n"
      "Examples:\n"
      "  strata store add show\n"
      "  strata store verify --hash\n"
      "  strata check show --index ~/.local/share/strata/store.sqlite");

  Command& add = AddOperation(command, "add", "Add folders, or look for changes in them", StoreAdd, options);
  add.Add("names", options->Names, "Folders, scanned at any depth; or single files that say what they are")
      .Called("FOLDER|FILE")
      .Required();
  add.SetFooter(
      "An index that is not there is made. Interrupted, it stays as it was before the folder.\n"
      "Examples:\n"
      "  strata store add show\n"
      "  strata store add show/Trailer --index cinema.sqlite --wait 5");

  Command& list = AddOperation(command, "list", "Show what is known of folders and assets", ListStore, options);
  AddNames(list, *options, "Only these folders and assets (default: all)");
  list.Add("--refresh", options->Refresh, "Look for changes in all folders first");
  list.Add("--json", options->AsJson, "Print the list as JSON");
  list.SetFooter(
      "Kind, size, identifier, file and title of each asset, and what is wrong with it.\n"
      "Examples:\n"
      "  strata store list\n"
      "  strata store list show/Feature --refresh --json");

  Command& verify =
      AddOperation(command, "verify", "Are all files there, and as their packages list them?", VerifyStore, options);
  AddNames(verify, *options, "Only these folders and assets (default: all)");
  verify.Add("--hash", options->Hash, "Compare digests too: reads every file that is not verified yet");
  verify.Add("--threads", options->Threads, "Files read at once, 1 to 64 (default: as many as the processor has cores)")
      .Within(1, 64);
  verify.Add("--json", options->AsJson, "Print the report as JSON");
  verify.SetFooter(
      "Looks for changes first. Verified files are not read again until their size or time changes; interrupted, it\n"
      "goes on from there the next time.\n"
      "Examples:\n"
      "  strata store verify\n"
      "  strata store verify show --hash --threads 2");

  Command& forget =
      AddOperation(command, "forget", "Take folders and single files out of the index", StoreForget, options);
  forget.Add("names", options->Names, "Folders; files that were added singly, or their identifiers")
      .Called("FOLDER|FILE|ID")
      .Required();
  forget.SetFooter(
      "The files themselves are left alone.\n"
      "Examples:\n"
      "  strata store forget show");
}

}  // namespace Tool
