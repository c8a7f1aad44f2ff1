// SPDX-License-Identifier: BSD-3-Clause
#include "store/Archive.h"

#include "base/Quoted.h"

#include <Sigil/KeyMessageStore.h>

#include <Ferro/Path.h>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <array>
#include <memory>

namespace Sigil {
namespace {

using std::string;

struct ArchiveCloser {
  void operator()(archive* object) const { archive_read_free(object); }
};
using ArchivePointer = std::unique_ptr<archive, ArchiveCloser>;

/// Unpacks an archive from front to back.
class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) : m_Archive(archive_read_new()) {
    archive_read_support_format_zip(m_Archive.get());
    m_IsOpen = archive_read_open_memory(m_Archive.get(), bytes.data(), bytes.size()) == ARCHIVE_OK;
  }

  string Unpack(std::vector<ArchivedDocument>& out) {
    if (!m_IsOpen) return "it is damaged";
    archive_entry* entry = nullptr;
    int state = ARCHIVE_OK;
    for (size_t count = 0; (state = archive_read_next_header(m_Archive.get(), &entry)) != ARCHIVE_EOF; ++count) {
      if (state != ARCHIVE_OK && state != ARCHIVE_WARN) return "it is damaged";
      if (count == KeyMessageStore::MaxArchiveEntries) return "it has more than 10000 entries";
      if (string reason = Admit(entry); !reason.empty()) return reason;
      if (!HasExtension(m_Name, "xml") || archive_entry_filetype(entry) != AE_IFREG) continue;
      out.push_back({m_Name, {}});
      if (string reason = ReadText(entry, out.back().Text); !reason.empty()) return reason;
    }
    return {};
  }

 private:
  /// Names of either system's kind.
  string Admit(archive_entry* entry) {
    const char* name = archive_entry_pathname_utf8(entry);
    if (name == nullptr) name = archive_entry_pathname(entry);
    if (name == nullptr) return "it has an entry without name";
    m_Name = name;
    string path = m_Name;
    std::ranges::replace(path, '\\', '/');
    const bool has_drive = path.size() > 1 && path[1] == ':';
    if (!Ferro::PathStaysInside(path) || has_drive) return "its entry " + Quoted(m_Name) + " leaves the folder";
    if (archive_entry_symlink(entry) != nullptr || archive_entry_hardlink(entry) != nullptr)
      return "its entry " + Quoted(m_Name) + " is a link";
    return HasExtension(m_Name, "zip") ? "it has another archive in it, " + Quoted(m_Name) : string();
  }

  string ReadText(archive_entry* entry, string& text) {
    if (archive_entry_is_encrypted(entry) == 1) return {};
    std::array<char, 16'384> piece{};
    while (text.size() <= KeyMessage::MaxSize) {
      const la_ssize_t count = archive_read_data(m_Archive.get(), piece.data(), piece.size());
      if (count < 0) return "its entry " + Quoted(m_Name) + " is damaged";
      if (count == 0) break;
      text.append(piece.data(), static_cast<size_t>(count));
      m_Unpacked += static_cast<size_t>(count);
      if (m_Unpacked > KeyMessageStore::MaxArchiveSize) return "it has more than 64 MiB in it";
    }
    return IsArchive(text) ? "it has another archive in it, " + Quoted(m_Name) : string();
  }

  ArchivePointer m_Archive;
  bool m_IsOpen = false;
  string m_Name;  // of the entry that is read
  size_t m_Unpacked = 0;
};

}  // namespace

string UnpackDocuments(std::string_view archive, std::vector<ArchivedDocument>& out) {
  std::vector<ArchivedDocument> documents;
  string reason = Unpacker(archive).Unpack(documents);
  if (reason.empty()) out = std::move(documents);
  return reason;
}

bool IsArchive(std::string_view bytes) {
  return bytes.starts_with("PK\x03\x04") || bytes.starts_with("PK\x05\x06");
}

bool HasExtension(std::string_view name, std::string_view lower_case) {
  const string extension = Ferro::PathExtension(name);
  return std::ranges::equal(extension, lower_case,
                            [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == b; });
}

}  // namespace Sigil
