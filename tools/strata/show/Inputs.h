// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"

#include <Cairn/AssetStore.h>
#include <Strata/IPlaylist.h>

#include <optional>
#include <string>
#include <vector>

namespace Tool {

class Command;

/// What the user named on the command line.
struct InputOptions {
  std::vector<std::string> Names;   ///< folders, asset maps, playlist files, identifiers
  std::vector<std::string> Stores;  ///< folders to find assets in
  std::string Index;                ///< the asset index; empty: in memory

  /// Adds the options --store and --index, and the arguments, to a command.
  void AddTo(Command& command, const std::string& names, const std::string& description);
};

/// The identifier that a name on the command line is, with "urn:uuid:" or without; no value where it is none.
[[nodiscard]] std::optional<Cairn::UUID> IdentifierOf(const std::string& name);

/// One thing that could be meant.
struct Candidate {
  Cairn::FileType_t Type = Cairn::FT_UNKNOWN;
  Cairn::UUID ID;
  std::string Title;
  std::string Path;
};

/// The show that the user means, and the assets there are to play it.
class Inputs {
 public:
  /// Opens the asset store over all folders named, and finds out which show is meant. A folder means the one show
  /// playlist in it that no other one there contains, or else its one composition.
  /// @return false, with the reason in Problem(), when nothing or several things could be meant.
  [[nodiscard]] bool Open(const InputOptions& options);
  /// The first half of Open: the index, and the folders that are there to find assets in.
  [[nodiscard]] bool OpenStores(const InputOptions& options);
  /// The other half: what the names mean.
  [[nodiscard]] bool FindShow(const InputOptions& options);

  /// Why Open failed, for the user; may have several lines.
  [[nodiscard]] const std::string& Problem() const { return m_Problem; }
  /// NotPlayable where something that was meant is broken, Interrupted where the user stopped it, else Usage.
  [[nodiscard]] ExitCode ProblemCode() const { return m_ProblemCode; }
  /// Where Open failed because a folder has several shows, or several compositions and no show: these. One of each.
  [[nodiscard]] const std::vector<Candidate>& Choices() const { return m_Choices; }
  /// Means one of the Choices.
  void Choose(const Candidate& choice) { m_Shows = {choice}; }
  [[nodiscard]] Cairn::AssetStore& Store() { return m_Store; }
  [[nodiscard]] const Cairn::AssetStore& Store() const { return m_Store; }
  /// What is played, in order.
  [[nodiscard]] const std::vector<Candidate>& Shows() const { return m_Shows; }

  /// Fills a playlist with the show. As IPlaylist::InitWithPlaylist and InitWithUUIDList.
  [[nodiscard]] Strata::Result_t Load(Strata::IPlaylist& playlist) const;

 private:
  bool AddFolder(const char* what, const std::string& folder);
  bool Resolve(const std::string& name);
  bool ResolveFolder(const std::string& folder);
  bool ResolveFile(const std::string& path);
  bool ResolveIdentifier(const Cairn::UUID& id);
  bool FailWithout(const std::string& folder);
  bool RefuseDamaged(const std::string& folder, const std::vector<Candidate>& meant);
  bool Fail(const std::string& problem, ExitCode code = ExitCode::Usage);

  Cairn::AssetStore m_Store;
  std::vector<Candidate> m_Shows;
  std::vector<Candidate> m_Choices;
  std::string m_Problem;
  ExitCode m_ProblemCode = ExitCode::Usage;
};

}  // namespace Tool
