#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# CheckHeaders.sh <compiler> <include folder>...: each public header compiles alone, without warnings, and twice.
set -euo pipefail
compiler=$1
shift
flags=(-std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror "${@/#/-I}")

headers=$(find "$@" -name '*.h' -printf '%P\n' | LC_ALL=C sort)
[[ -n $headers ]] || { echo "no headers below $*"; exit 1; }
# shellcheck disable=SC2016
xargs -P "$(nproc)" -I{} bash -c 'printf "#include \"%s\"\n#include \"%s\"\n" "$1" "$1" | "${@:2}" -x c++ -' \
  compile {} "$compiler" "${flags[@]}" <<<"$headers"
echo "$(wc -l <<<"$headers") headers"
