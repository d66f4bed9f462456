#!/bin/sh
# reproducible.sh SOURCE: whether the Windows plug-in comes out the same from two build folders.
set -eu
[ $# = 1 ] || { echo "usage: $0 SOURCE"; exit 2; }
builds=$(mktemp -d)
trap 'rm -rf "$builds"' EXIT

for build in "$builds/one" "$builds/another/deeper"; do
  cmake -S "$1" --preset windows -B "$build" -DFORMULA_TESTS=OFF >"$builds/log" 2>&1 &&
    cmake --build "$build" --target NuvFormula -j2 >"$builds/log" 2>&1 ||
    { cat "$builds/log"; exit 1; }
done
cmp "$builds/one/bin/NuvFormula.dll" "$builds/another/deeper/bin/NuvFormula.dll"
echo 'the same bytes from two build folders'
