// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/TimedTextWriter.h>

#include "h__Writer.h"

#include <algorithm>
#include <set>
#include <utility>

namespace QUIRE::TimedText {

namespace {

// The document is the file's essence; each resource follows in a generic stream partition of its own, whose stream the
// header's sub-descriptor names (ST 429-5).
constexpr ui32_t FirstResourceSID = 10;

// The stream ID of the resource at a place in the list; the index's own ID is left out.
ui32_t ResourceSID(size_t place) {
  const ui32_t sid = FirstResourceSID + static_cast<ui32_t>(place);
  return sid < EssenceIndexSID ? sid : sid + 1;
}

const char* MIMEType(MIMEType_t type) {
  switch (type) {
    case MT_PNG:
      return "image/png";
    case MT_OPENTYPE:
      return "application/x-font-opentype";
    case MT_BIN:
      break;
  }
  return "application/octet-stream";
}

const char* FindFault(const WriterInfo& info, const TimedTextDescriptor& text) {
  if (info.LabelSetType == LS_MXF_INTEROP) return "Interop packages keep text in XML files";
  if (!text.AssetID.HasValue()) return "the document has no identifier";
  std::set<Ferro::UUID> seen;
  for (const auto& resource : text.ResourceList) {
    if (!resource.ResourceID.HasValue() || !seen.insert(resource.ResourceID).second) {
      return "a resource has no identifier or that of another";
    }
  }
  return nullptr;
}

void SetUnlessEmpty(std::optional<std::string>& property, const std::string& text) {
  if (!text.empty()) property = text;
}

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const TimedTextDescriptor& text) {
  auto& set = sets.Add<MXF::TimedTextDescriptor>();
  set.DataEssenceCoding = UL(std::array<ui8_t, UL::Size>{});
  set.ResourceID = text.AssetID;
  set.UCSEncoding = text.EncodingName.empty() ? "UTF-8" : text.EncodingName;
  set.NamespaceURI = text.NamespaceName;
  SetUnlessEmpty(set.RFC5646LanguageTagList, text.RFC5646LanguageTagList);
  SetUnlessEmpty(set.DisplayType, text.DisplayType);
  SetUnlessEmpty(set.IntrinsicPictureResolution, text.IntrinsicPictureResolution);
  for (size_t i = 0; i < text.ResourceList.size(); ++i) {
    auto& resource = sets.AddSubDescriptor<MXF::TimedTextResourceSubDescriptor>(set);
    resource.AncillaryResourceID = text.ResourceList[i].ResourceID;
    resource.MIMEMediaType = MIMEType(text.ResourceList[i].Type);
    resource.EssenceStreamID = ResourceSID(i);
  }
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info,
                              const TimedTextDescriptor& descriptor, const WriterOptions& options) {
  if (m_Writer) return Ferro::RESULT_STATE;
  return ResultOf([&]() -> Result_t {
    if (const char* fault = FindFault(info, descriptor)) {
      TellWriteFailure(filename, std::string("cannot write the timed text: ") + fault + '.', m_FailureReason);
      return Ferro::RESULT_PARAM;
    }
    TimedTextDescriptor kept = descriptor;
    std::vector<bool> written(descriptor.ResourceList.size(), false);
    const Result_t result = OpenWriter(m_Writer, m_FailureReason, filename, ESS_TIMED_TEXT, info, descriptor.EditRate,
                                       options, false, MakeDescriptor, descriptor);
    if (result.Failure()) return result;
    m_Descriptor = std::move(kept);
    m_Written = std::move(written);
    return result;
  });
}

// The document is the file's only edit unit; how long it is shown, the descriptor says.
Result_t MXFWriter::WriteTimedTextResource(const std::string& text, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  if (m_Writer->EditUnitCount() != 0) return Ferro::RESULT_STATE;
  h__Writer::EntryFacts facts;
  facts.Flags = 0;  // what timed-text files in the field have
  const std::span bytes(reinterpret_cast<const ui8_t*>(text.data()), text.size());
  return m_Writer->WriteEditUnit(bytes, 0, facts, encryption, integrity);
}

Result_t MXFWriter::WriteAncillaryResource(const FrameBuffer& frame, AESEncContext* encryption,
                                           HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  const auto& list = m_Descriptor.ResourceList;
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const auto& resource) { return resource.ResourceID == frame.AssetID(); });
  if (found == list.end()) return Ferro::RESULT_NOT_FOUND;
  const auto place = static_cast<size_t>(found - list.begin());
  if (m_Writer->EditUnitCount() == 0 || m_Written[place]) return Ferro::RESULT_STATE;
  const Result_t result =
      m_Writer->WriteGenericStream(ResourceSID(place), std::span(frame.RoData(), frame.Size()), encryption, integrity);
  if (result.Success()) m_Written[place] = true;
  return result;
}

Result_t MXFWriter::Finalize() {
  if (!m_Writer) return Ferro::RESULT_INIT;
  if (m_Writer->EditUnitCount() == 0 || std::find(m_Written.begin(), m_Written.end(), false) != m_Written.end()) {
    return Ferro::RESULT_STATE;
  }
  return FinalizeWith(m_Descriptor.ContainerDuration);
}

}  // namespace QUIRE::TimedText
