// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMap.h>

#include "xml/FieldReader.h"
#include "xml/FieldWriter.h"

#include <Cairn/Namespace.h>

namespace Cairn {
namespace {

constexpr char DocumentName[] = "VolumeIndex";

Result_t ReadVolumeIndex(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, VolumeIndex& volume) {
  if (LocalName(root) != "VolumeIndex") return RESULT_NOT_ASSETMAP;
  volume.NamespaceName = NamespaceName(root);
  volume.DCPFormat = format;
  FieldReader fields(DocumentName, log);
  if (const Element* index = FirstChildNamed(root, "Index")) {
    fields.Count(index, volume.Index);
  } else {
    fields.Missing("Index");
  }
  return fields.Result();
}

}  // namespace

Result_t VolumeIndex::DecodeXML(const std::string& xml) {
  *this = VolumeIndex();
  Index = 0;  // nothing is read that is not there
  return ReadDocument(xml, Ferro::DefaultLogSink(),
                      [this](const Element* root, DCPFormat_t format, Ferro::ILogSink& log) {
                        return ReadVolumeIndex(root, format, log, *this);
                      });
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
