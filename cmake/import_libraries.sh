#!/bin/sh
# Makes the import libraries of a finished DLL, for mingw-w64's linker and for Microsoft's. C compilers call a __stdcall
# function by its decorated name (_f@8), the DLL exports the plain one (f): the DLL's own symbol table tells the sizes that
# join the two.
# usage: import_libraries.sh NM DLL DLLTOOL LIBRARY LLVM_DLLTOOL MICROSOFT_LIBRARY
set -eu
def=$4.def
{
  echo "LIBRARY $(basename "$2")"
  echo "EXPORTS"
  "$1" "$2" | sed -n 's/^[0-9a-f]* T _\(vrk_[a-z0-9_]*@[0-9]*\)$/  \1/p'
} >"$def"
# Members and symbols are named after the path that is given: of the library's own folder, none.
(cd "$(dirname "$4")" && "$3" --kill-at --input-def "$(basename "$def")" --output-lib "$(basename "$4")")
"$5" --kill-at --machine i386 --input-def "$def" --output-lib "$6"
