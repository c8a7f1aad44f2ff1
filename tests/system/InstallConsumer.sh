#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# InstallConsumer.sh install|cmake|pkg-config <build folder> <work folder>: installs a build into a fresh prefix, then
# builds and runs a program of an outside user against it, found by CMake or by pkg-config.
set -euo pipefail
step=$1 build=$2 work=$3
source=$(dirname "$(readlink -f "$0")")/consumer
prefix=$work/prefix

# It tells the engine's version, and finds the libraries where it was built.
run() {
  [[ $("$1") == "Strata 2.0.3" ]] || { echo "$1 printed: $("$1")"; exit 1; }
  ldd "$1" | grep -F "$prefix" | grep -q 'libstrata\.so\.2 ' || { echo "$1 does not use the installed library"; exit 1; }
}

case $step in
  install)
    rm -rf "$work"
    cmake --install "$build" --prefix "$prefix" >/dev/null
    ;;
  cmake)
    cmake -S "$source" -B "$work/cmake" -D CMAKE_PREFIX_PATH="$prefix"
    cmake --build "$work/cmake"
    run "$work/cmake/consumer"
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
    ;;
  *)
    echo "no such step: $step" >&2
    exit 2
    ;;
esac
