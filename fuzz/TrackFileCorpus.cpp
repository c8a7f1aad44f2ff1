// SPDX-License-Identifier: BSD-3-Clause
#include "../tests/support/MxfBuilder.h"

#include <cstdlib>
#include <fstream>
#include <string>

// Writes small track files of each kind, in clear and encrypted, of both label sets, into the folder given.

namespace {

using testsupport::Bytes;
using testsupport::MxfBuilder;

MxfBuilder Make(MxfBuilder::Kind_t kind) {
  MxfBuilder builder(kind);
  builder.HeaderFill = 0;
  builder.Frames.assign(kind == MxfBuilder::TimedText ? 1 : 4, Bytes(kind == MxfBuilder::PCM ? 120 : 33, 0x5a));
  if (kind == MxfBuilder::TimedText) builder.Resources = {{Bytes(16, 1), "image/png", Bytes(40, 2), 10}};
  return builder;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const auto write = [folder = std::string(argv[1])](const std::string& name, MxfBuilder& builder) {
    const Bytes bytes = builder.Build();
    std::ofstream file(folder + "/" + name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good();
  };
  bool written = true;
  for (auto kind : {MxfBuilder::JP2K, MxfBuilder::JP2KS, MxfBuilder::MPEG2, MxfBuilder::PCM, MxfBuilder::TimedText,
                    MxfBuilder::DCData, MxfBuilder::Atmos}) {
    const std::string name = std::to_string(kind);
    MxfBuilder builder = Make(kind);
    written = write("clear" + name, builder) && written;
    builder.Interop = true;
    builder.HasRIP = false;
    written = write("interop" + name, builder) && written;
    builder = Make(kind);
    builder.Key = Bytes(16);
    written = write("encrypted" + name, builder) && written;
    builder.HasFooter = builder.HasRIP = false;
    builder.IndexPlace = MxfBuilder::Nowhere;
    written = write("open" + name, builder) && written;
  }
  return written ? EXIT_SUCCESS : EXIT_FAILURE;
}
