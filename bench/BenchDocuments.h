// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/CompositionPlaylist.h>

#include <cstdio>
#include <cstdlib>
#include <string>

// Documents of any size for the benchmarks.

inline Cairn::UUID NumberedID(unsigned number) {
  char text[40];
  std::snprintf(text, sizeof(text), "00000000-0000-4000-8000-%012x", number);
  return *Cairn::UUID::FromHex(text);
}

enum class Content { Clear, Encrypted, Digested };

/// A composition of picture and sound. Each asset of an encrypted one has a key identifier and a digest.
/// @param first  what identifiers are numbered from: the composition's is one more, the assets' of reel i, from 0 on, are 11
/// and 12 more, and 3 i.
inline std::string CompositionOf(unsigned reels, Content content, unsigned first = 0) {
  Cairn::CompositionPlaylist cpl;
  cpl.ID = NumberedID(first + 1);
  cpl.IssueDate = "2026-02-03T04:05:06Z";
  cpl.Issuer = cpl.Creator = cpl.ContentTitle = "Quayside";
  cpl.ContentKind = Cairn::CK_FEATURE;
  cpl.ContentVersion = {NumberedID(first + 2).EncodeURN(), "1"};
  for (unsigned i = 0; i < reels; ++i) {
    Cairn::Reel& reel = cpl.ReelList.emplace_back();
    reel.ID = NumberedID(first + 10 + 3 * i);
    for (Cairn::GenericAsset* asset :
         {static_cast<Cairn::GenericAsset*>(&reel.MainPicture), static_cast<Cairn::GenericAsset*>(&reel.MainSound)}) {
      asset->AssetID = NumberedID(first + 11 + 3 * i + (asset == &reel.MainSound ? 1 : 0));
      asset->EditRate = {24, 1};
      asset->IntrinsicDuration = asset->Duration = 24 * 60;
      if (content == Content::Clear) continue;
      if (content == Content::Encrypted) asset->KeyID = NumberedID(1'000'000 + 2 * i);
      if (!asset->Digest.DecodeBase64("2jmj7l5rSw0yVb/vlWAYkK/YBwk=")) std::abort();
    }
    reel.MainPicture.FrameRate = {24, 1};
    reel.MainPicture.ScreenAspectRatio = {1998, 1080};
  }
  std::string xml;
  if (cpl.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Failure()) std::abort();
  return xml;
}
