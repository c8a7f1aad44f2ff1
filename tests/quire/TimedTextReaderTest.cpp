// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <QUIRE/Crypto.h>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");
const std::string Document = "<?xml version=\"1.0\"?><SubtitleReel/>";

Bytes ResourceID(ui8_t number) {
  return Hex("4e500000 0000 4000 8000 0000000000") + BE8(number);
}
Ferro::UUID ID(const Bytes& bytes) {
  Ferro::UUID id;
  id.Set(bytes.data());
  return id;
}

MxfBuilder MakeText(size_t resources) {
  MxfBuilder builder(MxfBuilder::TimedText);
  builder.Frames = {Bytes(Document.begin(), Document.end())};
  for (size_t i = 0; i < resources; ++i) {
    Resource resource;
    resource.ID = ResourceID(static_cast<ui8_t>(i));
    resource.MIMEType = i % 2 == 0 ? "image/png" : "application/x-font-opentype";
    resource.Data = Bytes(1 + 1000 * i, static_cast<ui8_t>(i + 1));
    resource.SID = static_cast<ui32_t>(10 + i);
    builder.Resources.push_back(resource);
  }
  return builder;
}

TEST(TimedTextReader, DescriptorListsTheResources) {
  const TemporaryFile file(MakeText(3).Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::TimedTextDescriptor descriptor;
  ASSERT_EQ(reader.FillTimedTextDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.EditRate, EditRate_24);
  EXPECT_EQ(descriptor.ContainerDuration, 240u);
  EXPECT_EQ(Raw(descriptor.AssetID), MxfBuilder::DocumentID());
  EXPECT_EQ(descriptor.EncodingName, "UTF-8");
  EXPECT_EQ(descriptor.NamespaceName, "http://www.smpte-ra.org/schemas/428-7/2010/DCST");
  const TimedText::ResourceList_t expected = {{ID(ResourceID(0)), TimedText::MT_PNG},
                                              {ID(ResourceID(1)), TimedText::MT_OPENTYPE},
                                              {ID(ResourceID(2)), TimedText::MT_PNG}};
  EXPECT_EQ(descriptor.ResourceList, expected);
}

TEST(TimedTextReader, EachMimeTypeHasItsKind) {
  const struct {
    const char* Name;
    TimedText::MIMEType_t Type;
  } types[] = {{"image/png", TimedText::MT_PNG},
               {"application/x-font-opentype", TimedText::MT_OPENTYPE},
               {"application/x-opentype", TimedText::MT_OPENTYPE},
               {"font/otf", TimedText::MT_OPENTYPE},
               {"application/octet-stream", TimedText::MT_BIN}};
  for (const auto& [name, type] : types) {
    MxfBuilder builder = MakeText(1);
    builder.Resources[0].MIMEType = name;
    const TemporaryFile file(builder.Build());
    TimedText::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    TimedText::TimedTextDescriptor descriptor;
    ASSERT_EQ(reader.FillTimedTextDescriptor(descriptor), RESULT_OK);
    EXPECT_EQ(descriptor.ResourceList.at(0).Type, type) << name;
  }
}

TEST(TimedTextReader, DocumentAndResourcesAreDeliveredByteForByte) {
  for (size_t count : {0U, 1U, 20U}) {
    MxfBuilder builder = MakeText(count);
    const TemporaryFile file(builder.Build());
    TimedText::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
    std::string text;
    ASSERT_EQ(reader.ReadTimedTextResource(text), RESULT_OK);
    EXPECT_EQ(text, Document);
    TimedText::FrameBuffer frame;
    ASSERT_EQ(reader.ReadTimedTextResource(frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Frames[0]);
    EXPECT_EQ(Raw(frame.AssetID()), MxfBuilder::DocumentID());
    EXPECT_EQ(frame.MIMEType(), "text/xml");
    for (const Resource& resource : builder.Resources) {
      ASSERT_EQ(reader.ReadAncillaryResource(ID(resource.ID), frame), RESULT_OK);
      EXPECT_EQ(Content(frame), resource.Data);
      EXPECT_EQ(Raw(frame.AssetID()), resource.ID);
      EXPECT_EQ(frame.MIMEType(), resource.MIMEType);
    }
  }
}

TEST(TimedTextReader, CapacityIsOnlyAHint) {
  MxfBuilder builder = MakeText(2);
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  ASSERT_EQ(frame.Capacity(16), RESULT_OK);
  ASSERT_EQ(reader.ReadAncillaryResource(ID(ResourceID(1)), frame), RESULT_OK);
  EXPECT_EQ(frame.Capacity(), 1001u);
  ASSERT_EQ(frame.Capacity(5000), RESULT_OK);
  ASSERT_EQ(reader.ReadAncillaryResource(ID(ResourceID(1)), frame), RESULT_OK);
  EXPECT_EQ(frame.Capacity(), 5000u);
  EXPECT_EQ(frame.Size(), 1001u);
}

TEST(TimedTextReader, UnknownResourceIsNotFound) {
  const TemporaryFile file(MakeText(1).Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  EXPECT_EQ(reader.ReadAncillaryResource(Ferro::UUID::Random(), frame), Ferro::RESULT_NOT_FOUND);
}

TEST(TimedTextReader, ResourceWithoutPartitionIsNotFound) {
  MxfBuilder builder = MakeText(1);
  builder.Overrides["Resource0"][0x3f07] = BE32(99);
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  EXPECT_EQ(reader.ReadAncillaryResource(ID(ResourceID(0)), frame), Ferro::RESULT_NOT_FOUND);
}

TEST(TimedTextReader, OfTwoResourcesWithOneIdentifierTheFirstCounts) {
  MxfBuilder builder = MakeText(2);
  builder.Resources[1].ID = builder.Resources[0].ID;
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::TimedTextDescriptor descriptor;
  ASSERT_EQ(reader.FillTimedTextDescriptor(descriptor), RESULT_OK);
  EXPECT_EQ(descriptor.ResourceList.size(), 1u);
  TimedText::FrameBuffer frame;
  ASSERT_EQ(reader.ReadAncillaryResource(ID(ResourceID(0)), frame), RESULT_OK);
  EXPECT_EQ(Content(frame), builder.Resources[0].Data);
}

TEST(TimedTextReader, OfTwoResourcesWithOneStreamTheFirstCounts) {
  MxfBuilder builder = MakeText(2);
  builder.Resources[1].SID = builder.Resources[0].SID;
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  for (ui8_t i : {ui8_t{0}, ui8_t{1}}) {
    ASSERT_EQ(reader.ReadAncillaryResource(ID(ResourceID(i)), frame), RESULT_OK);
    EXPECT_EQ(Content(frame), builder.Resources[0].Data);
  }
}

TEST(TimedTextReader, ResourceInSeveralPartitionsIsJoined) {
  MxfBuilder builder = MakeText(3);
  for (size_t i : {1u, 2u}) {
    builder.Resources[i].SID = builder.Resources[0].SID;
    builder.Resources[i].BodyOffset = 2000 * i;
    builder.Resources[i].Listed = false;
  }
  TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  ASSERT_EQ(reader.ReadAncillaryResource(ID(ResourceID(0)), frame), RESULT_OK);
  EXPECT_EQ(Content(frame), builder.Resources[0].Data + builder.Resources[1].Data + builder.Resources[2].Data);

  builder.Key = ContentKey;
  file.Write(builder.Build());
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  LogCapture log;
  EXPECT_EQ(reader.ReadAncillaryResource(ID(ResourceID(0)), frame), RESULT_FORMAT);
  EXPECT_NE(log.Text().find(file.Name() + ": encrypted stream in several partitions at offset "), std::string::npos);
}

TEST(TimedTextReader, PartitionListCoversDocumentAndResources) {
  MxfBuilder builder = MakeText(2);
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  const auto& pairs = reader.RIP().PairArray;
  ASSERT_EQ(pairs.size(), 5u);
  EXPECT_EQ(pairs[1].BodySID, 1u);
  EXPECT_EQ(pairs[2].BodySID, 10u);
  EXPECT_EQ(pairs[3].BodySID, 11u);
  EXPECT_EQ(pairs[4].ByteOffset, builder.FooterAt);
}

TEST(TimedTextReader, EncryptedDocumentAndResourcesAreDecrypted) {
  MxfBuilder builder = MakeText(3);
  builder.Key = ContentKey;
  const TemporaryFile file(builder.Build());
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  const std::span<const ui8_t, KeyLen> key(ContentKey.data(), KeyLen);
  AESDecContext decryption;
  HMACContext integrity;
  ASSERT_EQ(decryption.InitKey(key), RESULT_OK);
  ASSERT_EQ(integrity.InitKey(key, LS_MXF_SMPTE), RESULT_OK);
  std::string text;
  EXPECT_EQ(reader.ReadTimedTextResource(text), RESULT_DECRYPT_CTX);
  ASSERT_EQ(reader.ReadTimedTextResource(text, &decryption, &integrity), RESULT_OK);
  EXPECT_EQ(text, Document);
  TimedText::FrameBuffer frame;
  for (const Resource& resource : builder.Resources) {
    ASSERT_EQ(reader.ReadAncillaryResource(ID(resource.ID), frame, &decryption, &integrity), RESULT_OK);
    EXPECT_EQ(Content(frame), resource.Data);
    ASSERT_EQ(reader.ReadAncillaryResource(ID(resource.ID), frame), RESULT_OK);
    EXPECT_EQ(frame.Size(), 48 + resource.Data.size() / 16 * 16);
    EXPECT_EQ(frame.SourceLength(), resource.Data.size());
  }
}

TEST(TimedTextReader, ResourceLengthBeyondTheFileIsAFormatError) {
  MxfBuilder builder = MakeText(1);
  Bytes bytes = builder.Build();
  const Bytes key = Hex("060e2b34.0101010c.0d010509.01000000");
  const auto found = std::search(bytes.begin(), bytes.end(), key.begin(), key.end());
  ASSERT_NE(found, bytes.end());
  Put(bytes, static_cast<size_t>(found - bytes.begin()) + 16, Hex("83ffffff"));
  const TemporaryFile file(bytes);
  TimedText::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  TimedText::FrameBuffer frame;
  LogCapture log;
  EXPECT_EQ(reader.ReadAncillaryResource(ID(ResourceID(0)), frame), RESULT_FORMAT);
  EXPECT_EQ(log.Count(Ferro::LogLevel::Error), 1u);
  EXPECT_EQ(frame.Capacity(), 0u);
}

}  // namespace
