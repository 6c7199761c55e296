#!/bin/sh
# Compiles callers of all exports as Microsoft's compiler would, in C and in C++, links them with the import library for
# Microsoft's linker, and runs them with RUNNER, if given: they import the plain names that vrk.def lists.
# usage: microsoft_test.sh SOURCE_DIR DLL LIBRARY OBJDUMP [RUNNER]
set -eu
source=$1 dll=$(realpath "$2") library=$(realpath "$3") objdump=$4 runner=${5:-true}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

cp "$dll" .
sed -n 's/^  \(vrk_.*\)$/\1/p' "$source/include/vrk.def" | sort >exports
sed 's/.*/(function*)&,/' exports >every_export.inc
for language in "c -std=c11" "c++ -std=c++14"; do
  # shellcheck disable=SC2086 # a language and its version
  clang-14 --target=i686-pc-windows-msvc -fms-compatibility -ffreestanding -x $language -Wall -Wextra -Wpedantic -Werror \
    -I. -I"$source/include" -c "$source/tests/win/microsoft.c" -o caller.obj
  lld-link-14 /nodefaultlib /entry:start /subsystem:console caller.obj "$library" /out:caller.exe
  "$objdump" -p caller.exe | awk '$1 == "DLL" {dll = $3} dll == "vrk.dll" && $3 ~ /^vrk_/ {print $3}' | sort >imports
  diff exports imports
  "$runner" ./caller.exe
done
