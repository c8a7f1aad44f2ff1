// SPDX-License-Identifier: BSD-3-Clause
#include "ReasonText.h"

#include <Cairn/Result.h>
#include <QUIRE/Result.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace Tool {

namespace {

struct Reason {
  Ferro::Result_t Result;
  const char* Text;
};

const std::array Reasons = {
    Reason{Ferro::RESULT_ALLOC, "there is too little memory for it"},
    Reason{Ferro::RESULT_NOT_FOUND, "it is not there"},
    Reason{Ferro::RESULT_NO_PERM, "this user may not open it"},
    Reason{Ferro::RESULT_FILEOPEN, "it cannot be opened"},
    Reason{Ferro::RESULT_READFAIL, "the system fails to read it"},
    Reason{Ferro::RESULT_ENDOFFILE, "its end is missing"},
    Reason{Ferro::RESULT_NOTAFILE, "it is a folder, a device or a pipe"},
    Reason{Ferro::RESULT_TOOLARGE, "it is larger than any of its kind"},
    Reason{Ferro::RESULT_SMALLBUF, "a frame is larger than any of digital cinema"},
    Reason{QUIRE::RESULT_FORMAT, "its structure is damaged"},
    Reason{QUIRE::RESULT_RANGE, "it has no such edit unit"},
    Reason{QUIRE::RESULT_RAW_ESS, "it holds nothing that is known here"},
    Reason{QUIRE::RESULT_RAW_FORMAT, "its headers are damaged, or of a form that is not used here"},
    Reason{QUIRE::RESULT_CUT, "its end is missing"},
    Reason{Cairn::RESULT_CN_UUID_FORMAT, "an identifier in it is malformed"},
    Reason{Cairn::RESULT_CN_VALUE, "a value in it is missing or malformed"},
    Reason{Cairn::RESULT_XML_PARSE, "it is not well-formed XML"},
    Reason{Cairn::RESULT_XML_NAMESPACE, "its namespace is not known here"},
    Reason{Cairn::RESULT_NOT_CPL, "it is no playlist of this kind"},
};

}  // namespace

std::string ReasonText(const Ferro::Result_t& result) {
  const auto known =
      std::find_if(Reasons.begin(), Reasons.end(), [&](const Reason& reason) { return reason.Result == result; });
  if (known != Reasons.end()) return known->Text;
  std::string text = result.Label();
  if (text.ends_with('.')) text.pop_back();
  const bool is_word = text.size() > 1 && std::islower(static_cast<unsigned char>(text[1])) != 0;
  if (is_word) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

}  // namespace Tool
