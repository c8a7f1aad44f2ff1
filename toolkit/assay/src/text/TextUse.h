// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextFile.h"
#include "document/Package.h"
#include "file/CompositionFiles.h"

#include <deque>
#include <map>
#include <string>

namespace Assay {

/// The texts of a check. Each is read once, whatever uses it. One thread at a time.
class TextFiles {
 public:
  /// Packages and keys must outlive this.
  TextFiles(const std::deque<Package>& packages, const TextLook& look) : m_Packages(packages), m_Look(look) {}

  /// The text of an asset; null where no file of it is at hand.
  [[nodiscard]] const TextFile* Read(const AssetFile& asset);
  /// Adds what is wrong with the text of an asset by itself, unless it was told before.
  void Tell(const AssetFile& asset, FindingList& findings);

 private:
  /// What a text is read as. A document of its own goes by the name and the rate that it is played with.
  struct Key {
    std::string Path;  // whole
    UUID ID;
    i64_t Numerator = 0;
    i64_t Denominator = 0;

    friend auto operator<=>(const Key&, const Key&) = default;
  };

  struct Entry {
    TextFile Text;
    bool IsTold = false;
    bool IsToldAsSubtitle = false;
    bool IsToldAsCaption = false;
  };

  [[nodiscard]] Entry* Find(const AssetFile& asset);
  [[nodiscard]] TextFile ReadDocument(const AssetFile& asset) const;

  const std::deque<Package>& m_Packages;
  TextLook m_Look;
  std::map<Key, Entry> m_Files;
};

/// text-*, caption-*, and what of reel-text-language, title-subtitle and mic-invalid texts tell.
void FindInTexts(const CompositionFiles& composition, TextFiles& texts, FindingList& findings);

}  // namespace Assay
