// SPDX-License-Identifier: BSD-3-Clause
#include "MxfBuilder.h"

#include <QUIRE/Crypto.h>

#include <algorithm>
#include <stdexcept>

namespace testsupport {

MxfBuilder::MxfBuilder(Kind_t kind) : Kind(kind), Duration(0) {}

Bytes MxfBuilder::AssetID() {
  return Hex("a55e7000 0000 4000 8000 000000000001");
}
Bytes MxfBuilder::ContextID() {
  return Hex("c0277e87 0000 4000 8000 000000000002");
}
Bytes MxfBuilder::KeyID() {
  return Hex("6e71d000 0000 4000 8000 000000000003");
}
Bytes MxfBuilder::DocumentID() {
  return Hex("d0c00000 0000 4000 8000 000000000004");
}

Bytes MxfBuilder::EssenceKey() const {
  if (!ElementKey.empty()) return ElementKey;
  switch (Kind) {
    case JP2K:
    case JP2KS:
      return Hex("060e2b34.01020101.0d010301.15010801");
    case MPEG2:
      return Hex("060e2b34.01020101.0d010301.15010501");
    case PCM:
      return Hex("060e2b34.01020101.0d010301.16010101");
    case TimedText:
      return Hex("060e2b34.01020101.0d010301.17010b01");
    case DCData:
      return Hex("060e2b34.01020101.0d010301.17010d01");
    default:
      return Hex("060e2b34.01020105.0e090601.00000001");
  }
}

Bytes MxfBuilder::ContainerLabel() const {
  switch (Kind) {
    case JP2K:
    case JP2KS:
      return Hex("060e2b34.04010107.0d010301.020c0100");
    case MPEG2:
      return Hex("060e2b34.04010102.0d010301.02046001");
    case PCM:
      return Hex("060e2b34.04010101.0d010301.02060100");
    case TimedText:
      return Hex("060e2b34.0401010a.0d010301.02130101");
    case DCData:
      return Hex("060e2b34.0401010d.0d010301.02130201");
    default:
      return Hex("060e2b34.04010105.0e090605.00000000");
  }
}

ui64_t MxfBuilder::EditUnits() const {
  return Kind == TimedText ? 240 : Kind == JP2KS ? Frames.size() / 2 : Frames.size();
}

Bytes MxfBuilder::Fill(size_t total) const {
  return KLV(Hex("060e2b34.01010102.03010210.01000000"), Bytes(total - 20));
}

Bytes MxfBuilder::Pack(ui8_t kind, ui8_t status, const PackFields& fields) const {
  const Bytes pattern =
      Interop ? Hex("060e2b34.04010101.0d010201.10000000") : Hex("060e2b34.04010102.0d010201.10000000");
  const Bytes container = Encrypted() ? Hex("060e2b34.04010107.0d010301.020b0100") : ContainerLabel();
  return KLV(Hex("060e2b34.02050101.0d010201.01") + BE8(kind) + BE8(status) + BE8(0),
             BE16(1) + BE16(2) + BE32(KAGSize) + BE64(fields.This) + BE64(fields.Previous) + BE64(fields.Footer) +
                 BE64(fields.HeaderBytes) + BE64(fields.IndexBytes) + BE32(fields.IndexSID) + BE64(fields.BodyOffset) +
                 BE32(fields.BodySID) + pattern +
                 ReferenceArray({Hex("060e2b34.04010103.0d010301.027f0100"), container}));
}

Bytes MxfBuilder::Triplet(const Bytes& key, const Bytes& value, std::optional<ui64_t> sequence) const {
  using namespace QUIRE;
  AESEncContext cipher;
  HMACContext hmac;
  const std::span<const ui8_t, KeyLen> content_key(Key.data(), KeyLen);
  const Bytes ivec = Hex("000102030405060708090a0b0c0d0e0f");
  Bytes encrypted(EncryptedSourceLength(value.size(), PlaintextOffset));
  const LabelSet_t labels = Interop ? LS_MXF_INTEROP : LS_MXF_SMPTE;
  bool ok = cipher.InitKey(content_key).Success() && hmac.InitKey(content_key, labels).Success() &&
            EncryptFrame(value, PlaintextOffset, std::span<const ui8_t, CBC_BLOCK_SIZE>(ivec.data(), CBC_BLOCK_SIZE),
                         cipher, encrypted)
                .Success();
  const Bytes source_length = SourceLengthItem.empty() ? BE64(value.size()) : SourceLengthItem;
  Bytes triplet = Length4(16) + ContextID() + Length4(8) + BE64(PlaintextOffset) + Length4(16) + key +
                  Length4(source_length.size()) + source_length + Length4(encrypted.size()) + encrypted;
  if (UseHMAC) {
    const Bytes number = sequence ? Length4(8) + BE64(*sequence) : Length4(0);
    const Bytes covered = encrypted + Length4(16) + AssetID() + number + Length4(20);
    std::array<ui8_t, HMAC_SIZE> mic{};
    ok = ok && hmac.Update(covered).Success() && hmac.Finalize().Success() && hmac.GetHMACValue(mic).Success();
    triplet += Bytes(covered.begin() + static_cast<std::ptrdiff_t>(encrypted.size()), covered.end()) +
               Bytes(mic.begin(), mic.end());
  }
  if (!ok) throw std::runtime_error("a test triplet could not be encrypted");
  return triplet;
}

Bytes MxfBuilder::Element(const Bytes& key, const Bytes& value, std::optional<ui64_t> sequence) const {
  if (!Encrypted()) return key + LengthOf(value.size(), EssenceLengthSize) + value;
  const Bytes triplet = Triplet(key, value, sequence);
  const Bytes triplet_key =
      Interop ? Hex("060e2b34.02040107.0d010301.027e0100") : Hex("060e2b34.02040101.0d010301.027e0100");
  return triplet_key + LengthOf(triplet.size(), EssenceLengthSize) + triplet;
}

Bytes MxfBuilder::Essence() {
  Bytes essence = FillBeforeEssence;
  m_EssenceOrigin = essence.size();
  ElementAt.clear();
  for (size_t i = 0; i < Frames.size(); ++i) {
    if (i > 0) essence += FillBetweenFrames;
    ElementAt.push_back(essence.size());
    essence += Element(EssenceKey(), Frames[i],
                       i < SequenceNumbers.size() ? SequenceNumbers[i] : std::optional<ui64_t>(i + 1));
  }
  return essence;
}

std::vector<ui64_t> MxfBuilder::StreamOffsets() const {
  std::vector<ui64_t> offsets;
  const size_t step = Kind == JP2KS ? 2 : 1;
  for (size_t i = 0; i < ElementAt.size(); i += step)
    for (ui32_t copy = 0; copy < EntriesPerEditUnit; ++copy)
      offsets.push_back(ElementAt[i] - m_EssenceOrigin + StreamOffsetOrigin);
  for (ui32_t i = 0; i < ExtraEntries; ++i) offsets.push_back(EssenceEnd - EssenceAt - m_EssenceOrigin);
  return offsets;
}

Bytes MxfBuilder::IndexSegment(ui64_t start, const std::vector<ui64_t>& offsets) const {
  const bool constant = Kind == PCM && !ForceVariableIndex;
  const ui64_t unit = ElementAt.size() > 1 ? ElementAt[1] - ElementAt[0] : EssenceEnd - EssenceAt;
  const auto item = [](ui16_t tag, const Bytes& value) { return BE16(tag) + BE16(value.size()) + value; };
  Bytes entries;
  for (ui64_t offset : offsets) entries += Hex("0000 80") + BE64(offset) + Bytes(EntrySize - 11u);
  Bytes value = item(0x3c0a, InstanceID("Segment" + std::to_string(start))) +
                item(0x3f0b, BE32(RateNumerator * IndexRateFactor) + BE32(RateDenominator)) +
                item(0x3f0c, BE64(start)) + item(0x3f0d, BE64(constant || ZeroIndexDuration ? 0 : offsets.size())) +
                item(0x3f05, BE32(constant ? unit : 0)) + item(0x3f06, BE32(129)) + item(0x3f07, BE32(1)) +
                item(0x3f08, BE8(0)) + item(0x3f0e, BE8(0));
  if (!constant) value += item(0x3f09, BE32(1) + BE32(6) + Hex("ff00 00000000"));
  value += item(0x3f0a, constant ? BE64(0) : BE32(offsets.size()) + BE32(EntrySize) + entries);
  return KLV(Hex("060e2b34.02530101.0d010201.01100100"), value);
}

Bytes MxfBuilder::IndexSegments() const {
  if (Kind == PCM && !ForceVariableIndex) return IndexSegment(0, {});
  const std::vector<ui64_t> offsets = StreamOffsets();
  std::vector<Bytes> segments;
  for (size_t start = 0; start < offsets.size(); start += EntriesPerSegment) {
    const size_t end = std::min(offsets.size(), start + EntriesPerSegment);
    segments.push_back(IndexSegment(start, {offsets.begin() + static_cast<std::ptrdiff_t>(start),
                                            offsets.begin() + static_cast<std::ptrdiff_t>(end)}));
  }
  if (SegmentsReversed) std::reverse(segments.begin(), segments.end());
  Bytes all;
  for (int copy = 0; copy < (SegmentsTwice ? 2 : 1); ++copy)
    for (const Bytes& segment : segments) all += segment;
  return all += ExtraSegments;
}

Bytes MxfBuilder::GenericStreams(std::vector<std::pair<ui32_t, size_t>>& packs) const {
  Bytes streams;
  size_t previous = BodyAt;
  for (size_t i = 0; i < Resources.size(); ++i) {
    const size_t at = EssenceEnd + streams.size();
    packs.push_back({Resources[i].SID, at});
    streams +=
        KLV(Hex("060e2b34.02050101.0d010201.01031100"),
            BE16(1) + BE16(2) + BE32(1) + BE64(at) + BE64(previous) + Bytes(8 + 8 + 8 + 4) +
                BE64(Resources[i].BodyOffset) + BE32(Resources[i].SID) + Hex("060e2b34.04010101.0d010201.01010100") +
                ReferenceArray({Hex("060e2b34.01020101.0d010301.17010b01")}));
    streams += Element(Hex("060e2b34.0101010c.0d010509.01000000"), Resources[i].Data, i + 2);
    previous = at;
  }
  return streams;
}

// The places were noted from the header partition pack on, those of sets from its end on.
void MxfBuilder::ShiftPlaces(size_t pack) {
  for (size_t* at : {&PrimerAt, &HeaderEnd, &BodyAt, &EssenceAt, &EssenceEnd, &FooterAt, &IndexAt, &RIPAt})
    *at += RunIn.size();
  for (size_t& at : ElementAt) at += RunIn.size();
  for (auto& [name, at] : SetAt) at += pack + RunIn.size();
}

Bytes MxfBuilder::Build() {
  SetAt.clear();
  const Bytes metadata = Metadata();
  const Bytes essence = Essence();
  EssenceAt = 0;
  EssenceEnd = essence.size();
  const Bytes index = IndexSegments();
  const auto index_bytes = [&](IndexPlace_t place) { return IndexPlace == place ? index : Bytes(); };
  const size_t pack = 140;

  PrimerAt = pack;
  HeaderEnd = pack + metadata.size() + index_bytes(InHeader).size();
  BodyAt = Interop ? 0 : HeaderEnd;
  EssenceAt = Interop ? HeaderEnd : BodyAt + pack + index_bytes(InBody).size();
  EssenceEnd = EssenceAt + essence.size();
  for (size_t& at : ElementAt) at += EssenceAt;

  std::vector<std::pair<ui32_t, size_t>> stream_packs;
  const Bytes streams = GenericStreams(stream_packs);
  const size_t previous = stream_packs.empty() ? BodyAt : stream_packs.back().second;
  FooterAt = EssenceEnd + streams.size();
  const ui64_t footer_known = FooterPartitionKnown && HasFooter ? FooterAt : 0;

  PackFields header{0,
                    0,
                    footer_known,
                    metadata.size(),
                    index_bytes(InHeader).size(),
                    0,
                    IndexPlace == InHeader ? 129u : 0,
                    Interop ? 1u : 0};
  PackFields body{BodyAt, 0, 0, 0, index_bytes(InBody).size(), 0, IndexPlace == InBody ? 129u : 0, 1};
  const Bytes footer_metadata = HeaderMetadataInFooter ? metadata : Bytes();
  PackFields footer{FooterAt,
                    previous,
                    FooterAt,
                    footer_metadata.size(),
                    index_bytes(InFooter).size(),
                    0,
                    IndexPlace == InFooter ? 129u : 0,
                    0};

  Bytes file = Pack(2, HeaderStatus, header) + metadata + index_bytes(InHeader);
  if (!Interop) file += Pack(3, 4, body) + index_bytes(InBody);
  file += essence + streams;
  if (HasFooter) file += Pack(4, 4, footer) + footer_metadata + index_bytes(InFooter);
  IndexAt = FooterAt + pack + footer_metadata.size();
  RIPAt = file.size();
  if (HasRIP) {
    Bytes entries = BE32(Interop ? 1 : 0) + BE64(0);
    if (!Interop) entries += BE32(1) + BE64(BodyAt);
    for (const auto& [sid, at] : stream_packs) entries += BE32(sid) + BE64(at);
    if (HasFooter) entries += BE32(0) + BE64(FooterAt);
    file += KLV(Hex("060e2b34.02050101.0d010201.01110100"), entries + BE32(entries.size() + 24));
  }
  ShiftPlaces(pack);
  return RunIn + file + AfterRIP;
}

}  // namespace testsupport
