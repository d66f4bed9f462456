#!/bin/sh
# reproducible.sh SOURCE [OPTION]...: whether the Windows plug-in in build/windows comes out the same
# from another folder. The options are those of CMake with which it was built.
set -eu
[ $# -ge 1 ] || { echo "usage: $0 SOURCE [OPTION]..."; exit 2; }
source=$1
shift
another=$(mktemp -d)
trap 'rm -rf "$another"' EXIT

cmake -S "$source" --preset windows -B "$another/deeper" -DFORMULA_TESTS=OFF "$@" >"$another/log" 2>&1 &&
  cmake --build "$another/deeper" --target NuvFormula -j2 >"$another/log" 2>&1 ||
  { cat "$another/log"; exit 1; }
cmp "$source/build/windows/bin/NuvFormula.dll" "$another/deeper/bin/NuvFormula.dll"
echo 'the same bytes from two build folders'
