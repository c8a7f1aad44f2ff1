#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# BootstrapTest.sh: ./bootstrap installs exactly what is missing, or says what to install. It runs in a copy of what it
# needs, with stand-ins for apt-get, dpkg-query and CMake that write down how they were called.
set -euo pipefail
root=$(dirname "$(readlink -f "$0")")/../..
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"

mkdir -p "$work"/{tree/packaging,bin,elsewhere}
cp "$root/bootstrap" "$work/tree/"
mkdir -p "$work/tree/tests/quire" "$work/tree/tests/support"
touch "$work"/tree/tests/{quire,support}/CMakeLists.txt
cp "$root/packaging/debian-packages.txt" "$work/tree/packaging/"
for tool in bash awk sed sort comm dirname readlink env cat nproc; do ln -s "$(command -v "$tool")" "$work/bin/"; done
calls=$work/calls

stub() { # stub <name> <script>...: a stand-in on the path
  printf '#!/bin/bash\n%s\n' "${*:2}" >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}
# Everything but $MISSING is installed. The real one fails where it knows one of the packages not at all.
# shellcheck disable=SC2016
stub dpkg-query 'for p in "${@:4}"; do [[ " $MISSING " == *" $p "* ]] || echo "installed $p"; done; [[ ! $MISSING ]]'
stub apt-get "echo \"apt-get \$* \$DEBIAN_FRONTEND\" >>$calls"
stub cmake "echo \"cmake \$*\" >>$calls"
stub ctest "echo \"ctest \$*\" >>$calls"

# run [command]...: ./bootstrap $asked, from another folder, with the stand-ins only. Sets output and code.
asked=(build package)
run() {
  : >"$calls"
  chmod 666 "$calls"
  code=0
  output=$(cd "$work/elsewhere" && PATH=$work/bin "$@" "$work/tree/bootstrap" "${asked[@]}" 2>&1) || code=$?
}
fail() {
  printf '%s\ncode: %s\noutput: %s\ncalls: %s\n' "$1" "$code" "$output" "$(cat "$calls")"
  exit 1
}

export MISSING=
run env
[[ $code == 0 ]] || fail "with everything installed it does not build"
! grep -q apt-get "$calls" || fail "with everything installed it calls apt-get"
grep -q -- '--build build/package' "$calls" || fail "it does not build what was asked for"

asked=(test quire)
run env
[[ $code == 0 ]] || fail "the tests of one module do not run"
grep -q -- '--build build/release --target tests/quire/all$' "$calls" || fail "more is built than one module's tests need"
grep -q -- '--test-dir build/release/tests/quire ' "$calls" || fail "other tests run than one module's"
for module in nothing support; do
  asked=(test "$module")
  run env
  [[ $code == 2 && ! -s $calls ]] || fail "a module without tests is accepted: ${asked[*]}"
done
asked=(build package)

export MISSING="libssl-dev ninja-build gcovr"
if [[ $EUID -ne 0 ]]; then
  stub sudo '"$@"'
fi
run env
[[ $code == 0 ]] || fail "it fails where packages are missing"
grep -qx 'apt-get install -q -y --no-install-recommends libssl-dev ninja-build noninteractive' "$calls" ||
  fail "it does not install exactly what this command misses"
[[ $(grep -c '^apt-get' "$calls") == 2 ]] || fail "it calls apt-get more often than to update and to install"
rm -f "$work/bin/sudo"

# Nobody's account needs root here; without root the suite itself runs as a user.
unprivileged=(env)
if [[ $EUID -eq 0 ]]; then
  unprivileged=("$(command -v setpriv)" --reuid=65534 --clear-groups)
fi
run "${unprivileged[@]}"
[[ $code != 0 ]] || fail "without root and sudo it goes on"
[[ $output == *"apt-get install --no-install-recommends libssl-dev ninja-build"* ]] ||
  fail "without root and sudo it does not say what to install"
[[ ! -s $calls ]] || fail "without root and sudo it calls something"

rm "$work/bin/apt-get"
run env
[[ $code != 0 && ! -s $calls ]] || fail "without apt-get it goes on"
for package in g++ libssl-dev libxerces-c-dev; do
  grep -qx "  $package" <<<"$output" || fail "without apt-get it does not name $package"
done

code=0
output=$("$work/tree/bootstrap" nonsense 2>&1) || code=$?
[[ $code == 2 && $output == usage:* ]] || fail "a command that does not exist is accepted"
echo "bootstrap installs exactly what is missing"
