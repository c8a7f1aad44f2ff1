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

namespace {

using Bytes = std::vector<Ferro::ui8_t>;

void write(const std::string& filename, std::string_view content) {
  if (const std::string problem = WriteWholeFile(filename, content); !problem.empty())
    throw CommandError(NotPlayable, problem);
}

std::string_view text_of(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

const char* name_of(FrameCoding coding) {
  constexpr const char* Names[] = {"a JPEG 2000 picture", "an MPEG-2 picture", "sound", "timed text", "data"};
  return Names[static_cast<size_t>(coding)];
}

/// The extension that keeps a coding as it is.
const char* own_extension(FrameCoding coding) {
  constexpr const char* Extensions[] = {".j2c", ".m2v", ".wav", ".xml", ".bin"};
  return Extensions[static_cast<size_t>(coding)];
}

bool holds(FrameForm form, FrameCoding coding) {
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

std::string insert_before_extension(const std::string& filename, const std::string& text) {
  const size_t point = filename.size() - Ferro::PathExtension(filename).size() - 1;
  return filename.substr(0, point) + text + filename.substr(point);
}

/// The bytes of a PNG file that shows the picture.
Bytes still_of(const Bytes& codestream, PictureColour colour, WhitePoint white) {
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

void write_eye(const EditUnit& unit, const Bytes& codestream, const std::string& filename,
               const FrameOutputOptions& options) {
  if (options.Form != FrameForm::Picture) return write(filename, text_of(codestream));
  const PictureColour colour = options.Colour == PictureColour::Unknown ? unit.Colour : options.Colour;
  Bytes png;
  try {
    png = still_of(codestream, colour, options.White);
  } catch (const std::runtime_error& error) {
    throw CommandError(NotPlayable, error.what());
  }
  write(filename, text_of(png));
}

std::vector<std::string> write_resources(const EditUnit& unit, const std::string& folder) {
  std::vector<std::string> files;
  for (const TextResource& resource : unit.Resources) {
    if (!Ferro::PathStaysInside(resource.Name))
      throw CommandError(NotPlayable, "the text document names a file outside its folder: " + resource.Name);
    const std::string filename = Ferro::PathJoin(folder, resource.Name);
    std::error_code ignored;  // what cannot be made is found when the file is written
    if (!Ferro::PathDirname(resource.Name).empty())
      std::filesystem::create_directories(Ferro::PathDirname(filename), ignored);
    write(filename, text_of(resource.Bytes));
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
  if (!holds(options.Form, unit.Coding))
    throw CommandError(Usage, options.Filename + ": this is " + name_of(unit.Coding) + ": write it to a file *" +
                                  own_extension(unit.Coding));
  if (options.Eyes != Eye::Both && unit.RightEye.empty())
    throw CommandError(Usage, "the picture is not stereoscopic: it has no left and right eye");
  const bool needs_plaintext =
      options.Form == FrameForm::Picture || options.Form == FrameForm::Sound || options.Form == FrameForm::Document;
  if (unit.Encrypted && needs_plaintext)
    throw CommandError(NotPlayable, "the track file " + unit.AssetID +
                                        " is encrypted: only its ciphertext can be written, to a file *.bin");
}

std::vector<std::string> WriteFrame(const EditUnit& unit, const FrameOutputOptions& options) {
  CheckFrameFits(unit, options);
  if (unit.Coding == FrameCoding::TimedText) {
    write(options.Filename, text_of(unit.Bytes));
    std::vector<std::string> files = {options.Filename};
    if (options.Form != FrameForm::Document) return files;
    const auto resources = write_resources(unit, Ferro::PathDirname(options.Filename));
    files.insert(files.end(), resources.begin(), resources.end());
    return files;
  }
  if (unit.RightEye.empty() || options.Eyes != Eye::Both) {
    write_eye(unit, options.Eyes == Eye::Right ? unit.RightEye : unit.Bytes, options.Filename, options);
    return {options.Filename};
  }
  const std::string left = insert_before_extension(options.Filename, "-left");
  const std::string right = insert_before_extension(options.Filename, "-right");
  write_eye(unit, unit.Bytes, left, options);
  write_eye(unit, unit.RightEye, right, options);
  return {left, right};
}
