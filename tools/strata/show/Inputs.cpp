// SPDX-License-Identifier: BSD-3-Clause
#include "Inputs.h"

#include "DocumentFault.h"
#include "DocumentTitle.h"
#include "IndexFile.h"
#include "InfoKinds.h"
#include "MappedPath.h"
#include "StoreProgress.h"
#include "terminal/Command.h"
#include "terminal/DisplayText.h"
#include "terminal/LogView.h"
#include "terminal/ReasonText.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/InspectFile.h>
#include <Ferro/FileText.h>
#include <Ferro/Path.h>
#include <Strata/ShowPlaylist.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string_view>

namespace Tool {

namespace {

std::string FolderOf(const std::string& path) {
  const std::string folder = Ferro::PathDirname(path);
  return folder.empty() ? "." : folder;
}

/// The identifiers of the show playlists that `shows` contain.
std::set<Cairn::UUID> NestedIn(const std::vector<Candidate>& shows) {
  std::set<Cairn::UUID> nested;
  for (const Candidate& show : shows) {
    Strata::ShowPlaylist spl;
    if (Cairn::InitObjectWithFile(spl, show.Path).Failure()) continue;
    for (const auto& item : spl.ShowSequence) {
      if (item->m_Type != Strata::ShowPlaylist::SIT_SHOW) continue;
      const auto& reference = static_cast<const Strata::ShowPlaylist::ShowPlaylistItem&>(*item);
      if (const auto id = Cairn::UUID::FromURN(reference.URI)) nested.insert(*id);
    }
  }
  return nested;
}

/// The local name of a document's element, also of one that is damaged further on; empty where there is none.
std::string_view DocumentElement(std::string_view text) {
  constexpr std::string_view ByteOrderMark = "\xef\xbb\xbf";
  if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
  const auto skip_past = [&](std::string_view end) {
    const size_t at = text.find(end);
    text.remove_prefix(at == text.npos ? text.size() : at + end.size());
  };
  while (!text.empty()) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.starts_with("<?")) {
      skip_past("?>");
    } else if (text.starts_with("<!--")) {
      skip_past("-->");
    } else if (text.starts_with("<!")) {
      skip_past(">");
    } else {
      break;
    }
  }
  if (!text.starts_with('<')) return "";
  const std::string_view name = text.substr(1, std::min(text.find_first_of(" \t\r\n/>"), text.size()) - 1);
  const size_t colon = name.find(':');
  return colon == name.npos ? name : name.substr(colon + 1);
}

/// Of several places of one show or composition the first, in the order given.
void KeepOneOfEach(std::vector<Candidate>& candidates) {
  std::set<Cairn::UUID> seen;
  std::erase_if(candidates, [&](const Candidate& candidate) { return !seen.insert(candidate.ID).second; });
}

/// Why a document that claims to be a playlist, or that makes no sense at all, cannot be read; no value for all others.
std::optional<std::string> DamageOf(const std::string& path) {
  std::string text;
  if (const auto result = Ferro::ReadFileIntoString(path, text); result.Failure()) return ReasonText(result);
  Cairn::FileContent content;
  static_cast<void>(Cairn::InspectFile(path, content));
  const std::string_view name = DocumentElement(text);
  const bool claims = name == "ShowPlaylist" || name == "CompositionPlaylist";
  if (content.Type != Cairn::FT_UNKNOWN && !claims) return std::nullopt;
  Cairn::CompositionPlaylist cpl;
  Strata::ShowPlaylist spl;
  QuietLog log;
  const auto result = name == "CompositionPlaylist" ? cpl.DecodeXML(text) : spl.DecodeXML(text);
  const bool is_fine = claims && result.Success();
  return is_fine ? std::nullopt : std::optional(DocumentFault(path, result, log.Take()));
}

bool IsPlaylist(Cairn::FileType_t type) {
  return type == Cairn::FT_CPL || type == Cairn::FT_SHOW;
}

/// Why a composition or show playlist cannot be read though nothing of it is damaged; empty for all others.
std::string EncodingTrouble(const std::string& path) {
  Cairn::FileContent content;
  const bool is_one = Cairn::InspectFile(path, content).Success() && IsPlaylist(content.Type);
  if (!is_one || content.Problem != Cairn::DP_ENCODING) return "";
  const char* what = content.Type == Cairn::FT_SHOW ? "show playlist" : "composition";
  return path + ": this " + what + " cannot be read: " + content.Reason + ". Ask for it in UTF-8.";
}

/// The file that should be there, by the asset map, or else the identifier.
std::string NameOfMissing(const Cairn::AssetRecord& record) {
  const std::string path = MappedPaths().Of(record);
  const std::string asset = "asset " + record.Info.ID.EncodeString();
  return path == record.Package ? asset : path + " (" + asset + ')';
}

std::string ListOf(const std::vector<Candidate>& candidates) {
  std::string text;
  for (const Candidate& candidate : candidates)
    text += "\n  " + candidate.ID.EncodeString() + "  " + candidate.Path +
            (candidate.Title.empty() ? "" : "  \"" + candidate.Title + '"');
  return text;
}

}  // namespace

std::optional<Cairn::UUID> IdentifierOf(const std::string& name) {
  if (const auto id = Cairn::UUID::FromURN(name)) return id;
  return Cairn::UUID::FromHex(name);
}

void InputOptions::AddTo(Command& command, const std::string& names, const std::string& description) {
  command.Add(names, Names, description).Required();
  command.Add("--store", Stores, "A folder to find assets in, beside those named; may be given several times")
      .Called("FOLDER");
  command.Add("--index", Index, "Keep what is known of the assets in this file, so that a second start is quick")
      .Called("FILE");
}

bool Inputs::Open(const InputOptions& options) {
  return OpenStores(options) && FindShow(options);
}

bool Inputs::OpenStores(const InputOptions& options) {
  const QuietLog log;  // what is wrong is told in Problem(); so below
  std::string problem;
  if (!OpenIndexFile(options.Index, m_Store, problem)) return Fail(problem, ExitCode::NotPlayable);
  return std::ranges::all_of(options.Stores, [&](const std::string& folder) { return AddFolder("store", folder); });
}

bool Inputs::FindShow(const InputOptions& options) {
  const QuietLog log;
  return std::ranges::all_of(options.Names, [&](const std::string& name) { return Resolve(name); });
}

bool Inputs::Fail(const std::string& problem, ExitCode code) {
  m_Problem = DisplayLines(problem);
  m_ProblemCode = code;
  return false;
}

bool Inputs::AddFolder(const char* what, const std::string& folder) {
  const Strata::Result_t result = ScanFolder(m_Store, folder);
  if (result == Ferro::RESULT_CANCELLED) return Fail("interrupted.", ExitCode::Interrupted);
  return result.Success() ||
         Fail(std::string("The ") + what + ' ' + folder + " cannot be opened: " + ReasonText(result));
}

bool Inputs::Resolve(const std::string& name) {
  std::error_code error;
  if (std::filesystem::is_directory(name, error)) return ResolveFolder(name);
  if (std::filesystem::exists(name, error)) return ResolveFile(name);
  if (const auto id = IdentifierOf(name)) return ResolveIdentifier(*id);
  return Fail(name + ": there is no such file or folder, and it is no identifier.");
}

bool Inputs::ResolveFolder(const std::string& folder) {
  if (!AddFolder("folder", folder)) return false;
  std::error_code error;
  const std::string root = std::filesystem::canonical(folder, error).string() + '/';
  std::vector<Candidate> shows;
  std::vector<Candidate> compositions;
  for (const Cairn::AssetRecord& record : m_Store.Assets()) {
    const Cairn::AssetInfo& info = record.Info;
    if (!info.RealFilename.starts_with(root)) continue;
    if (info.FileType != Cairn::FT_SHOW && info.FileType != Cairn::FT_CPL) continue;
    auto& list = info.FileType == Cairn::FT_SHOW ? shows : compositions;
    list.push_back({info.FileType, info.ID, DocumentTitle(info.FileType, info.RealFilename), info.RealFilename});
  }
  KeepOneOfEach(shows);
  KeepOneOfEach(compositions);
  const std::set<Cairn::UUID> nested = NestedIn(shows);
  std::vector<Candidate> outermost = shows;
  std::erase_if(outermost, [&](const Candidate& show) { return nested.contains(show.ID); });
  if (!outermost.empty()) shows = outermost;  // else each lies in another, and each could be meant

  const std::vector<Candidate>& meant = shows.empty() ? compositions : shows;
  if (RefuseDamaged(folder, meant)) return false;
  if (meant.empty()) return FailWithout(folder);
  if (meant.size() > 1) {
    m_Choices = meant;
    return Fail(folder + ": several " + (shows.empty() ? "compositions" : "shows") +
                " could be meant. Name one of them, as in `" + meant.front().Path + " --store " + folder +
                "`:" + ListOf(meant));
  }
  m_Shows.push_back(meant.front());
  return true;
}

// Where a package lists what cannot be used, the composition may be among it.
bool Inputs::FailWithout(const std::string& folder) {
  std::error_code error;
  const std::string root = std::filesystem::canonical(folder, error).string();
  std::string unusable;
  Ferro::ui32_t problems = 0;
  std::set<std::string> told;
  for (const Cairn::AssetRecord& record : m_Store.Assets()) {
    const bool is_here = record.Package == root || record.Package.starts_with(root + '/');
    if (!is_here || (record.Problems & Cairn::FatalAssetProblems) == 0) continue;
    problems |= record.Problems & Cairn::FatalAssetProblems;
    const std::string& file = record.Info.RealFilename;
    told.insert(file);
    unusable += "\n  " + (file.empty() ? NameOfMissing(record) : file) + ':';
    for (const std::string& reason : record.Reasons()) unusable += ' ' + reason;
  }
  bool may_be_opened = true;
  for (const Cairn::UnreadableEntry& entry : m_Store.Unreadable()) {
    if (!entry.Path.starts_with(root + '/')) continue;
    may_be_opened = false;
    if (told.contains(entry.Path)) continue;
    problems |= Cairn::AP_UNREADABLE;
    unusable += "\n  " + entry.Path + ": It cannot be opened: " + entry.Reason + '.';
  }
  for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    if (const std::string trouble = EncodingTrouble(entry.path()); !trouble.empty())
      return Fail(trouble, ExitCode::NotPlayable);
  const char* advice = may_be_opened ? "Copy it again" : "Allow this user to read it, or copy it again";
  if (unusable.empty()) return Fail(folder + ": there is no show playlist and no composition in this folder.");
  return Fail(
      folder + ": there is no composition in this folder that can be used. " + advice + "; wrong are:" + unusable,
      problems == Cairn::AP_MISSING_FILE ? ExitCode::AssetsMissing : ExitCode::NotPlayable);
}

// A document beside the packages that nobody can read may be the very show that is meant.
bool Inputs::RefuseDamaged(const std::string& folder, const std::vector<Candidate>& meant) {
  std::error_code error;
  const std::string root = std::filesystem::canonical(folder, error).string();
  for (const Cairn::PackageRecord& package : m_Store.Packages())
    if (package.Folder == root) return false;
  const std::vector<Cairn::UnreadableEntry> unreadable = m_Store.Unreadable();
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const bool is_hidden = entry.path().filename().string().starts_with('.');  // what other systems leave behind
    if (is_hidden || entry.path().extension() != ".xml" || !entry.is_regular_file(error)) continue;
    const auto failure = std::find_if(unreadable.begin(), unreadable.end(), [&](const Cairn::UnreadableEntry& other) {
      return other.Path == root + '/' + entry.path().filename().string();
    });
    std::optional<std::string> damage;
    if (failure == unreadable.end()) damage = DamageOf(entry.path());
    if (failure == unreadable.end() && !damage) continue;
    if (const std::string trouble = EncodingTrouble(entry.path()); !trouble.empty()) {
      Fail(trouble + (meant.empty() ? "" : " Or name what to take instead:" + ListOf(meant)), ExitCode::NotPlayable);
      return true;
    }
    const std::string what = damage ? "is damaged: " + *damage : "cannot be opened: " + failure->Reason;
    Fail(entry.path().string() + ": this document " + what + ". It may be the show that is meant: " +
             (failure == unreadable.end() ? "" : "allow this user to read it, or ") + "copy it again" +
             (meant.empty() ? "." : ", or name what to take instead:" + ListOf(meant)),
         ExitCode::NotPlayable);
    return true;
  }
  return false;
}

bool Inputs::ResolveFile(const std::string& path) {
  Cairn::FileContent content;
  const Strata::Result_t result = Cairn::InspectFile(path, content);
  if (result.Failure())
    return Fail(path + ": the file cannot be read: " + ReasonText(result) + '.', ExitCode::NotPlayable);
  if (const std::string trouble = EncodingTrouble(path); !trouble.empty()) return Fail(trouble, ExitCode::NotPlayable);
  if (content.Type == Cairn::FT_ASSETMAP || content.Type == Cairn::FT_PKL) return ResolveFolder(FolderOf(path));
  if (content.Type == Cairn::FT_UNKNOWN)
    return Fail(path + ": this file is damaged, or no document of digital cinema: copy it again.",
                ExitCode::NotPlayable);
  if (const auto damage = content.Type == Cairn::FT_XML ? DamageOf(path) : std::nullopt)
    return Fail(path + ": this playlist cannot be read: " + *damage + '.', ExitCode::NotPlayable);
  if (IsMXF(content.Type))
    return Fail(path +
                ": this is a track file, and neither a composition nor a show playlist. `strata info` tells what "
                "is in it, `strata frame` takes frames out of it.");
  if (!IsPlaylist(content.Type)) return Fail(path + ": this is neither a composition nor a show playlist.");
  if (!AddFolder("folder", FolderOf(path))) return false;
  m_Shows.push_back({content.Type, content.ID, DocumentTitle(content.Type, path), path});
  return true;
}

bool Inputs::ResolveIdentifier(const Cairn::UUID& id) {
  const std::vector<Cairn::AssetRecord> places = m_Store.FindAsset(id);
  if (places.empty()) return Fail(id.EncodeString() + ": no store has this asset.");
  const Cairn::AssetInfo& info = places.front().Info;
  if (info.FileType != Cairn::FT_CPL && info.FileType != Cairn::FT_SHOW)
    return Fail(id.EncodeString() + ": this is neither a composition nor a show playlist, but " + info.RealFilename);
  m_Shows.push_back({info.FileType, id, DocumentTitle(info.FileType, info.RealFilename), info.RealFilename});
  return true;
}

// One playlist is taken from its file, so that it plays even where its package is not in order.
Strata::Result_t Inputs::Load(Strata::IPlaylist& playlist) const {
  if (m_Shows.size() == 1) {
    std::string document;
    const Strata::Result_t result = Ferro::ReadFileIntoString(m_Shows.front().Path, document);
    return result.Failure() ? result : playlist.InitWithPlaylist(document, m_Store, {});
  }
  Cairn::UUIDList ids;
  for (const Candidate& show : m_Shows) ids.push_back(show.ID);
  return playlist.InitWithUUIDList(ids, m_Store, {});
}

}  // namespace Tool
