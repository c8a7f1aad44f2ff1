// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/LabelSet.h>
#include <QUIRE/UL.h>

#include <Ferro/UUID.h>

#include <string>

namespace QUIRE {

/// Who made a track file, what it is called, and how it is encrypted.
struct WriterInfo {
  Ferro::UUID ProductUUID;
  /// Identifies the track file; the name packing lists and playlists know it by (ST 429-3, 6.3).
  Ferro::UUID AssetUUID;
  std::string ProductVersion;
  std::string CompanyName;
  std::string ProductName;
  LabelSet_t LabelSetType = LS_MXF_UNKNOWN;

  bool EncryptedEssence = false;
  /// True when each encrypted element carries a message integrity code (ST 429-6, 7.10).
  bool UsesHMAC = false;
  /// The cryptographic context and the key; no value unless the essence is encrypted.
  Ferro::UUID ContextID;
  Ferro::UUID CryptographicKeyID;

  friend bool operator==(const WriterInfo&, const WriterInfo&) = default;
};

/// The algorithms that a track file says its essence is encrypted and authenticated by (ST 429-6, 8). LabelMeaning tells
/// what they mean.
struct EncryptionInfo {
  UL CipherAlgorithm;       ///< no value unless the essence is encrypted
  UL MICAlgorithm;          ///< no value without integrity codes
  bool KnowsCipher = true;  ///< false: the essence cannot be decrypted
  bool KnowsMIC = true;     ///< false: its integrity codes cannot be verified

  friend bool operator==(const EncryptionInfo&, const EncryptionInfo&) = default;
};

}  // namespace QUIRE
