// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Export.h>
#include <Sigil/KeyMessage.h>
#include <Sigil/Result.h>

#include <Ferro/LogSink.h>

#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Sigil {

/// The key messages at hand: read from the folders and archives in which they arrive, other servers' among them. One thread at
/// a time.
class SIGIL_API KeyMessageStore {
 public:
  static constexpr size_t MaxArchiveSize = 64 * 1024 * 1024;  // bytes: of the file, and of all that is in it, unpacked
  static constexpr size_t MaxArchiveEntries = 10'000;
  static constexpr unsigned MaxFolderDepth = 32;  // folders inside each other

  struct Entry {
    std::string Source;  ///< the file; for one in an archive "archive.zip: its name there"
    KeyMessage Message;
  };
  /// Something that was to be read and could not.
  struct Problem {
    std::string Source;
    Finding What;  ///< KdmForm or KdmArchive
  };

  /// @param context  for the signatures of all messages.
  explicit KeyMessageStore(SignatureContext context = {}) : m_Context(std::move(context)) {}

  /// Adds what lies in a folder and in the folders below it, in the order of names: files "*.xml" that hold key messages, and
  /// those in files "*.zip". Other documents are passed over, links are not followed. What cannot be read is a problem.
  /// @return RESULT_OK; Ferro::RESULT_NOT_FOUND where there is no such folder.
  [[nodiscard]] Result_t AddFolder(const std::string& folder);
  /// Adds a file, of either kind, whatever its name: an archive is told by its content. An archive is taken whole or not at
  /// all.
  /// @return RESULT_OK, also where it holds no messages or only such that are there already; RESULT_SG_ARCHIVE for an archive
  /// that is refused; otherwise as Ferro::FileReader or KeyMessage::Read. Failures are problems, too.
  [[nodiscard]] Result_t AddFile(const std::string& filename);
  /// Adds a message.
  /// @return as KeyMessage::Read, failures being problems, too; RESULT_SG_DUPLICATE, which is none, for the same bytes again.
  [[nodiscard]] Result_t AddMessage(const std::string& source, const std::string& xml);

  /// In the order in which they were added; references stay valid.
  [[nodiscard]] const std::deque<Entry>& Entries() const { return m_Entries; }
  [[nodiscard]] const std::vector<Problem>& Problems() const { return m_Problems; }

  /// What serves a composition best.
  struct Choice {
    const Entry* Best = nullptr;  ///< null where no message is for the composition
    FindingList Findings;         ///< what CheckKeyMessage says of it
  };
  /// Chooses a message for the composition of `context` (which must be given: assertion): one without errors, of these with the
  /// fewest warnings, of these the one that is valid longest, of these the one that was issued last. Where none is without
  /// errors, the one that is nearest to it: valid later, then valid before, then of other faults.
  /// @return RESULT_OK; RESULT_SG_NO_MESSAGE, where none is for the composition; RESULT_SG_NO_KEY, where all that the best one
  /// lacks is a key; RESULT_SG_NO_VALID_MESSAGE, where it has other errors.
  [[nodiscard]] Result_t FindBest(const MessageContext& context, Choice& out) const;

 private:
  void AddProblem(const std::string& source, FindingID id, const std::string& text);
  [[nodiscard]] Result_t AddArchive(const std::string& filename, std::string_view bytes);
  void AddFolderEntries(const std::string& folder, unsigned depth);

  const SignatureContext m_Context;
  std::deque<Entry> m_Entries;
  std::vector<Problem> m_Problems;
  std::set<SHA1> m_Digests;  // of the messages' bytes
};

}  // namespace Sigil
