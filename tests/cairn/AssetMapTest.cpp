// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMap.h>

#include "../support/LogCapture.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Cairn::AssetMap;
using CairnTest::SampleID;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char Smpte[] = "http://www.smpte-ra.org/schemas/429-9/2007/AM";
constexpr char Interop[] = "http://www.digicine.com/PROTO-ASDCP-AM-20040311#";

class AssetMapTest : public testing::Test {
 protected:
  Cairn::Result_t Read(const std::string& assets, const std::string& ns = Smpte) {
    return m_Map.DecodeXML("<AssetMap xmlns=\"" + ns + "\"><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id>" +
                           "<AssetList>" + assets + "</AssetList></AssetMap>");
  }

  static std::string Asset(const std::string& mark, const std::string& chunk = "<Path>a</Path>") {
    return "<Asset><Id>urn:uuid:00000000-0000-4000-8000-000000000002</Id>" + mark + "<ChunkList><Chunk>" + chunk +
           "</Chunk></ChunkList></Asset>";
  }

  bool IsPackingList(const std::string& mark) {
    EXPECT_EQ(Read(Asset(mark)), Ferro::RESULT_OK);
    return m_Map.AssetList.front().IsPackingList;
  }

  void ExpectNotWritten(const std::string& line) {
    std::string out = "before";
    EXPECT_EQ(m_Map.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Cairn::RESULT_CN_VALUE);
    EXPECT_EQ(out, "before");
    EXPECT_THAT(m_Log.Errors(), ElementsAre(line));
  }

  testsupport::LogCapture m_Log;
  AssetMap m_Map;
};

TEST_F(AssetMapTest, AnotherDocumentIsNotAnAssetMap) {
  EXPECT_EQ(m_Map.DecodeXML("<VolumeIndex xmlns=\"" + std::string(Smpte) + "\"/>"), Cairn::RESULT_NOT_ASSETMAP);
}

TEST_F(AssetMapTest, AMapWithoutAssetListIsMalformed) {
  EXPECT_EQ(m_Map.DecodeXML("<AssetMap xmlns=\"" + std::string(Smpte) +
                            "\"><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id></AssetMap>"),
            Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("AssetMap: AssetList is missing\n"));
}

TEST_F(AssetMapTest, APackingListIsMarkedByAnEmptyElementTrueOrOne) {
  EXPECT_TRUE(IsPackingList("<PackingList/>"));
  EXPECT_TRUE(IsPackingList("<PackingList> true </PackingList>"));
  EXPECT_TRUE(IsPackingList("<PackingList>1</PackingList>"));
}

TEST_F(AssetMapTest, FalseZeroAndNothingMarkNone) {
  EXPECT_FALSE(IsPackingList("<PackingList>false</PackingList>"));
  EXPECT_FALSE(IsPackingList("<PackingList> 0 </PackingList>"));
  EXPECT_FALSE(IsPackingList(""));
}

TEST_F(AssetMapTest, AChunkHasItsDefaults) {
  EXPECT_EQ(Read(Asset("", "<Path> a b </Path>")), Ferro::RESULT_OK);
  EXPECT_THAT(m_Map.AssetList.front().ChunkList, ElementsAre(AssetMap::Chunk{"a b", 1, 0, false, 0}));
}

TEST_F(AssetMapTest, AChunkWithoutPathIsRefused) {
  EXPECT_EQ(Read(Asset("", "<Length>1</Length>")), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("AssetMap: Chunk Path is missing\n"));
}

TEST_F(AssetMapTest, ALengthThatIsNoLengthIsRefused) {
  EXPECT_EQ(Read(Asset("", "<Path>a</Path><Length>99999999999999999999</Length>")), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("AssetMap: malformed Length \"99999999999999999999\"\n"));
}

TEST_F(AssetMapTest, AnAssetWithoutIdentifierIsRefused) {
  EXPECT_EQ(Read("<Asset><ChunkList/></Asset>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("AssetMap: Asset Id is missing\n"));
}

TEST_F(AssetMapTest, TheOrderOfTheHeadingDoesNotMatter) {
  EXPECT_EQ(m_Map.DecodeXML("<m:AssetMap xmlns:m=\"" + std::string(Interop) +
                            "\"><m:Creator>C</m:Creator><m:Issuer>I</m:Issuer><m:AssetList/><m:VolumeCount>2"
                            "</m:VolumeCount><m:Id>urn:uuid:00000000-0000-4000-8000-000000000001</m:Id></m:AssetMap>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_Map.Creator, "C");
  EXPECT_EQ(m_Map.Issuer, "I");
  EXPECT_EQ(m_Map.VolumeCount, 2u);
  EXPECT_EQ(m_Map.ID, SampleID(1));
}

TEST_F(AssetMapTest, TheOlderNamespaceIsReadSilently) {
  EXPECT_EQ(Read(Asset(""), "http://www.smpte-ra.org/schemas/429-9/2006/AM"), Ferro::RESULT_OK);
  EXPECT_THAT(m_Log.Entries(), IsEmpty());
}

TEST_F(AssetMapTest, AMisspeltNamespaceIsReported) {
  EXPECT_EQ(Read(Asset(""), "http://www.smpte-ra.org/schemas/429-9/2700/AM"), Ferro::RESULT_OK);
  EXPECT_THAT(
      m_Log.Warnings(),
      ElementsAre("AssetMap: namespace \"http://www.smpte-ra.org/schemas/429-9/2700/AM\" is not a known one\n"));
}

TEST_F(AssetMapTest, AMapWithoutNamespaceIsOfNeitherFlavour) {
  EXPECT_EQ(m_Map.DecodeXML("<AssetMap/>"), Cairn::RESULT_XML_NAMESPACE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("Document does not contain SMPTE or JPEG Interop XML.\n"));
}

TEST_F(AssetMapTest, TheSameIdentifierInAnotherCaseIsTheSame) {
  EXPECT_EQ(Read("<Asset><Id>urn:uuid:AF000000-0000-4000-8000-000000000025</Id></Asset>"
                 "<Asset><Id>urn:uuid:af000000-0000-4000-8000-000000000025</Id></Asset>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_Map.AssetList.front().ID, m_Map.AssetList.back().ID);
}

TEST_F(AssetMapTest, AnAssetWithoutChunksIsNotWritten) {
  m_Map = CairnTest::AssetMapSamples()[0].Model;
  m_Map.AssetList.front().ChunkList.clear();
  ExpectNotWritten("AssetMap cannot be written: Chunk is missing\n");
}

TEST_F(AssetMapTest, AnEmptyPathIsNotWritten) {
  m_Map = CairnTest::AssetMapSamples()[0].Model;
  m_Map.AssetList.front().ChunkList.front().Path.clear();
  ExpectNotWritten("AssetMap cannot be written: Chunk Path is missing\n");
}

TEST_F(AssetMapTest, AMissingVolumeCountIsTold) {
  EXPECT_EQ(m_Map.DecodeXML("<AssetMap xmlns=\"" + std::string(Smpte) +
                            "\"><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id><AssetList/></AssetMap>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_Map.VolumeCount, 0u);
  EXPECT_EQ(Cairn::AssetMap().VolumeCount, 1u);  // of a map that is made
}

TEST_F(AssetMapTest, AVolumeCountOfZeroIsNotWritten) {
  m_Map = CairnTest::AssetMapSamples()[0].Model;
  m_Map.VolumeCount = 0;
  ExpectNotWritten("AssetMap cannot be written: AssetMap VolumeCount is \"0\"\n");
}

TEST_F(AssetMapTest, FormatsWithoutDocumentsAreRefused) {
  std::string out;
  EXPECT_EQ(CairnTest::AssetMapSamples()[0].Model.EncodeXML(out, Cairn::DFT_IMF), Ferro::RESULT_PARAM);
  EXPECT_EQ(Cairn::VolumeIndex().EncodeXML(out, Cairn::DFT_NONE), Ferro::RESULT_PARAM);
}

TEST(VolumeIndex, EveryNamespaceMetIsRead) {
  for (const char* ns : {Smpte, "http://www.smpte-ra.org/schemas/429-9/2006/AM", Interop,
                         "http://www.digicine.com/PROTO-ASDCP-VL-20040311#"}) {
    Cairn::VolumeIndex volume;
    EXPECT_EQ(volume.DecodeXML("<VolumeIndex xmlns=\"" + std::string(ns) + "\"><Index>3</Index></VolumeIndex>"),
              Ferro::RESULT_OK);
    EXPECT_EQ(volume.Index, 3u) << ns;
  }
}

TEST(VolumeIndex, AMissingIndexIsRefused) {
  const testsupport::LogCapture log;
  Cairn::VolumeIndex volume;
  EXPECT_EQ(volume.DecodeXML("<VolumeIndex xmlns=\"" + std::string(Smpte) + "\"/>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(log.Errors(), ElementsAre("VolumeIndex: Index is missing\n"));
  EXPECT_EQ(volume.Index, 0u);
}

TEST(VolumeIndex, AnotherDocumentIsNotAVolumeIndex) {
  Cairn::VolumeIndex volume;
  EXPECT_EQ(volume.DecodeXML("<AssetMap xmlns=\"" + std::string(Smpte) + "\"/>"), Cairn::RESULT_NOT_ASSETMAP);
}

}  // namespace
