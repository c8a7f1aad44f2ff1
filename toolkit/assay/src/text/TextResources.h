// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFile.h"

#include <Cairn/TimedTextContent.h>
#include <QUIRE/FrameDecryption.h>
#include <QUIRE/TimedTextReader.h>

#include <optional>
#include <string>
#include <vector>

namespace Sigil {
class KeyRing;
}

namespace Assay {

inline constexpr ui64_t MaxTextPart = 64 * 1024 * 1024;  // bytes of a document, font or picture that is looked at

/// Where the fonts and pictures of a text lie. Nothing is held open between two calls but track files.
class ITextResources {
 public:
  ITextResources() = default;
  ITextResources(const ITextResources&) = delete;
  ITextResources& operator=(const ITextResources&) = delete;
  virtual ~ITextResources() = default;

  [[nodiscard]] virtual bool Has(const Cairn::TextResource& resource) = 0;
  /// Its bytes; no value where it is not there, cannot be read, or is longer than MaxTextPart.
  [[nodiscard]] virtual std::optional<std::vector<ui8_t>> Read(const Cairn::TextResource& resource) = 0;
};

/// The files beside an Interop document.
class FolderResources final : public ITextResources {
 public:
  /// @param root      files lie inside of this folder, links followed
  /// @param document  the document's path, from the folder on
  FolderResources(const std::string& root, const std::string& document);

  [[nodiscard]] bool Has(const Cairn::TextResource& resource) override;
  [[nodiscard]] std::optional<std::vector<ui8_t>> Read(const Cairn::TextResource& resource) override;
  /// Bytes of the file; no value where there is none.
  [[nodiscard]] std::optional<ui64_t> Size(const Cairn::TextResource& resource) const;

 private:
  /// The file that a path leads to; empty where there is none.
  [[nodiscard]] std::string Find(const std::string& path) const;

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
    TooLarge,   ///< a part of it is longer than MaxTextPart
  };

  /// @param keys  may be null
  [[nodiscard]] State Open(const TrackFile& file, const Sigil::KeyRing* keys);
  /// The document's text. @return as QUIRE's reader.
  [[nodiscard]] QUIRE::Result_t ReadDocument(std::string& text);

  [[nodiscard]] bool Has(const Cairn::TextResource& resource) override;
  [[nodiscard]] std::optional<std::vector<ui8_t>> Read(const Cairn::TextResource& resource) override;
  [[nodiscard]] const QUIRE::TimedText::TimedTextDescriptor& Descriptor() const { return m_Descriptor; }

 private:
  QUIRE::TimedText::MXFReader m_Reader;
  QUIRE::TimedText::TimedTextDescriptor m_Descriptor;
  QUIRE::FrameContexts m_Contexts;
  bool m_IsEncrypted = false;
};

}  // namespace Assay
