// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Crypto.h>
#include <QUIRE/Export.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/Result.h>
#include <QUIRE/WriterInfo.h>

#include <Ferro/UUID.h>

#include <optional>
#include <span>
#include <string>

namespace QUIRE {

// For hosts that take frames as they are stored and decrypt them themselves: what is to be known of the file, once, and
// then each frame.
//
//     QUIRE::TrackEncryption track;
//     result = QUIRE::ReadTrackEncryption(filename, track);             // once for each file
//     ...                                                               // keys into contexts, for each thread
//     result = QUIRE::VerifyAndDecrypt(track, frame, track.SequenceNumber(position), &contexts, picture);

/// One of the two pictures of a stereoscopic edit unit (ST 429-10). Other essence counts as left.
enum class Eye : ui8_t { Left, Right };

/// How the encrypted triplets of a file are numbered (ST 429-6, 7.10), n being the edit unit from 0.
enum class SequenceRule : ui8_t {
  OnePerEditUnit,          ///< n + 1: the rule of all files but stereoscopic ones
  OnePerTriplet,           ///< left 2n + 1, right 2n + 2: the rule of stereoscopic files
  OnePerTripletFromZero,   ///< left 2n, right 2n + 1
  OnePerEditUnitFromZero,  ///< n, both eyes
  AlwaysOne,               ///< 1 throughout: the order is not protected
  AlwaysZero,              ///< 0 throughout: nor is it here
  NoNumbers                ///< none at all: nor is it here
};

/// What a track file says about its encryption: all it takes, beside the key, to decrypt its frames. A plain value.
struct TrackEncryption {
  Ferro::UUID AssetID;
  bool IsEncrypted = false;
  Ferro::UUID KeyID;                     ///< no value unless the essence is encrypted
  LabelSet_t LabelSet = LS_MXF_UNKNOWN;  ///< decides how the integrity key is derived
  bool UsesHMAC = false;                 ///< each frame has an integrity pack
  EncryptionInfo Algorithms;
  bool IsStereoscopic = false;
  SequenceRule Sequence = SequenceRule::OnePerEditUnit;

  /// The number that a frame's triplet bears where it is in its place; no value where the file has no numbers.
  [[nodiscard]] QUIRE_API std::optional<ui64_t> SequenceNumber(ui32_t edit_unit, Eye eye = Eye::Left) const;
  /// False for a stereoscopic file with numbers of another rule than the standard's. Its frames are held against that rule.
  [[nodiscard]] QUIRE_API bool HasStandardSequence() const;

  friend bool operator==(const TrackEncryption&, const TrackEncryption&) = default;
};

/// Reads what a track file of any kind says about its encryption. A stereoscopic file with integrity packs is opened
/// further: its first and last edit unit tell its SequenceRule. Any thread may call it.
/// @return RESULT_OK, also for plain essence; otherwise as TrackFileReader::OpenRead; on failure `out` is unchanged.
[[nodiscard]] QUIRE_API Result_t ReadTrackEncryption(const std::string& filename, TrackEncryption& out);

/// A content key, ready for use in one thread.
struct FrameContexts {
  AESDecContext Decryption;
  HMACContext Integrity;

  /// Takes the content key. @return as AESDecContext::InitKey and HMACContext::InitKey.
  [[nodiscard]] QUIRE_API Result_t InitKey(std::span<const ui8_t, KeyLen> key, LabelSet_t label_set);
};

/// Verifies a frame that a reader or a track delivered as it is stored, and decrypts it. Allocates nothing. Any number of
/// threads may call it, each with contexts of its own.
///
/// Tested in this order: the key, by the check value; the integrity pack, where the file has them: its code, the track
/// file's identifier and the sequence number. Nothing is decrypted before all of that holds.
/// @param frame            with its integrity pack; never changed.
/// @param sequence_number  the one that the frame should have: track.SequenceNumber(edit unit, eye). A resource of timed
///                         text has 2 and the number, from 0, of those before it in the descriptor's list.
/// @param contexts         null where there is no key.
/// @param out              receives frame.SourceLength() bytes, apart from `frame`; may be longer. Unchanged by every
///                         result but RESULT_OK and RESULT_CRYPT_INIT.
/// @return RESULT_OK; RESULT_NOT_ENCRYPTED for a frame in clear, which is to be used as it is; RESULT_DECRYPT_CTX without
/// contexts; RESULT_INIT for contexts without a key; RESULT_ALGORITHM for a file by other algorithms; RESULT_FORMAT where
/// the lengths contradict each other or the pack is malformed; RESULT_SMALLBUF; RESULT_CHECKFAIL for a wrong key;
/// RESULT_HMACFAIL for an altered frame, one of another track file, one without a code where the file promises one, and one
/// in clear there; RESULT_SEQUENCE for a frame from another place in the file; RESULT_CRYPT_INIT.
[[nodiscard]] QUIRE_API Result_t VerifyAndDecrypt(const TrackEncryption& track, const FrameBuffer& frame,
                                                  std::optional<ui64_t> sequence_number, FrameContexts* contexts,
                                                  std::span<ui8_t> out);
/// The same tests without decryption.
[[nodiscard]] QUIRE_API Result_t VerifyFrame(const TrackEncryption& track, const FrameBuffer& frame,
                                             std::optional<ui64_t> sequence_number, FrameContexts* contexts);

}  // namespace QUIRE
