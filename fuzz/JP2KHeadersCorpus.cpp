// SPDX-License-Identifier: BSD-3-Clause
// Writes the seeds of JP2KHeadersFuzz into the folder given: codestreams as cinema encoders lay them out, and odd ones.
#include "../tests/support/CinemaCodestream.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

namespace {

using testsupport::CinemaCodestream;
using Marker = CinemaCodestream::Marker;
using Bytes = CinemaCodestream::Bytes;

CinemaCodestream WithSegments() {
  CinemaCodestream stream;
  for (const Bytes& segment :
       {CinemaCodestream::Segment(Marker::CAP, {0, 2, 0, 0, 0, 0}),
        CinemaCodestream::Segment(Marker::COC, {1, 0, 4, 2, 3, 0x40, 1}),
        CinemaCodestream::Segment(Marker::QCC, {2, 0x62, 1, 2}), CinemaCodestream::Segment(Marker::COM, {0, 1, 'x'})})
    CinemaCodestream::Append(stream.MoreOfMainHeader, segment);
  stream.MoreOfTilePart = CinemaCodestream::Segment(Marker::PLT, {0, 5});
  return stream;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  int number = 0;
  for (CinemaCodestream stream : {CinemaCodestream(), CinemaCodestream::FourK(), WithSegments()}) {
    for (auto& length : stream.DataLengths) length /= 10;
    const Bytes seed = stream.Make();
    const std::string path = Ferro::PathJoin(argv[1], std::to_string(number++));
    if (Ferro::WriteStringIntoFile(path, std::string(seed.begin(), seed.end())).Failure()) return 1;
  }
  return 0;
}
