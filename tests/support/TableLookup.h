// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/IAssetLookup.h>

#include <Ferro/UUID.h>

#include <map>

namespace testsupport {

/// Answers from a table, or fails whatever is asked for.
class TableLookup : public Cairn::IAssetLookup {
 public:
  std::map<Ferro::UUID, Cairn::AssetInfo> Table;
  Ferro::Result_t Answer = Ferro::RESULT_OK;  ///< a failure is answered to every question
  mutable unsigned Questions = 0;             ///< about single assets
  mutable bool FlagWasAlwaysSet = true;

  Cairn::Result_t GetAssetIDList(Cairn::UUIDList&) const override { return Ferro::RESULT_NOTIMPL; }
  Cairn::Result_t RegisterAsset(const std::string&, const Cairn::SHA1&, Cairn::AssetInfo&) override {
    return Ferro::RESULT_NOTIMPL;
  }
  Cairn::Result_t GetInfoForAssetID(const Cairn::UUID& id, Cairn::AssetInfo& out, bool flag) const override {
    ++Questions;
    FlagWasAlwaysSet = FlagWasAlwaysSet && flag;
    if (Answer.Failure()) return Answer;
    const auto found = Table.find(id);
    if (found == Table.end()) return Ferro::RESULT_FALSE;
    out = found->second;
    return Ferro::RESULT_OK;
  }
  Cairn::Result_t GetInfoForAssetIDList(const Cairn::UUIDList& ids, Cairn::AssetInfoList& out,
                                        bool flag) const override {
    FlagWasAlwaysSet = FlagWasAlwaysSet && flag;
    if (Answer.Failure()) return Answer;
    bool all = true;
    for (const auto& id : ids) {
      const auto found = Table.find(id);
      all = all && found != Table.end();
      if (found != Table.end()) out.push_back(found->second);
    }
    return all ? Ferro::RESULT_OK : Ferro::RESULT_FALSE;
  }
};

}  // namespace testsupport
