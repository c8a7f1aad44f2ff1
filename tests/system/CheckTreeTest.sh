#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# CheckTreeTest.sh <compiler>: each rule of CheckTree.sh accepts a small good tree and refuses the same tree with one
# offence; so do the checks of headers and of exported symbols.
set -euo pipefail
compiler=$1
here=$(dirname "$(readlink -f "$0")")
check=$here/CheckTree.sh
licence='SPDX-License-Identifier: BSD-3-Clause'
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

good_tree() {
  rm -rf "${tree:?}"/*
  mkdir -p "$tree"/{include/Strata,src/StrataTypes,src/Playlist,toolkit/ferro/src,toolkit/ferro/include/Ferro} \
    "$tree"/{tools/strata,docs,tests/system/consumer}
  printf '# %s\n' "$licence" | tee "$tree/bootstrap" >"$tree/CMakeLists.txt"
  printf '// %s\n#include "Strata/A.h"\n' "$licence" >"$tree/include/Strata/Strata.h"
  printf '// %s\n#include "Ferro/B.h"\n' "$licence" >"$tree/include/Strata/A.h"
  printf '// %s\nint B();\n' "$licence" >"$tree/toolkit/ferro/include/Ferro/B.h"
  printf '// %s\nint main() {}\n' "$licence" >"$tree/tests/system/consumer/main.cpp"
  # shellcheck disable=SC2016
  printf '```cpp\nint main() {}\n```\nSee `docs/README.md`.\n' >"$tree/README.md"
  : >"$tree/docs/README.md"
}

# refuses <rule> <file> <line>...: the good tree passes; with the lines appended to the file it does not.
refuses() {
  local rule=$1 file=$2
  shift 2
  good_tree
  "$check" "$rule" "$tree" || { echo "$rule refused the good tree"; exit 1; }
  printf '%s\n' "$@" >>"$tree/$file"
  ! "$check" "$rule" "$tree" >/dev/null || { echo "$rule accepted $file with: $1"; exit 1; }
}

mapfile -t long < <(seq -f '// %g' 600)
refuses spdx src/Playlist/New.cpp 'int x;'
refuses spdx tests/system/New.sh '#!/bin/sh' 'exit'
refuses length toolkit/ferro/include/Ferro/B.h "${long[@]}"
refuses todo toolkit/ferro/include/Ferro/B.h '// TO''DO: later'
refuses format toolkit/ferro/include/Ferro/B.h 'int  y ;'
refuses directions toolkit/ferro/include/Ferro/B.h '#include "Strata/A.h"'
refuses directions toolkit/ferro/include/Ferro/B.h '#include <xercesc/dom/DOM.hpp>'
refuses directions include/Strata/A.h '#include <openssl/sha.h>'
refuses directions src/StrataTypes/New.cpp '#include "Playlist/Timeline.h"'
refuses directions src/StrataTypes/New.cpp '#include "../Playlist/Timeline.h"'
refuses directions tools/strata/New.cpp '#include "../../src/Playlist/Timeline.h"'
refuses directions src/Playlist/New.cpp '#include "../../toolkit/ferro/src/Private.h"'
refuses circles toolkit/ferro/include/Ferro/B.h '#include "Strata/Strata.h"'
refuses umbrella include/Strata/C.h 'int C();'
refuses readme tests/system/consumer/main.cpp 'int more;'
# shellcheck disable=SC2016
refuses documents docs/README.md 'See `src/Gone.cpp`.'

good_tree
"$here/CheckHeaders.sh" "$compiler" "$tree"/{include,toolkit/ferro/include} || { echo "good headers were refused"; exit 1; }
echo 'std::string NeedsAnother();' >>"$tree/include/Strata/A.h"
! "$here/CheckHeaders.sh" "$compiler" "$tree"/{include,toolkit/ferro/include} 2>/dev/null ||
  { echo "a header that needs another was accepted"; exit 1; }

symbols() { STRATA_SYMBOL_LISTS=$tree "$here/../../packaging/symbols/check" "$@"; }
"$compiler" -shared -fPIC -x c++ -o "$tree/libsmall.so" - <<<'int a, b; void f(int) {}'
! symbols small "$tree/libsmall.so" 2>/dev/null || { echo "symbols without a reviewed list were accepted"; exit 1; }
symbols --accept small "$tree/libsmall.so"
symbols small "$tree/libsmall.so"
"$compiler" -shared -fPIC -x c++ -o "$tree/libsmall.so" - <<<'int a, b; void f(long) {}'
! symbols small "$tree/libsmall.so" &>/dev/null || { echo "a changed symbol was accepted"; exit 1; }

echo "every rule accepts the good tree and refuses an offence"
