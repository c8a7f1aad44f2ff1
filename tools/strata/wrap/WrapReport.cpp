// SPDX-License-Identifier: BSD-3-Clause
#include "WrapReport.h"

#include "terminal/DisplayText.h"
#include "terminal/JsonReport.h"
#include "terminal/TextForms.h"

namespace Tool {

std::string WrapReportText(const WrapReport& report) {
  std::string text = DisplayText(report.File) + ": " + EssenceKindName(report.Kind) + ", " +
                     (report.Interop ? "Interop" : "SMPTE") + " labels" +
                     (report.Encrypted ? ", encrypted with key " + report.KeyID.EncodeString() : "") + '\n';
  text += "  id        " + report.ID.EncodeString() + '\n';
  text += "  duration  " + std::to_string(report.Duration) + " edit units at " + RateText(report.EditRate) +
          " per second, " + TimeCodeText(report.Duration, report.EditRate) + '\n';
  if (report.Padding > 0)
    text += "  padding   " + std::to_string(report.Padding) + " samples of silence fill up the last edit unit\n";
  text += "  size      " + std::to_string(report.Size) + " bytes\n";
  return text + "  digest    " + report.Digest.EncodeBase64() + '\n';
}

std::string WrapReportJson(const WrapReport& report) {
  Json json = NewJsonReport("wrap");
  json["file"] = report.File;
  json["kind"] = EssenceKindName(report.Kind);
  json["id"] = report.ID.EncodeString();
  json["edit_rate"] = report.EditRate.EncodeString();
  json["duration"] = report.Duration;
  json["duration_seconds"] = report.Duration / report.EditRate.Quotient();
  if (report.Padding > 0) json["padding_samples"] = report.Padding;
  json["size_bytes"] = report.Size;
  json["digest"] = report.Digest.EncodeBase64();
  json["labels"] = report.Interop ? "Interop" : "SMPTE";
  json["encrypted"] = report.Encrypted;
  json["key_id"] = report.Encrypted ? report.KeyID.EncodeString() : "";
  if (!report.Warnings.empty()) json["warnings"] = report.Warnings;
  return JsonText(json);
}

}  // namespace Tool
