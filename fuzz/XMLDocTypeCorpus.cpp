// SPDX-License-Identifier: BSD-3-Clause
// Writes the seeds of XMLDocTypeFuzz into the folder given.
#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <string>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string seeds[] = {
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c --><p:a b='1 > 0' xmlns:p=\"urn:&#x70;&amp;\">",
      "\xef\xbb\xbf<!DOCTYPE a [<!ENTITY e ']>'> %p; <?t d?> <!-- ] -->]><a xmlns='urn:a'/>",
      std::string("\xff\xfe<\0a\0/\0>\0", 10),
      std::string("\xfe\xff\0<\0a\0/\0>", 10),
  };
  int number = 0;
  for (const std::string& seed : seeds)
    if (Ferro::WriteStringIntoFile(Ferro::PathJoin(argv[1], std::to_string(number++)), seed).Failure()) return 1;
  return 0;
}
