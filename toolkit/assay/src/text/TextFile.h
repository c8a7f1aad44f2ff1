// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "document/DocumentFile.h"
#include "file/CompositionFiles.h"
#include "file/TrackFile.h"

#include <Assay/FindingRule.h>

#include <Cairn/TimedText.h>

#include <optional>
#include <string>
#include <vector>

namespace Sigil {
class KeyRing;
}

namespace Assay {

/// A moment of a text, and the line of the document that tells of it.
struct TextMoment {
  i64_t Time = 0;  ///< units of the document, from its origin
  ui64_t Line = 0;
};

/// When an instance is shown, from its beginning up to, not including, its end.
struct TextSpan {
  TextMoment Begin;
  i64_t End = 0;  ///< as TextMoment::Time
};

/// A picture of a text.
struct TextPicture {
  TextMoment At;     ///< when it is shown first
  ui32_t Width = 0;  ///< pixels
  ui32_t Height = 0;
};

/// A document of timed text, as all compositions have it: what it says of itself, and what is wrong with it. A plain value, much
/// smaller than the document.
struct TextFile {
  FindingPlace File;  ///< the track file, or the document of an Interop text
  bool IsInTrackFile = false;
  bool IsRead = false;                ///< only then there is what follows
  Cairn::TimedText Head;              ///< the document without its instances and fonts
  UUID ResourceID;                    ///< of the document, by the track file's header
  UUID FileID;                        ///< by which the track file knows itself
  QUIRE::Rational FileRate;           ///< by the track file's header
  QUIRE::Rational EditRate;           ///< that edit units are counted in
  std::vector<TextSpan> Shown;        ///< all that is ever shown, by its beginning
  std::optional<TextMoment> Last;     ///< when the last thing is shown no longer; no value: nothing ever is
  std::optional<TextPicture> Widest;  ///< of the pictures that were looked at
  std::optional<TextPicture> Tallest;

  FindingList Findings;          ///< of any text
  FindingList SubtitleFindings;  ///< of one that is drawn on the screen
  FindingList CaptionFindings;   ///< of one that is sent to devices at the seats

  /// A place in it.
  [[nodiscard]] FindingPlace At(ui64_t line) const;
  [[nodiscard]] FindingPlace At(const TextMoment& moment) const;
};

/// How texts are looked at.
struct TextLook {
  Assay::Depth Depth = Depth::Documents;  ///< Documents, Files, or Frames, which includes the others
  const Sigil::KeyRing* Keys = nullptr;   ///< of encrypted texts; may be null
};

/// Reads the text of a track file, which its header tells to be one; one that cannot be read, is
/// too long or has no key is told of alone. Looks at Files at least.
[[nodiscard]] TextFile ReadText(const TrackFile& file, const TextLook& look);
/// What there is to be said of a document that cannot be read, or is too long.
[[nodiscard]] TextFile UnreadText(const DocumentPlace& place, const UUID& id, QUIRE::Result_t result);
/// Reads a text that lies beside its fonts and pictures. Of its form, FindInDocument tells.
/// @param xml        of which `document` came
/// @param id         by which compositions name it
/// @param edit_rate  of the track that it is played in
[[nodiscard]] TextFile ReadText(const DocumentFile& document, const std::string& xml, const UUID& id,
                                const QUIRE::Rational& edit_rate, const TextLook& look);

}  // namespace Assay
