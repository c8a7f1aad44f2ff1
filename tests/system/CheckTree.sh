#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# CheckTree.sh <rule> <root>: checks one promise about the source tree. Prints each offence and fails if there is one.
set -euo pipefail
rule=$1
cd "$2"

folders=(.ci cmake include src toolkit lantern tools tests fuzz bench examples packaging docs)
mapfile -t folders < <(find "${folders[@]}" -maxdepth 0 2>/dev/null)
code() { find "${folders[@]}" -type f \( -name '*.h' -o -name '*.cpp' \) | LC_ALL=C sort; }
scripts() { find bootstrap CMakeLists.txt "${folders[@]}" -type f \( -name bootstrap -o -name CMakeLists.txt \
  -o -name '*.cmake' -o -name '*.sh' -o -path '.ci/run' -o -path '*/symbols/check' \) | LC_ALL=C sort; }

# Every includer with what it includes, as "file<blank>included", in angle brackets or quotes.
includes() { code | xargs sed -nE '/^ *# *include/{s/^ *# *include *[<"]([^>"]*)[>"].*/\1/;F;p}' | paste -d ' ' - -; }

# The first line of a source file names its licence; a script's first line is taken by its interpreter.
spdx() {
  local licence='SPDX-License-Identifier: BSD-3-Clause'
  code | xargs awk -v line="// $licence" '
    FNR == 1 && $0 == line { found[FILENAME] }
    END { for (i = 1; i < ARGC; ++i) if (!(ARGV[i] in found)) print ARGV[i] ": no licence in its first line" }'
  scripts | xargs awk -v line="# $licence" '
    FNR <= 2 && $0 == line { found[FILENAME] }
    END { for (i = 1; i < ARGC; ++i) if (!(ARGV[i] in found)) print ARGV[i] ": no licence at its top" }'
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

# Modules and, after the colon, the rooms of their sources, both lowest first: an include never points to the right or
# down. Rooms joined by commas are siblings: none includes another.
order='
toolkit/ferro:
toolkit/quire: base klv metadata index crypto codestream dump essence reader,writer
toolkit/cairn: base xml document text store
toolkit/sigil: base certificate key signature message store
toolkit/assay: base table form document security file text frames run
src: StrataTypes TimelineElements ShowPlaylist ResourcePresentationList Playlist
lantern: base sound picture text clock
tools/strata: terminal picture show keys findings drawing check,play,info,timeline,frame,wrap,export,store,sample,kdm app
tests: support ferro,quire,cairn,sigil,assay,engine,lantern,tool damage system
'

# Each include of one file of the tree by another: includer, included, then of both the module, the height (100 for each
# module, 1 for each room) and the room; - and 0 where there is none. A public header stands in the room of the source
# of its name, or else in the highest room that it includes.
edges() {
  {
    printf 'order %s\n' "${order//$'\n'/$'\norder '}"
    code | sed 's/^/file /'
    includes | sed 's/^/include /'
  } | awk '
    function module_of(file,   m) {
      if (index(file, "include/") == 1) return "src"
      for (m in modules) if (index(file, m "/") == 1) return m
      return "-"
    }
    function base_of(file) { sub(/.*\//, "", file); sub(/[.][a-z]+$/, "", file); return file }
    function room_of(file,   m, rest, parts) {
      m = module_of(file)
      if (m == "-" || file ~ /(^|\/)include\//) return "-"
      rest = substr(file, length(m) + 2)
      sub(/^src\//, "", rest)
      return split(rest, parts, "/") > 1 ? parts[1] : "-"
    }
    function tidy(path) {
      while (path ~ /(^|\/)[.]\//) sub(/[.]\//, "", path)
      while (match(path, /[^\/.][^\/]*\/[.][.]\//)) path = substr(path, 1, RSTART - 1) substr(path, RSTART + RLENGTH)
      return path
    }
    function target(file, name,   folder, m, path) {
      folder = file
      sub(/[^\/]*$/, "", folder)
      path = tidy(folder name)
      if (path in files) return path
      m = module_of(file)
      path = m (m ~ /^(toolkit|lantern)/ ? "/src/" : "/") name
      return path in files ? path : public[name]
    }
    function height_of(file,   m, i, n, list, at, highest) {
      if (file in height) return height[file]
      m = module_of(file)
      room[file] = room_of(file)
      if (room[file] == "-" && (m, base_of(file)) in source_room) room[file] = source_room[m, base_of(file)]
      height[file] = highest = m == "-" ? 0 : 100 * modules[m] + rooms[m, room[file]]
      if (room[file] != "-") return highest
      n = split(below[file], list, " ")
      for (i = 1; i <= n; ++i)
        if (module_of(list[i]) == m && (at = height_of(list[i])) > highest) { highest = at; room[file] = room[list[i]] }
      return height[file] = highest
    }
    $1 == "order" && NF > 1 {
      sub(/:$/, "", $2)
      modules[$2] = ++modules_count
      for (i = 3; i <= NF; ++i) {
        n = split($i, siblings, ",")
        for (k = 1; k <= n; ++k) rooms[$2, siblings[k]] = i - 2
      }
    }
    $1 == "file" {
      files[$2]
      if ($2 ~ /(^|\/)include\//) { name = $2; sub(/^(.*\/)?include\//, "", name); public[name] = $2 }
      else if ($2 ~ /[.]cpp$/) source_room[module_of($2), base_of($2)] = room_of($2)
    }
    $1 == "include" && (to = target($2, $3)) != "" { below[$2] = below[$2] " " to }
    END {
      for (from in below) {
        n = split(below[from], list, " ")
        for (i = 1; i <= n; ++i) {
          heights = height_of(from) " " height_of(list[i])
          print from, list[i], module_of(from), module_of(list[i]), heights, room[from], room[list[i]]
        }
      }
    }' | LC_ALL=C sort
}

# No include points up the tables of modules and rooms, at a third party that is not the module's, or into another's src.
directions() {
  includes | awk '
    BEGIN {
      beyond["toolkit/ferro/"] = "^(archive|xercesc|xsec|sqlite3|CLI|nlohmann|openjpeg|ft2build)"
      beyond["toolkit/quire/"] = "^(archive|xercesc|xsec|sqlite3|CLI|nlohmann|openjpeg|ft2build)"
      beyond["toolkit/cairn/"] = "^(archive|CLI|nlohmann|openjpeg|ft2build)"
      beyond["toolkit/sigil/"] = "^(sqlite3|CLI|nlohmann|openjpeg|ft2build)"
      beyond["toolkit/assay/"] = "^(archive|xsec|sqlite3|CLI|nlohmann)"
      beyond["include/"]       = "^(archive|xercesc|xsec|sqlite3|openssl|CLI|nlohmann|openjpeg|ft2build)"
      beyond["lantern/"]       = "^(archive|xercesc|xsec|sqlite3|openssl|CLI|nlohmann)"
      beyond["include/Strata/"] = "^(Assay|Lantern|Sigil|StrataHost)"
      beyond["src/"]           = "^(archive|Assay|Lantern|Sigil|StrataHost|sqlite3|openssl|CLI|nlohmann|openjpeg|ft2build)"
    }
    { for (from in beyond) if (index($1, from) == 1 && $2 ~ beyond[from]) print $1 ": must not include " $2 }'
  edges | awk '
    { foreign = $3 != $4 && $2 ~ /(^|\/)src\// && $1 !~ /^(tests|bench|fuzz)\// }
    foreign || ($5 > 0 && $6 > $5) || ($5 == $6 && $7 != $8) { print $1 ": must not include " $2 }'
  unlisted
}

# Each folder of a module with rooms is one of them, and no source lies beside them.
unlisted() {
  local module rooms path
  while IFS=: read -r module rooms; do
    [[ -n ${rooms// /} ]] || continue
    rooms=" ${rooms//,/ } "
    [[ $module != toolkit/* && $module != lantern ]] || module+=/src
    [[ -d $module ]] || continue
    for path in "$module"/*; do
      if [[ -d $path ]]; then
        [[ $rooms == *" ${path##*/} "* ]] || echo "$path: this room is not in the order of CheckTree.sh"
      elif [[ $path == *.h || $path == *.cpp ]]; then
        echo "$path: in none of the rooms"
      fi
    done
  done <<<"$order"
}

# tsort names the files, or the rooms, of each circle.
circles() {
  local all
  all=$(edges)
  awk '{ print $1, $2 }' <<<"$all" | sorted files
  awk '$3 == $4 && $7 != $8 { print $3 "/" $7, $4 "/" $8 }' <<<"$all" | sort -u | sorted rooms
}
sorted() { tsort 2>&1 >/dev/null | sed "s/^tsort: -/circle of $1/; s/^tsort: /  /" || true; }

# What is decided by a text for people changes with its wording: facts are types. Nothing but the log that tests look at
# searches or compares what a log entry, a finding, a result's label or an exception says, or any phrase of two words.
texts() {
  code | grep -vE '^(tests/|toolkit/ferro/src/(Memory)?LogSink\.cpp$)' | xargs awk '
    BEGIN {
      says = "(Message|Advice|Label[(][)]|what[(][)]|errmsg[(][^)]*[)])[)]*"
      told = "(" says "|([mM]essage|[rR]eason|[wW]arning|[pP]roblem|[sS]entence))"
      search = "(find|rfind|find_first_of|find_last_of|starts_with|ends_with|contains|compare)[(]"
      phrase = "\"[^\" ]+ [^\" ]"
      bad[told "([.]|->)" search "[^\047]"]
      bad[says " *[!=]="]
      bad["[!=]= *[A-Za-z_.:()>-]*([.]|->)" says]
      bad["(strn?(case)?(cmp|str)|regex_(search|match))[(][^;]*" says]
      bad[search phrase]
      bad["[!=]= *" phrase]
    }
    FNR == 1 { statement = "" }
    {
      sub(/ *\/\/.*/, "")
      sub(/^ +/, "")
      if (statement == "") first = FNR
      statement = statement (/^([.]|->)/ ? "" : " ") $0
    }
    /[;{}:]$/ {
      for (b in bad) if (statement ~ b) { print FILENAME ":" first ": searches or compares a text for people"; break }
      statement = ""
    }'
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
  for document in $(find README.md DEVELOPERS.md packaging docs -name '*.md' 2>/dev/null); do
    for path in $(grep -oE '`(include|src|toolkit|lantern|tools|tests|fuzz|bench|examples|packaging|docs|cmake)/[A-Za-z0-9_./-]*`' \
      "$document" | tr -d '`'); do
      [[ -e $path ]] || echo "$document: there is no $path"
    done
  done
}

# The map has one row for each room, in the order of the modules and their rooms. Its answers name files that hold what
# they are said to hold.
map() {
  local rooms rows file symbol found=0
  # shellcheck disable=SC2016
  rows=$(sed -nE 's/^\| `([^`]*\/)` \|.*/\1/p' docs/README.md)
  rooms=$(code | sed -E 's/[^/]*$//; s/^(tests\/system\/).*/\1/' | LC_ALL=C sort -u)
  comm -23 <(printf '%s\n' "$rooms") <(LC_ALL=C sort <<<"$rows") | sed '/^$/d; s/^/docs\/README.md: no row for /'
  comm -13 <(printf '%s\n' "$rooms") <(LC_ALL=C sort <<<"$rows") | sed '/^$/d; s/^/docs\/README.md: twice, or no room: /'
  ordered "$rows"
  # shellcheck disable=SC2016
  while read -r file symbol; do
    found=1
    grep -qwF -- "$symbol" "$file" 2>/dev/null || echo "docs/README.md: there is no $symbol in $file"
  done < <(sed -nE 's/^\|[^|]*\| `([^`]*[^`\/])` \| `([^`]*)` \|$/\1 \2/p' docs/README.md)
  ((found)) || echo "docs/README.md: it answers nothing"
}

# ordered <rows>: offends where a row of a room stands above one that the order puts first.
ordered() {
  printf '%s\n' "${order//$'\n'/$'\norder '}" "$1" | awk '
    $1 == "order" && NF > 1 {
      module = $2
      sub(/:$/, "", module)
      if (module ~ /^(toolkit|lantern)/) module = module "/src"
      place[module "/"] = ++count
      for (i = 3; i <= NF; ++i) {
        ++count
        n = split($i, siblings, ",")
        for (k = 1; k <= n; ++k) place[module "/" siblings[k] "/"] = count
      }
    }
    $1 in place {
      if (place[$1] < last) print "docs/README.md: " $1 " stands too low"
      last = place[$1]
    }'
}

case $rule in
  spdx | length | todo | format | directions | circles | texts | umbrella | readme | documents | map) offences=$("$rule") ;;
  *)
    echo "no such rule: $rule" >&2
    exit 2
    ;;
esac
[[ -z $offences ]] || { printf '%s\n' "$offences"; exit 1; }
