// SPDX-License-Identifier: BSD-3-Clause
#include "TextFile.h"

#include "TextFindings.h"
#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
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
void NoteSpans(const Cairn::TimedText& document, TextFile& file) {
  for (const Cairn::TextInstance& instance : document.InstanceList)
    if (instance.TimeOut.Value > instance.TimeIn.Value)
      file.Shown.push_back({MomentOf(instance, instance.Line), instance.TimeOut.Value});
  std::ranges::stable_sort(file.Shown, {}, [](const TextSpan& span) { return span.Begin.Time; });
  for (const TextSpan& span : file.Shown)
    if (!file.Last || span.End > file.Last->Time) file.Last = {span.End, span.Begin.Line};
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

/// Bytes of a resource; its bound where it is too long to be read.
ui64_t SizeOf(const Cairn::TextResource& resource, TrackFileText& source) {
  std::vector<ui8_t> bytes;
  const QUIRE::Result_t result = source.Read(resource, bytes);
  if (result == Ferro::RESULT_TOOLARGE) return source.SizeBound(resource);
  return result.Success() ? bytes.size() : 0;
}

/// text-size. What is in a smaller file is not too large. Streams are read once each, whatever names them.
void FindSizes(const Cairn::TimedText& document, TrackFileText& source, ui64_t text_size, ui64_t file_size,
               TextFile& file) {
  if (text_size > MaxCaption)
    Add(file.CaptionFindings, Finding(FindingID::TextSize), file.File, AtMost(MaxCaption), InBytes(text_size));
  if (file_size <= MaxFonts) return;
  std::set<UUID> loaded;
  for (const Cairn::LoadedFont& font : document.LoadFontList) loaded.insert(font.Resource.ID);
  std::map<std::string, ui64_t> fonts;
  std::map<std::string, ui64_t> all;
  for (const auto& listed : source.Descriptor().ResourceList) {
    const Cairn::TextResource resource{listed.ResourceID, {}};
    const auto [known, is_new] = all.try_emplace(source.Find(resource));
    if (is_new) known->second = SizeOf(resource, source);
    if (listed.Type == QUIRE::TimedText::MT_OPENTYPE || loaded.contains(listed.ResourceID)) fonts.insert(*known);
  }
  const auto sum_of = [](const std::map<std::string, ui64_t>& sizes) {
    ui64_t sum = 0;
    for (const auto& [stream, size] : sizes) sum += size;
    return sum;
  };
  if (sum_of(fonts) > MaxFonts)
    Add(file.Findings, Finding(FindingID::TextSize), file.File, "fonts of " + AtMost(MaxFonts), InBytes(sum_of(fonts)));
  if (sum_of(all) > MaxResources)
    Add(file.Findings, Finding(FindingID::TextSize), file.File, "fonts and pictures of " + AtMost(MaxResources),
        InBytes(sum_of(all)));
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
  std::set<std::string> told;
  for (const Cairn::LoadedFont& font : document.LoadFontList) {
    const ui64_t size = resources.SizeBound(font.Resource);
    if (size > MaxInteropFont && told.insert(resources.Find(font.Resource)).second)
      Add(file.Findings, Finding(FindingID::TextFontSize), file.At(font.Line), AtMost(MaxInteropFont), InBytes(size));
  }
}

}  // namespace

void FindUnreadable(QUIRE::Result_t result, const std::string& part, TextFile& file) {
  Add(file.Findings, Finding(IsAltered(result) ? FindingID::MicInvalid : FindingID::FileDamaged), file.File, {},
      part + ": " + result.Label());
}

void FindTooLarge(ui64_t limit, ui64_t size, const std::string& part, TextFile& file) {
  Add(file.Findings, Finding(FindingID::TextSize, FindingClass::Warning), file.File, AtMost(limit),
      part + " of " + InBytes(size) + ", which was not looked at");
}

void FindInText(Cairn::TimedText& document, ITextResources& resources, Depth depth, TextFile& file) {
  file.Head = HeadOf(document);
  NoteSpans(document, file);
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
    FindTooLarge(MaxTextDocument, track_file.Size, "document in a file", file);
  if (state == TrackFileText::State::Unreadable) FindUnreadable(Ferro::RESULT_READFAIL, "document", file);
  if (state != TrackFileText::State::Open) return file;

  std::string text;
  if (const QUIRE::Result_t result = source.ReadDocument(text); result.Failure()) {
    FindUnreadable(result, "document", file);
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

TextFile UnreadText(const DocumentPlace& place, const UUID& id, QUIRE::Result_t result) {
  TextFile file;
  file.File.Package = place.Package;
  file.File.Document = place.Path;
  file.File.Asset = id;
  if (result == Ferro::RESULT_TOOLARGE)
    Add(file.Findings, Finding(FindingID::TextSize, FindingClass::Warning), file.File, AtMost(MaxTextDocument),
        "more, which was not looked at");
  else
    FindUnreadable(result, "document", file);
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
