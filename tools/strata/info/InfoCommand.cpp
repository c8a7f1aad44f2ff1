// SPDX-License-Identifier: BSD-3-Clause
#include "InfoCommand.h"

#include "InfoDocument.h"
#include "InfoFolder.h"
#include "InfoItem.h"
#include "InfoRaw.h"
#include "InfoSecurity.h"
#include "InfoTrackFile.h"
#include "keys/KeyOpening.h"
#include "show/Description.h"
#include "show/InfoKinds.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/ReasonText.h"
#include "terminal/TextForms.h"

#include <Cairn/InspectFile.h>

#include <cstdio>
#include <filesystem>
#include <memory>

namespace Tool {

namespace {

struct InfoOptions {
  std::vector<std::string> Paths;
  KeyOptions Keys;
  bool AsJson = false;
};

void DescribeFile(const std::string& path, const Sigil::KeyRing& keys, InfoItem& item) {
  Cairn::FileContent content;
  const auto result = Cairn::InspectFile(path, content);
  item.Kind = FileKindName(content.Type);
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (!error)
    item.Facts.Set("size", {size, BytesText(size)})
        .ShownAs(BytesText(size) + (size < 1000 ? "" : ", " + std::to_string(size) + " bytes"));
  if (result.Failure()) return item.AddProblem(std::string("The file cannot be read: ") + ReasonText(result) + '.');
  if (IsMXF(content.Type)) {
    item.Facts.Add("description", Tool::Describe(ReadTrackFileFacts(path, content.Type)));
    DescribeTrackFile(path, item);
    return DescribeIntegrity(path, content.Type, keys, item);
  }
  switch (content.Type) {
    case Cairn::FT_UNKNOWN:
      if (DescribeCertificates(path, item)) return;
      return item.AddProblem(size == 0 ? "The file is empty."
                                       : "This is no file of digital cinema, or its beginning is damaged.");
    case Cairn::FT_XML:
      return item.AddProblem("This XML document is none of digital cinema, or of a version that is unknown here.");
    default:
      item.Facts.Add("id", content.ID);
      DescribeDocument(path, content.Type, item);
      DescribeSignature(path, content.Type, item);
      return DescribeRawEssence(path, content.Type, item);
  }
}

InfoItem Describe(const std::string& path, const Sigil::KeyRing& keys, ExitCode& code) {
  InfoItem item = {path, "nothing", {}, {}, {}};
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) {
    item.AddProblem("There is no such file or folder.");
    code = ExitCode::Usage;
    return item;
  }
  if (std::filesystem::is_directory(status)) {
    item.Kind = "folder";
    DescribeFolder(path, item);
  } else if (std::filesystem::is_regular_file(status)) {
    DescribeFile(path, keys, item);
  } else {
    item.Kind = "device";
    item.AddProblem("This is neither a file nor a folder.");
  }
  if (!item.Problems.empty() && code == ExitCode::Fine) code = ExitCode::NotPlayable;
  return item;
}

ExitCode Info(const InfoOptions& options) {
  const QuietLog log;  // what is wrong is told in the items
  const Sigil::KeyRing keys = OpenKeys(options.Keys, std::vector<std::string>());
  ExitCode code = ExitCode::Fine;
  std::vector<InfoItem> items;
  for (const std::string& path : options.Paths) {
    items.push_back(Describe(path, keys, code));
    if (Interrupt::Requested()) throw CommandStopped{""};
  }
  std::fputs((options.AsJson ? InfoJson(items) : InfoText(items)).c_str(), stdout);
  return code;
}

}  // namespace

void AddInfoCommand(Command& program) {
  const auto options = std::make_shared<InfoOptions>();
  Command& command = program.AddCommand("info", "Tell what files and folders are, and whether they are sound");
  command
      .Add("path", options->Paths,
           "A track file, a document, a key message, certificates, a font, an image, or a folder")
      .Required();
  options->Keys.AddTo(command);
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "A track file's index is followed to every edit unit; what is in the frames is not looked at, but with keys each "
      "frame of\n"
      "an encrypted file is verified. Signatures are verified; any root is taken as it comes.\n"
      "Exit codes: 0 all is sound, 1 there is no such path, 2 something is damaged or unknown, 4 interrupted.\n"
      "Examples:\n"
      "  strata info show/Trailer/picture-1.mxf\n"
      "  strata info show/Trailer --json");
  command.Does([options] { return Info(*options); });
}

}  // namespace Tool
