#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# ReadmeTest.sh <README> <folder of the program> <prefix> <show>: runs the README's shell blocks as they are printed, in
# order, in one shell that ends at the first failure. What takes long is done already and put where the README's own
# commands would have put it: ./bootstrap is a stand-in that refuses any command the real one does not know.
set -euo pipefail
readme=$(readlink -f "$1") programs=$2 prefix=$3 show=$4
clone=$(mktemp -d)
trap 'rm -rf "$clone"' EXIT

# A clone in which nothing is built yet.
mkdir "$clone/home"
# shellcheck disable=SC2016
sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$readme" >"$clone/player.cpp"
sed -n '/^usage()/,/^}/p' "$(dirname "$readme")/bootstrap" >"$clone/usage"
cat >"$clone/bootstrap" <<END
#!/usr/bin/env bash
set -euo pipefail
cd "$clone"
source usage
usage | grep -q "^  \$1 " || { echo "there is no ./bootstrap \$1"; exit 1; }
case \$1 in
  demo)
    mkdir -p build/host/tools build/demo
    ln -s "$programs" build/host/tools/strata
    cp -r "$show" build/demo/show
    ;;
  install) ln -s "$prefix" "\$2" ;;
esac
echo "\$1" >>called
END
chmod +x "$clone/bootstrap"

# shellcheck disable=SC2016
blocks=$(sed -n '/^```sh$/,/^```$/{/^```/d;p}' "$readme")
[[ $(grep -c '^strata ' <<<"$blocks") -ge 5 ]] || { echo "README.md: it shows no commands"; exit 1; }
cd "$clone"
env -i HOME="$clone/home" PATH=/usr/bin:/bin LANG=C.UTF-8 bash -euxo pipefail -c "$blocks" </dev/null
[[ $(./player) == "Strata "* ]] || { echo "README.md: its program does not run"; exit 1; }
for made in build/demo/timeline.html build/demo/still.png; do
  [[ -s $made ]] || { echo "README.md: $made was not made"; exit 1; }
done
[[ $(tr '\n' ' ' <called) == "demo test install " ]] || { echo "README.md: it called $(tr '\n' ' ' <called)"; exit 1; }
