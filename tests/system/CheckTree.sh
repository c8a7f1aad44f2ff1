#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# CheckTree.sh <rule> <root>: checks one promise about the source tree. Prints each offence and fails if there is one.
set -euo pipefail
rule=$1
cd "$2"

folders=(.ci cmake include src toolkit tools tests fuzz bench examples packaging docs)
mapfile -t folders < <(find "${folders[@]}" -maxdepth 0 2>/dev/null)
code() { find "${folders[@]}" -type f \( -name '*.h' -o -name '*.cpp' \) | LC_ALL=C sort; }
scripts() { find bootstrap CMakeLists.txt "${folders[@]}" -type f \( -name bootstrap -o -name CMakeLists.txt \
  -o -name '*.cmake' -o -name '*.sh' -o -path '.ci/run' -o -path '*/symbols/check' \) | LC_ALL=C sort; }

# Every includer with what it includes, as "file<blank>included", in angle brackets or quotes.
includes() { code | xargs sed -nE '/^ *# *include/{s/^ *# *include *[<"]([^>"]*)[>"].*/\1/;F;p}' | paste -d ' ' - -; }

# The first line of a source file names its licence; a script's first line is taken by its interpreter.
spdx() {
  local file
  for file in $(code); do
    [[ $(head -n 1 "$file") == '// SPDX-License-Identifier: BSD-3-Clause' ]] || echo "$file: no licence in its first line"
  done
  for file in $(scripts); do
    head -n 2 "$file" | grep -qx '# SPDX-License-Identifier: BSD-3-Clause' || echo "$file: no licence at its top"
  done
}

# A table of facts that stands alone in its file may be longer.
length() {
  code | grep -vx 'toolkit/quire/src/base/DictionaryTable.cpp' |
    xargs awk 'FNR == 601 { print FILENAME ": longer than 600 lines" }'
}

todo() { { code; scripts; } | xargs grep -nwE 'TO''DO|FIX''ME|X''XX' || true; }

format() {
  clang-format-14 --version >/dev/null || { echo "clang-format-14 is not installed: the format was not checked"; return; }
  code | xargs clang-format-14 --dry-run -Werror 2>&1 | grep 'error:' || true
}

# No include points up the table of modules, at a third party that is not the module's, or into another's src.
directions() {
  includes | awk '
    BEGIN {
      up["toolkit/ferro/"] = "^(QUIRE|Cairn|Strata|xercesc|xsec|sqlite3|CLI|nlohmann|openjpeg)"
      up["toolkit/quire/"] = "^(Cairn|Strata|xercesc|xsec|sqlite3|CLI|nlohmann|openjpeg)"
      up["toolkit/cairn/"] = "^(Strata|CLI|nlohmann|openjpeg)"
      up["include/"]       = "^(xercesc|xsec|sqlite3|openssl|CLI|nlohmann|openjpeg)"
      up["src/"]           = "^(sqlite3|openssl|CLI|nlohmann|openjpeg)"
      up["src/StrataTypes/"]      = "^([.][.]/)*(TimelineElements|ShowPlaylist|ResourcePresentationList|Playlist)/"
      up["src/TimelineElements/"] = "^([.][.]/)*(ShowPlaylist|ResourcePresentationList|Playlist)/"
      up["src/ShowPlaylist/"]     = "^([.][.]/)*(ResourcePresentationList|Playlist)/"
      up["src/ResourcePresentationList/"] = "^([.][.]/)*Playlist/"
      up["tools/"] = "(^|/)(src|StrataTypes|TimelineElements|ShowPlaylist|ResourcePresentationList|Playlist)/"
    }
    { for (from in up) if (index($1, from) == 1 && $2 ~ up[from]) print $1 ": must not include " $2 }
    $1 !~ /^tests\// && $2 ~ /(toolkit|^src)\/.*src\// { print $1 ": reaches into another module with " $2 }'
}

# tsort names the files of each circle.
circles() {
  local name
  declare -A where
  while read -r name; do where[${name##*/include/}]=$name; done < <(code | grep '/include/.*\.h$')
  while read -r name; do where[${name#include/}]=$name; done < <(code | grep '^include/.*\.h$')
  while read -r name; do where[${name#src/}]=$name; done < <(code | grep '^src/.*\.h$')
  includes | while read -r file included; do
    beside=$(dirname "$file")/$included
    if [[ -e $beside ]]; then
      echo "$file $(realpath --relative-to=. "$beside")"
    elif [[ ${where[$included]:-} ]]; then
      echo "$file ${where[$included]}"
    fi
  done | tsort 2>&1 >/dev/null | sed 's/^tsort: -/circle/; s/^tsort: /  /' || true
}

# The engine's one header brings all the others.
umbrella() {
  local header
  for header in $(find include/Strata -name '*.h' ! -name Strata.h -printf 'Strata/%P\n' | LC_ALL=C sort); do
    grep -qxE "#include [<\"]${header}[>\"]" include/Strata/Strata.h || echo "include/Strata/Strata.h: does not include $header"
  done
}

# The example of the README is the program that is built against the installed tree.
readme() {
  # shellcheck disable=SC2016
  diff <(sed -n '/^```cpp$/,/^```$/{/^```/d;p}' README.md) <(tail -n +2 tests/system/consumer/main.cpp) ||
    echo "README.md: its example is not tests/system/consumer/main.cpp"
}

# Paths that the documents name exist.
documents() {
  local document path
  # shellcheck disable=SC2016
  for document in README.md $(find docs -name '*.md'); do
    for path in $(grep -oE '`(include|src|toolkit|tools|tests|fuzz|bench|examples|packaging|docs|cmake)/[A-Za-z0-9_./-]*`' \
      "$document" | tr -d '`'); do
      [[ -e $path ]] || echo "$document: there is no $path"
    done
  done
}

case $rule in
  spdx | length | todo | format | directions | circles | umbrella | readme | documents) offences=$("$rule") ;;
  *)
    echo "no such rule: $rule" >&2
    exit 2
    ;;
esac
[[ -z $offences ]] || { printf '%s\n' "$offences"; exit 1; }
