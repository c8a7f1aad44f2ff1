// SPDX-License-Identifier: BSD-3-Clause
#include "FrameOutput.h"

#include "picture/PictureDecoder.h"
#include "picture/PngFile.h"
#include "terminal/CommandError.h"

#include <Ferro/Path.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <utility>

namespace Tool {

namespace {

using Bytes = std::vector<Ferro::ui8_t>;

void Write(const std::string& filename, std::string_view content) {
  if (const std::string problem = WriteWholeFile(filename, content); !problem.empty())
    throw CommandError(ExitCode::NotPlayable, problem);
}

std::string_view TextOf(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

const char* NameOf(FrameCoding coding) {
  constexpr const char* Names[] = {"a JPEG 2000 picture", "an MPEG-2 picture", "sound", "timed text", "data"};
  return Names[static_cast<size_t>(coding)];
}

/// The extension that keeps a coding as it is.
const char* OwnExtension(FrameCoding coding) {
  constexpr const char* Extensions[] = {".j2c", ".m2v", ".wav", ".xml", ".bin"};
  return Extensions[static_cast<size_t>(coding)];
}

bool Holds(FrameForm form, FrameCoding coding) {
  switch (form) {
    case FrameForm::Codestream:
    case FrameForm::Picture:
      return coding == FrameCoding::JPEG2000;
    case FrameForm::Video:
      return coding == FrameCoding::MPEG2;
    case FrameForm::Sound:
      return coding == FrameCoding::PCM;
    case FrameForm::Document:
      return coding == FrameCoding::TimedText;
    case FrameForm::Raw:
      break;
  }
  return true;
}

std::string InsertBeforeExtension(const std::string& filename, const std::string& text) {
  const size_t point = filename.size() - Ferro::PathExtension(filename).size() - 1;
  return filename.substr(0, point) + text + filename.substr(point);
}

/// The bytes of a PNG file that shows the picture.
Bytes StillOf(const Bytes& codestream, PictureColour colour, WhitePoint white) {
  const DecodedPicture picture = DecodePicture(codestream);
  const ColourTransform transform(colour, white, picture.Bits);
  PngPicture still{picture.Width, picture.Height, 3, {}};
  still.Samples.reserve(picture.Pixels.size() * 3);
  for (const auto& samples : picture.Pixels) {
    const auto screen = transform(samples);
    still.Samples.insert(still.Samples.end(), screen.begin(), screen.end());
  }
  return EncodePng(still);
}

void WriteEye(const EditUnit& unit, const Bytes& codestream, const std::string& filename,
              const FrameOutputOptions& options) {
  if (options.Form != FrameForm::Picture) return Write(filename, TextOf(codestream));
  const PictureColour colour = options.Colour == PictureColour::Unknown ? unit.Colour : options.Colour;
  Bytes png;
  try {
    png = StillOf(codestream, colour, options.White);
  } catch (const std::runtime_error& error) {
    throw CommandError(ExitCode::NotPlayable, error.what());
  }
  Write(filename, TextOf(png));
}

std::vector<std::string> WriteResources(const EditUnit& unit, const std::string& folder) {
  std::vector<std::string> files;
  for (const TextResource& resource : unit.Resources) {
    if (!Ferro::PathStaysInside(resource.Name))
      throw CommandError(ExitCode::NotPlayable, "the text document names a file outside its folder: " + resource.Name);
    const std::string filename = Ferro::PathJoin(folder, resource.Name);
    std::error_code ignored;  // what cannot be made is found when the file is written
    if (!Ferro::PathDirname(resource.Name).empty())
      std::filesystem::create_directories(Ferro::PathDirname(filename), ignored);
    Write(filename, TextOf(resource.Bytes));
    files.push_back(filename);
  }
  return files;
}

}  // namespace

std::optional<FrameForm> FrameFormOf(const std::string& filename) {
  constexpr std::pair<const char*, FrameForm> Forms[] = {{"j2c", FrameForm::Codestream}, {"j2k", FrameForm::Codestream},
                                                         {"m2v", FrameForm::Video},      {"png", FrameForm::Picture},
                                                         {"wav", FrameForm::Sound},      {"xml", FrameForm::Document},
                                                         {"bin", FrameForm::Raw}};
  std::string extension = Ferro::PathExtension(filename);
  for (char& letter : extension) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  for (const auto& [name, form] : Forms)
    if (extension == name) return form;
  return std::nullopt;
}

void CheckFrameFits(const EditUnit& unit, const FrameOutputOptions& options) {
  if (!Holds(options.Form, unit.Coding))
    throw CommandError(ExitCode::Usage, options.Filename + ": this is " + NameOf(unit.Coding) +
                                            ": write it to a file *" + OwnExtension(unit.Coding));
  if (options.Eyes != Eye::Both && unit.RightEye.empty())
    throw CommandError(ExitCode::Usage, "the picture is not stereoscopic: it has no left and right eye");
  const bool needs_plaintext =
      options.Form == FrameForm::Picture || options.Form == FrameForm::Sound || options.Form == FrameForm::Document;
  if (unit.Encrypted && needs_plaintext)
    throw CommandError(ExitCode::NotPlayable,
                       unit.File +
                           ": this track file is encrypted: without its key only ciphertext can be written, to "
                           "a file *.bin");
}

std::vector<std::string> WriteFrame(const EditUnit& unit, const FrameOutputOptions& options) {
  CheckFrameFits(unit, options);
  if (unit.Coding == FrameCoding::TimedText) {
    Write(options.Filename, TextOf(unit.Bytes));
    std::vector<std::string> files = {options.Filename};
    if (options.Form != FrameForm::Document) return files;
    const auto resources = WriteResources(unit, Ferro::PathDirname(options.Filename));
    files.insert(files.end(), resources.begin(), resources.end());
    return files;
  }
  if (unit.RightEye.empty() || options.Eyes != Eye::Both) {
    WriteEye(unit, options.Eyes == Eye::Right ? unit.RightEye : unit.Bytes, options.Filename, options);
    return {options.Filename};
  }
  const std::string left = InsertBeforeExtension(options.Filename, "-left");
  const std::string right = InsertBeforeExtension(options.Filename, "-right");
  WriteEye(unit, unit.Bytes, left, options);
  WriteEye(unit, unit.RightEye, right, options);
  return {left, right};
}

}  // namespace Tool
