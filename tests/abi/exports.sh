#!/bin/sh
# exports.sh OBJDUMP LIBRARY: whether the plug-in exports NuvPluginLibGet and nothing else and, on
# Windows, imports from the host's libraries and the system alone.
set -eu
objdump=$1 library=$2

case $library in
  *.dll)
    headers=$("$objdump" -p "$library")
    exports=$(echo "$headers" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[.*\] *//p')
    foreign=$(echo "$headers" | sed -n 's/^\tDLL Name: //p' |
      grep -Evix 'Nuv[A-Z]+\.dll|(kernel32|user32|shell32|advapi32|msvcrt)\.dll' || true)
    ;;
  *)
    exports=$("$objdump" -T "$library" | awk 'NF > 4 && !/\*UND\*/ {print $NF}')
    foreign=
    ;;
esac

echo "exports: $exports"
[ "$exports" = NuvPluginLibGet ] || { echo 'NuvPluginLibGet must be the only export'; exit 1; }
[ -z "$foreign" ] || { echo "imports from outside the host and the system: $foreign"; exit 1; }
