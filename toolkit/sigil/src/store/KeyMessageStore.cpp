// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/KeyMessageStore.h>

#include "store/Archive.h"

#include <Ferro/FileText.h>
#include <Ferro/SHA1Digest.h>

#include <algorithm>
#include <filesystem>

namespace Sigil {
namespace {

namespace fs = std::filesystem;

/// Passes over other documents of a folder without parsing them. Key messages are UTF-8.
bool LooksLikeMessage(std::string_view xml) {
  return xml.find("DCinemaSecurityMessage") != std::string_view::npos;
}

/// What was logged, as one text without line ends.
std::string TextOf(const Ferro::MemoryLogSink& log) {
  std::string text;
  for (const Ferro::LogEntry& entry : log.Entries()) {
    if (!text.empty()) text += "; ";
    text += entry.Message.substr(0, entry.Message.find('\n'));
  }
  return text;
}

}  // namespace

void KeyMessageStore::AddProblem(const std::string& source, FindingID id, const std::string& text) {
  m_Problems.push_back({source, {id, Severity::Error, text}});
}

Result_t KeyMessageStore::AddMessage(const std::string& source, const std::string& xml) {
  const SHA1 digest = Ferro::DigestText(xml);
  if (m_Digests.contains(digest)) return RESULT_SG_DUPLICATE;
  Ferro::MemoryLogSink log;
  KeyMessage message;
  const Result_t result = KeyMessage::Read(xml, m_Context, message, log);
  if (result.Failure()) {
    AddProblem(source, FindingID::KdmForm, TextOf(log));
    return result;
  }
  m_Digests.insert(digest);
  m_Entries.push_back({source, std::move(message)});
  return Ferro::RESULT_OK;
}

// All is unpacked before any of it is added.
Result_t KeyMessageStore::AddArchive(const std::string& filename, std::string_view bytes) {
  std::vector<ArchivedDocument> documents;
  if (const std::string reason = UnpackDocuments(bytes, documents); !reason.empty()) {
    AddProblem(filename, FindingID::KdmArchive, "The archive is refused: " + reason + '.');
    return RESULT_SG_ARCHIVE;
  }
  for (const ArchivedDocument& document : documents) {
    const std::string source = filename + ": " + document.Name;
    if (document.Text.empty())
      AddProblem(source, FindingID::KdmForm, "The document is empty or encrypted.");
    else if (LooksLikeMessage(document.Text))
      static_cast<void>(AddMessage(source, document.Text));  // a problem where it fails
  }
  return Ferro::RESULT_OK;
}

Result_t KeyMessageStore::AddFile(const std::string& filename) {
  std::string bytes;
  if (const Result_t result = Ferro::ReadFileIntoString(filename, bytes, MaxArchiveSize); result.Failure()) {
    AddProblem(filename, FindingID::KdmForm, result.Label());
    return result;
  }
  if (IsArchive(bytes)) return AddArchive(filename, bytes);
  const Result_t result = AddMessage(filename, bytes);
  return result == RESULT_SG_DUPLICATE ? Result_t(Ferro::RESULT_OK) : result;
}

Result_t KeyMessageStore::AddFolder(const std::string& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) return Ferro::RESULT_NOT_FOUND;
  AddFolderEntries(folder, 1);
  return Ferro::RESULT_OK;
}

void KeyMessageStore::AddFolderEntries(const std::string& folder, unsigned depth) {
  if (depth > MaxFolderDepth) {
    AddProblem(folder, FindingID::KdmForm, "The folder lies in more than 32 others.");
    return;
  }
  std::error_code error;
  std::vector<fs::directory_entry> entries;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) entries.push_back(*it);
  if (error) AddProblem(folder, FindingID::KdmForm, "The folder cannot be read: " + error.message() + '.');
  std::ranges::sort(entries);
  for (const fs::directory_entry& entry : entries) {
    const std::string path = entry.path().string();
    const fs::file_status status = entry.symlink_status(error);
    if (fs::is_directory(status)) AddFolderEntries(path, depth + 1);
    if (!fs::is_regular_file(status)) continue;
    if (HasExtension(path, "zip")) static_cast<void>(AddFile(path));  // a problem where it fails
    if (!HasExtension(path, "xml")) continue;
    // A larger document is no key message, and perhaps a composition.
    std::string xml;
    const Result_t result = Ferro::ReadFileIntoString(path, xml, KeyMessage::MaxSize);
    if (result == Ferro::RESULT_TOOLARGE) continue;
    if (result.Failure()) AddProblem(path, FindingID::KdmForm, result.Label());
    if (LooksLikeMessage(xml)) static_cast<void>(AddMessage(path, xml));
  }
}

}  // namespace Sigil
