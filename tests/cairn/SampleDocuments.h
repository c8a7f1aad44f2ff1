// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/PackingList.h>

#include <string>
#include <vector>

namespace CairnTest {

/// A document's model with what it is to look like: the file of that name in the golden folder, and the schema in the
/// schema folder that it is valid against.
template <class T>
struct Sample {
  std::string Golden;
  std::string Schema;
  Cairn::DCPFormat_t Format;
  T Model;  // as read back: with namespace and format
};

std::vector<Sample<Cairn::CompositionPlaylist>> CompositionSamples();
std::vector<Sample<Cairn::PackingList>> PackingListSamples();
std::vector<Sample<Cairn::AssetMap>> AssetMapSamples();
std::vector<Sample<Cairn::VolumeIndex>> VolumeIndexSamples();
std::vector<Sample<Cairn::DCSubtitle>> SubtitleSamples();

/// 00000000-0000-4000-8000-xxxxxxxxxxxx of a number.
Cairn::UUID SampleID(Cairn::ui32_t number);
/// 20 times the byte.
Cairn::SHA1 SampleDigest(Cairn::ui8_t byte);

inline Cairn::Result_t Encode(const Cairn::DCSubtitle& model, std::string& out, Cairn::DCPFormat_t) {
  return model.EncodeXML(out);
}
template <class T>
Cairn::Result_t Encode(const T& model, std::string& out, Cairn::DCPFormat_t format) {
  return model.EncodeXML(out, format);
}

}  // namespace CairnTest
