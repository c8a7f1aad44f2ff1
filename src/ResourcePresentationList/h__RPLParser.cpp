// SPDX-License-Identifier: BSD-3-Clause
#include "ResourcePresentationList/h__RPLParser.h"

#include <Cairn/XMLNode.h>

namespace Strata {

h__RPLParser::~h__RPLParser() = default;

Result_t h__RPLParser::SetupCaller(ResourcePresentationList* list, Cairn::DCPFormat_t, Ferro::ILogSink& log) {
  if (m_parser.empty() || m_doc == nullptr || m_iter == nullptr || list == nullptr) {
    log.Error("RESULT_STATE RETURNED at %s (%d)\n", __FILE__, __LINE__);
    return Ferro::RESULT_STATE;
  }
  if (Cairn::LocalName(m_iter->getCurrentNode()) != "ResourcePresentationList") return Cairn::RESULT_NOT_CPL;
  return Ferro::RESULT_OK;
}

Result_t ResourcePresentationList::DecodeXML(const std::string& xml) {
  return Cairn::DecodeXMLDocument<h__RPLParser>(xml, this);
}

}  // namespace Strata
