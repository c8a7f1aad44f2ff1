// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ResourcePresentationList.h>

#include <Cairn/XercesCallWrapper.h>

namespace Strata {

/// Recognises a parsed resource presentation list. The engine writes these lists for others; it takes nothing from one.
class h__RPLParser : public Cairn::XercesCallWrapper<ResourcePresentationList> {
 public:
  ~h__RPLParser() override;
  /// @return RESULT_OK; Cairn::RESULT_NOT_CPL for another document; RESULT_STATE, logged, without a document or list.
  [[nodiscard]] Result_t SetupCaller(ResourcePresentationList* list, Cairn::DCPFormat_t format,
                                     Ferro::ILogSink& log) override;
};

}  // namespace Strata
