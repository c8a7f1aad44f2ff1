// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ExampleFile.h"
#include "MetadataBytes.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using testing::ElementsAre;

UUID ID(const char* hex) {
  return *UUID::FromHex(hex);
}

UL Label(MDD_t entry) {
  return DefaultSMPTEDict().ul(entry);
}

template <class T>
const T& Find(const OP1aHeader& header, const char* id) {
  const T* object = header.Resolve<T>(ID(id));
  EXPECT_NE(object, nullptr) << id;
  return *object;
}

TEST(OP1aHeader, SetsStandInStoredOrder) {
  const OP1aHeader header = ExampleHeader();
  std::vector<std::string> names;
  for (const auto& object : header.Objects()) names.push_back(object->Name());
  EXPECT_THAT(names, ElementsAre("Preface", "Identification", "ContentStorage", "EssenceContainerData",
                                 "MaterialPackage", "Track", "Sequence", "TimecodeComponent", "Track", "Sequence",
                                 "SourceClip", "SourcePackage", "Track", "Sequence", "TimecodeComponent", "Track",
                                 "Sequence", "SourceClip", "RGBAEssenceDescriptor", "JPEG2000PictureSubDescriptor"));
}

TEST(OP1aHeader, RootFieldsAreRead) {
  const OP1aHeader header = ExampleHeader();
  const Preface& preface = Find<Preface>(header, "f0030680-3f71-48d2-8969-a8754a933aad");
  EXPECT_FALSE(preface.GenerationUID.has_value());
  EXPECT_EQ(preface.LastModifiedDate.EncodeString(), "2024-01-02 03:04:05.000");
  EXPECT_EQ(preface.Version, 0x0102);
  EXPECT_EQ(preface.ObjectModelVersion, 1u);
  EXPECT_EQ(preface.PrimaryPackage, ID("5cd92739-4d7a-4268-b669-edc41427e095"));
  EXPECT_THAT(preface.Identifications, ElementsAre(ID("d11ae4a9-9e97-4710-a52b-e29bb534c596")));
  EXPECT_EQ(preface.ContentStorage, ID("29a5ff87-04fd-4dc6-a14e-bf56a8686423"));
  EXPECT_EQ(preface.OperationalPattern, Label(MDD_OPAtom));
  EXPECT_THAT(preface.EssenceContainers, ElementsAre(Label(MDD_GCMulti), Label(MDD_JPEG_2000WrappingFrame)));
  EXPECT_TRUE(preface.DMSchemes.empty());
  const Identification& writer = Find<Identification>(header, "d11ae4a9-9e97-4710-a52b-e29bb534c596");
  EXPECT_EQ(writer.CompanyName, "Company");
  EXPECT_EQ(writer.ProductName, "Product");
  EXPECT_EQ(writer.ProductVersion, (ProductVersion{1, 0, 0, 0, 1}));
  EXPECT_EQ(writer.VersionString, "1.0.0");
  EXPECT_EQ(writer.ProductUID, ID("42d31367-f3fd-4fbf-8c99-16cd83a7b716"));
  EXPECT_EQ(writer.Platform, "linux");
  const auto& data = Find<EssenceContainerData>(header, "fdb25844-2737-4a83-8f9f-5a8ba89d6b50");
  EXPECT_EQ(MaterialNumber(data.LinkedPackageUID), ID("c791e685-2b0c-44f4-825a-e9dd5c6c454c"));
  EXPECT_EQ(data.IndexSID, 129u);
  EXPECT_EQ(data.BodySID, 1u);
}

TEST(OP1aHeader, PackageFieldsAreRead) {
  const OP1aHeader header = ExampleHeader();
  const SourcePackage& package = Find<SourcePackage>(header, "5cd92739-4d7a-4268-b669-edc41427e095");
  EXPECT_EQ(package.PackageUID.EncodeHex(), "060a2b340101010501010f2013000000c791e6852b0c44f4825ae9dd5c6c454c");
  EXPECT_EQ(package.PackageCreationDate.EncodeString(), "2024-01-02 03:04:05.000");
  EXPECT_EQ(package.Tracks.size(), 2u);
  const Track& track = Find<Track>(header, "28960909-96c7-43bd-b20a-f45106df1031");
  EXPECT_EQ(track.TrackID, 2u);
  EXPECT_EQ(track.TrackNumber, 0x15010801u);
  EXPECT_EQ(track.TrackName, "Ess");
  EXPECT_EQ(track.EditRate, Rational(24, 1));
  EXPECT_EQ(track.Origin, 0);
  const Sequence& sequence = *header.Resolve<Sequence>(track.Sequence);
  EXPECT_EQ(sequence.DataDefinition, Label(MDD_PictureDataDef));
  EXPECT_EQ(sequence.Duration, 1);
  const SourceClip& clip = *header.Resolve<SourceClip>(sequence.StructuralComponents.at(0));
  EXPECT_EQ(clip.SourcePackageID, UMID());
  EXPECT_EQ(clip.SourceTrackID, 0u);
  const auto& timecode = Find<TimecodeComponent>(header, "05a42a39-66b1-4175-bcf6-ca36b8887611");
  EXPECT_EQ(timecode.RoundedTimecodeBase, 24);
  EXPECT_EQ(timecode.StartTimecode, 0);
  EXPECT_FALSE(timecode.DropFrame);
}

TEST(OP1aHeader, DescriptorFieldsAreRead) {
  const OP1aHeader header = ExampleHeader();
  const auto& picture = Find<RGBAEssenceDescriptor>(header, "510357c2-e863-4391-a68b-06599073d48a");
  EXPECT_EQ(picture.LinkedTrackID, 2u);
  EXPECT_EQ(picture.SampleRate, Rational(24, 1));
  EXPECT_EQ(picture.ContainerDuration, 1);
  EXPECT_EQ(picture.EssenceContainer, Label(MDD_JPEG_2000WrappingFrame));
  EXPECT_EQ(picture.StoredWidth, 16u);
  EXPECT_EQ(picture.StoredHeight, 16u);
  EXPECT_EQ(picture.AspectRatio, Rational(16, 16));
  EXPECT_EQ(picture.PictureEssenceCoding, Label(MDD_JP2KEssenceCompression_2K));
  EXPECT_THAT(picture.VideoLineMap, ElementsAre(0, 0));
  EXPECT_EQ(picture.PixelLayout, RGBALayout_XYZ12);
  EXPECT_EQ(picture.ComponentMaxRef, 4095u);
  EXPECT_EQ(picture.ComponentMinRef, 0u);
  EXPECT_FALSE(picture.SampledWidth.has_value());
  const auto& codestream = *header.Resolve<JPEG2000PictureSubDescriptor>(picture.SubDescriptors.at(0));
  EXPECT_EQ(codestream.Rsiz, 3);
  EXPECT_EQ(codestream.Xsiz, 16u);
  EXPECT_EQ(codestream.XTsiz, 256u);
  EXPECT_EQ(codestream.Csiz, 3);
  EXPECT_THAT(codestream.PictureComponentSizing,
              ElementsAre(ImageComponent{7, 1, 1}, ImageComponent{7, 1, 1}, ImageComponent{7, 1, 1}));
  EXPECT_THAT(*codestream.CodingStyleDefault, ElementsAre(0, 0, 0, 1, 0, 6, 2, 2, 0, 0));
  EXPECT_EQ(codestream.QuantizationDefault->size(), 39u);
}

TEST(OP1aHeader, ObjectsAreFoundByType) {
  const OP1aHeader header = ExampleHeader();
  InterchangeObject* object = nullptr;
  ASSERT_EQ(header.GetMDObjectByType(Label(MDD_RGBAEssenceDescriptor), &object), Ferro::RESULT_OK);
  EXPECT_NE(dynamic_cast<RGBAEssenceDescriptor*>(object), nullptr);
  ASSERT_EQ(header.GetMDObjectByType(Label(MDD_SourcePackage).Value(), &object), Ferro::RESULT_OK);
  EXPECT_NE(dynamic_cast<SourcePackage*>(object), nullptr);
  ASSERT_EQ(header.GetMDObjectByType(MDD_Preface), Ferro::RESULT_OK);
  EXPECT_EQ(header.GetMDObjectByType(MDD_WaveAudioDescriptor, &object), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(object, nullptr);
  std::list<InterchangeObject*> tracks;
  EXPECT_EQ(header.GetMDObjectsByType(MDD_Track, tracks), Ferro::RESULT_OK);
  EXPECT_EQ(tracks.size(), 4u);
  EXPECT_EQ(header.GetMDObjectsByType(MDD_StaticTrack, tracks), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(tracks.size(), 4u);
}

TEST(OP1aHeader, ObjectsAreFoundByIdentifier) {
  const OP1aHeader header = ExampleHeader();
  InterchangeObject* object = nullptr;
  ASSERT_EQ(header.GetMDObjectByID(ID("f0030680-3f71-48d2-8969-a8754a933aad"), &object), Ferro::RESULT_OK);
  EXPECT_TRUE(object->Is(MDD_Preface));
  EXPECT_EQ(header.GetMDObjectByID(ID("00030680-3f71-48d2-8969-a8754a933aad"), &object), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(object, nullptr);
}

TEST(OP1aHeader, NullReferenceLeadsNowhere) {
  OP1aHeader header = ExampleHeader();
  auto filler = std::make_unique<Filler>();
  filler->InstanceUID = ID("00000000-0000-0000-0000-000000000000");
  header.Add(std::move(filler));
  EXPECT_EQ(header.GetMDObjectByID(UUID()), Ferro::RESULT_NOT_FOUND);
}

TEST(OP1aHeader, ReferenceToAnotherKindOfSetResolvesToNothing) {
  const OP1aHeader header = ExampleHeader();
  EXPECT_EQ(header.Resolve<Track>(ID("f0030680-3f71-48d2-8969-a8754a933aad")), nullptr);
  EXPECT_NE(header.Resolve<GenericDescriptor>(ID("510357c2-e863-4391-a68b-06599073d48a")), nullptr);
}

TEST(OP1aHeader, OfSetsWithOneIdentifierTheFirstIsFound) {
  OP1aHeader header = ExampleHeader();
  auto filler = std::make_unique<Filler>();
  filler->InstanceUID = ID("f0030680-3f71-48d2-8969-a8754a933aad");
  header.Add(std::move(filler));
  EXPECT_NE(header.Resolve<Preface>(ID("f0030680-3f71-48d2-8969-a8754a933aad")), nullptr);
}

TEST(OP1aHeader, AddedSetsGetAnIdentifier) {
  OP1aHeader header;
  const Filler& filler = header.Add(std::make_unique<Filler>());
  EXPECT_TRUE(filler.InstanceUID.HasValue());
  EXPECT_EQ(header.Resolve<Filler>(filler.InstanceUID), &filler);
}

TEST(ObjectGraph, FilePackageIsTheOneThatTheContainerDataLink) {
  OP1aHeader header = ExampleHeader();
  header.Add(std::make_unique<SourcePackage>());
  ASSERT_NE(header.FilePackage(), nullptr);
  EXPECT_EQ(MaterialNumber(header.FilePackage()->PackageUID), ID("c791e685-2b0c-44f4-825a-e9dd5c6c454c"));
}

TEST(ObjectGraph, OtherLeadingBytesOfTheUMIDDoNotMatter) {
  const OP1aHeader header = ExampleHeader();
  auto* data = header.First<EssenceContainerData>();
  UMID other;
  ASSERT_TRUE(other.DecodeHex("060a2b340101010501010d0013000000c791e6852b0c44f4825ae9dd5c6c454c"));
  data->LinkedPackageUID = other;
  EXPECT_NE(header.FilePackage(), nullptr);
}

TEST(ObjectGraph, OnlySourcePackageIsTheFilePackage) {
  OP1aHeader header = ExampleHeader();
  header.First<EssenceContainerData>()->LinkedPackageUID = UMID();
  ASSERT_NE(header.FilePackage(), nullptr);
  header.Add(std::make_unique<SourcePackage>()).PackageUID = MakeUMID(UUID::Random());
  EXPECT_EQ(header.FilePackage(), nullptr);
}

TEST(ObjectGraph, DescriptorIsThatOfTheFilePackage) {
  OP1aHeader header = ExampleHeader();
  header.Add(std::make_unique<WaveAudioDescriptor>());
  EXPECT_EQ(header.EssenceDescriptor(), header.First<RGBAEssenceDescriptor>());
}

TEST(ObjectGraph, OnlyDescriptorIsTakenWhenTheReferenceIsBroken) {
  OP1aHeader header = ExampleHeader();
  header.First<SourcePackage>()->Descriptor = UUID::Random();
  EXPECT_EQ(header.EssenceDescriptor(), header.First<RGBAEssenceDescriptor>());
  header.Add(std::make_unique<WaveAudioDescriptor>());
  EXPECT_EQ(header.EssenceDescriptor(), nullptr);
}

TEST(ObjectGraph, OfAMultipleDescriptorTheOneLinkedToTheEssenceTrackCounts) {
  OP1aHeader header = ExampleHeader();
  auto& other = header.Add(std::make_unique<GenericDataEssenceDescriptor>());
  other.LinkedTrackID = 1;
  auto& all = header.Add(std::make_unique<MultipleDescriptor>());
  all.FileDescriptors = {all.InstanceUID, other.InstanceUID, header.First<RGBAEssenceDescriptor>()->InstanceUID};
  header.First<SourcePackage>()->Descriptor = all.InstanceUID;
  EXPECT_EQ(header.EssenceDescriptor(), header.First<RGBAEssenceDescriptor>());
}

TEST(ObjectGraph, CyclesOfReferencesEnd) {
  OP1aHeader header = ExampleHeader();
  auto& all = header.Add(std::make_unique<MultipleDescriptor>());
  all.FileDescriptors = {all.InstanceUID};
  header.First<SourcePackage>()->Descriptor = all.InstanceUID;
  for (const auto& object : header.Objects())
    if (auto* sequence = dynamic_cast<Sequence*>(object.get()))
      sequence->StructuralComponents = {sequence->InstanceUID};
  EXPECT_EQ(header.EssenceDescriptor(), nullptr);
}

}  // namespace
}  // namespace QUIRE::MXF
