// SPDX-License-Identifier: BSD-3-Clause
// Writes and reads documents of all shapes. STRATA_TEST_SEED in the environment chooses others.
#include "../support/LogCapture.h"
#include "../support/SchemaCheck.h"
#include "../support/TemporaryFolder.h"
#include "RandomDocuments.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace {

using CairnTest::RandomDocuments;
using testing::IsEmpty;

constexpr unsigned DocumentCount = 400;  // of each kind
constexpr unsigned ValidatedCount = 60;  // of each kind and format

unsigned FirstSeed() {
  const char* given = std::getenv("STRATA_TEST_SEED");
  const auto seed = given == nullptr ? 1u : static_cast<unsigned>(std::strtoul(given, nullptr, 10));
  std::cout << "seeds " << seed << " to " << seed + DocumentCount - 1 << "\n";
  return seed;
}

template <class T>
void ExpectReadBackEqual(T (RandomDocuments::*make)()) {
  const unsigned first = FirstSeed();
  for (unsigned seed = first; seed < first + DocumentCount; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const testsupport::LogCapture log;
    const T model = (RandomDocuments(seed).*make)();
    std::string xml;
    ASSERT_EQ(CairnTest::Encode(model, xml, model.DCPFormat), Ferro::RESULT_OK);
    T again;
    ASSERT_EQ(again.DecodeXML(xml), Ferro::RESULT_OK) << xml;
    ASSERT_EQ(again, model) << xml;
    ASSERT_THAT(log.Entries(), IsEmpty()) << xml;
    std::string rewritten;
    ASSERT_EQ(CairnTest::Encode(again, rewritten, again.DCPFormat), Ferro::RESULT_OK);
    ASSERT_EQ(rewritten, xml);
  }
}

template <class T>
void ExpectValid(T (RandomDocuments::*make)(), Cairn::DCPFormat_t format, const char* schema) {
  if (testsupport::SchemaFolder().empty())
    GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name the folder of the standards' schemas";
  const testsupport::TemporaryFolder folder;
  std::vector<std::string> files;
  for (unsigned seed = FirstSeed(); files.size() < ValidatedCount; ++seed) {
    const T model = (RandomDocuments(seed).*make)();
    if (model.DCPFormat != format) continue;
    std::string xml;
    ASSERT_EQ(CairnTest::Encode(model, xml, format), Ferro::RESULT_OK);
    files.push_back(folder.Write(std::to_string(seed) + ".xml", xml));
  }
  EXPECT_EQ(testsupport::ValidateFiles(testsupport::SchemaFolder() + "/" + schema, files), "");
}

TEST(RoundTrip, CompositionPlaylistsAreReadBackEqual) {
  ExpectReadBackEqual(&RandomDocuments::Composition);
}

TEST(RoundTrip, PackingListsAreReadBackEqual) {
  ExpectReadBackEqual(&RandomDocuments::PackingList);
}

TEST(RoundTrip, AssetMapsAreReadBackEqual) {
  ExpectReadBackEqual(&RandomDocuments::AssetMap);
}

TEST(RoundTrip, VolumeIndexesAreReadBackEqual) {
  ExpectReadBackEqual(&RandomDocuments::VolumeIndex);
}

TEST(RoundTrip, SubtitleDocumentsAreReadBackEqual) {
  ExpectReadBackEqual(&RandomDocuments::Subtitle);
}

TEST(RoundTrip, SMPTECompositionPlaylistsAreValid) {
  ExpectValid(&RandomDocuments::Composition, Cairn::DFT_DCI_SMPTE, "all-smpte-cpl.xsd");
}

TEST(RoundTrip, InteropCompositionPlaylistsAreValid) {
  ExpectValid(&RandomDocuments::Composition, Cairn::DFT_Interop, "all-interop-cpl.xsd");
}

TEST(RoundTrip, SMPTEPackingListsAreValid) {
  ExpectValid(&RandomDocuments::PackingList, Cairn::DFT_DCI_SMPTE, "smpte-429-8-2007-PKL.xsd");
}

TEST(RoundTrip, InteropPackingListsAreValid) {
  ExpectValid(&RandomDocuments::PackingList, Cairn::DFT_Interop, "interop-PROTO-ASDCP-PKL-20040311.xsd");
}

TEST(RoundTrip, SMPTEAssetMapsAreValid) {
  ExpectValid(&RandomDocuments::AssetMap, Cairn::DFT_DCI_SMPTE, "smpte-429-9-2007-AM.xsd");
}

TEST(RoundTrip, InteropAssetMapsAreValid) {
  ExpectValid(&RandomDocuments::AssetMap, Cairn::DFT_Interop, "interop-PROTO-ASDCP-AM-20040311.xsd");
}

TEST(RoundTrip, SMPTEVolumeIndexesAreValid) {
  ExpectValid(&RandomDocuments::VolumeIndex, Cairn::DFT_DCI_SMPTE, "smpte-429-9-2007-AM.xsd");
}

TEST(RoundTrip, InteropVolumeIndexesAreValid) {
  ExpectValid(&RandomDocuments::VolumeIndex, Cairn::DFT_Interop, "reconstructed-PROTO-ASDCP-VL-20040311.xsd");
}

TEST(RoundTrip, SubtitleDocumentsAreValid) {
  ExpectValid(&RandomDocuments::Subtitle, Cairn::DFT_Interop, "reconstructed-DCSubtitle.xsd");
}

}  // namespace
