// SPDX-License-Identifier: BSD-3-Clause
#include "WrapJob.h"

#include "show/Paths.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/ReasonText.h"

#include <Ferro/FileReader.h>
#include <Ferro/FileText.h>
#include <Ferro/Path.h>
#include <Ferro/TextEncoding.h>
#include <Strata/Version.h>

#include <algorithm>
#include <charconv>

namespace Tool {

namespace {

constexpr Ferro::fsize_t LargestFrame = 64 * 1024 * 1024;  // bytes
constexpr Ferro::i32_t HighestRate = 192'000;              // edit units per second

Ferro::UUID ReadID(const char* option, const std::string& text) {
  if (text.empty()) return Ferro::UUID::Random();
  if (const auto id = Ferro::UUID::FromURN(text)) return *id;
  if (const auto id = Ferro::UUID::FromHex(text)) return *id;
  throw CommandError(ExitCode::Usage, std::string(option) + ' ' + text + ": this is no UUID");
}

/// Reads "24" or "30000/1001".
QUIRE::Rational ReadRate(const std::string& text) {
  QUIRE::Rational rate(0, 1);
  const char* end = text.data() + text.size();
  auto read = std::from_chars(text.data(), end, rate.Numerator);
  if (read.ec == std::errc() && read.ptr != end && *read.ptr == '/')
    read = std::from_chars(read.ptr + 1, end, rate.Denominator);
  const bool is_rate = read.ec == std::errc() && read.ptr == end && rate.Numerator > 0 && rate.Denominator > 0 &&
                       rate.Quotient() <= HighestRate;
  if (!is_rate)
    throw CommandError(ExitCode::Usage, "--rate " + text + ": not edit units per second, as 24 or 30000/1001");
  return rate;
}

/// What the file holds, without the blanks and line ends around it.
std::string ReadKeyFile(const std::string& filename) {
  constexpr Ferro::fsize_t limit = 4096;
  std::string text;
  if (const Ferro::Result_t result = Ferro::ReadFileIntoString(filename, text, limit); result.Failure())
    throw CommandError(ExitCode::Usage, "--key-file " + filename + ": it cannot be read: " + ReasonText(result));
  const size_t first = text.find_first_not_of(" \t\r\n");
  return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

void MakeRoom(QUIRE::FrameBuffer& frame, size_t size) {
  if (frame.Capacity() < size && frame.Capacity(static_cast<Ferro::ui32_t>(size)).Failure())
    throw CommandError(ExitCode::NotPlayable, "there is no memory for a frame of " + std::to_string(size) + " bytes");
}

}  // namespace

const char* EssenceKindName(EssenceKind kind) {
  switch (kind) {
    case EssenceKind::Picture:
      return "picture";
    case EssenceKind::Video:
      return "video";
    case EssenceKind::Sound:
      return "sound";
    case EssenceKind::Text:
      return "text";
    case EssenceKind::Data:
      return "data";
    case EssenceKind::Immersive:
      return "immersive";
  }
  return "";
}

WrapJob::WrapJob(const WrapOptions& options) : m_Options(options), m_Bar("Wrapping") {
  const std::string folder = Ferro::PathDirname(options.Out);
  if (!folder.empty() && !IsFolder(folder)) CheckWritten(m_Options.Out, Ferro::RESULT_NOT_FOUND, "");
  m_Info.AssetUUID = ReadID("--id", options.ID);
  m_Info.ProductUUID = Ferro::UUID::FromHex("51b3e2a4-6f0d-4a58-9d3c-6d1f0c8f2b17").value();
  m_Info.ProductVersion = Strata::Version();
  m_Info.CompanyName = "Strata";
  m_Info.ProductName = "strata wrap";
  m_Info.LabelSetType = options.Interop ? QUIRE::LS_MXF_INTEROP : QUIRE::LS_MXF_SMPTE;
  if (!options.Rate.empty()) m_EditRate = ReadRate(options.Rate);
  if ((options.Key.empty() && options.KeyFile.empty()) != options.KeyID.empty())
    throw CommandError(ExitCode::Usage,
                       "--key or --key-file, and --key-id go together: an encrypted file names its key");
  if (!options.Key.empty()) SetKey(options.Key, "--key");
  if (!options.KeyFile.empty()) SetKey(ReadKeyFile(options.KeyFile), "--key-file");
}

void WrapJob::SetKey(const std::string& digits, const char* option) {
  QUIRE::CipherBlock key{};
  if (!Ferro::hex2bin(digits, key))
    throw CommandError(ExitCode::Usage, std::string(option) + ": a key has 32 hexadecimal digits");
  m_Info.EncryptedEssence = m_Info.UsesHMAC = true;
  m_Info.ContextID = Ferro::UUID::Random();
  m_Info.CryptographicKeyID = ReadID("--key-id", m_Options.KeyID);
  const bool is_set =
      m_Cipher.emplace().InitKey(key).Success() && m_Integrity.emplace().InitKey(key, m_Info.LabelSetType).Success();
  if (!is_set) throw CommandError(ExitCode::NotPlayable, "the cipher library refuses the key");
}

QUIRE::Rational WrapJob::EditRate(const QUIRE::Rational& source) const {
  if (m_EditRate) return *m_EditRate;
  return source.Numerator > 0 && source.Denominator > 0 ? source : QUIRE::EditRate_24;
}

void WrapJob::Check(const QUIRE::TrackFileWriter& writer, const QUIRE::Result_t& result) const {
  const std::string reason = writer.FailureReason();
  if (result.Failure() && !reason.empty() && !(result == Ferro::RESULT_NOTAFILE))
    throw CommandError(ExitCode::NotPlayable, m_Options.Out + ": " + reason);
  CheckWritten(m_Options.Out, result, "");
}

void WrapJob::Progress(Ferro::ui64_t done, Ferro::ui64_t total) {
  if (Interrupt::Requested()) throw CommandStopped();
  m_Bar.Update(done, total);
}

void ReadIntoFrame(const std::string& filename, QUIRE::FrameBuffer& frame) {
  Ferro::FileReader file;
  Ferro::Result_t result = file.OpenRead(filename);
  if (result.Success() && file.Size() > LargestFrame) result = Ferro::RESULT_TOOLARGE;
  if (result.Success()) {
    MakeRoom(frame, file.Size());
    result = file.ReadAt(0, {frame.Data(), static_cast<size_t>(file.Size())});
  }
  if (result.Failure()) throw CommandError(ExitCode::NotPlayable, filename + ": " + ReasonText(result));
  frame.Size(static_cast<Ferro::ui32_t>(file.Size()));
}

void FillFrame(std::span<const Ferro::ui8_t> bytes, QUIRE::FrameBuffer& frame) {
  MakeRoom(frame, bytes.size());
  std::copy(bytes.begin(), bytes.end(), frame.Data());
  frame.Size(static_cast<Ferro::ui32_t>(bytes.size()));
}

}  // namespace Tool
