#!/bin/sh
# Makes the import library of a finished DLL. C compilers call a __stdcall function by its decorated name (_f@8), the DLL
# exports the plain one (f): the DLL's own symbol table tells the sizes that join the two.
# usage: import_library.sh NM DLLTOOL DLL LIBRARY
set -eu
def=$4.def
{
  echo "LIBRARY $(basename "$3")"
  echo "EXPORTS"
  "$1" "$3" | sed -n 's/^[0-9a-f]* T _\(vrk_[a-z0-9_]*@[0-9]*\)$/  \1/p'
} >"$def"
"$2" --kill-at --input-def "$def" --output-lib "$4"
