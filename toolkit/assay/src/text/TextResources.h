// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <Cairn/TimedTextContent.h>
#include <QUIRE/FrameDecryption.h>
#include <QUIRE/TimedTextReader.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Sigil {
class KeyRing;
}

namespace Assay {

inline constexpr ui64_t MaxTextDocument = 16 * 1024 * 1024;  // bytes of a document that is looked at
inline constexpr ui64_t MaxTextPart = 64 * 1024 * 1024;      // the same of a font or picture

/// Where the fonts and pictures of a text lie. Nothing is held open between two calls but track files.
class ITextResources {
 public:
  ITextResources() = default;
  ITextResources(const ITextResources&) = delete;
  ITextResources& operator=(const ITextResources&) = delete;
  virtual ~ITextResources() = default;

  /// Names what the resource is stored as, the same for all resources that are one; empty: it is not there.
  [[nodiscard]] virtual std::string Find(const Cairn::TextResource& resource) const = 0;
  /// Reads what Find found. @return RESULT_TOOLARGE for more than MaxTextPart; otherwise as the reader of the file.
  [[nodiscard]] virtual QUIRE::Result_t Read(const Cairn::TextResource& resource, std::vector<ui8_t>& bytes) = 0;
  /// How long it is at most, without reading it; 0 where it is not there.
  [[nodiscard]] virtual ui64_t SizeBound(const Cairn::TextResource& resource) const = 0;
};

/// The files beside an Interop document.
class FolderResources final : public ITextResources {
 public:
  /// @param root      files lie inside of this folder, links followed
  /// @param document  the document's path, from the folder on
  FolderResources(const std::string& root, const std::string& document);

  /// The file's path, links followed.
  [[nodiscard]] std::string Find(const Cairn::TextResource& resource) const override;
  [[nodiscard]] QUIRE::Result_t Read(const Cairn::TextResource& resource, std::vector<ui8_t>& bytes) override;
  [[nodiscard]] ui64_t SizeBound(const Cairn::TextResource& resource) const override;

 private:
  std::string m_Root;    // resolved
  std::string m_Folder;  // of the document
};

/// A track file of timed text: the document, and what goes with it.
class TrackFileText final : public ITextResources {
 public:
  enum class State {
    Open,
    Unreadable,
    Encrypted,  ///< and there is no key
    TooLarge,   ///< the document is longer than MaxTextDocument
  };

  /// @param keys  may be null
  [[nodiscard]] State Open(const TrackFile& file, const Sigil::KeyRing* keys);
  /// The document's text. @return as QUIRE's reader.
  [[nodiscard]] QUIRE::Result_t ReadDocument(std::string& text);

  /// The stream that holds it.
  [[nodiscard]] std::string Find(const Cairn::TextResource& resource) const override;
  [[nodiscard]] QUIRE::Result_t Read(const Cairn::TextResource& resource, std::vector<ui8_t>& bytes) override;
  [[nodiscard]] ui64_t SizeBound(const Cairn::TextResource& resource) const override;
  [[nodiscard]] const QUIRE::TimedText::TimedTextDescriptor& Descriptor() const { return m_Descriptor; }

 private:
  void NoteStreams(ui64_t file_size);

  QUIRE::TimedText::MXFReader m_Reader;
  QUIRE::TimedText::TimedTextDescriptor m_Descriptor;
  QUIRE::FrameContexts m_Contexts;
  bool m_IsEncrypted = false;
  std::map<ui32_t, ui64_t> m_Lengths;  // of streams: bytes of their partitions
  std::map<UUID, ui32_t> m_Streams;    // of the resources that the descriptor lists
};

}  // namespace Assay
