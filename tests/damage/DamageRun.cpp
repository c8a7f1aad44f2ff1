// SPDX-License-Identifier: BSD-3-Clause
// Damages packages at random and says what a check told of what differs.
//
//   damage_run COUNT [FIRST]                both modes, with the seeds from FIRST (1) on; fails where a check crashed or hung,
//                                           or said nothing of a difference for no reason
//   damage_run --page FILE COUNT            the same, and writes docs/damage.md
//   damage_run --make SEED MODE FOLDER      writes that damaged package; MODE is damaged or recomputed
#include "DamageTable.h"
#include "SilenceReasons.h"

#include <Strata/Version.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

using namespace testsupport;

namespace {

uint32_t Number(const std::string& text) {
  return static_cast<uint32_t>(std::strtoul(text.c_str(), nullptr, 10));
}

bool RunMode(const DamageLab& lab, DamageMode mode, uint32_t first, uint32_t count, std::string& page) {
  DamageTable table(mode);
  for (uint32_t seed = first; seed < first + count; ++seed)
    if (const std::string line = table.Add(lab.Run(seed, mode)); !line.empty()) std::puts(line.c_str());
  const std::string text = table.Text();
  std::printf("\n%s, %u cases\n\n%s\n", DamageModeName(mode), count, text.c_str());
  page += mode == DamageMode::AsDamaged
              ? "\n## As damaged\n\nSizes and digests are those of the sound package.\n\n"
              : "\n## Recomputed\n\nSizes and digests fit the damage, and signed documents are signed anew.\n\n";
  page += text;
  return table.IsGood();
}

bool WritePage(const std::string& filename, uint32_t count, const std::string& tables) {
  std::ofstream page(filename);
  page << "# Damaged packages\n\n"
          "What a check says of "
       << count << " packages that were damaged at random, in two modes: version " << Strata::Version()
       << ".\n"
          "Written by `./bootstrap damage`; whatever follows a change of the checker or of the sample is to be "
          "accepted anew.\n\n"
          "Each case is one damage to one file of a small sample package: elements of documents removed, repeated, "
          "moved, "
          "renamed,\nvalues, digits and letters changed; lengths, header metadata, index and frames of track files "
          "changed, "
          "frames swapped\nor put over others; bytes changed anywhere, ranges zeroed, files cut, extended, removed or "
          "replaced by others. A case\nfollows from its seed alone: `damage_run --make SEED recomputed FOLDER` makes "
          "it.\n\n"
          "What differs is not what a checker says but what an audience gets: the timeline as the engine exports it, "
          "and "
          "of each\nedit unit that plays the bytes, the decoded picture, the samples, the text and its fonts and "
          "images.\n"
       << tables << "\n## Why nothing was said\n\n";
  for (const SilenceReason& reason : SilenceReasons()) page << "- **" << reason.Name << "**: " << reason.Text << '\n';
  return page.flush().good();
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  const DamageLab lab;
  if (arguments.size() == 4 && arguments[0] == "--make") {
    const DamageMode mode = arguments[2] == "damaged" ? DamageMode::AsDamaged : DamageMode::Recomputed;
    PackageFiles files;
    std::puts(lab.Make(Number(arguments[1]), mode, files).Line().c_str());
    WritePackage(files, arguments[3]);
    return 0;
  }
  std::string page_file;
  if (arguments.size() >= 2 && arguments[0] == "--page") {
    page_file = arguments[1];
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  if (arguments.empty()) {
    std::fputs("usage: damage_run [--page FILE] COUNT [FIRST] | --make SEED damaged|recomputed FOLDER\n", stderr);
    return 2;
  }
  const uint32_t count = Number(arguments[0]);
  const uint32_t first = arguments.size() > 1 ? Number(arguments[1]) : 1;
  std::string tables;
  bool is_good = true;
  for (const DamageMode mode : {DamageMode::AsDamaged, DamageMode::Recomputed})
    is_good &= RunMode(lab, mode, first, count, tables);
  if (!page_file.empty() && !WritePage(page_file, count, tables)) return 2;
  return is_good ? 0 : 1;
}
