// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentRoundTrip.h"

#include <Cairn/XMLAttrPtr.h>
#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

// The frame alone: a handler that visits every node. A document that reaches it had no diagnostics.

namespace {

struct Visit {
  size_t Count = 0;
};

class Visitor : public Cairn::XercesCallWrapper<Visit> {
 public:
  Cairn::Result_t SetupCaller(Visit* visit, Cairn::DCPFormat_t format, Ferro::ILogSink&) override {
    FERRO_ASSERT(format == Cairn::DFT_Interop || format == Cairn::DFT_DCI_SMPTE);
    FERRO_ASSERT(m_ErrorReporter.m_ErrorCount == 0);
    for (const xercesc::DOMNode* node = m_iter->getRoot(); node != nullptr; node = m_iter->nextNode()) {
      ++visit->Count;
      static_cast<void>(Cairn::LocalName(node));
      static_cast<void>(Cairn::NamespaceName(node));
      static_cast<void>(Cairn::XMLAttrPtr::get_attr_with_name(node, "scope"));
    }
    static_cast<void>(Cairn::TrimmedText(m_doc->getDocumentElement()));
    Cairn::SignatureMode_t mode = Cairn::SM_NONE;
    Cairn::X509CertificateList chain;
    Cairn::ReadSignature(m_doc->getDocumentElement(), mode, chain);
    return Ferro::RESULT_OK;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  Cairn::init_xml_libs();
  CairnFuzz::Silence silence;
  Visit visit;
  Visitor visitor;
  const Cairn::Result_t result = visitor.Parse(std::string(data, data + size), &visit, silence);
  FERRO_ASSERT(result.Success() == (visit.Count > 0));
  return 0;
}
