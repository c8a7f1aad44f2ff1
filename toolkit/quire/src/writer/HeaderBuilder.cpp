// SPDX-License-Identifier: BSD-3-Clause
#include "HeaderBuilder.h"

#include <QUIRE/MXF/Metadata.h>

#include <utility>

namespace QUIRE {

namespace {

constexpr ui32_t TimecodeTrackID = 1;
constexpr ui32_t EssenceTrackID = 2;
constexpr ui32_t DescriptiveTrackID = 3;
constexpr i64_t SecondsPerHour = 3600;

// Present, and all zero.
template <class T>
T Null() {
  return T(std::array<ui8_t, T::Size>{});
}

// The sets of a header, and what refers to what:
//
//   preface ─► identification
//      └─► content storage ─► essence container data (which streams)
//               ├─► material package ─► time code track, essence track ─► clip ──┐ by package and track
//               └─► file package ─► time code track, essence track ◄────────────┘
//                        ├─► cryptographic track ─► framework ─► context, where essence is encrypted
//                        └─► descriptor ─► sub-descriptors
//
// Each track has a sequence, and that one component (ST 429-3).
class HeaderBuilder {
 public:
  HeaderBuilder(const HeaderPlan& plan, ui32_t duration)
      : m_Plan(plan),
        m_Dict(DictionaryFor(plan.Info.LabelSetType)),
        m_Duration(duration),
        m_Sets(m_Header, plan.Seed) {}

  MXF::OP1aHeader Build(const DescriptorMaker& descriptor) {
    MXF::Preface& preface = AddPreface();
    preface.Identifications.push_back(AddIdentification());
    auto& storage = m_Sets.Add<MXF::ContentStorage>();
    preface.ContentStorage = storage.InstanceUID;
    const MXF::UMID file_package_id = MXF::MakeUMID(m_Plan.Info.AssetUUID);
    AddContainerData(storage, file_package_id);

    auto& material = AddPackage<MXF::MaterialPackage>(storage, "Material Package");
    material.PackageUID = MXF::MakeUMID(m_Sets.NextIdentifier());
    AddTimecodeTrack(material, 0);
    AddEssenceTrack(material, 0, &file_package_id);

    auto& source = AddPackage<MXF::SourcePackage>(storage, m_Plan.Kind->WrappingName);
    source.PackageUID = file_package_id;
    preface.PrimaryPackage = source.InstanceUID;
    AddTimecodeTrack(source, m_Plan.Kind->StartsAtOneHour ? SecondsPerHour * TimecodeBase() : 0);
    AddEssenceTrack(source, TrackNumber(), nullptr);
    if (m_Plan.Info.EncryptedEssence) AddCryptographicTrack(source);
    source.Descriptor = AddDescriptor(descriptor);
    return std::move(m_Header);
  }

 private:
  MXF::Preface& AddPreface() {
    auto& preface = m_Sets.Add<MXF::Preface>();
    preface.LastModifiedDate = m_Plan.Date;
    preface.ObjectModelVersion = 0;
    preface.OperationalPattern = m_Dict.ul(MDD_OPAtom);
    preface.EssenceContainers = ContainerLabels(m_Plan);
    if (m_Plan.Info.EncryptedEssence) preface.DMSchemes.push_back(m_Dict.ul(MDD_CryptographicFrameworkLabel));
    return preface;
  }

  Ferro::UUID AddIdentification() {
    auto& identification = m_Sets.Add<MXF::Identification>();
    identification.ThisGenerationUID = m_Sets.NextIdentifier();
    identification.CompanyName = m_Plan.Info.CompanyName;
    identification.ProductName = m_Plan.Info.ProductName;
    identification.ProductVersion = MXF::ProductVersion{};
    identification.VersionString = m_Plan.Info.ProductVersion;
    identification.ProductUID = m_Plan.Info.ProductUUID;
    identification.ModificationDate = m_Plan.Date;
    identification.ToolkitVersion = MXF::ProductVersion{2, 0, 3, 0, 1};
    identification.Platform = "linux";
    return identification.InstanceUID;
  }

  void AddContainerData(MXF::ContentStorage& storage, const MXF::UMID& file_package_id) {
    auto& data = m_Sets.Add<MXF::EssenceContainerData>();
    storage.EssenceContainerData.push_back(data.InstanceUID);
    data.LinkedPackageUID = file_package_id;
    data.IndexSID = EssenceIndexSID;
    data.BodySID = EssenceBodySID;
  }

  template <class T>
  T& AddPackage(MXF::ContentStorage& storage, const char* name) {
    T& package = m_Sets.Add<T>();
    storage.Packages.push_back(package.InstanceUID);
    package.PackageName = name;
    package.PackageCreationDate = m_Plan.Date;
    package.PackageModifiedDate = m_Plan.Date;
    return package;
  }

  // Adds a track to a package, its sequence to the track, and the sequence's one component.
  template <class ComponentT, class TrackT = MXF::Track>
  ComponentT& AddTrack(MXF::GenericPackage& package, ui32_t id, const char* name, ui32_t number, MDD_t data_definition,
                       i64_t duration) {
    auto& track = m_Sets.Add<TrackT>();
    package.Tracks.push_back(track.InstanceUID);
    track.TrackID = id;
    track.TrackName = name;
    track.TrackNumber = number;
    if constexpr (std::is_same_v<TrackT, MXF::Track>) track.EditRate = m_Plan.EditRate;
    auto& sequence = m_Sets.Add<MXF::Sequence>();
    track.Sequence = sequence.InstanceUID;
    sequence.DataDefinition = m_Dict.ul(data_definition);
    sequence.Duration = duration;
    auto& component = m_Sets.Add<ComponentT>();
    sequence.StructuralComponents.push_back(component.InstanceUID);
    component.DataDefinition = sequence.DataDefinition;
    component.Duration = duration;
    return component;
  }

  void AddTimecodeTrack(MXF::GenericPackage& package, i64_t start) {
    auto& timecode = AddTrack<MXF::TimecodeComponent>(package, TimecodeTrackID, "Timecode Track", 0,
                                                      MDD_TimecodeDataDef, m_Duration);
    timecode.RoundedTimecodeBase = TimecodeBase();
    timecode.StartTimecode = start;
  }

  // `source` is the package that the clip refers to; null where the chain of sources ends.
  void AddEssenceTrack(MXF::GenericPackage& package, ui32_t number, const MXF::UMID* source) {
    const EssenceKind& kind = *m_Plan.Kind;
    if (kind.HasClip) {
      auto& clip =
          AddTrack<MXF::SourceClip>(package, EssenceTrackID, kind.TrackName, number, kind.DataDefinition, m_Duration);
      clip.SourcePackageID = source ? *source : Null<MXF::UMID>();
      clip.SourceTrackID = source ? EssenceTrackID : 0;
      return;
    }
    auto& segment =
        AddTrack<MXF::DMSegment>(package, EssenceTrackID, kind.TrackName, number, kind.DataDefinition, m_Duration);
    segment.EventStartPosition = 0;
    if (!source) segment.EventComment = "Timed text document";
    segment.DMFramework = Null<Ferro::UUID>();
  }

  // ST 429-6, 7 and 8.
  void AddCryptographicTrack(MXF::SourcePackage& package) {
    auto& segment = AddTrack<MXF::DMSegment, MXF::StaticTrack>(package, DescriptiveTrackID, "Descriptive Track", 0,
                                                               MDD_DescriptiveMetaDataDef, 0);
    segment.DataDefinition = Null<UL>();
    segment.EventStartPosition = 0;
    segment.EventComment = "Cryptographic Framework";
    auto& framework = m_Sets.Add<MXF::CryptographicFramework>();
    segment.DMFramework = framework.InstanceUID;
    auto& context = m_Sets.Add<MXF::CryptographicContext>();
    framework.ContextSR = context.InstanceUID;
    context.ContextID = m_Plan.Info.ContextID;
    context.SourceEssenceContainer = m_Dict.ul(m_Plan.Kind->ContainerLabel);
    context.CipherAlgorithm = m_Dict.ul(MDD_CipherAlgorithm_AES);
    context.MICAlgorithm = m_Plan.Info.UsesHMAC ? m_Dict.ul(MDD_MICAlgorithm_HMAC_SHA1) : Null<UL>();
    context.CryptographicKeyID = m_Plan.Info.CryptographicKeyID;
  }

  Ferro::UUID AddDescriptor(const DescriptorMaker& make) {
    MXF::FileDescriptor& descriptor = make(m_Sets);
    descriptor.LinkedTrackID = EssenceTrackID;
    if (!descriptor.SampleRate.HasValue()) descriptor.SampleRate = m_Plan.EditRate;
    descriptor.ContainerDuration = m_Duration;
    descriptor.EssenceContainer = m_Dict.ul(m_Plan.Kind->ContainerLabel);
    return descriptor.InstanceUID;
  }

  // Edit units per second, rounded up: 30 for 29.97.
  [[nodiscard]] ui16_t TimecodeBase() const {
    const auto [numerator, denominator] = std::pair(m_Plan.EditRate.Numerator, m_Plan.EditRate.Denominator);
    return static_cast<ui16_t>((i64_t{numerator} + denominator - 1) / denominator);
  }

  // The last four bytes of the essence element's key (ST 379-1).
  [[nodiscard]] ui32_t TrackNumber() const {
    if (!m_Plan.Kind->TrackNumberFollowsKey) return 0;
    const UL key = m_Dict.ul(m_Plan.Kind->ElementKey);
    ui32_t number = 0;
    for (size_t i = 12; i < 16; ++i) number = number << 8 | key.Value()[i];
    return number;
  }

  const HeaderPlan& m_Plan;
  const Dictionary& m_Dict;
  const ui32_t m_Duration;
  MXF::OP1aHeader m_Header;
  SetFactory m_Sets;
};

}  // namespace

const Dictionary& DictionaryFor(LabelSet_t label_set) {
  return label_set == LS_MXF_INTEROP ? DefaultInteropDict() : DefaultSMPTEDict();
}

std::vector<UL> ContainerLabels(const HeaderPlan& plan) {
  const Dictionary& dict = DictionaryFor(plan.Info.LabelSetType);
  return {dict.ul(MDD_GCMulti),
          dict.ul(plan.Info.EncryptedEssence ? MDD_EncryptedContainerLabel : plan.Kind->ContainerLabel)};
}

MXF::OP1aHeader BuildHeader(const HeaderPlan& plan, ui32_t duration, const DescriptorMaker& descriptor) {
  return HeaderBuilder(plan, duration).Build(descriptor);
}

}  // namespace QUIRE
