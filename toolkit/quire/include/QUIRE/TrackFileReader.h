// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/EssenceType.h>
#include <QUIRE/Export.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/RIP.h>
#include <QUIRE/Result.h>
#include <QUIRE/WriterInfo.h>

#include <Ferro/mem_ptr.h>

#include <string>

namespace QUIRE {

class AESDecContext;
class HMACContext;
class h__Reader;
enum class Eye : ui8_t;
struct TrackEncryption;

/// Where the bytes of a frame lie in its file, for who reads the file by himself: a digest of all of it, and the frames, out
/// of one reading. A plain value.
struct StoredFrame {
  ui64_t Offset = 0;  ///< of the bytes that ReadFrame delivers without contexts
  ui64_t Length = 0;
  ui64_t PackLength = 0;  ///< of the integrity pack right behind them; what follows an encrypted frame
  bool IsEncrypted = false;
  ui64_t SourceLength = 0;     ///< as FrameBuffer has it
  ui64_t PlaintextOffset = 0;  ///< as FrameBuffer has it
  friend bool operator==(const StoredFrame&, const StoredFrame&) = default;
};

/// What the readers of all kinds have in common. Only the kinds themselves are created.
///
/// A reader opens what the field holds: SMPTE and Interop files, open or incomplete headers, a missing or wrong random
/// index pack or index, cut files. What is out of order is logged once through the default log sink, with the file, the
/// thing and the offset. Opening reads the header; the random index pack and the index are read when the first frame is
/// asked for. A file is never written.
///
/// Where memory runs out, functions that return results return RESULT_ALLOC, and may be called again.
///
/// One reader serves one thread at a time; any number of readers may have one file open.
///
/// ReadFrame of the kinds takes
///   frame_number  edit units from the start of the track file, below the container duration;
///   frame         receives the bytes, and never grows;
///   decryption    with it, encrypted essence is delivered in clear; without, as it is stored;
///   integrity     with it, the integrity code of encrypted essence is verified, whether or not the essence is decrypted:
///                 it covers the stored bytes, the track file's identifier and the sequence number (ST 429-6, 7.10).
///                 Of a stereoscopic pair each eye has a number: see TrackEncryption::HasStandardSequence.
/// and returns RESULT_OK; RESULT_INIT when no file is open; RESULT_RANGE at and beyond the container duration;
/// RESULT_SMALLBUF when the frame exceeds the buffer's capacity; RESULT_CUT where the file does not hold an edit unit below
/// the container duration; RESULT_CHECKFAIL for a wrong key; RESULT_HMACFAIL for an altered frame, one of another file, or
/// one in clear where the file promises codes; RESULT_SEQUENCE for a frame of another place in the file, and where one eye
/// is missing; RESULT_ALGORITHM when a context is given and the file names an algorithm that is not known; RESULT_INIT for a
/// context without a key; RESULT_FORMAT where the file is broken; RESULT_READFAIL. RESULT_RANGE and RESULT_SMALLBUF leave
/// `frame` unchanged, and so does a reader that is not open; after every other failure it holds no frame.
class QUIRE_API TrackFileReader {
 public:
  TrackFileReader(const TrackFileReader&) = delete;
  TrackFileReader& operator=(const TrackFileReader&) = delete;

  /// Opens a track file of the reader's kind; one that is open already is closed first.
  /// @return RESULT_OK; the failures of Ferro::FileReader::OpenRead; RESULT_FORMAT for a file that is no track file, that
  /// is of another kind, or whose header is broken. On failure the reader is closed.
  [[nodiscard]] Result_t OpenRead(const std::string& filename);
  /// Closes the file. Header and random index pack references given out end here. RESULT_INIT when none is open.
  Result_t Close();
  [[nodiscard]] bool IsOpen() const { return !m_Reader.empty(); }

  /// @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillWriterInfo(WriterInfo& info) const;
  /// The algorithms of encrypted essence. @return RESULT_OK, or RESULT_INIT when no file is open.
  [[nodiscard]] Result_t FillEncryptionInfo(EncryptionInfo& info) const;

  /// What there is to be known to decrypt frames that were delivered as they are stored. As ReadTrackEncryption says.
  /// @return RESULT_OK, RESULT_INIT when no file is open, what reading the index returns; on failure `out` is unchanged.
  [[nodiscard]] Result_t FillTrackEncryption(TrackEncryption& out);

  /// Finds a frame without reading it: a few bytes of the file are read to know its length. Not of timed text.
  /// @param eye  of a stereoscopic edit unit; the left one elsewhere.
  /// @return RESULT_OK; RESULT_NOT_FOUND for the right eye where there is one picture alone; otherwise as ReadFrame without
  /// contexts. On failure `frame` is unchanged.
  [[nodiscard]] Result_t LocateFrame(ui32_t frame_number, Eye eye, StoredFrame& frame);

  /// The header metadata. A file must be open (assertion); valid until it is closed.
  [[nodiscard]] MXF::OP1aHeader& OP1aHeader();
  /// The partitions in file order, from the random index pack, or found by walking the file where it has none. A file
  /// must be open (assertion); valid until it is closed.
  [[nodiscard]] MXF::RIP& RIP();

 protected:
  explicit TrackFileReader(EssenceType_t kind);
  ~TrackFileReader();

  Ferro::mem_ptr<h__Reader> m_Reader;  // set while a file is open

 private:
  EssenceType_t m_Kind;
};

}  // namespace QUIRE
