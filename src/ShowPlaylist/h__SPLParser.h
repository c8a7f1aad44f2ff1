// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ShowPlaylist.h>

#include <Cairn/XercesCallWrapper.h>

namespace Strata {

/// Reads the parsed document into a show playlist.
class h__SPLParser : public Cairn::XercesCallWrapper<ShowPlaylist> {
 public:
  ~h__SPLParser() override;
  [[nodiscard]] Result_t SetupCaller(ShowPlaylist* playlist, Cairn::DCPFormat_t format, Ferro::ILogSink& log) override;
};

}  // namespace Strata
