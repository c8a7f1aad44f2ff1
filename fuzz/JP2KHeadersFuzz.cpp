// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/CinemaProfile.h>

#include <cstdlib>

namespace {

void Require(bool condition) {
  if (!condition) abort();
}

}  // namespace

// The headers of a codestream: tile-parts follow each other and lie within the bytes; what is kept is bounded; every
// finding has a text.
extern "C" int LLVMFuzzerTestOneInput(const QUIRE::ui8_t* data, size_t size) {
  using namespace QUIRE::JP2K;
  CodestreamHeaders headers;
  if (ParseHeaders({data, size}, headers).Failure()) {
    Require(headers == CodestreamHeaders());
    return 0;
  }
  QUIRE::ui64_t end = headers.MainHeaderLength;
  for (const TilePart& part : headers.TileParts) {
    Require(part.Offset == end && part.Length >= 14);
    end += part.Length;
  }
  Require(end <= size && headers.Length == size);
  Require((headers.End == CodestreamEnd::Proper) == (end + 2 == size && data[end] == 0xff && data[end + 1] == 0xd9));
  Require(headers.TileParts.size() <= CodestreamHeaders::MaxTileParts);
  Require(headers.TilePartLengths.size() <= CodestreamHeaders::MaxTileParts);
  Require(headers.CodingOf.size() <= headers.Size.Csiz && headers.QuantOf.size() <= headers.Size.Csiz);
  Require(headers.MainMarkers.size() <= 256 && headers.TilePartMarkers.size() <= 256);
  const auto components = BytesOfComponents(headers);
  Require(components.empty() || components.size() == headers.Size.Csiz);
  for (const ProfileFinding& finding : CheckCinemaProfile(headers, QUIRE::Rational(24, 1)))
    Require(!finding.EncodeString().empty());
  return 0;
}
