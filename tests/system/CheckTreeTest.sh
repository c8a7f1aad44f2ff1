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

# header <file> <line>...: a source with its licence.
header() {
  mkdir -p "$(dirname "$tree/$1")"
  printf '%s\n' "// $licence" "${@:2}" >"$tree/$1"
}

good_tree() {
  rm -rf "${tree:?}"/*
  mkdir -p "$tree"/{src/StrataTypes,docs,tests/system}
  printf '# %s\n' "$licence" | tee "$tree/bootstrap" >"$tree/CMakeLists.txt"
  header toolkit/ferro/include/Ferro/B.h 'int B();'
  header toolkit/ferro/src/Private.h 'int P();'
  header toolkit/quire/include/QUIRE/UL.h '#include <QUIRE/Types.h>'
  header toolkit/quire/include/QUIRE/Types.h '#include <Ferro/B.h>'
  header toolkit/quire/include/QUIRE/KLV.h 'int K();'
  header toolkit/quire/src/base/UL.cpp '#include <QUIRE/UL.h>'
  header toolkit/quire/src/base/BigEndian.h 'int E();'
  header toolkit/quire/src/klv/KLV.cpp '#include "Scan.h"' '' '#include <QUIRE/KLV.h>'
  header toolkit/quire/src/klv/Scan.h '#include "base/BigEndian.h"'
  header include/Strata/Strata.h '#include "Strata/A.h"'
  header include/Strata/A.h '#include "Ferro/B.h"'
  header src/Playlist/Timeline.h 'int T();'
  header tools/strata/terminal/Words.cpp 'bool is_told = !entry.Message.empty();'
  header tools/strata/play/Play.h '#include "../terminal/Words.cpp"'
  header tests/system/consumer/main.cpp 'int main() {}'
  # shellcheck disable=SC2016
  printf '```cpp\nint main() {}\n```\nSee `docs/README.md`.\n' >"$tree/README.md"
  # shellcheck disable=SC2016
  printf '| `%s/` | is | |\n' toolkit/ferro/{include/Ferro,src} toolkit/quire/{include/QUIRE,src/base,src/klv} \
    include/Strata src/Playlist tools/strata/{terminal,play} tests/system >"$tree/docs/README.md"
  # shellcheck disable=SC2016
  echo '| a scan | `toolkit/quire/src/klv/KLV.cpp` | `Scan` |' >>"$tree/docs/README.md"
}

declare -A accepts
# refuses <rule> <file> <line>...: the good tree passes; with the lines appended to the file it does not.
refuses() {
  local rule=$1 file=$2
  shift 2
  good_tree
  [[ ${accepts[$rule]:-} ]] || "$check" "$rule" "$tree" || { echo "$rule refused the good tree"; exit 1; }
  accepts[$rule]=yes
  mkdir -p "$(dirname "$tree/$file")"
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
refuses directions include/Strata/A.h '#include <Sigil/Result.h>'
refuses directions src/StrataTypes/New.cpp '#include "Playlist/Timeline.h"'
refuses directions src/StrataTypes/New.cpp '#include "../Playlist/Timeline.h"'
refuses directions tools/strata/play/New.cpp '#include "../../../src/Playlist/Timeline.h"'
refuses directions src/Playlist/New.cpp '#include "../../toolkit/ferro/src/Private.h"'
refuses directions toolkit/quire/src/base/New.cpp '#include "klv/Scan.h"'
refuses directions toolkit/quire/include/QUIRE/UL.h '#include <QUIRE/KLV.h>'
refuses directions toolkit/quire/include/QUIRE/Types.h '#include <QUIRE/KLV.h>'
refuses directions tools/strata/check/New.cpp '#include "play/Play.h"'
refuses directions tools/strata/terminal/New.cpp '#include "play/Play.h"'
refuses directions tools/strata/cellar/New.cpp 'int x;'
refuses directions toolkit/quire/src/New.cpp 'int x;'
refuses circles toolkit/ferro/include/Ferro/B.h '#include "Strata/Strata.h"'
refuses circles toolkit/quire/src/base/New.cpp '#include "klv/Scan.h"'
refuses texts src/Playlist/New.cpp 'bool x = entry.Message.starts_with(start);'
refuses texts src/Playlist/New.cpp 'if (entry.Message' '        .find("lock") != 0) {'
refuses texts src/Playlist/New.cpp 'if (finding.Advice == CopyAgain) {'
refuses texts src/Playlist/New.cpp 'if (text == "Copy it again.") {'
refuses texts src/Playlist/New.cpp 'if (line.find("packing list") != line.npos) {'
refuses texts src/Playlist/New.cpp 'if (std::strstr(result.Label(), "lock")) {'
refuses texts src/Playlist/New.cpp 'if (std::string(result.Label()) == label) {'
refuses texts src/Playlist/New.cpp 'if (label == result.Label()) {'
refuses texts src/Playlist/New.cpp 'if (std::string(error.what()).find(word) != 0) {'
refuses umbrella include/Strata/C.h 'int C();'
refuses readme tests/system/consumer/main.cpp 'int more;'
# shellcheck disable=SC2016
refuses documents docs/README.md 'See `src/Gone.cpp`.'
refuses map src/StrataTypes/New.cpp 'int x;'
# shellcheck disable=SC2016
refuses map docs/README.md '| `src/Gone/` | is | |'
# shellcheck disable=SC2016
refuses map docs/README.md '| `src/Playlist/` | is, again | |'
# shellcheck disable=SC2016
refuses map docs/README.md '| a thing | `src/Playlist/Timeline.h` | `Gone` |'
# shellcheck disable=SC2016
refuses map docs/README.md '| a thing | `src/Playlist/Gone.h` | `T` |'

# Rows in another order than the rooms, and no answers at all.
good_tree
sed -i '/klv\/. |/{h;d};/src.Playlist/G' "$tree/docs/README.md"
! "$check" map "$tree" >/dev/null || { echo "map accepted rooms in the wrong order"; exit 1; }
good_tree
sed -i '/Scan/d' "$tree/docs/README.md"
! "$check" map "$tree" >/dev/null || { echo "map accepted a page without answers"; exit 1; }

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
