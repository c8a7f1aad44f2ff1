#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# InstallConsumer.sh <step> <build folder> <work folder>: installs a build into a fresh prefix, then is an outside user
# of it: builds and runs the README's program and the installed examples, found by CMake or by pkg-config, asks for one
# component at a time, and follows what the installed documents point at.
set -euo pipefail
step=$1 build=$2 work=$3
source=$(dirname "$(readlink -f "$0")")/consumer
prefix=$work/prefix
documents=$(find "$prefix/share/doc" -mindepth 1 -maxdepth 1 2>/dev/null || true)
# What no component but those below shows or needs, and what cairn and strata show.
strangers=(OpenSSL SQLite3 PkgConfig CLI11 nlohmann_json PNG)
shown=(XercesC)

fail() { printf '%s\n' "$*"; exit 1; }

# It prints the engine's version, and loads the installed libraries.
run() {
  [[ $("$1") == "Strata 2.0.3" ]] || fail "$1 printed: $("$1")"
  ldd "$1" | grep -F "$prefix" | grep -q 'libstrata\.so\.2 ' || fail "$1 does not use the installed library"
}

# It plays the sample show from start to end: every frame, every change of reel, every event.
play() {
  diff - <("$1" "$work/show" "$work/show/show.xml" | sed 's/, [1-9][0-9]* bytes$//') <<'END' ||
     0  SampleTrailer, reel 1 of 1
     0  event SHOW_START
    24  SampleEncrypted, reel 1 of 1
    48  SampleFeature, reel 1 of 3
    48  event LIGHTS_DOWN
    72  SampleFeature, reel 2 of 3
    72  event FEATURE_SECOND_1
    96  SampleFeature, reel 3 of 3
    96  event CREDITS
   120  SampleStereoscopic, reel 1 of 1
   144  SampleImmersive, reel 1 of 1
168 edit units played: 360 frames
END
    fail "$1 played something else"
  [[ $("$1" "$work/show") == *'168 edit units played: 360 frames'* ]] || fail "$1 did not play the folder"
  ! "$1" "$work/nothing" || fail "$1 played a folder that is not there"
}

# It decrypts the encrypted composition with the key message of the sample show, and with nothing else.
decrypt() {
  local keys=$work/show/worthless-test-keys
  "$1" "$work/show" "$keys/key-message.xml" "$keys/recipient-key.pem" >"$work/decrypted" || fail "$1 failed"
  grep -qE '^composition [0-9a-f-]{36}: keys until [0-9T:+-]+$' "$work/decrypted" || fail "$1 does not tell the window"
  grep -qx '336 frames in clear, 48 decrypted, 0 failed' "$work/decrypted" || fail "$1: $(<"$work/decrypted")"
  ! "$1" "$work/show" "$keys/key-message.xml" "$keys/signer-key.pem" >"$work/decrypted" 2>/dev/null ||
    fail "$1 played with another's key"
  grep -qF 'edit unit 0 of the file: The essence is encrypted: reading it takes its key.' "$work/decrypted" ||
    fail "$1 does not say that a key is missing"
  grep -qx '336 frames in clear, 0 decrypted, 48 failed' "$work/decrypted" || fail "$1: $(<"$work/decrypted")"
}

# It describes a track file and takes a codestream out of it.
describe() {
  local file=$work/show/Trailer/picture-1.mxf
  "$1" "$file" | grep -qx 'picture    64 x 64' || fail "$1 does not tell the size of $file"
  "$1" "$work/show/Encrypted/picture-1.mxf" | grep -qE '^encrypted  [0-9a-f-]{36}$' || fail "$1 does not tell the key"
  "$1" "$file" 23 "$1.j2c"
  [[ $(head -c 4 "$1.j2c" | od -An -tx1) == " ff 4f ff 51" ]] || fail "$1 wrote no codestream"
  ! "$1" "$file" 24 "$1-beyond.j2c" 2>/dev/null || fail "$1 read beyond the end"
  [[ ! -e $1-beyond.j2c ]] || fail "$1 left a file behind"
  ! "$1" "$work/show/Trailer/sound-1.mxf" 2>/dev/null || fail "$1 took sound for picture"
  ! "$1" "$file" 1x "$1.j2c" 2>/dev/null || fail "$1 took 1x for a number"
}

# It lists the compositions of a folder, and says what is missing.
list() {
  [[ $("$1" "$work/show" | grep -c '^  reel ') == 7 ]] || fail "$1 does not list every reel"
  cp -r "$work/show/Feature" "$work/broken"
  rm "$work/broken/sound-2.mxf"
  ! "$1" "$work/broken" >"$work/list" || fail "$1 calls a broken package complete"
  grep -q 'sound .* cannot be used$' "$work/list" || fail "$1 does not say which asset is missing"
  grep -q 'The file is missing' "$work/list" || fail "$1 does not say why"
  rm -r "$work/broken"
}

# configure <source> <build> [option]...: with finders before CMake's own for what the component must not ask for.
configure() {
  local package
  rm -rf "$work/finders-$step"
  mkdir "$work/finders-$step"
  for package in "${hidden[@]}"; do
    echo "message(FATAL_ERROR \"$package was asked for\")" >"$work/finders-$step/Find$package.cmake"
  done
  cmake -S "$1" -B "$2" -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_MODULE_PATH="$work/finders-$step" "${@:3}"
}

# build <source> <build>: what was configured is built, too.
build() {
  configure "$@"
  cmake --build "$2"
}

# project <line>...: a project of these lines, which expect to be given up.
project() {
  mkdir -p "$work/project"
  printf '%s\n' 'cmake_minimum_required(VERSION 3.25)' 'project(project LANGUAGES CXX)' "$@" >"$work/project/CMakeLists.txt"
  rm -rf "$work/cmake-project"
}

# refused <words>: configuring the project fails, and says so.
refused() {
  local said
  ! said=$(configure "$work/project" "$work/cmake-project" -D CMAKE_DISABLE_FIND_PACKAGE_XercesC=ON 2>&1) ||
    fail "configured without what it needs: $1"
  tr -s ' \n' ' ' <<<"$said" | grep -qF "$1" || fail "it does not say \"$1\": $said"
}

components() {
  local component
  hidden=("${strangers[@]}" "${shown[@]}")
  # shellcheck disable=SC2016
  project 'find_package(Strata 2.0 REQUIRED COMPONENTS ferro)' 'add_executable(ferro main.cpp)' \
    'target_link_libraries(ferro PRIVATE Strata::ferro)'
  printf '%s\n' '#include <Ferro/UUID.h>' 'int main() { return Ferro::UUID::Random().HasValue() ? 0 : 1; }' \
    >"$work/project/main.cpp"
  build "$work/project" "$work/cmake-project"
  "$work/cmake-project/ferro"
  build "$documents/examples/03-track-file" "$work/cmake-track-file"
  describe "$work/cmake-track-file/track-file"
  hidden=("${strangers[@]}")
  build "$documents/examples/04-package" "$work/cmake-package"
  list "$work/cmake-package/package"

  for component in cairn sigil assay strata; do
    project "find_package(Strata 2.0 REQUIRED COMPONENTS $component)"
    refused 'Component cairn needs what was not found: XercesC 3.2.'
  done
  project 'find_package(Strata 2.0 REQUIRED COMPONENTS attic)'
  refused 'There is no component attic.'
  project 'find_package(Strata 2.0 REQUIRED COMPONENTS quire OPTIONAL_COMPONENTS cairn)' \
    'if(Strata_cairn_FOUND OR NOT TARGET Strata::quire)' 'message(FATAL_ERROR "wrong")' 'endif()'
  configure "$work/project" "$work/cmake-project" -D CMAKE_DISABLE_FIND_PACKAGE_XercesC=ON

  # The same for pkg-config, which here knows the installed modules alone.
  PKG_CONFIG_LIBDIR=$(dirname "$(find "$prefix" -name strata.pc)")
  export PKG_CONFIG_LIBDIR PKG_CONFIG_PATH=
  for component in ferro quire lantern; do
    pkg-config --cflags --libs --static "$component" >/dev/null || fail "$component needs another package's file"
  done
  ! pkg-config --cflags cairn 2>/dev/null || fail "cairn shows Xerces-C and does not ask for it"
}

# Links and paths of the installed documents and of the manual page lead to what is installed.
follow() {
  local document target
  for document in "$documents"/*.md; do
    # shellcheck disable=SC2013
    for target in $(grep -oE '\]\([^)#]+\)' "$document" | sed -E 's/^\]\(|\)$//g' | grep -v '^https\?:'); do
      [[ -e $documents/$target ]] || fail "$document: there is no $target"
    done
    # shellcheck disable=SC2016
    for target in $(grep -oE '`(include|src|toolkit|lantern|tools|tests|fuzz|bench|examples|packaging|docs|cmake|share)/[^` ]*`' \
      "$document" | tr -d '`'); do
      [[ -e $documents/$target || -e $prefix/$target ]] || fail "$document: there is no $target"
    done
  done
  # shellcheck disable=SC2013
  for target in $(sed 's/\\-/-/g' "$prefix/share/man/man1/strata.1" | grep -oE ' share/[A-Za-z0-9./-]+'); do
    [[ -e $prefix/$target ]] || fail "strata.1: there is no $target"
  done
  for document in json.md asset-store.md examples LICENSE; do
    [[ -e $documents/$document ]] || fail "there is no $document"
  done
  [[ -e $prefix/share/strata/schema/strata-spl-1.xsd ]] || fail "the schema of show playlists is not installed"
}

case $step in
  install)
    rm -rf "$work"
    cmake --install "$build" --prefix "$prefix" >/dev/null
    "$prefix/bin/strata" make-sample "$work/show" --length 1 --size 64x64 >/dev/null
    ;;
  cmake)
    hidden=("${strangers[@]}")
    build "$source" "$work/cmake"
    run "$work/cmake/consumer"
    build "$documents/examples/01-minimal-host" "$work/cmake-minimal-host"
    play "$work/cmake-minimal-host/minimal-host"
    build "$documents/examples/02-encrypted-show" "$work/cmake-encrypted-show"
    decrypt "$work/cmake-encrypted-show/encrypted-show"
    ;;
  pkg-config)
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name strata.pc)")
    export PKG_CONFIG_PATH
    for module in ferro quire cairn sigil assay strata lantern; do
      [[ $(pkg-config --modversion "$module") == 2.0.3 ]] || fail "$module: wrong version"
    done
    mapfile -t flags < <(pkg-config --cflags --libs strata | xargs -n 1)
    "${CXX:-c++}" -std=c++20 "$source/main.cpp" "${flags[@]}" "-Wl,-rpath,$(pkg-config --variable=libdir strata)" \
      -o "$work/pkg-config-consumer"
    run "$work/pkg-config-consumer"
    mapfile -t flags < <(pkg-config --cflags --libs quire | xargs -n 1)
    "${CXX:-c++}" -std=c++20 "$documents/examples/03-track-file/main.cpp" "${flags[@]}" \
      "-Wl,-rpath,$(pkg-config --variable=libdir quire)" -o "$work/pkg-config-track-file"
    describe "$work/pkg-config-track-file"
    mapfile -t flags < <(pkg-config --cflags --libs strata cairn quire ferro | xargs -n 1)
    "${CXX:-c++}" -std=c++20 "$documents/examples/01-minimal-host/main.cpp" "${flags[@]}" \
      "-Wl,-rpath,$(pkg-config --variable=libdir strata)" -o "$work/pkg-config-minimal-host"
    play "$work/pkg-config-minimal-host"
    ;;
  components) components ;;
  documents) follow ;;
  *)
    echo "no such step: $step" >&2
    exit 2
    ;;
esac
