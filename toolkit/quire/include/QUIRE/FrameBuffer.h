// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <Ferro/UUID.h>

#include <array>
#include <span>
#include <string>

namespace QUIRE {

/// The frame number of a buffer that holds no frame.
inline constexpr ui32_t NoFrame = 0xffffffff;

/// One edit unit's bytes and what is known of them.
///
/// The memory is allocated by Capacity and by nothing else: readers fill what is there and never make it grow (reading
/// timed text is the exception, and says so). Owned by its creator; one thread at a time. The bytes are those of the
/// essence element without key and length (ST 336), or, for encrypted essence that was not decrypted, the encrypted
/// source value: initialization vector, check value, clear bytes, ciphertext (ST 429-6, 7.3). VerifyAndDecrypt in
/// FrameDecryption.h goes on from there.
class QUIRE_API FrameBuffer {
 public:
  FrameBuffer() = default;
  FrameBuffer(const FrameBuffer&) = delete;
  FrameBuffer& operator=(const FrameBuffer&) = delete;
  ~FrameBuffer();

  /// Allocates room for exactly `bytes` bytes, uninitialised, and drops the frame held. Asking for the present capacity
  /// changes nothing; asking for 0 frees the memory.
  /// @return RESULT_OK, or RESULT_ALLOC with the buffer unchanged.
  [[nodiscard]] Result_t Capacity(ui32_t bytes);
  [[nodiscard]] ui32_t Capacity() const { return m_Capacity; }

  /// The buffer's memory, Capacity() bytes; null when that is 0. Valid until the next call of Capacity.
  [[nodiscard]] ui8_t* Data() { return m_Data; }
  [[nodiscard]] const ui8_t* Data() const { return m_Data; }
  [[nodiscard]] const ui8_t* RoData() const { return m_Data; }

  /// Bytes filled. Asserts that they do not exceed the capacity.
  void Size(ui32_t bytes);
  [[nodiscard]] ui32_t Size() const { return m_Size; }

  /// The edit unit in the track file, from 0; NoFrame when none is held.
  void FrameNumber(ui32_t number) { m_FrameNumber = number; }
  [[nodiscard]] ui32_t FrameNumber() const { return m_FrameNumber; }

  /// Length in bytes before encryption; 0 for essence that was never encrypted or has been decrypted.
  void SourceLength(ui32_t bytes) { m_SourceLength = bytes; }
  [[nodiscard]] ui32_t SourceLength() const { return m_SourceLength; }

  /// How many leading bytes of the source are in clear while the rest is encrypted; 0 where SourceLength is.
  void PlaintextOffset(ui32_t bytes) { m_PlaintextOffset = bytes; }
  [[nodiscard]] ui32_t PlaintextOffset() const { return m_PlaintextOffset; }

  /// The longest integrity pack, in bytes: three lengths of 9, and 16, 8 and 20 bytes.
  static constexpr size_t MaxIntegrityPack = 3 * 9 + 16 + 8 + 20;
  /// What follows the encrypted source value in the file (ST 429-6, 7.10), for whoever verifies the frame later: track
  /// file identifier, sequence number and integrity code, each with its length. Of more than MaxIntegrityPack bytes, which
  /// no sound file has, the first are kept. Empty for essence in clear and where the file has none.
  void IntegrityPack(std::span<const ui8_t> pack);
  [[nodiscard]] std::span<const ui8_t> IntegrityPack() const { return {m_IntegrityPack.data(), m_IntegrityPackSize}; }

  /// Drops the frame held and keeps the memory: size, source length and plaintext offset 0, no integrity pack, frame number
  /// NoFrame.
  void Clear();

 private:
  ui8_t* m_Data = nullptr;  // owned; m_Capacity bytes
  ui32_t m_Capacity = 0;
  ui32_t m_Size = 0;
  ui32_t m_FrameNumber = NoFrame;
  ui32_t m_SourceLength = 0;
  ui32_t m_PlaintextOffset = 0;
  std::array<ui8_t, MaxIntegrityPack> m_IntegrityPack{};
  size_t m_IntegrityPackSize = 0;
};

namespace JP2K {

/// One JPEG 2000 codestream (ST 422).
class FrameBuffer : public QUIRE::FrameBuffer {};

/// The two codestreams of a stereoscopic edit unit (ST 429-10).
class SFrameBuffer {
 public:
  FrameBuffer Left;
  FrameBuffer Right;
};

}  // namespace JP2K

namespace MPEG2 {

/// One coded picture with the headers before it (ST 381-1), in stored order.
class FrameBuffer : public QUIRE::FrameBuffer {
 public:
  /// Flags of the picture's index entry (ST 377-1, 11.2): 0x80 random access, 0x40 sequence header, 0x20 forward and
  /// 0x10 backward prediction; 0 when the file has no index.
  void IndexFlags(ui8_t flags) { m_IndexFlags = flags; }
  [[nodiscard]] ui8_t IndexFlags() const { return m_IndexFlags; }
  /// From display position to stored position, in edit units.
  void TemporalOffset(i8_t offset) { m_TemporalOffset = offset; }
  [[nodiscard]] i8_t TemporalOffset() const { return m_TemporalOffset; }

 private:
  ui8_t m_IndexFlags = 0;
  i8_t m_TemporalOffset = 0;
};

}  // namespace MPEG2

namespace PCM {

/// One edit unit of channel-interleaved little-endian samples (ST 382), all channels of one sample together.
class FrameBuffer : public QUIRE::FrameBuffer {};

}  // namespace PCM

namespace DCData {

/// One edit unit of auxiliary data (ST 429-14) or of immersive audio (ST 429-18).
class FrameBuffer : public QUIRE::FrameBuffer {};

}  // namespace DCData

namespace TimedText {

/// A timed-text document or one of its ancillary resources (ST 429-5).
class FrameBuffer : public QUIRE::FrameBuffer {
 public:
  /// The document's or the resource's identifier.
  void AssetID(const Ferro::UUID& id) { m_AssetID = id; }
  [[nodiscard]] const Ferro::UUID& AssetID() const { return m_AssetID; }
  /// "text/xml" for a document; what the track file says for a resource.
  void MIMEType(const std::string& type) { m_MIMEType = type; }
  [[nodiscard]] const std::string& MIMEType() const { return m_MIMEType; }

 private:
  Ferro::UUID m_AssetID;
  std::string m_MIMEType;
};

}  // namespace TimedText

}  // namespace QUIRE
