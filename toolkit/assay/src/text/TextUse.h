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
  std::map<std::string, Entry> m_Files;  // by their whole path
};

/// text-*, caption-*, and what of reel-text-language, title-subtitle and mic-invalid texts tell.
void FindInTexts(const CompositionFiles& composition, TextFiles& texts, FindingList& findings);

}  // namespace Assay
