// SPDX-License-Identifier: BSD-3-Clause
// Writes sound documents of each kind into the folder given.
#include "../tests/assay/SampleDocuments.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

int main(int argc, char** argv) {
  using namespace testsupport;
  if (argc != 2) return 2;
  int number = 0;
  for (const std::string& text :
       {SMPTEAssetMap(), SMPTEVolumeIndex(), SignedPackingList(), SMPTEComposition(), SMPTEStereoscopicComposition(),
        InteropAssetMap(), InteropVolumeIndex(), InteropPackingList(), InteropComposition(), InteropText(),
        SMPTEText(2007), SMPTEText(2010), SMPTEText(2014)})
    if (Ferro::WriteStringIntoFile(Ferro::PathJoin(argv[1], std::to_string(number++)), text).Failure()) return 1;
  return 0;
}
