// SPDX-License-Identifier: BSD-3-Clause
#include "TextFile.h"

#include "TextFindings.h"
#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace Assay {
namespace {

constexpr ui64_t Kibi = 1024;
constexpr ui64_t MaxCaption = 256 * Kibi;           // bytes
constexpr ui64_t MaxFonts = 10 * Kibi * Kibi;       // together
constexpr ui64_t MaxResources = 115 * Kibi * Kibi;  // together
constexpr ui64_t MaxInteropFont = 655'360;

bool IsRate(const QUIRE::Rational& rate) {
  return rate.Numerator > 0 && rate.Denominator > 0;
}

std::string InBytes(ui64_t size) {
  return std::to_string(size) + " bytes";
}

std::string AtMost(ui64_t size) {
  return InBytes(size) + " at most";
}

/// From when until when anything is shown.
void NoteSpan(const Cairn::TimedText& document, TextFile& file) {
  for (const Cairn::TextInstance& instance : document.InstanceList) {
    if (instance.TimeOut.Value <= instance.TimeIn.Value) continue;
    if (!file.First || instance.TimeIn.Value < file.First->Time) file.First = MomentOf(instance, instance.Line);
    if (!file.Last || instance.TimeOut.Value > file.Last->Time) file.Last = {instance.TimeOut.Value, instance.Line};
  }
}

/// All but what makes a document long.
Cairn::TimedText HeadOf(Cairn::TimedText& document) {
  auto instances = std::exchange(document.InstanceList, {});
  auto problems = std::exchange(document.ProblemList, {});
  Cairn::TimedText head = document;
  head.FontList.clear();
  document.InstanceList = std::move(instances);
  document.ProblemList = std::move(problems);
  return head;
}

/// Reads a document whose form has been told of. @return no value where Cairn refuses it.
std::optional<Cairn::TimedText> Decode(const DocumentFile& source, const std::string& xml, TextFile& file) {
  Cairn::TimedText document;
  if (source.Root() == nullptr ||
      (source.Kind() != DocumentKind::SMPTEText && source.Kind() != DocumentKind::InteropText)) {
    if (source.Parsed.Root)
      Add(file.Findings, Finding(FindingID::TextSchema), file.File, "timed text",
          Quoted(source.Parsed.Root->Name) + " in " + Quoted(source.Parsed.Root->Namespace));
    return std::nullopt;
  }
  if (document.DecodeXML(xml).Failure()) {
    Add(file.Findings, Finding(FindingID::TextSchema), file.File,
        std::to_string(Cairn::TimedText::MaxInstanceCount) + " texts at most", "more");
    return std::nullopt;
  }
  file.IsRead = true;
  if (CheckForm(*source.Root(), *source.Grammar).empty()) FindTextProblems(document, file);
  return document;
}

/// text-size. What is in a smaller file is not too large.
void FindSizes(const Cairn::TimedText& document, TrackFileText& source, ui64_t text_size, ui64_t file_size,
               TextFile& file) {
  if (text_size > MaxCaption)
    Add(file.CaptionFindings, Finding(FindingID::TextSize), file.File, AtMost(MaxCaption), InBytes(text_size));
  if (file_size <= MaxFonts) return;
  ui64_t fonts = 0;
  ui64_t all = 0;
  for (const auto& listed : source.Descriptor().ResourceList) {
    const auto bytes = source.Read({listed.ResourceID, {}});
    const ui64_t size = bytes ? bytes->size() : 0;
    all += size;
    if (std::ranges::any_of(document.LoadFontList,
                            [&](const Cairn::LoadedFont& font) { return font.Resource.ID == listed.ResourceID; }))
      fonts += size;
  }
  if (fonts > MaxFonts)
    Add(file.Findings, Finding(FindingID::TextSize), file.File, "fonts of " + AtMost(MaxFonts), InBytes(fonts));
  if (all > MaxResources)
    Add(file.Findings, Finding(FindingID::TextSize), file.File, "fonts and pictures of " + AtMost(MaxResources),
        InBytes(all));
}

/// What a key opens and then is not what was encrypted.
void FindUnreadable(QUIRE::Result_t result, TextFile& file) {
  const bool is_altered =
      result == QUIRE::RESULT_CHECKFAIL || result == QUIRE::RESULT_HMACFAIL || result == QUIRE::RESULT_SEQUENCE;
  if (is_altered) Add(file.Findings, Finding(FindingID::MicInvalid), file.File, {}, result.Label());
}

/// text-id, as far as the track file tells.
void FindIDs(const Cairn::TimedText& document, const TextFile& text, FindingList& findings) {
  if (!document.ID.IsPresent()) return;
  const UUID& id = document.ID.Value;
  if (id != text.ResourceID)
    Add(findings, Finding(FindingID::TextID), text.At(document.ID.Line), text.ResourceID.EncodeString(),
        id.EncodeString());
  else if (id == text.FileID)
    Add(findings, Finding(FindingID::TextID), text.At(document.ID.Line), "another than the track file's",
        id.EncodeString());
}

void FindFontSizes(const Cairn::TimedText& document, const FolderResources& resources, TextFile& file) {
  for (const Cairn::LoadedFont& font : document.LoadFontList) {
    const ui64_t size = resources.Size(font.Resource).value_or(0);
    if (size > MaxInteropFont)
      Add(file.Findings, Finding(FindingID::TextFontSize), file.At(font.Line), AtMost(MaxInteropFont), InBytes(size));
  }
}

}  // namespace

void FindInText(Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file) {
  file.Head = HeadOf(document);
  NoteSpan(document, file);
  FindInTextHead(document, file);
  FindInTextTimes(document, file);
  FindInTextLines(document, file);
  if (depth != Depth::Documents) FindInTextResources(document, resources, depth, file);
}

FindingPlace TextFile::At(ui64_t line) const {
  FindingPlace place = File;
  place.Line = line;
  return place;
}

FindingPlace TextFile::At(const TextMoment& moment) const {
  FindingPlace place = At(moment.Line);
  const i64_t edit_unit = Head.EditUnits(moment.Time, EditRate);
  if (edit_unit >= 0) {
    place.EditUnit = static_cast<ui64_t>(edit_unit);
    place.EditRate = EditRate;
  }
  return place;
}

TextFile ReadText(const TrackFile& track_file, const TextLook& look) {
  TextFile file;
  file.File = track_file.At();
  file.IsInTrackFile = true;
  if (!track_file.IsOpen() || track_file.As<QUIRE::TimedText::TimedTextDescriptor>() == nullptr) return file;
  TrackFileText source;
  const TrackFileText::State state = source.Open(track_file, look.Keys);
  if (state == TrackFileText::State::Encrypted) Add(file.Findings, Finding(FindingID::TextKey), file.File);
  if (state == TrackFileText::State::TooLarge)
    Add(file.Findings, Finding(FindingID::TextSize, FindingClass::Warning), file.File,
        "parts of " + AtMost(MaxTextPart), InBytes(track_file.Size) + ", which were not looked at");
  if (state != TrackFileText::State::Open) return file;

  std::string text;
  if (const QUIRE::Result_t result = source.ReadDocument(text); result.Failure()) {
    FindUnreadable(result, file);
    return file;
  }
  const DocumentFile parsed = DocumentFile::FromText(file.File.Package, file.File.Document, text);
  FindInDocument(parsed, file.Findings);
  for (Finding& finding : file.Findings) finding.Place.Asset = file.File.Asset;
  auto document = Decode(parsed, text, file);
  if (!document) return file;
  file.ResourceID = source.Descriptor().AssetID;
  file.FileID = track_file.Info.AssetUUID;
  file.FileRate = source.Descriptor().EditRate;
  file.EditRate = IsRate(file.FileRate) ? file.FileRate : document->EditRate.Value;
  FindIDs(*document, file, file.Findings);
  FindSizes(*document, source, text.size(), track_file.Size, file);
  FindInText(*document, source, look.Depth, file);
  return file;
}

TextFile ReadText(const DocumentFile& source, const std::string& xml, const UUID& id, const QUIRE::Rational& edit_rate,
                  const TextLook& look) {
  TextFile file;
  file.File = source.At(nullptr);
  file.File.Asset = id;
  auto document = Decode(source, xml, file);
  if (!document) return file;
  file.EditRate = IsRate(edit_rate) ? edit_rate : document->EditRate.Value;
  const std::filesystem::path path(source.Path);
  FolderResources resources = source.Package.empty()
                                  ? FolderResources(path.parent_path().string(), path.filename().string())
                                  : FolderResources(source.Package, source.Path);
  if (document->DCPFormat == Cairn::DFT_Interop) FindFontSizes(*document, resources, file);
  FindInText(*document, resources, look.Depth, file);
  return file;
}

}  // namespace Assay
