// SPDX-License-Identifier: BSD-3-Clause
#include "StoreCommand.h"

#include "StoreChanges.h"
#include "StoreList.h"
#include "StoreVerify.h"
#include "terminal/Interrupt.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

constexpr Ferro::ui32_t MaxBusyTimeout = 86'400;

ExitCode store_list(const StoreOptions& options) {
  StoreSession session;
  if (const ExitCode code = session.Open(options, false); code != Fine) return code;
  StoreSelection selection;
  if (std::string unknown; !selection.Select(options.Names, session.Store(), unknown))
    return StoreTrouble(Usage, unknown + ": the index knows no such folder and no such asset.");
  const ExitCode refreshed = options.Refresh ? session.Refresh() : Fine;
  if (refreshed != Fine) return refreshed == Interrupted ? StoreTrouble(Interrupted, "interrupted") : refreshed;
  const Json report = StoreListReport(session, session.Store(), selection);
  if (const ExitCode code = session.CheckIndex(); code != Fine) return code;
  for (const std::string& warning : session.Warnings()) std::fprintf(stderr, "warning: %s\n", warning.c_str());
  PrintReport(report, options.AsJson, StoreListText);
  return Fine;
}

using Run = ExitCode (*)(const StoreOptions&);

/// Adds one of the operations, with the options that all have.
CLI::App& add_operation(CLI::App& command, const std::string& name, const std::string& description, Run run,
                        const std::shared_ptr<StoreOptions>& options, int& exit_code) {
  CLI::App& operation = *command.add_subcommand(name, description);
  operation
      .add_option("--index", options->Index,
                  "The index (default: $XDG_DATA_HOME/strata/store.sqlite, else ~/.local/share/strata/store.sqlite)")
      ->type_name("FILE");
  operation
      .add_option("--wait", options->BusyTimeout,
                  "Seconds to wait while another program keeps the index locked, 0 to 86400")
      ->check(CLI::Range(0U, MaxBusyTimeout))
      ->type_name("SECONDS")
      ->capture_default_str();
  operation.callback([options, run, &exit_code] { exit_code = run(*options); });
  return operation;
}

void add_names(CLI::App& operation, StoreOptions& options, const std::string& description) {
  operation.add_option("names", options.Names, description)->type_name("FOLDER|ID");
}

}  // namespace

void AddStoreCommand(CLI::App& app, int& exit_code) {
  const auto options = std::make_shared<StoreOptions>();
  CLI::App& command = *app.add_subcommand("store", "Keep an index of the folders that hold shows and packages");
  command.require_subcommand(1);
  command.footer(
      "With an index, the files of a large library are looked into once, and digests are computed once. Other "
      "commands\n"
      "use it with --index. Nothing in the folders is ever changed, and an index can be deleted at any time.\n"
      "Exit codes: 0 fine, 1 usage, 2 something is broken or the index cannot be used, 3 files are missing,\n"
      "4 interrupted.\n"
      "Examples:\n"
      "  strata store add show\n"
      "  strata store verify --hash\n"
      "  strata check show --index ~/.local/share/strata/store.sqlite");

  CLI::App& add =
      add_operation(command, "add", "Add folders, or look for changes in them", StoreAdd, options, exit_code);
  add.add_option("names", options->Names,
                 "Folders, looked through at any depth; or single files that say what they are")
      ->type_name("FOLDER|FILE")
      ->required();
  add.footer(
      "An index that is not there is made. Interrupted, it stays as it was before the folder.\n"
      "Examples:\n"
      "  strata store add show\n"
      "  strata store add show/Trailer --index cinema.sqlite --wait 5");

  CLI::App& list =
      add_operation(command, "list", "Show what is known of folders and assets", store_list, options, exit_code);
  add_names(list, *options, "Only these folders and assets (default: all)");
  list.add_flag("--refresh", options->Refresh, "Look for changes in all folders first");
  list.add_flag("--json", options->AsJson, "Print the list as JSON");
  list.footer(
      "Kind, size, identifier, file and title of each asset, and what is wrong with it.\n"
      "Examples:\n"
      "  strata store list\n"
      "  strata store list show/Feature --refresh --json");

  CLI::App& verify = add_operation(command, "verify", "Are all files there, and as their packages list them?",
                                   StoreVerify, options, exit_code);
  add_names(verify, *options, "Only these folders and assets (default: all)");
  verify.add_flag("--hash", options->Hash, "Compare digests too: reads every file that is not verified yet");
  verify
      .add_option("--threads", options->Threads,
                  "Files read at once, 1 to 64 (default: as many as the processor has cores)")
      ->check(CLI::Range(1, 64));
  verify.add_flag("--json", options->AsJson, "Print the report as JSON");
  verify.footer(
      "Looks for changes first. Verified files are not read again until their size or time changes; interrupted, it\n"
      "goes on from there the next time.\n"
      "Examples:\n"
      "  strata store verify\n"
      "  strata store verify show --hash --threads 2");

  CLI::App& forget = add_operation(command, "forget", "Take folders and single files out of the index", StoreForget,
                                   options, exit_code);
  forget.add_option("names", options->Names, "Folders; files that were added singly, or their identifiers")
      ->type_name("FOLDER|FILE|ID")
      ->required();
  forget.footer(
      "The files themselves are left alone.\n"
      "Examples:\n"
      "  strata store forget show");
}
