// SPDX-License-Identifier: BSD-3-Clause
// Writes the page about every finding into the file named.
#include "table/FindingsPage.h"

#include <Ferro/FileText.h>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  return Ferro::WriteStringIntoFile(argv[1], Assay::FindingsPage()).Success() ? 0 : 1;
}
