// SPDX-License-Identifier: BSD-3-Clause
#include "Verdicts.h"

#include "Causes.h"

#include "security/SecurityFindings.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace Assay {
namespace {

constexpr size_t None = static_cast<size_t>(-1);

/// Whom a finding is about; indices into the report.
struct Owner {
  size_t Package = None;
  size_t Composition = None;

  /// What belongs to no composition stands first, what belongs to no package last.
  [[nodiscard]] auto Order() const { return std::tuple(Package, Composition + 1); }
};

class Verdicts {
 public:
  Verdicts(const std::vector<CompositionParts>& parts, CheckReport& report) : m_Parts(parts), m_Report(report) {
    for (size_t i = 0; i < report.Packages.size(); ++i) m_Packages.try_emplace(report.Packages[i].Folder, i);
    for (size_t i = 0; i < report.Compositions.size(); ++i) {
      const CheckedComposition& composition = report.Compositions[i];
      m_Documents.try_emplace({composition.Package, composition.Document}, i);
      m_IDs.emplace(composition.ID, i);
    }
    for (size_t i = 0; i < parts.size(); ++i)
      for (const auto* list : {&parts[i].Inside, &parts[i].Outside})
        for (const UUID& id : *list) m_Users.emplace(id, i);
  }

  void Arrange() {
    std::vector<std::pair<Owner, size_t>> order;
    for (size_t i = 0; i < m_Report.Findings.size(); ++i) order.emplace_back(OwnerOf(m_Report.Findings[i].Place), i);
    std::ranges::stable_sort(order, {}, [](const auto& entry) { return entry.first.Order(); });
    std::vector<size_t> places(order.size());  // where each stands afterwards
    FindingList arranged;
    for (const auto& [owner, index] : order) {
      places[index] = arranged.size();
      arranged.push_back(std::move(m_Report.Findings[index]));
    }
    for (Finding& finding : arranged)
      if (finding.Cause) finding.Cause = places[*finding.Cause];
    m_Report.Findings = std::move(arranged);
  }

  void Judge(Profile profile) {
    for (const Finding& finding : m_Report.Findings) {
      if (!Counts(profile, finding)) continue;
      const Owner owner = OwnerOf(finding.Place);
      if (owner.Package != None) Worsen(m_Report.Packages[owner.Package].Worst, finding);
      if (owner.Composition != None)
        Worsen(m_Report.Compositions[owner.Composition].Worst, finding);
      else
        JudgeUsers(finding);
    }
  }

 private:
  static void Worsen(std::optional<FindingClass>& worst, const Finding& finding) {
    if (!worst || finding.Class < *worst) worst = finding.Class;
  }

  [[nodiscard]] Owner OwnerOf(const FindingPlace& place) const {
    Owner owner;
    if (const auto found = m_Packages.find(place.Package); found != m_Packages.end()) owner.Package = found->second;
    if (const auto found = m_Documents.find({place.Package, place.Document}); found != m_Documents.end()) {
      owner.Composition = found->second;
    } else if (place.Composition.HasValue()) {
      const auto [begin, end] = m_IDs.equal_range(place.Composition);
      for (auto it = begin; it != end && owner.Composition == None; ++it)
        if (place.Package.empty() || m_Report.Compositions[it->second].Package == place.Package)
          owner.Composition = it->second;
    }
    if (owner.Composition == None || owner.Package != None) return owner;
    // A key message, or a file of a store.
    const auto found = m_Packages.find(m_Report.Compositions[owner.Composition].Package);
    if (found != m_Packages.end()) owner.Package = found->second;
    return owner;
  }

  /// What is wrong with a file is wrong with the compositions that play it.
  void JudgeUsers(const Finding& finding) {
    if (!finding.Place.Asset.HasValue()) return;
    const auto [begin, end] = m_Users.equal_range(finding.Place.Asset);
    for (auto it = begin; it != end; ++it) {
      CheckedComposition& composition = m_Report.Compositions[it->second];
      if (composition.Package == finding.Place.Package || m_Parts[it->second].Outside.contains(finding.Place.Asset))
        Worsen(composition.Worst, finding);
    }
  }

  const std::vector<CompositionParts>& m_Parts;
  CheckReport& m_Report;
  std::map<std::string, size_t> m_Packages;                           // by folder
  std::map<std::pair<std::string, std::string>, size_t> m_Documents;  // compositions by folder and path
  std::multimap<UUID, size_t> m_IDs;                                  // compositions by identifier
  std::multimap<UUID, size_t> m_Users;                                // compositions by their parts
};

}  // namespace

void Conclude(Profile profile, const std::vector<CompositionParts>& parts, CheckReport& report) {
  Verdicts verdicts(parts, report);
  verdicts.Arrange();
  LinkCauses(report.Findings);
  verdicts.Judge(profile);
  TellCertificatesOnce(report.Findings);
  PutBehindCauses(report.Findings);
}

}  // namespace Assay
