// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/TimedTextReader.h>

#include "DescriptorFilling.h"
#include "base/ResultOf.h"

#include <QUIRE/MXF/SubDescriptors.h>

#include <algorithm>
#include <string_view>

namespace QUIRE::TimedText {

namespace {

constexpr const char* DocumentMIMEType = "text/xml";

// Fonts go by several names, TrueType ones included.
MIMEType_t TypeOf(std::string_view mime_type) {
  if (mime_type == "image/png") return MT_PNG;
  static constexpr std::string_view fonts[] = {"application/x-font-opentype",
                                               "application/x-opentype",
                                               "application/x-font-truetype",
                                               "application/x-font-ttf",
                                               "application/vnd.ms-opentype",
                                               "font/otf",
                                               "font/ttf"};
  return std::find(std::begin(fonts), std::end(fonts), mime_type) != std::end(fonts) ? MT_OPENTYPE : MT_BIN;
}

using ResourceSets = std::vector<const MXF::TimedTextResourceSubDescriptor*>;

// The resources in the descriptor's order; of several with one identifier the first.
ResourceSets Resources(h__Reader& reader) {
  ResourceSets resources;
  for (const Ferro::UUID& id : reader.Facts().Descriptor->SubDescriptors) {
    const auto* resource = reader.Header().Resolve<MXF::TimedTextResourceSubDescriptor>(id);
    if (resource == nullptr) continue;
    const bool known = std::any_of(resources.begin(), resources.end(), [&](const auto* other) {
      return other->AncillaryResourceID == resource->AncillaryResourceID;
    });
    if (!known) resources.push_back(resource);
  }
  return resources;
}

const MXF::TimedTextDescriptor& Descriptor(const h__Reader& reader) {
  return dynamic_cast<const MXF::TimedTextDescriptor&>(*reader.Facts().Descriptor);
}

}  // namespace

}  // namespace QUIRE::TimedText

namespace QUIRE {

Result_t FillFrom(h__Reader& reader, TimedText::TimedTextDescriptor& descriptor) {
  const auto* text = dynamic_cast<const MXF::TimedTextDescriptor*>(reader.Facts().Descriptor);
  if (text == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = reader.Facts().EditRate;
  descriptor.ContainerDuration = reader.ContainerDuration();
  descriptor.AssetID = text->ResourceID;
  descriptor.NamespaceName = text->NamespaceURI;
  descriptor.EncodingName = text->UCSEncoding;
  for (const auto* resource : TimedText::Resources(reader))
    descriptor.ResourceList.push_back({resource->AncillaryResourceID, TimedText::TypeOf(resource->MIMEMediaType)});
  descriptor.RFC5646LanguageTagList = text->RFC5646LanguageTagList.value_or("");
  descriptor.DisplayType = text->DisplayType.value_or("");
  descriptor.IntrinsicPictureResolution = text->IntrinsicPictureResolution.value_or("");
  return Ferro::RESULT_OK;
}

Result_t FindResources(h__Reader& reader, Ferro::UUID& missing) {
  if (dynamic_cast<const MXF::TimedTextDescriptor*>(reader.Facts().Descriptor) == nullptr) return Ferro::RESULT_OK;
  for (const auto* resource : TimedText::Resources(reader)) {
    const Result_t result = reader.LocateStream(resource->EssenceStreamID);
    if (result.Success()) continue;
    missing = resource->AncillaryResourceID;
    return result;
  }
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE

namespace QUIRE::TimedText {

MXFReader::MXFReader() : TrackFileReader(ESS_TIMED_TEXT) {}

Result_t MXFReader::FillTimedTextDescriptor(TimedTextDescriptor& descriptor) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return ResultOf([&] { return FillFrom(*m_Reader, descriptor); });
}

Result_t MXFReader::ReadTimedTextResource(FrameBuffer& frame, AESDecContext* decryption, HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  const Result_t result = m_Reader->ReadStream(m_Reader->Facts().BodySID, 1, {decryption, integrity}, frame);
  if (result.Failure()) return result;
  frame.FrameNumber(0);
  frame.AssetID(Descriptor(*m_Reader).ResourceID);
  frame.MIMEType(DocumentMIMEType);
  return result;
}

Result_t MXFReader::ReadTimedTextResource(std::string& text, AESDecContext* decryption, HMACContext* integrity) {
  FrameBuffer frame;
  const Result_t result = ReadTimedTextResource(frame, decryption, integrity);
  if (result.Failure()) return result;
  if (frame.SourceLength() != 0) return RESULT_DECRYPT_CTX;
  return ResultOf([&] {
    text.assign(reinterpret_cast<const char*>(frame.RoData()), frame.Size());
    return result;
  });
}

Result_t MXFReader::ReadAncillaryResource(const Ferro::UUID& id, FrameBuffer& frame, AESDecContext* decryption,
                                          HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return ResultOf([&]() -> Result_t {
    const ResourceSets resources = Resources(*m_Reader);
    const auto found = std::find_if(resources.begin(), resources.end(),
                                    [&](const auto* resource) { return resource->AncillaryResourceID == id; });
    if (found == resources.end() || (*found)->EssenceStreamID == 0) return Ferro::RESULT_NOT_FOUND;
    // Sequence numbers run on from the document to its resources.
    const ui64_t sequence = 2 + static_cast<ui64_t>(found - resources.begin());
    const Result_t result = m_Reader->ReadStream((*found)->EssenceStreamID, sequence, {decryption, integrity}, frame);
    if (result.Failure()) return result;
    frame.FrameNumber(0);
    frame.AssetID(id);
    frame.MIMEType((*found)->MIMEMediaType);
    return result;
  });
}

}  // namespace QUIRE::TimedText
