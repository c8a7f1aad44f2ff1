// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/TimedTextContent.h>
#include <Cairn/Types.h>

#include <QUIRE/Rational.h>

#include <string>
#include <vector>

namespace Cairn {

/// The form of a timed-text document, oldest first.
enum class TimedTextEdition_t {
  Interop,  ///< DCSubtitle 1.0 and 1.1
  SMPTE2007,
  SMPTE2010,
  SMPTE2014,
  Other,  ///< ST 428-7 under a namespace that is none of the three; read as the latest
};

enum class TextProblem_t {
  Missing,       ///< a required element or attribute
  Repeated,      ///< of what there is one; the first counts
  Unknown,       ///< an element or attribute that no edition has; elements are skipped, but for characters inside Text
  Misplaced,     ///< an element known elsewhere, or text outside Text; an element is read all the same
  OtherEdition,  ///< spelling or form of the other flavour, or of a later edition; read all the same
  Malformed,     ///< a value not of its form
  OutOfRange,    ///< a value of its form beyond its limits
  NotLoaded,     ///< a font or a list of depths under an identifier that none has
  BeforeStart,   ///< a time before StartTime, or a StartTime after all times
};

/// What could not be taken as it stands, beside what is taken instead.
struct TextProblem {
  TextProblem_t Kind = TextProblem_t::Missing;
  ui64_t Line = 0;    ///< where the start tag of the element ends
  std::string Name;   ///< "Subtitle", "Subtitle/@TimeIn"
  std::string Found;  ///< at most 80 bytes; empty when missing
  std::string Used;   ///< empty: nothing

  friend bool operator==(const TextProblem&, const TextProblem&) = default;
};

/// A font that the document brings along (5.11). Interop devices honour the first alone.
struct LoadedFont {
  std::string ID;  ///< by which Font elements name it; may be empty
  TextResource Resource;
  ui64_t Line = 0;

  friend bool operator==(const LoadedFont&, const LoadedFont&) = default;
};

/// A Subtitle element: what appears and vanishes together (6.1). Times are in TimedText::UnitRate() units a second, from
/// the document's origin. Visible from TimeIn up to, not including, TimeOut; one whose times cannot be read has both the
/// same and is never shown.
struct TextInstance {
  TextField<std::string> SpotNumber;
  TextField<i64_t> TimeIn;
  TextField<i64_t> TimeOut;
  TextField<i64_t> FadeUpTime;       ///< a length, from 0; default 80 ms (Interop), 2 units (ST 428-7, 6.1.4)
  TextField<i64_t> FadeDownTime;     ///< likewise (6.1.5)
  std::vector<TextLine> TextList;    ///< in document order, which need not be that on the screen
  std::vector<TextImage> ImageList;  ///< likewise
  std::vector<TextVariableZ> VariableZList;
  ui64_t Line = 0;

  friend bool operator==(const TextInstance&, const TextInstance&) = default;
};

/// A timed-text document of either flavour, ST 428-7 or Interop: what it says of itself, and its instances with all
/// that is needed to draw them. What is malformed is read as far as it goes and listed. A plain value.
class CAIRN_API TimedText {
 public:
  static constexpr size_t MaxInstanceCount = 100'000;
  static constexpr size_t MaxProblemCount = 1'000;  ///< that are listed; all are counted
  static constexpr size_t MaxProblemKinds = 100;    ///< of which the first of each is listed beyond that
  static constexpr ui32_t MaxTimeCodeRate = 1'000;

  Cairn::DCPFormat_t DCPFormat = DFT_NONE;  ///< DFT_DCI_SMPTE or DFT_Interop, by the document element
  TimedTextEdition_t Edition = TimedTextEdition_t::Other;
  std::string NamespaceName;
  TextField<std::string> Version;            ///< Interop: "1.0" or "1.1"
  TextField<std::string> PictureResolution;  ///< IntrinsicPictureResolution (2014): raster that the images are made for
  TextField<UUID> ID;                        ///< SubtitleID
  TextField<std::string> ContentTitle;       ///< ContentTitleText, MovieTitle
  TextField<std::string> Annotation;
  TextField<std::string> IssueDate;              ///< as written
  TextField<ui32_t> ReelNumber;                  ///< from 1 (5.6)
  TextField<std::string> Language;               ///< ST 428-7: a tag, default "en"; Interop: English name or code
  TextField<QUIRE::Rational> EditRate{{24, 1}};  ///< positive, reduced; Interop documents have none
  TextField<ui32_t> TimeCodeRate{24};            ///< 1 to MaxTimeCodeRate; default: EditRate rounded
  TextField<i64_t> StartTime;                    ///< units from 00:00:00:00
  TextField<std::string> DisplayType;            ///< "MainSubtitle", "ClosedCaption", …; default "MainSubtitle"
  std::vector<LoadedFont> LoadFontList;          ///< in document order
  /// The fonts of all runs; first the one without any Font element.
  std::vector<TextFont> FontList;
  std::vector<TextInstance> InstanceList;  ///< in document order, which need not be that of time
  /// What the instances' times count from: StartTime, but 0 where all of them lie before it.
  i64_t Origin = 0;
  std::vector<TextProblem> ProblemList;  ///< the first MaxProblemCount, and the first of each kind and name
  size_t ProblemCount = 0;               ///< of all

  /// Units of time in a second: TimeCodeRate, or 1000 in an Interop document.
  [[nodiscard]] ui32_t UnitRate() const;

  /// A time or length in edit units, to the nearest. A rate over 1001 pairs with its nominal rate, and each unit with one
  /// frame, in an ST 428-7 document. Interop tools truncate times to ticks of 4 ms, round or round up: the nearest frame
  /// is the one that they meant, at any rate up to 120.
  /// @param units      of this document, at most 1,000,000,000 either way
  /// @param edit_rate  positive; of the track that the document is played in
  [[nodiscard]] i64_t EditUnits(i64_t units, const QUIRE::Rational& edit_rate) const;

  /// The fonts, then the images that the document refers to, in document order, each once.
  [[nodiscard]] std::vector<TextResource> Resources() const;

  /// Reads a document within the limits of DocumentParser. What keeps a document from being read is logged, to the
  /// default sink; problems of one that is read are not. Never throws.
  /// @return RESULT_OK; RESULT_XML_PARSE, RESULT_XML_NAMESPACE, Ferro::RESULT_TOOLARGE; RESULT_NOT_SUBTITLE for another
  ///         document; Ferro::RESULT_TOOLARGE for more than MaxInstanceCount instances. On failure the object is empty.
  [[nodiscard]] Result_t DecodeXML(const std::string& xml);

  friend bool operator==(const TimedText&, const TimedText&) = default;
};

}  // namespace Cairn
