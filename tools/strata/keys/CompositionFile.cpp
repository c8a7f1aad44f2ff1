// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFile.h"

#include "terminal/CommandError.h"
#include "terminal/LogView.h"

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>

#include <algorithm>

namespace Tool {

namespace {

/// Adds a key under the type that ST 430-1 has for what it encrypts.
void AddKey(const Cairn::GenericAsset& asset, const char* type, CompositionFile& out) {
  if (!asset.KeyID.HasValue() || std::ranges::find(out.Facts.KeyIDs, asset.KeyID) != out.Facts.KeyIDs.end()) return;
  out.Facts.KeyIDs.push_back(asset.KeyID);
  out.Keys.push_back({asset.KeyID, type, ""});
}

}  // namespace

CompositionFile ReadCompositionFile(const std::string& filename, DocumentSignatures& signatures) {
  const QuietLog log;  // the result says it all
  Cairn::CompositionPlaylist composition;
  if (const auto result = Cairn::InitObjectWithFile(composition, filename); result.Failure())
    throw CommandError(result == Ferro::RESULT_NOT_FOUND ? ExitCode::Usage : ExitCode::NotPlayable,
                       filename + ": this is no composition that can be read: " + result.Label());
  CompositionFile out;
  out.Facts.ID = composition.ID;
  out.Facts.SignerThumbprint = signatures.Of(filename).Signer();
  out.Title = composition.ContentTitle;
  out.Format = composition.DCPFormat;
  for (const Cairn::Reel& reel : composition.ReelList) {
    AddKey(reel.MainPicture, "MDIK", out);
    AddKey(reel.MainSound, "MDAK", out);
    AddKey(reel.MainSubtitle, "MDSK", out);
    for (const Cairn::TimedTextAsset& text : reel.OffScreenText) AddKey(text, "MDSK", out);
    for (const Cairn::AuxDataAsset& data : reel.AuxData) AddKey(data, "MDEK", out);
    const QUIRE::Rational& rate = reel.MainPicture.EditRate;
    if (rate.Numerator > 0) out.Seconds += double(reel.MainPicture.Duration) * rate.Denominator / rate.Numerator;
  }
  return out;
}

}  // namespace Tool
