// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMap.h>

#include "FieldReader.h"
#include "FieldWriter.h"

#include <Cairn/Namespace.h>
#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

namespace Cairn {
namespace {

constexpr char DocumentName[] = "VolumeIndex";

class VolumeIndexParser : public XercesCallWrapper<VolumeIndex> {
 public:
  Result_t SetupCaller(VolumeIndex* volume, DCPFormat_t format, Ferro::ILogSink& log) override {
    const xercesc::DOMElement* root = m_doc->getDocumentElement();
    if (LocalName(root) != "VolumeIndex") return RESULT_NOT_ASSETMAP;
    volume->NamespaceName = NamespaceName(root);
    volume->DCPFormat = format;
    FieldReader fields(DocumentName, log);
    if (const xercesc::DOMElement* index = FirstChildNamed(root, "Index")) {
      fields.Count(index, volume->Index);
    } else {
      fields.Missing("Index");
    }
    return fields.Result();
  }
};

}  // namespace

Result_t VolumeIndex::DecodeXML(const std::string& xml) {
  *this = VolumeIndex();
  return DecodeXMLDocument<VolumeIndexParser>(xml, this);
}

Result_t VolumeIndex::EncodeXML(std::string& out, Cairn::DCPFormat_t format) const {
  if (!IsWritableFormat(format)) return Ferro::RESULT_PARAM;
  FieldWriter fields(DocumentName, format);
  Ferro::XMLElement root("VolumeIndex");
  root.SetAttr("xmlns", fields.IsInterop() ? NS_Interop_VL : NS_SMPTE_AM);
  fields.PositiveCount(root, "Index", Index);
  return fields.Render(root, out);
}

}  // namespace Cairn
