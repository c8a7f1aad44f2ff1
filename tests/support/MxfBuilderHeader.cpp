// SPDX-License-Identifier: BSD-3-Clause
#include "MxfBuilder.h"

#include <algorithm>

namespace testsupport {

namespace {

Bytes SetKey(ui8_t high, ui8_t low) {
  return Hex("060e2b34.02530101.0d010101.0101") + BE8(high) + BE8(low);
}
Bytes PackageUMID(const Bytes& material) {
  return Hex("060a2b34 01010105 01010f20 13000000") + material;
}
const Bytes Picture = Hex("060e2b34.04010101.01030202.01000000");
const Bytes Sound = Hex("060e2b34.04010101.01030202.02000000");
const Bytes Data = Hex("060e2b34.04010101.01030202.03000000");
const Bytes Timecode = Hex("060e2b34.04010101.01030201.01000000");
const Bytes Descriptive = Hex("060e2b34.04010101.01030201.10000000");
const Bytes Date = Hex("07e80102 03040500");

}  // namespace

Bytes MxfBuilder::InstanceID(const std::string& set) {
  Bytes id(set.begin(), set.end());
  id.resize(16, 0x2d);
  // Names that share their first 16 characters still differ.
  for (size_t i = 0; i < set.size(); ++i) id[15 - i % 4] = static_cast<ui8_t>(id[15 - i % 4] * 31 + set[i]);
  return id;
}

ui16_t MxfBuilder::DynamicTag(const std::string& label) {
  const Bytes bytes = Hex(label);
  auto found = std::find(m_DynamicLabels.begin(), m_DynamicLabels.end(), bytes);
  if (found == m_DynamicLabels.end()) found = m_DynamicLabels.insert(found, bytes);
  return static_cast<ui16_t>(0xffff - (found - m_DynamicLabels.begin()));
}

Bytes MxfBuilder::Primer() const {
  static const std::pair<ui16_t, const char*> statics[] = {
      {0x3c0a, "060e2b34.01010101.01011502.00000000"}, {0x3b03, "060e2b34.01010102.06010104.02010000"},
      {0x3f07, "060e2b34.01010104.01030404.00000000"}, {0x0202, "060e2b34.01010102.07020201.01030000"},
      {0x3001, "060e2b34.01010101.04060101.00000000"}, {0x3002, "060e2b34.01010101.04060102.00000000"},
  };
  Bytes entries;
  for (const auto& [tag, label] : statics) entries += BE16(tag) + Hex(label);
  for (size_t i = 0; i < m_DynamicLabels.size(); ++i) entries += BE16(0xffff - i) + m_DynamicLabels[i];
  return KLV(Hex("060e2b34.02050101.0d010201.01050100"), BE32(entries.size() / 18) + BE32(18) + entries);
}

void MxfBuilder::AddSet(Bytes& out, const std::string& name, const Bytes& key, Properties properties) {
  if (std::find(OmittedSets.begin(), OmittedSets.end(), name) != OmittedSets.end()) return;
  properties.insert(properties.begin(), {0x3c0a, InstanceID(name)});
  if (const auto changes = Overrides.find(name); changes != Overrides.end()) {
    for (const auto& [tag, value] : changes->second) {
      std::erase_if(properties, [tag = tag](const auto& property) { return property.first == tag; });
      if (!value.empty()) properties.push_back({tag, value});
    }
  }
  Bytes value;
  for (const auto& [tag, bytes] : properties) value += BE16(tag) + BE16(bytes.size()) + bytes;
  SetAt[name] = out.size();
  out += KLV(key, value);
}

void MxfBuilder::AddTracks(Bytes& out, const std::string& package, const Bytes& clip_source) {
  const bool file_package = package == "File";
  const Bytes length = BE64(DurationGiven ? Duration : EditUnits());
  AddSet(out, package + "TimecodeTrack", SetKey(0x3b, 0),
         {{0x4801, BE32(1)},
          {0x4804, BE32(0)},
          {0x4803, InstanceID(package + "TimecodeSequence")},
          {0x4b01, Rate()},
          {0x4b02, BE64(0)}});
  AddSet(out, package + "TimecodeSequence", SetKey(0x0f, 0),
         {{0x0201, Timecode}, {0x0202, length}, {0x1001, ReferenceArray({InstanceID(package + "Timecode")})}});
  AddSet(out, package + "Timecode", SetKey(0x14, 0),
         {{0x0201, Timecode}, {0x0202, length}, {0x1502, BE16(24)}, {0x1501, BE64(0)}, {0x1503, BE8(0)}});

  const Bytes& definition = Kind == PCM ? Sound : Kind == TimedText || Kind == DCData || Kind == Atmos ? Data : Picture;
  const Bytes key = EssenceKey();
  const Bytes number = file_package && Kind != TimedText ? Bytes(key.begin() + 12, key.end()) : BE32(0);
  AddSet(out, package + "Track", SetKey(0x3b, 0),
         {{0x4801, BE32(2)},
          {0x4804, number},
          {0x4802, UTF16("Essence")},
          {0x4803, InstanceID(package + "Sequence")},
          {0x4b01, Rate()},
          {0x4b02, BE64(0)}});
  AddSet(out, package + "Sequence", SetKey(0x0f, 0),
         {{0x0201, definition}, {0x0202, length}, {0x1001, ReferenceArray({InstanceID(package + "Clip")})}});
  if (Kind == TimedText) {
    AddSet(out, package + "Clip", SetKey(0x41, 0),
           {{0x0201, definition}, {0x0601, BE64(0)}, {0x0202, length}, {0x6101, Bytes(16)}});
  } else {
    AddSet(out, package + "Clip", SetKey(0x11, 0),
           {{0x0201, definition},
            {0x0202, length},
            {0x1201, BE64(0)},
            {0x1101, clip_source},
            {0x1102, BE32(file_package ? 0 : 2)}});
  }
}

void MxfBuilder::AddCryptographicTrack(Bytes& out) {
  AddSet(out, "CryptoTrack", SetKey(0x3a, 0),
         {{0x4801, BE32(3)}, {0x4804, BE32(0)}, {0x4803, InstanceID("CryptoSequence")}});
  AddSet(out, "CryptoSequence", SetKey(0x0f, 0),
         {{0x0201, Descriptive}, {0x0202, BE64(0)}, {0x1001, ReferenceArray({InstanceID("CryptoSegment")})}});
  AddSet(out, "CryptoSegment", SetKey(0x41, 0),
         {{0x0201, Bytes(16)}, {0x0601, BE64(0)}, {0x0202, BE64(0)}, {0x6101, InstanceID("CryptoFramework")}});
  AddSet(out, "CryptoFramework", Hex("060e2b34.02530101.0d010401.02010000"),
         {{DynamicTag("060e2b34.01010109.06010104.020d0000"), InstanceID("CryptoContext")}});
  AddSet(out, "CryptoContext", Hex("060e2b34.02530101.0d010401.02020000"),
         {{DynamicTag("060e2b34.01010109.01011511.00000000"), ContextID()},
          {DynamicTag("060e2b34.01010109.06010102.02000000"), ContainerLabel()},
          {DynamicTag("060e2b34.01010109.02090301.01000000"), Hex("060e2b34.04010107.02090201.01000000")},
          {DynamicTag("060e2b34.01010109.02090302.01000000"),
           UseHMAC ? Hex("060e2b34.04010107.02090202.01000000") : Bytes(16)},
          {DynamicTag("060e2b34.01010109.02090301.02000000"), KeyID()}});
}

void MxfBuilder::AddPictureDescriptor(Bytes& out, Properties properties) {
  std::vector<Bytes> children = {InstanceID("JPEG2000SubDescriptor")};
  if (Kind == JP2KS) children.push_back(InstanceID("StereoscopicSubDescriptor"));
  properties.push_back({DynamicTag("060e2b34.01010109.06010104.06100000"), ReferenceArray(children)});
  properties.push_back({0x3201, Hex("060e2b34.04010109.04010202.03010103")});
  properties.push_back({0x3406, BE32(4095)});
  properties.push_back({0x3407, BE32(0)});
  AddSet(out, "Descriptor", SetKey(0x29, 0), std::move(properties));
  const auto j2k = [this](ui8_t number) {
    Bytes label = Hex("060e2b34.0101010a.04010603.00000000");
    label[12] = number;
    std::string text;
    for (ui8_t byte : label) text += {"0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]};
    return DynamicTag(text);
  };
  AddSet(out, "JPEG2000SubDescriptor", SetKey(0x5a, 0),
         {{j2k(1), BE16(3)},
          {j2k(2), BE32(2048)},
          {j2k(3), BE32(1080)},
          {j2k(4), BE32(0)},
          {j2k(5), BE32(0)},
          {j2k(6), BE32(2048)},
          {j2k(7), BE32(1080)},
          {j2k(8), BE32(0)},
          {j2k(9), BE32(0)},
          {j2k(10), BE16(3)},
          {j2k(11), BE32(3) + BE32(3) + Hex("0b0101 0b0101 0b0101")},
          {j2k(12), Hex("01 04 0001 01 05 03 03 00 00 77 88 88 88 88 88")},
          {j2k(13), Hex("22 7f20 7ee0")}});
  if (Kind == JP2KS) AddSet(out, "StereoscopicSubDescriptor", SetKey(0x63, 0), {});
}

void MxfBuilder::AddDataDescriptor(Bytes& out, Properties properties) {
  const ui16_t children = DynamicTag("060e2b34.01010109.06010104.06100000");
  if (Kind == DCData) {
    properties.push_back({0x3e01, Hex("060e2b34.0401010d.0e090607.01010100")});
    return AddSet(out, "Descriptor", SetKey(0x73, 0), std::move(properties));
  }
  if (Kind == Atmos) {
    properties.push_back({0x3e01, Hex("060e2b34.04010105.0e090604.00000000")});
    properties.push_back({children, ReferenceArray({InstanceID("AtmosSubDescriptor")})});
    AddSet(out, "Descriptor", Hex("060e2b34.02530105.0e090603.00000000"), std::move(properties));
    return AddSet(out, "AtmosSubDescriptor", Hex("060e2b34.02530105.0e090606.00000000"),
                  {{DynamicTag("060e2b34.01010105.0e090509.00000000"), InstanceID("AtmosID")},
                   {DynamicTag("060e2b34.01010105.0e09050a.00000000"), BE32(192)},
                   {DynamicTag("060e2b34.01010105.0e090507.00000000"), BE16(10)},
                   {DynamicTag("060e2b34.01010105.0e090508.00000000"), BE16(118)},
                   {DynamicTag("060e2b34.01010105.0e090506.00000000"), BE8(1)}});
  }
  std::vector<Bytes> resources;
  for (size_t i = 0; i < Resources.size(); ++i)
    if (Resources[i].Listed) resources.push_back(InstanceID("Resource" + std::to_string(i)));
  if (!resources.empty()) properties.push_back({children, ReferenceArray(resources)});
  properties.push_back({DynamicTag("060e2b34.0101010c.01011512.00000000"), DocumentID()});
  properties.push_back({DynamicTag("060e2b34.0101010c.04090500.00000000"), UTF16("UTF-8")});
  properties.push_back(
      {DynamicTag("060e2b34.01010108.01020105.01000000"), UTF16("http://www.smpte-ra.org/schemas/428-7/2010/DCST")});
  AddSet(out, "Descriptor", SetKey(0x64, 0), std::move(properties));
  for (size_t i = 0; i < Resources.size(); ++i)
    if (Resources[i].Listed)
      AddSet(out, "Resource" + std::to_string(i), SetKey(0x65, 0),
             {{DynamicTag("060e2b34.0101010c.01011513.00000000"), Resources[i].ID},
              {DynamicTag("060e2b34.01010107.04090201.00000000"), UTF16(Resources[i].MIMEType)},
              {0x3f07, BE32(Resources[i].SID)}});
}

void MxfBuilder::AddDescriptor(Bytes& out) {
  const Bytes length = BE64(DurationGiven ? Duration : EditUnits());
  Properties file = {
      {0x3006, BE32(2)}, {0x3001, Rate(Kind == JP2KS ? 2 : 1)}, {0x3002, length}, {0x3004, ContainerLabel()}};
  const Properties picture = {{0x3203, BE32(2048)},
                              {0x3202, BE32(1080)},
                              {0x320c, BE8(0)},
                              {0x320e, BE32(2048) + BE32(1080)},
                              {0x320d, BE32(2) + BE32(4) + BE64(0)}};
  const ui32_t block_align = Channels * 3;
  switch (Kind) {
    case JP2K:
    case JP2KS:
      file.insert(file.end(), picture.begin(), picture.end());
      return AddPictureDescriptor(out, std::move(file));
    case MPEG2:
      file.insert(file.end(), picture.begin(), picture.end());
      file.insert(file.end(), {{0x3301, BE32(8)}, {0x3302, BE32(2)}, {0x3308, BE32(2)}, {0x3303, BE8(3)}});
      file.push_back({DynamicTag("060e2b34.01010105.04010602.010b0000"), BE32(80000000)});
      file.push_back({DynamicTag("060e2b34.01010105.04010602.010a0000"), BE8(0x44)});
      return AddSet(out, "Descriptor", SetKey(0x51, 0), std::move(file));
    case PCM:
      file.insert(file.end(), {{0x3d03, BE32(SampleRate) + BE32(1)},
                               {0x3d02, BE8(0)},
                               {0x3d07, BE32(Channels)},
                               {0x3d01, BE32(24)},
                               {0x3d0a, BE16(block_align)},
                               {0x3d09, BE32(block_align * SampleRate)}});
      if (!ChannelAssignment.empty()) file.push_back({0x3d32, ChannelAssignment});
      return AddSet(out, "Descriptor", SetKey(0x48, 0), std::move(file));
    default:
      return AddDataDescriptor(out, std::move(file));
  }
}

void MxfBuilder::AddPackages(Bytes& out) {
  const Bytes file_umid = PackageUMID(AssetID());
  const Bytes material_umid = PackageUMID(InstanceID("Material"));
  AddSet(out, "MaterialPackage", SetKey(0x36, 0),
         {{0x4401, material_umid},
          {0x4402, UTF16("Material")},
          {0x4405, Date},
          {0x4404, Date},
          {0x4403, ReferenceArray({InstanceID("MaterialTimecodeTrack"), InstanceID("MaterialTrack")})}});
  AddTracks(out, "Material", file_umid);
  std::vector<Bytes> tracks = {InstanceID("FileTimecodeTrack"), InstanceID("FileTrack")};
  if (Encrypted()) tracks.push_back(InstanceID("CryptoTrack"));
  AddSet(out, "FilePackage", SetKey(0x37, 0),
         {{0x4401, file_umid},
          {0x4402, UTF16("File")},
          {0x4405, Date},
          {0x4404, Date},
          {0x4403, ReferenceArray(tracks)},
          {0x4701, InstanceID("Descriptor")}});
  AddTracks(out, "File", Bytes(32));
  if (Encrypted()) AddCryptographicTrack(out);
  AddDescriptor(out);
}

Bytes MxfBuilder::Metadata() {
  Bytes sets;
  const Bytes pattern =
      Interop ? Hex("060e2b34.04010101.0d010201.10000000") : Hex("060e2b34.04010102.0d010201.10000000");
  std::vector<Bytes> schemes;
  if (Encrypted()) schemes.push_back(Hex("060e2b34.04010107.0d010401.02010100"));
  const Bytes container = Encrypted() ? Hex("060e2b34.04010107.0d010301.020b0100") : ContainerLabel();
  AddSet(sets, "Preface", SetKey(0x2f, 0),
         {{0x3b02, Date},
          {0x3b05, BE16(0x0102)},
          {0x3b07, BE32(0)},
          {0x3b08, InstanceID("FilePackage")},
          {0x3b06, ReferenceArray({InstanceID("Identification")})},
          {0x3b03, InstanceID("ContentStorage")},
          {0x3b09, pattern},
          {0x3b0a, ReferenceArray({Hex("060e2b34.04010103.0d010301.027f0100"), container})},
          {0x3b0b, ReferenceArray(schemes)}});
  AddSet(sets, "Identification", SetKey(0x30, 0),
         {{0x3c09, InstanceID("Generation")},
          {0x3c01, UTF16("Company")},
          {0x3c02, UTF16("Product")},
          {0x3c03, Bytes(10)},
          {0x3c04, UTF16("1.2.3")},
          {0x3c05, InstanceID("ProductUID")},
          {0x3c06, Date},
          {0x3c07, Bytes(10)},
          {0x3c08, UTF16("linux")}});
  AddSet(sets, "ContentStorage", SetKey(0x18, 0),
         {{0x1901, ReferenceArray({InstanceID("MaterialPackage"), InstanceID("FilePackage")})},
          {0x1902, ReferenceArray({InstanceID("EssenceContainerData")})}});
  AddSet(sets, "EssenceContainerData", SetKey(0x23, 0),
         {{0x2701, PackageUMID(AssetID())}, {0x3f06, BE32(129)}, {0x3f07, BE32(1)}});
  AddPackages(sets);
  sets += ExtraSets;
  const Bytes primer = Primer();
  Bytes all = (SecondPrimer ? KLV(Hex("060e2b34.02050101.0d010201.01050100"), BE32(0) + BE32(18)) : Bytes()) + primer +
              BeforeSets;
  for (auto& [name, at] : SetAt) at += all.size();
  all += sets;
  return HeaderFill == 0 ? all : all + Fill(HeaderFill);
}

}  // namespace testsupport
