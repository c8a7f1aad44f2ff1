// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/PackingList.h>

#include "../support/LogCapture.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Cairn::PackingList;
using CairnTest::SampleID;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PackingListTest : public testing::Test {
 protected:
  Cairn::Result_t Read(const std::string& assets, const std::string& heading = "",
                       const std::string& ns = "http://www.smpte-ra.org/schemas/429-8/2007/PKL") {
    return m_PKL.DecodeXML("<PackingList xmlns=\"" + ns + "\"><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id>" +
                           heading + "<AssetList>" + assets + "</AssetList></PackingList>");
  }

  static std::string Asset(const std::string& fields) {
    return "<Asset><Id>urn:uuid:00000000-0000-4000-8000-000000000002</Id>" + fields + "</Asset>";
  }

  void ExpectRefused(const std::string& line) {
    std::string out = "before";
    EXPECT_EQ(m_PKL.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Cairn::RESULT_CN_VALUE);
    EXPECT_EQ(out, "before");
    EXPECT_THAT(m_Log.Errors(), ElementsAre(line));
  }

  testsupport::LogCapture m_Log;
  PackingList m_PKL;
};

TEST_F(PackingListTest, AnotherDocumentIsNotAPackingList) {
  EXPECT_EQ(m_PKL.DecodeXML("<AssetMap xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\"/>"),
            Cairn::RESULT_NOT_PKL);
  EXPECT_THAT(m_Log.Errors(), IsEmpty());
}

TEST_F(PackingListTest, AListWithoutAssetListIsMalformed) {
  EXPECT_EQ(m_PKL.DecodeXML("<PackingList xmlns=\"http://www.smpte-ra.org/schemas/429-8/2007/PKL\">"
                            "<Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id></PackingList>"),
            Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: AssetList is missing\n"));
}

TEST_F(PackingListTest, TheOlderNamespaceIsRead) {
  EXPECT_EQ(Read(Asset("<Size>1</Size>"), "", "http://www.smpte-ra.org/schemas/429-8/2006/PKL"), Ferro::RESULT_OK);
  EXPECT_EQ(m_PKL.DCPFormat, Cairn::DFT_DCI_SMPTE);
  EXPECT_THAT(m_PKL.AssetList, SizeIs(1));
}

TEST_F(PackingListTest, SizesBeyondThirtyTwoBitsAreRead) {
  EXPECT_EQ(Read(Asset("<Size> 5828131012 </Size>")), Ferro::RESULT_OK);
  EXPECT_EQ(m_PKL.AssetList.front().Size, 5'828'131'012u);
}

TEST_F(PackingListTest, ASizeThatIsNoSizeIsRefused) {
  for (const char* size : {"", "-1", "1.0", "18446744073709551616"}) {
    m_Log.Clear();
    EXPECT_EQ(Read(Asset("<Size>" + std::string(size) + "</Size>")), Cairn::RESULT_CN_VALUE);
    EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: malformed Size \"" + std::string(size) + "\"\n"));
  }
}

TEST_F(PackingListTest, AMissingSizeIsRefused) {
  EXPECT_EQ(Read(Asset("")), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: Asset Size is missing\n"));
}

TEST_F(PackingListTest, AMissingAssetIdentifierIsRefused) {
  EXPECT_EQ(Read("<Asset><Size>1</Size></Asset>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: Asset Id is missing\n"));
}

TEST_F(PackingListTest, AMalformedAssetIdentifierIsAUUIDFormatError) {
  EXPECT_EQ(Read("<Asset><Id>7</Id><Size>1</Size></Asset>"), Cairn::RESULT_CN_UUID_FORMAT);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: malformed Id \"7\"\n"));
}

TEST_F(PackingListTest, AMissingDigestIsAStateOfItsOwn) {
  EXPECT_EQ(Read(Asset("<Size>1</Size>")), Ferro::RESULT_OK);
  EXPECT_FALSE(m_PKL.AssetList.front().Digest.HasValue());
}

TEST_F(PackingListTest, ADigestOfAnotherLengthIsRefused) {
  EXPECT_EQ(Read(Asset("<Size>1</Size><Hash>AAAA</Hash>")), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("PackingList: malformed Hash \"AAAA\"\n"));
}

TEST_F(PackingListTest, ATypeIsTrimmed) {
  EXPECT_EQ(Read(Asset("<Size>1</Size><Type>\n text/xml;asdcpKind=CPL </Type>")), Ferro::RESULT_OK);
  EXPECT_EQ(m_PKL.AssetList.front().Type, "text/xml;asdcpKind=CPL");
}

TEST_F(PackingListTest, EmptySignaturesAheadOfTheListAreSkipped) {
  EXPECT_EQ(Read(Asset("<Size>1</Size>"), "<Issuer xml:lang=\"x-private\">I</Issuer><Signer/><Signature/>",
                 "http://www.digicine.com/PROTO-ASDCP-PKL-20040311#"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_PKL.SignatureMode, Cairn::SM_UNTESTED);
  EXPECT_THAT(m_PKL.SignatureChain, IsEmpty());
  EXPECT_THAT(m_PKL.AssetList, SizeIs(1));
}

TEST_F(PackingListTest, ASignersChainIsTakenDownLeafFirst) {
  EXPECT_EQ(Read(Asset("<Size>1</Size>"),
                 "<d:Signature xmlns:d=\"http://www.w3.org/2000/09/xmldsig#\"><d:KeyInfo>"
                 "<d:X509Data><d:X509IssuerSerial><d:X509IssuerName>CN=leaf\\+</d:X509IssuerName>"
                 "<d:X509SerialNumber>7</d:X509SerialNumber></d:X509IssuerSerial>"
                 "<d:X509Certificate>UExB</d:X509Certificate></d:X509Data>"
                 "<d:X509Data><d:X509IssuerSerial><d:X509IssuerName>CN=root</d:X509IssuerName>"
                 "<d:X509SerialNumber>5</d:X509SerialNumber></d:X509IssuerSerial>"
                 "<d:X509Certificate>not base64!</d:X509Certificate></d:X509Data></d:KeyInfo></d:Signature>"),
            Ferro::RESULT_OK);
  EXPECT_THAT(m_PKL.SignatureChain, ElementsAre(Cairn::X509Certificate{"CN=leaf\\+", "7", {'P', 'L', 'A'}},
                                                Cairn::X509Certificate{"CN=root", "5", {}}));
}

TEST_F(PackingListTest, SMPTERequiresADigest) {
  m_PKL = CairnTest::PackingListSamples()[0].Model;
  m_PKL.AssetList.front().Digest.Reset();
  ExpectRefused("PackingList cannot be written: Asset Hash is missing\n");
}

TEST_F(PackingListTest, AnEmptyFileCannotBeListed) {
  m_PKL = CairnTest::PackingListSamples()[0].Model;
  m_PKL.AssetList.front().Size = 0;
  ExpectRefused("PackingList cannot be written: Asset Size is \"0\"\n");
}

TEST_F(PackingListTest, AListWithoutAssetsIsNotWritten) {
  m_PKL = CairnTest::PackingListSamples()[0].Model;
  m_PKL.AssetList.clear();
  ExpectRefused("PackingList cannot be written: Asset is missing\n");
}

TEST_F(PackingListTest, FormatsWithoutDocumentsAreRefused) {
  std::string out;
  EXPECT_EQ(CairnTest::PackingListSamples()[0].Model.EncodeXML(out, Cairn::DFT_NONE), Ferro::RESULT_PARAM);
}

}  // namespace
