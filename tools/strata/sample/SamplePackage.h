// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SampleSeed.h"
#include "SampleSigner.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/FileType.h>
#include <Cairn/PackingList.h>

#include <string>

namespace Tool {

/// Issuer and creator of all documents of a sample show.
inline constexpr char SampleIssuer[] = "Strata";

/// One package of a sample show: a folder with the files of one composition, packing list, asset map and volume index.
/// Every call throws std::runtime_error where a file cannot be read or written.
class SamplePackage {
 public:
  /// Creates the folder, whose parent exists. All identifiers follow from `seed` and `title`.
  /// @param signer  signs composition and packing list, and outlives the package; null leaves them unsigned.
  SamplePackage(const SampleSeed& seed, std::string folder, std::string title, Cairn::DCPFormat_t flavour,
                const SampleSigner* signer = nullptr);

  [[nodiscard]] std::string PathOf(const std::string& filename) const;
  /// Takes a file of the folder, or of one in it, into packing list and asset map. Returns its digest.
  Ferro::SHA1 Add(const Ferro::UUID& id, const std::string& filename, Cairn::FileType_t type);
  void AddComposition(const Cairn::CompositionPlaylist& composition, const std::string& filename);
  /// Writes packing list, asset map and volume index.
  void Finish();

 private:
  void AddToMap(const Ferro::UUID& id, const std::string& filename, bool is_packing_list);
  template <class DocumentT>
  [[nodiscard]] std::string Encode(const DocumentT& document, const std::string& filename) const;
  void Write(const std::string& filename, const std::string& text) const;
  void WriteSigned(const std::string& filename, std::string text) const;

  SampleSeed m_Seed;
  std::string m_Folder;
  std::string m_Title;
  Cairn::DCPFormat_t m_Flavour;
  const SampleSigner* m_Signer;
  Cairn::PackingList m_PackingList;
  Cairn::AssetMap m_AssetMap;
};

}  // namespace Tool
