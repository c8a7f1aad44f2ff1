// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TextFile.h"
#include "TextResources.h"

namespace Assay {

// What makes up ReadText: what of a document is wrong by itself goes into the lists of its file.

/// All of it but the form, and what more than the document tells.
/// @param document  is changed only while this runs
/// @param file      with its EditRate; its Head, First and Last are filled in
void FindInText(Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file);

/// Whether what a key opens is not what was encrypted.
[[nodiscard]] inline bool IsAltered(QUIRE::Result_t result) {
  return result == QUIRE::RESULT_CHECKFAIL || result == QUIRE::RESULT_HMACFAIL || result == QUIRE::RESULT_SEQUENCE;
}

/// Tells of a document, font or picture that is there and cannot be read: altered, where a key opens it, or damaged.
void FindUnreadable(QUIRE::Result_t result, const std::string& part, TextFile& file);
/// text-size, as a warning: what is too long to be looked at.
void FindTooLarge(ui64_t limit, ui64_t size, const std::string& part, TextFile& file);

/// What is found of one kind in a text. The first place in time stands for all.
class TextTally {
 public:
  void Note(const TextMoment& moment, std::string found);
  /// Adds the finding, where there is one.
  void Tell(const TextFile& file, Finding finding, const std::string& expected, FindingList& findings) const;

 private:
  TextMoment m_First;
  std::string m_Found;
  size_t m_Count = 0;
};

/// When an instance begins, with the line of one of its elements.
[[nodiscard]] inline TextMoment MomentOf(const Cairn::TextInstance& instance, ui64_t line) {
  return {instance.TimeIn.Value, line};
}

/// Whether the reader could not take a value of the document as it stands: "StartTime", "Text/@Vposition".
[[nodiscard]] bool HasProblem(const Cairn::TimedText& document, ui64_t line, std::string_view name);

/// text-schema, as far as only the meaning of values tells it.
void FindTextProblems(const Cairn::TimedText& document, TextFile& file);
/// text-font-load, text-start-time, text-language, text-rate, as far as the document alone tells, and text-empty.
void FindInTextHead(const Cairn::TimedText& document, TextFile& file);
/// text-order, text-fade, text-duration, text-gap, text-elements, text-lines, caption-lines.
void FindInTextTimes(const Cairn::TimedText& document, TextFile& file);
/// text-line-length, text-position, caption-lines, caption-align.
void FindInTextLines(const Cairn::TimedText& document, TextFile& file);
/// text-font-missing and text-image-missing; at Frames text-glyph-missing, and what the files hold.
void FindInTextResources(const Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file);

}  // namespace Assay
