// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Command.h>

#include "StrataTypes/ReadEnum.h"

#include <cctype>
#include <cstdlib>

namespace Strata {
namespace {

// Decimal number of any sign at the start of `text`, cut to 32 bits, without its sign.
ui32_t Magnitude(const char* text) {
  const auto number = static_cast<ui32_t>(std::strtol(text, nullptr, 10));
  return static_cast<i32_t>(number) < 0 ? 0u - number : number;
}

}  // namespace

bool Command::ParseCommand(const std::string& text) {
  m_error.clear();
  const char* letter = text.c_str();
  while (std::isspace(static_cast<unsigned char>(*letter)) != 0) ++letter;

  // The whole text counts, blanks before the letter included: " j" passes and finds the terminator as its argument.
  const auto lacks_argument = [&](const char* message) {
    if (text.size() >= 2) return false;
    m_error = message;
    return true;
  };

  switch (*letter) {
    case '?':
      m_error = "(f|b|l<n>|t<n>|j(b|f)|p|s|?)";
      return false;
    case 'f':
    case 'b':
      type = CMD_PLAY;
      direction = *letter == 'f' ? DIR_FORWARD : DIR_REVERSE;
      return true;
    case 'p':
      type = CMD_PAUSE;
      return true;
    case 's':
      type = CMD_STOP;
      return true;
    case 'j':
      type = CMD_JOG;
      if (lacks_argument("direction argument required for jog: j<b|f>")) return false;
      direction = letter[1] == 'b' ? DIR_REVERSE : DIR_FORWARD;
      return true;
    case 'l':
      type = CMD_LOCATE;
      if (lacks_argument("position argument required for locate: l<pos>")) return false;
      position = Magnitude(letter + 1);
      return true;
    case 't':
      type = CMD_SHUTTLE;
      if (lacks_argument("rate argument required for shuttle: t<rate>")) return false;
      rate = Magnitude(letter + 1);
      return true;
    default:
      m_error = std::string("unxpected command letter: ") + *letter;
      return false;
  }
}

bool Command::HasValue() const {
  return type != CMD_NONE;
}

ui32_t Command::ArchiveLength() const {
  return 20 + static_cast<ui32_t>(filename.size());
}

bool Command::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteUi32BE(type) && Writer->WriteUi32BE(position) && Writer->WriteUi32BE(rate) &&
         Writer->WriteUi32BE(direction) && Writer->WriteString(filename);
}

bool Command::Unarchive(Ferro::MemIOReader* Reader) {
  return ReadEnum(*Reader, type) && Reader->ReadUi32BE(&position) && Reader->ReadUi32BE(&rate) &&
         ReadEnum(*Reader, direction) && Reader->ReadString(&filename);
}

}  // namespace Strata
