#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# InstallConsumer.sh install|cmake|pkg-config <build folder> <work folder>: installs a build into a fresh prefix, then
# builds and runs programs of an outside user against it, found by CMake or by pkg-config: the README's and the example.
set -euo pipefail
step=$1 build=$2 work=$3
tests=$(dirname "$(readlink -f "$0")")
source=$tests/consumer example=$tests/../../examples/01-minimal-host
prefix=$work/prefix

# It tells the engine's version, and finds the libraries where it was built.
run() {
  [[ $("$1") == "Strata 2.0.3" ]] || { echo "$1 printed: $("$1")"; exit 1; }
  ldd "$1" | grep -F "$prefix" | grep -q 'libstrata\.so\.2 ' || { echo "$1 does not use the installed library"; exit 1; }
}

# It plays the sample show from start to end: every frame, every change of reel, every event.
play() {
  diff - <("$1" "$work/show" "$work/show/show.xml" | sed 's/, [1-9][0-9]* bytes$//') <<'EOF' ||
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
EOF
    { echo "$1 played something else"; exit 1; }
  [[ $("$1" "$work/show") == *'168 edit units played: 360 frames'* ]] || { echo "$1 did not play the folder"; exit 1; }
  if "$1" "$work/nothing"; then echo "$1 played a folder that is not there"; exit 1; fi
}

case $step in
  install)
    rm -rf "$work"
    cmake --install "$build" --prefix "$prefix" >/dev/null
    "$prefix/bin/strata" make-sample "$work/show" --length 1 --size 64x64 >/dev/null
    ;;
  cmake)
    cmake -S "$source" -B "$work/cmake" -D CMAKE_PREFIX_PATH="$prefix"
    cmake --build "$work/cmake"
    run "$work/cmake/consumer"
    cmake -S "$example" -B "$work/cmake-example" -D CMAKE_PREFIX_PATH="$prefix"
    cmake --build "$work/cmake-example"
    play "$work/cmake-example/minimal-host"
    ;;
  pkg-config)
    pkgconfig=$(dirname "$(find "$prefix" -name strata.pc)")
    export PKG_CONFIG_PATH=$pkgconfig
    for module in ferro quire cairn strata; do
      [[ $(pkg-config --modversion "$module") == 2.0.3 ]] || { echo "$module: wrong version"; exit 1; }
    done
    mapfile -t flags < <(pkg-config --cflags --libs strata | xargs -n 1)
    "${CXX:-c++}" -std=c++20 "$source/main.cpp" "${flags[@]}" "-Wl,-rpath,$(pkg-config --variable=libdir strata)" \
      -o "$work/pkg-config-consumer"
    run "$work/pkg-config-consumer"
    mapfile -t flags < <(pkg-config --cflags --libs strata cairn quire ferro | xargs -n 1)
    "${CXX:-c++}" -std=c++20 "$example/main.cpp" "${flags[@]}" "-Wl,-rpath,$(pkg-config --variable=libdir strata)" \
      -o "$work/pkg-config-minimal-host"
    play "$work/pkg-config-minimal-host"
    ;;
  *)
    echo "no such step: $step" >&2
    exit 2
    ;;
esac
