// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/LogView.h"
#include "terminal/ProgressBar.h"

#include <Ferro/Result.h>
#include <QUIRE/Crypto.h>
#include <QUIRE/FrameBuffer.h>
#include <QUIRE/Rational.h>
#include <QUIRE/TrackFileWriter.h>
#include <QUIRE/WriterInfo.h>

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Tool {

/// What goes into a track file.
enum class EssenceKind { Picture, Video, Sound, Text, Data, Immersive };

/// "picture", "video", "sound", "text", "data", "immersive".
[[nodiscard]] const char* EssenceKindName(EssenceKind kind);

/// What the user asked for.
struct WrapOptions {
  std::vector<std::string> Sources;  ///< files, or one folder
  std::string Left;                  ///< folder of the left eyes' codestreams
  std::string Right;                 ///< folder of the right eyes'
  std::string Out;
  std::optional<EssenceKind> Kind;  ///< no value: what the sources look like
  std::string Rate;                 ///< "24", "30000/1001"; empty: what the source says, else 24
  std::string ID;                   ///< of the track file; empty: a random one
  std::string Key;                  ///< 32 hexadecimal digits; empty: not encrypted
  std::string KeyFile;              ///< a file with these digits
  std::string KeyID;
  std::string Channels;        ///< sound: "51(L,R,C,LFE,Ls,Rs)"; empty: 5.1 for six channels, else no loudspeakers
  std::string Language;        ///< RFC 5646; empty: what the source says
  std::string Coding;          ///< data: the label of the payload
  Ferro::ui32_t Duration = 0;  ///< text: edit units; 0: up to the last line's end
  bool Interop = false;
  bool Force = false;  ///< immersive: also what has not the form of it
};

/// One track file in the making: what the writers of all kinds need. Throws CommandError where the options make no sense.
class WrapJob {
 public:
  explicit WrapJob(const WrapOptions& options);

  [[nodiscard]] const WrapOptions& Options() const { return m_Options; }
  [[nodiscard]] const QUIRE::WriterInfo& Info() const { return m_Info; }
  /// The rate asked for, or `source`, what the source says; 24 where neither does.
  [[nodiscard]] QUIRE::Rational EditRate(const QUIRE::Rational& source = {}) const;
  /// The contexts that encrypted essence is written with; null for others.
  [[nodiscard]] QUIRE::AESEncContext* Cipher() { return m_Cipher ? &*m_Cipher : nullptr; }
  [[nodiscard]] QUIRE::HMACContext* Integrity() { return m_Integrity ? &*m_Integrity : nullptr; }

  /// Throws CommandError where writing the track file failed: `result` is what the writer returned.
  void Check(const QUIRE::TrackFileWriter& writer, const QUIRE::Result_t& result) const;
  /// Keeps what is told beside the report: it was written, and may not be what was meant.
  void Warn(std::string sentence) { m_Warnings.push_back(std::move(sentence)); }
  [[nodiscard]] const std::vector<std::string>& Warnings() const { return m_Warnings; }
  /// Shows how far the work is, in bytes of the sources. Throws CommandStopped when the user wants to stop.
  void Progress(Ferro::ui64_t done, Ferro::ui64_t total);

 private:
  void SetKey(const std::string& digits, const char* option);

  WrapOptions m_Options;
  QUIRE::WriterInfo m_Info;
  std::optional<QUIRE::Rational> m_EditRate;
  std::optional<QUIRE::AESEncContext> m_Cipher;
  std::optional<QUIRE::HMACContext> m_Integrity;
  std::vector<std::string> m_Warnings;
  ProgressBar m_Bar;
  QuietLog m_Log;  // what fails is told in other words
};

/// What a track file became.
struct Wrapped {
  QUIRE::Rational EditRate;
  Ferro::ui32_t Duration = 0;  ///< edit units
  Ferro::ui32_t Padding = 0;   ///< samples of silence at the end of the last edit unit of sound
};

/// Reads a whole file of at most 64 MiB into a frame, making room as needed. Throws CommandError.
void ReadIntoFrame(const std::string& filename, QUIRE::FrameBuffer& frame);
/// Copies bytes into a frame, making room as needed. Throws CommandError.
void FillFrame(std::span<const Ferro::ui8_t> bytes, QUIRE::FrameBuffer& frame);

}  // namespace Tool
