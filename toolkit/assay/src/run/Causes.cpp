// SPDX-License-Identifier: BSD-3-Clause
#include "Causes.h"

#include <Ferro/Assert.h>

#include <map>
#include <tuple>

namespace Assay {
namespace {

/// What a finding shares with others of a scope: what names the asset, the document and so on. Empty: it is about none.
using Shared = std::tuple<std::string, std::string, ui32_t>;

bool IsEmpty(const Shared& shared) {
  return shared == Shared();
}

std::string TextOf(const UUID& id) {
  return id.HasValue() ? id.EncodeString() : std::string();
}

Shared SharedBy(Scope scope, const FindingPlace& place) {
  switch (scope) {
    case Scope::Asset:
      if (place.Asset.HasValue()) return {place.Package, TextOf(place.Asset), 0};
      break;
    case Scope::Reel:
      if (place.Reel != 0) return {place.Package, TextOf(place.Composition), place.Reel};
      break;
    case Scope::Document:
      if (!place.Document.empty()) return {place.Package, place.Document, 0};
      break;
    case Scope::Composition:
      if (place.Composition.HasValue()) return {place.Package, TextOf(place.Composition), 0};
      break;
    case Scope::Package:
      return {place.Package, "", 0};
  }
  return {};
}

/// Which findings are the first causes of what.
class CauseIndex {
 public:
  explicit CauseIndex(const FindingList& findings) : m_Findings(findings) {
    for (size_t i = 0; i < findings.size(); ++i)
      for (const Consequence& consequence : RuleOf(findings[i].ID).Consequences) Add(consequence, i);
  }

  /// The first finding that one follows from; no value where it follows from none.
  [[nodiscard]] std::optional<size_t> CauseOf(size_t index) const {
    const Finding& finding = m_Findings[index];
    std::optional<size_t> first;
    const auto ask = [&](Scope scope, const Shared& shared) {
      if (IsEmpty(shared)) return;
      const auto found = m_Causes.find({finding.ID, scope, finding.Class, shared});
      if (found != m_Causes.end() && found->second != index && (!first || found->second < *first))
        first = found->second;
    };
    for (const Scope scope : {Scope::Asset, Scope::Reel, Scope::Document, Scope::Composition, Scope::Package})
      ask(scope, SharedBy(scope, finding.Place));
    // What is about a composition is about an asset of its package, too; and a store's files are in none.
    FindingPlace place = finding.Place;
    place.Asset = place.Composition;
    ask(Scope::Asset, SharedBy(Scope::Asset, place));
    place = finding.Place;
    place.Package.clear();
    ask(Scope::Asset, SharedBy(Scope::Asset, place));
    return first;
  }

 private:
  using Key = std::tuple<FindingID, Scope, FindingClass, Shared>;  // of a consequence

  void Add(const Consequence& consequence, size_t cause) {
    const Shared shared = SharedBy(consequence.Same, m_Findings[cause].Place);
    if (IsEmpty(shared)) return;
    for (const FindingClass value : RuleOf(consequence.ID).Classes.All())
      if (m_Findings[cause].Class <= value)
        m_Causes.try_emplace({consequence.ID, consequence.Same, value, shared}, cause);
  }

  const FindingList& m_Findings;
  std::map<Key, size_t> m_Causes;
};

}  // namespace

void LinkCauses(FindingList& findings) {
  const CauseIndex index(findings);
  std::vector<std::optional<size_t>> causes(findings.size());
  for (size_t i = 0; i < findings.size(); ++i) causes[i] = findings[i].Cause ? findings[i].Cause : index.CauseOf(i);
  for (size_t i = 0; i < findings.size(); ++i) {
    size_t root = i;
    // The table has no circles; neither has what its findings are linked by.
    for (size_t steps = 0; causes[root] && steps < findings.size(); ++steps) root = *causes[root];
    FERRO_ASSERT(!causes[root]);
    if (root != i) findings[i].Cause = root;
  }
  PutBehindCauses(findings);
}

void PutBehindCauses(FindingList& findings) {
  std::vector<std::vector<size_t>> consequences(findings.size());
  for (size_t i = 0; i < findings.size(); ++i)
    if (findings[i].Cause) consequences[*findings[i].Cause].push_back(i);
  FindingList ordered;
  for (size_t i = 0; i < findings.size(); ++i) {
    if (findings[i].Cause) continue;
    const size_t root = ordered.size();
    ordered.push_back(std::move(findings[i]));
    for (const size_t each : consequences[i]) {
      ordered.push_back(std::move(findings[each]));
      ordered.back().Cause = root;
    }
  }
  findings = std::move(ordered);
}

}  // namespace Assay
