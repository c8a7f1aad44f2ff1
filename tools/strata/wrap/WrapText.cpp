// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "show/DocumentFault.h"
#include "terminal/CommandError.h"
#include "terminal/LogView.h"
#include "terminal/ReasonText.h"

#include <Cairn/TextSchedule.h>
#include <Cairn/TimedText.h>
#include <Ferro/CheckedMath.h>
#include <Ferro/FileText.h>
#include <Ferro/Path.h>
#include <QUIRE/TimedTextWriter.h>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace Tool {

namespace {

namespace fs = std::filesystem;
using QUIRE::TimedText::TimedTextDescriptor;

constexpr Ferro::fsize_t LargestDocument = 64 * 1024 * 1024;  // bytes

/// The file beside the document that is named by the identifier.
std::string FileOf(const std::string& folder, const Ferro::UUID& id) {
  std::error_code error;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string stem = entry->path().stem().string();
    const auto plain = Ferro::UUID::FromHex(stem);
    const auto urn = Ferro::UUID::FromURN(stem);
    if (plain == id || urn == id) return entry->path().string();
  }
  throw CommandError(ExitCode::AssetsMissing, "the document refers to " + id.EncodeString() +
                                                  ", and no font or image of that name lies beside it");
}

QUIRE::TimedText::MIMEType_t TypeOf(const QUIRE::FrameBuffer& resource) {
  using namespace std::string_view_literals;
  const std::string_view content(reinterpret_cast<const char*>(resource.RoData()), resource.Size());
  if (content.starts_with("\x89PNG"sv)) return QUIRE::TimedText::MT_PNG;
  const bool is_font =
      content.starts_with("OTTO"sv) || content.starts_with("\0\1\0\0"sv) || content.starts_with("true"sv);
  return is_font ? QUIRE::TimedText::MT_OPENTYPE : QUIRE::TimedText::MT_BIN;
}

Cairn::TimedText ReadDocument(const std::string& filename, const std::string& text) {
  Cairn::TimedText document;
  QuietLog log;
  const auto result = document.DecodeXML(text);
  if (result.Success() && document.DCPFormat == Cairn::DFT_DCI_SMPTE && document.ID.IsPresent()) return document;
  const std::string reason =
      result == Cairn::RESULT_XML_PARSE ? ": " + DocumentFault(filename, result, log.Take()) : "";
  throw CommandError(ExitCode::NotPlayable, filename + ": this is no timed-text document of ST 428-7" + reason);
}

TimedTextDescriptor Describe(const WrapJob& job, const std::string& filename, const Cairn::TimedText& document) {
  TimedTextDescriptor descriptor;
  descriptor.EditRate = job.EditRate(document.EditRate.Value);
  descriptor.AssetID = document.ID.Value;
  descriptor.NamespaceName = document.NamespaceName;
  const std::string language = document.Language.IsPresent() ? document.Language.Value : std::string();
  descriptor.RFC5646LanguageTagList = job.Options().Language.empty() ? language : job.Options().Language;
  descriptor.ContainerDuration = job.Options().Duration;
  if (descriptor.ContainerDuration == 0) {
    const Cairn::TextSchedule schedule(document, descriptor.EditRate);
    descriptor.ContainerDuration = Ferro::CheckedCast<Ferro::ui32_t>(schedule.End()).value_or(0);
  }
  if (descriptor.ContainerDuration == 0)
    throw CommandError(ExitCode::Usage, filename + ": no line says when it ends; --duration says how long the text is");
  return descriptor;
}

}  // namespace

Wrapped WrapText(WrapJob& job, const WrapSources& sources) {
  if (sources.Files.size() != 1)
    throw CommandError(ExitCode::Usage, "a track file of text is made of one document; there are " +
                                            std::to_string(sources.Files.size()) + ", from " + sources.Files.front() +
                                            " to " + sources.Files.back());
  if (job.Options().Interop)
    throw CommandError(ExitCode::Usage, "Interop packages keep subtitles as they are, not in a track file");
  const std::string& filename = sources.Files.front();
  std::string text;
  if (const auto result = Ferro::ReadFileIntoString(filename, text, LargestDocument); result.Failure())
    throw CommandError(ExitCode::NotPlayable, filename + ": " + ReasonText(result));
  const Cairn::TimedText document = ReadDocument(filename, text);
  TimedTextDescriptor descriptor = Describe(job, filename, document);

  std::vector<Ferro::UUID> references;
  for (const Cairn::TextResource& resource : document.Resources()) references.push_back(resource.ID);
  std::sort(references.begin(), references.end());

  std::vector<std::string> files;
  QUIRE::TimedText::FrameBuffer frame;
  for (const Ferro::UUID& id : references) {
    files.push_back(FileOf(Ferro::PathDirname(filename), id));
    ReadIntoFrame(files.back(), frame);
    descriptor.ResourceList.push_back({id, TypeOf(frame)});
  }

  QUIRE::TimedText::MXFWriter writer;
  job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
  job.Check(writer, writer.WriteTimedTextResource(text, job.Cipher(), job.Integrity()));
  for (size_t i = 0; i < files.size(); ++i) {
    job.Progress(i, files.size());
    ReadIntoFrame(files[i], frame);
    frame.AssetID(references[i]);
    job.Check(writer, writer.WriteAncillaryResource(frame, job.Cipher(), job.Integrity()));
  }
  job.Check(writer, writer.Finalize());
  return {descriptor.EditRate, descriptor.ContainerDuration};
}

}  // namespace Tool
