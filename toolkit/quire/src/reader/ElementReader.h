// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "crypto/TripletItems.h"

#include <QUIRE/EssenceType.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/Result.h>

#include <Ferro/FileReader.h>
#include <Ferro/UUID.h>

#include <optional>
#include <span>

namespace QUIRE {

class AESDecContext;
class HMACContext;

/// The contexts a caller passed with a request; either may be null.
struct CryptoContexts {
  AESDecContext* Decryption = nullptr;
  HMACContext* Integrity = nullptr;
};

/// The number of a triplet; none where a file has no numbers.
using Sequence = std::optional<ui64_t>;

/// Which keys count as the element looked for.
enum class ElementKeys { Essence, GenericStream };

/// Where an element, or the encrypted triplet that stands for it, lies in the file.
struct ElementPlace {
  ui64_t Position = 0;     ///< of the key
  ui64_t ValueAt = 0;      ///< of the bytes to deliver: the element's value, or the encrypted source value
  ui64_t ValueLength = 0;  ///< how many
  ui64_t End = 0;          ///< first byte after the KLV
  std::optional<TripletHead> Triplet;

  /// Bytes that a reader of the plaintext, or of the value as stored, gets.
  [[nodiscard]] ui64_t DeliveredLength(bool decrypt) const {
    return decrypt && Triplet ? Triplet->SourceLength : ValueLength;
  }
  [[nodiscard]] ui64_t TailLength() const { return End - ValueAt - ValueLength; }
};

/// Reads single essence elements, in clear and encrypted, straight into frame buffers. Once it has seen how many bytes
/// precede and follow the values in a file, one positioned read brings in a whole element. One thread at a time.
class ElementReader {
 public:
  ElementReader(const Ferro::FileReader& file, EssenceType_t type, const Ferro::UUID& asset_id, bool uses_hmac);

  /// Finds the element at `position`, passing over fill and system items. Everything up to its end lies before `limit`.
  /// @return RESULT_OK; RESULT_NOT_FOUND, without a log line, when `position` equals `limit`; RESULT_FORMAT with one log
  /// line; what the file's reader returns.
  [[nodiscard]] Result_t Locate(ui64_t position, ui64_t limit, ElementKeys keys, ElementPlace& place) const;

  /// Reads an element that was located. `sequence` is the number its triplet should bear, none in a file without numbers.
  /// @return RESULT_OK; RESULT_SMALLBUF, with `frame` unchanged; RESULT_CHECKFAIL, RESULT_HMACFAIL, RESULT_SEQUENCE,
  /// RESULT_FORMAT with one log line; what the file's reader returns. On failures but the first `frame` holds no frame. Its
  /// number is not set.
  [[nodiscard]] Result_t Read(const ElementPlace& place, Sequence sequence, const CryptoContexts& contexts,
                              FrameBuffer& frame) const;
  /// The sequence number in the integrity pack of an element that was located, not verified; none where it has none.
  /// @return RESULT_OK; RESULT_FORMAT with one log line; what the file's reader returns.
  [[nodiscard]] Result_t ReadSequence(const ElementPlace& place, Sequence& sequence) const;

  /// Reads the element in [position, limit), one that fills this range but for a constant number of bytes around its
  /// value, and fill after it. Remembers how many for the next call. Results are those of Locate and Read.
  [[nodiscard]] Result_t ReadWhole(ui64_t position, ui64_t limit, Sequence sequence, const CryptoContexts& contexts,
                                   FrameBuffer& frame);

 private:
  struct ScatterRead;

  [[nodiscard]] bool ReadPredicted(ui64_t position, ui64_t limit, const CryptoContexts& contexts, FrameBuffer& frame,
                                   ScatterRead& scatter, ElementPlace& place) const;
  [[nodiscard]] Result_t Deliver(const ElementPlace& place, Sequence sequence, const CryptoContexts& contexts,
                                 ScatterRead& scatter, FrameBuffer& frame) const;
  [[nodiscard]] Result_t Verify(const ElementPlace& place, Sequence sequence, bool decrypted, HMACContext& integrity,
                                const ScatterRead& scatter, const FrameBuffer& frame) const;
  [[nodiscard]] Result_t CheckKey(const ElementPlace& place, const ScatterRead& scatter,
                                  AESDecContext& decryption) const;
  [[nodiscard]] Result_t Fail(Result_t result, const char* what, ui64_t position) const;

  const Ferro::FileReader& m_File;
  const EssenceType_t m_Type;
  const Ferro::UUID m_AssetID;
  const bool m_UsesHMAC;
  ui64_t m_Prefix = 0;       // bytes before the value in the element read last; 0 before the first
  ui64_t m_Suffix = 0;       // bytes after its value, when it was encrypted
  bool m_Encrypted = false;  // it was
};

}  // namespace QUIRE
