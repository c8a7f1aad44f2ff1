// SPDX-License-Identifier: BSD-3-Clause
#include "PackageCheck.h"
#include "findings/FindingJson.h"

#include <StrataHost/KeyResult.h>

namespace Tool {

namespace {

using Assay::Depth;
using Assay::KeptState;
using Assay::LeftOutReason;

Json DepthsJson(const Assay::DepthSet& depths) {
  Json list = Json::Array();
  for (const Depth depth : {Depth::Documents, Depth::Files, Depth::Frames, Depth::Hash, Depth::Decode})
    if (depths.Has(depth)) list.push_back(Assay::DepthName(depth));
  return list;
}

const char* NameOf(LeftOutReason reason) {
  switch (reason) {
    case LeftOutReason::Cancelled:
      return "cancelled";
    case LeftOutReason::NoKey:
      return "no-key";
    case LeftOutReason::Algorithm:
      return "algorithm";
    case LeftOutReason::Unreadable:
      return "unreadable";
    case LeftOutReason::Damaged:
      return "damaged";
    case LeftOutReason::NoMemory:
      return "no-memory";
  }
  return "";
}

const char* NameOf(KeptState state) {
  switch (state) {
    case KeptState::None:
      return "none";
    case KeptState::Used:
      return "used";
    case KeptState::Damaged:
      return "damaged";
    case KeptState::Older:
      return "older";
    case KeptState::Unwritten:
      return "unwritten";
  }
  return "";
}

void AddWorst(std::optional<FindingClass> worst, Json& json) {
  if (worst) json["worst"] = Assay::FindingClassName(*worst);
}

Json KeyJson(const Assay::KeyAnswer& answer) {
  Json json{{"at", answer.Begin.EncodeString()},
            {"now", answer.IsNow},
            {"serves", answer.Serves()},
            {"result", StrataHost::EngineResult(answer.Result).Symbol()}};
  if (!answer.HasMessage()) return json;
  json["file"] = answer.Source;
  json["message_id"] = answer.MessageID.EncodeString();
  json["not_before"] = answer.NotBefore.EncodeString();
  json["not_after"] = answer.NotAfter.EncodeString();
  return json;
}

Json CompositionJson(const Assay::CheckedComposition& composition, const PackageReport& report) {
  Json json{{"id", composition.ID.EncodeString()},
            {"title", composition.Title},
            {"package", composition.Package},
            {"file", composition.Document}};
  if (const auto found = report.Descriptions.find(composition.ID); found != report.Descriptions.end())
    AddUnlessEmpty(json, "description", found->second);
  AddWorst(composition.Worst, json);
  for (const Assay::KeyAnswer& answer : composition.Keys) json["keys"].push_back(KeyJson(answer));
  return json;
}

Json PictureJson(const Assay::PictureFigures& picture) {
  Json json{{"mean_mbps", picture.MeanRate},
            {"peak_mbps", picture.PeakRate},
            {"peak_edit_unit", picture.PeakEditUnit},
            {"edit_units_of_span", picture.UnitsOfSpan},
            {"spans_mbps", picture.Spans}};
  if (picture.LimitRate > 0) json["limit_mbps"] = picture.LimitRate;
  return json;
}

Json FiguresJson(const Assay::FileFigures& file) {
  Json json{{"asset_id", file.Asset.EncodeString()},
            {"package", file.Package},
            {"file", file.Document},
            {"edit_rate", file.EditRate.EncodeString()},
            {"duration", file.Duration}};
  if (file.Picture) json["picture"] = PictureJson(*file.Picture);
  for (const Assay::ChannelFigures& channel : file.Channels) {
    Json& entry = json["channels"].push_back(Json{{"label", channel.Label}, {"silent", channel.IsSilent()}});
    if (!channel.IsSilent()) entry["peak_dbfs"] = channel.Peak;
  }
  return json;
}

}  // namespace

std::string PackageJson(const PackageReport& report) {
  const Assay::CheckReport& checked = report.Checked;
  Json json = NewJsonReport("check-packages");
  json["exit_code"] = static_cast<int>(report.Code);
  json["profile"] = Assay::ProfileName(report.Profile);
  json["interrupted"] = checked.IsCancelled;
  json["needs_keys"] = WithoutKeys(report);
  json["looked_at"] = DepthsJson(checked.LookedAt);
  json["left_out"] = Json::Array();
  for (const Assay::LeftOut& left_out : checked.LeftOuts)
    json["left_out"].push_back(Json{{"package", left_out.Package},
                                    {"file", left_out.Document},
                                    {"depths", DepthsJson(left_out.Depths)},
                                    {"reason", NameOf(left_out.Reason)}});
  json["kept"] = NameOf(checked.Kept);
  json["packages"] = Json::Array();
  for (const Assay::CheckedPackage& package : checked.Packages)
    AddWorst(package.Worst, json["packages"].push_back(Json{{"folder", package.Folder}}));
  json["compositions"] = Json::Array();
  for (const Assay::CheckedComposition& composition : checked.Compositions)
    json["compositions"].push_back(CompositionJson(composition, report));
  json["figures"] = Json::Array();
  for (const Assay::FileFigures& file : checked.Figures) json["figures"].push_back(FiguresJson(file));
  json["findings"] = FindingsJson(checked.Findings);
  json["verdict"] = PackageVerdict(report);
  return JsonText(json);
}

}  // namespace Tool
