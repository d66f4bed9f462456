#!/usr/bin/env bash
# man_pages.sh FOLDER VERSION NUVHOST...: writes manual pages of nuvhost and its commands from their
# help. NUVHOST is the command that runs it.
set -euo pipefail

folder=$1
version=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8

# help2man knows a program by its file's name.
printf '#!/bin/sh\nexec %s "$@"\n' "$(printf '%q ' "$@")" >"$work/nuvhost"
chmod +x "$work/nuvhost"
commands=$("$work/nuvhost" --help | sed -n '/^Subcommands:/,$s/^  \([a-z]\+\) .*/\1/p')

# page NAME SUMMARY WORDS...
page() {
  local name=$1 summary=$2 include=()
  shift 2
  [[ $name != nuvhost ]] || include=(--include="$work/more")
  help2man --no-info --section=1 --manual="Formula Library" --source="nuvhost $version" \
    --version-string="$version" --name="$summary" "${include[@]}" "$*" |
    sed -E -e "s/^\.TH [A-Z]+ /.TH ${name^^} /" -e "s/^nuvhost( [a-z]+)? \\\\- /$name \\\\- /" \
      -e 's/^\\fI\\,([a-z]+) \\\/\\fR/\\fB\1\\fR /' \
      -e 's/^\.SS "Positionals:"/.SH ARGUMENTS/' -e 's/^\.SS "Subcommands:"/.SH COMMANDS/' \
      >"$folder/$name.1"
}

rm -rf "$folder"
mkdir -p "$folder"
{
  cat "$here/nuvhost.h2m"
  printf '[SEE ALSO]\n'
  printf '.BR nuvhost-%s (1),\n' $commands | sed '$s/,$//'
} >"$work/more"
page nuvhost "reference host for plug-in libraries of formula instructions" "$work/nuvhost"
for command in $commands; do
  summary=$("$work/nuvhost" "$command" --help | head -1)
  page "nuvhost-$command" "${summary,}" "$work/nuvhost" "$command"
done
