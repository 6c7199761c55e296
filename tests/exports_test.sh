#!/bin/sh
# The shared library, the export list and the header name the same 53 functions, and nothing else leaves the library. A
# DLL imports nothing, another shared library only copies and fills (and what compilers add under names of their own): it
# cannot allocate, on any thread.
# usage: exports_test.sh SOURCE_DIR LIBRARY OBJDUMP
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

case $2 in
*.dll)
  "$3" -p "$2" >"$work/headers"
  sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] //p' "$work/headers" | sort >"$work/library"
  test -s "$work/library"
  if grep "DLL Name:" "$work/headers"; then exit 1; fi
  ;;
*)
  nm -D --defined-only "$2" | awk '{print $3}' | sort >"$work/library"
  nm -D --undefined-only "$2" | awk '$1 == "U" {sub("@.*", "", $2); print $2}' >"$work/imports"
  if grep -vxE 'mem(cpy|move|set|cmp)|__.*' "$work/imports"; then exit 1; fi
  ;;
esac
sed -n 's/^  \(vrk_.*\)$/\1/p' "$1/include/vrk.def" | sort >"$work/def"
grep -o 'VRK_CALL vrk_[a-z0-9_]*(' "$1/include/vrk.h" | sed 's/VRK_CALL \(.*\)(/\1/' | sort >"$work/header"
test "$(wc -l <"$work/def")" -eq 53
diff "$work/def" "$work/library"
diff "$work/def" "$work/header"
