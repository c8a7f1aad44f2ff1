// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ResourcePresentationList.h>

#include <cstdlib>
#include <fstream>
#include <string>

// Writes an empty list and one with a resource into the folder given.

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const std::string folder = argv[1];

  Strata::ResourcePresentationList list;
  std::string document;
  if (list.EncodeXML(document).Failure()) return EXIT_FAILURE;
  std::ofstream(folder + "/empty", std::ios::binary) << document;

  auto& reel = list.ReelResourcesList.emplace_back();
  auto& resource = reel.ReelResourceList.emplace_back();
  resource.ResourceType = "ClosedCaption";
  resource.Language = "en";
  resource.ResourceFileList.push_back({Ferro::UUID(), "http://media/text"});
  if (list.EncodeXML(document).Failure()) return EXIT_FAILURE;
  std::ofstream(folder + "/full", std::ios::binary) << document;
  return EXIT_SUCCESS;
}
