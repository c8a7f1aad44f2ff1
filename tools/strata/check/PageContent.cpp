// SPDX-License-Identifier: BSD-3-Clause
#include "PageContent.h"

#include "keys/Moment.h"

#include <Ferro/Path.h>
#include <Strata/Version.h>

#include <algorithm>
#include <set>

namespace Tool {

namespace {

Assay::CheckedComposition PageComposition(const CheckedComposition& composition, const FindingList& findings) {
  FindingList own;
  std::copy_if(findings.begin(), findings.end(), std::back_inserter(own),
               [&](const Finding& finding) { return finding.Place.Composition == composition.ID; });
  Assay::CheckedComposition checked;
  checked.ID = composition.ID;
  checked.Title = composition.Title;
  checked.Package = Ferro::PathDirname(composition.File);
  checked.Document = Ferro::PathBasename(composition.File);
  checked.Worst = Assay::WorstClass(Assay::Profile::Plays, own);
  return checked;
}

}  // namespace

PageContent PageContentOf(const CheckReport& report, const std::vector<std::string>& names) {
  PageContent content;
  std::set<Cairn::UUID> seen;  // one may play several times
  for (const std::string& name : names) content.Title += (content.Title.empty() ? "" : ", ") + name;
  content.Verdict = CheckVerdict(report);
  content.Date = LocalText(Ferro::Timestamp());
  content.Version = Strata::Version();
  content.Shows = report.Timelines;
  content.Report.Findings = report.Findings;
  for (const CheckedComposition& composition : report.Compositions)
    if (seen.insert(composition.ID).second)
      content.Report.Compositions.push_back(PageComposition(composition, report.Findings));
  content.Report.LookedAt = {Assay::Depth::Documents, Assay::Depth::Files};
  if (report.Hash) content.Report.LookedAt = {Assay::Depth::Documents, Assay::Depth::Files, Assay::Depth::Hash};
  return content;
}

}  // namespace Tool
