// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentMutator.h"
#include "SampleDocuments.h"

#include "../support/LogCapture.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/PackingList.h>
#include <Cairn/TimedText.h>
#include <Ferro/SHA1Digest.h>
#include <Strata/ShowPlaylist.h>

#include <gtest/gtest.h>

#include <algorithm>

// The form checker tells what is wrong with a document; what the readers accept is another matter, and stays as it is: a
// package that played yesterday plays tomorrow. Where a reader is to accept more or less, or a sample changes, its row
// changes with it.

namespace {

constexpr size_t MutantCount = 1'000;  // of each document
constexpr uint32_t Seed = 429'007;     // fixed: the rows below are of these mutants

template <class DocumentT>
Ferro::Result_t Decode(const std::string& xml) {
  DocumentT document;
  return document.DecodeXML(xml);
}

std::string ShowPlaylistText() {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>urn:uuid:5e1a2b3c-0000-4000-8000-000000000001</Id>
  <Label>Tonight</Label>
  <ShowTitleText>Tonight</ShowTitleText>
  <AnnotationText>A show</AnnotationText>
  <IssueDate>2026-03-05T20:00:00+01:00</IssueDate>
  <ShowSequence>
    <Marker><Label scope="urn:scope">LIGHTS_DOWN</Label></Marker>
    <CompositionPlaylist>
      <CompositionId>urn:uuid:5e1a2b3c-0000-4000-8000-000000000002</CompositionId>
      <EditRate>24 1</EditRate>
      <Duration>240</Duration>
      <Marker><Label scope="urn:scope">CREDITS</Label><Offset>200</Offset></Marker>
    </CompositionPlaylist>
    <ShowPlaylist><ShowPlaylistURI>urn:uuid:5e1a2b3c-0000-4000-8000-000000000003</ShowPlaylistURI></ShowPlaylist>
  </ShowSequence>
</ShowPlaylist>
)";
}

/// What a reader makes of the mutants of a document.
struct Acceptance {
  const char* Name;
  std::string (*Document)();
  Ferro::Result_t (*Decode)(const std::string&);
  size_t Accepted;    ///< how many
  const char* Which;  ///< digest of a sign for each
};

const Acceptance Readers[] = {
    {"AssetMap", testsupport::SMPTEAssetMap, Decode<Cairn::AssetMap>, 433, "512fd507dd47e14803ec22f377d86ca19d5715c9"},
    {"InteropAssetMap", testsupport::InteropAssetMap, Decode<Cairn::AssetMap>, 481,
     "a40c174964caaaf3cdcbef77049d0d7c580d9aab"},
    {"VolumeIndex", testsupport::SMPTEVolumeIndex, Decode<Cairn::VolumeIndex>, 384,
     "95f62591f2e28cb058658b1e589c8770a0666c7d"},
    {"PackingList", testsupport::SMPTEPackingList, Decode<Cairn::PackingList>, 439,
     "01dd4f3e2fa35bcda8a94db0542918ef6cfdd3a1"},
    {"InteropPackingList", testsupport::InteropPackingList, Decode<Cairn::PackingList>, 465,
     "c1aaa50ec8afc370c9b6874c61057c84fe90df40"},
    {"Composition", testsupport::SMPTEComposition, Decode<Cairn::CompositionPlaylist>, 505,
     "16b5743514a4f191b27f01bc577f6629842eedea"},
    {"StereoscopicComposition", testsupport::SMPTEStereoscopicComposition, Decode<Cairn::CompositionPlaylist>, 462,
     "93d398b0f6edd36f28e92a7ca1ec2cbd87816e7a"},
    {"InteropComposition", testsupport::InteropComposition, Decode<Cairn::CompositionPlaylist>, 510,
     "32174c8d6f55d2698edc3f7b74cd4079d58a6bfe"},
    {"Subtitle", testsupport::InteropText, Decode<Cairn::DCSubtitle>, 908, "b8e94a5ca89d152fc08cdf764f6824d8aec4fd50"},
    {"InteropText", testsupport::InteropText, Decode<Cairn::TimedText>, 1000,
     "851236d702bd5d16f4add0b383c81bc16b2bf19a"},
    {"TimedText", [] { return testsupport::SMPTEText(2014); }, Decode<Cairn::TimedText>, 1000,
     "851236d702bd5d16f4add0b383c81bc16b2bf19a"},
    {"ShowPlaylist", ShowPlaylistText, Decode<Strata::ShowPlaylist>, 846, "5d4396c0be71286bd984945ac5980f40d0a2b4e9"},
};

class ReaderAcceptance : public testing::TestWithParam<Acceptance> {};

TEST_P(ReaderAcceptance, StaysAsItIs) {
  const testsupport::LogCapture quiet;
  const std::string text = GetParam().Document();
  ASSERT_EQ(GetParam().Decode(text), Ferro::RESULT_OK);
  const Assay::ParsedDocument document = Assay::ParseDocument(text);
  ASSERT_TRUE(document.Root.has_value());
  testsupport::DocumentMutator mutator(Seed);
  std::string signs;
  for (size_t number = 0; number < MutantCount; ++number)
    signs += GetParam().Decode(mutator.Mutated(*document.Root)).Success() ? '+' : '-';
  EXPECT_EQ(static_cast<size_t>(std::count(signs.begin(), signs.end(), '+')), GetParam().Accepted);
  EXPECT_EQ(Ferro::DigestText(signs).EncodeHex(), GetParam().Which);
}

INSTANTIATE_TEST_SUITE_P(Each, ReaderAcceptance, testing::ValuesIn(Readers),
                         [](const auto& each) { return each.param.Name; });

}  // namespace
