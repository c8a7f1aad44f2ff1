// SPDX-License-Identifier: BSD-3-Clause
// Writes sound texts, each with a font and with a picture, into the folder given.
#include "../tests/assay/SampleDocuments.h"
#include "../tests/support/FontMaker.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

int main(int argc, char** argv) {
  using namespace testsupport;
  if (argc != 2) return 2;
  int number = 0;
  for (const std::string& text : {InteropText(), SMPTEText(2007), SMPTEText(2010), SMPTEText(2014)})
    for (const Bytes& resource : {MakeTrueType(U" abcdefghijklmnopqrstuvwxyz"), MakePNG(100)}) {
      const std::string seed = text + std::string(1, '\0') + std::string(resource.begin(), resource.end());
      if (Ferro::WriteStringIntoFile(Ferro::PathJoin(argv[1], std::to_string(number++)), seed).Failure()) return 1;
    }
  return 0;
}
