#!/bin/sh
# Makes the import libraries of a finished DLL, for mingw-w64's linker and for Microsoft's. C compilers call a __stdcall
# function by its decorated name (_f@8), the DLL exports the plain one (f): the DLL's own symbol table tells the sizes that
# join the two.
# The members of the library are named after the prefix, and without one after the folder.
# usage: import_libraries.sh NM DLL DLLTOOL LIBRARY LLVM_DLLTOOL MICROSOFT_LIBRARY
set -eu
def=$4.def
{
  echo "LIBRARY $(basename "$2")"
  echo "EXPORTS"
  "$1" "$2" | sed -n 's/^[0-9a-f]* T _\(vrk_[a-z0-9_]*@[0-9]*\)$/  \1/p'
} >"$def"
"$3" --temp-prefix vrk --kill-at --input-def "$def" --output-lib "$4"
"$5" --kill-at --machine i386 --input-def "$def" --output-lib "$6"
