#!/bin/sh
# docs/libraries.md lists what each program links, and no more.
# usage: libraries_test.sh SOURCE_DIR PROGRAM...
set -eu
list=$1/docs/libraries.md
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for program in "$@"; do
  name=$(basename "$program" | sed 's/\.so.*//')
  readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\.so.*\]/\1/p' | sort >"$work/linked"
  test -s "$work/linked"
  awk -F ' *[|] *' -v name="$name" '$4 != "" && (", " $5 ", ") ~ ", " name ", " { print $2 }' "$list" | sort >"$work/listed"
  diff "$work/listed" "$work/linked" || { echo "$list and what $name links differ (< listed, > linked)" && exit 1; }
done
