#!/bin/sh
# Compiles the program that the README shows and prints a page with it.
# usage: readme_test.sh SOURCE_DIR BUILD_DIR C_FLAGS
set -eu
source=$1 build=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

sed -n '/^```c$/,/^```$/p' "$source/README.md" | sed '/^```/d' >print_page.c
# shellcheck disable=SC2086 # several flags
cc $flags -std=c99 -Wall -Wextra -Werror -I"$source/include" print_page.c "$build/src/libvrk.a" -o print_page
"$build/tools/vrk" tables -o tables >/dev/null
{ printf 'P6 # a comment\n16 2\n# another\n255\n' && head -c 48 /dev/zero && head -c 48 /dev/zero | tr '\0' '\377'; } >page.ppm
./print_page tables/*.csc2 tables/*.edtb tables/*.edpr <page.ppm

# A black line, then a white one: some ink on the first line, none on the second.
for plane in k c m y; do
  test "$(tail -c 2 $plane.pbm | od -An -tx1 | tr -d ' \n')" = 0000
done
test "$(tail -c 4 k.pbm | head -c 2 | od -An -tx1 | tr -d ' \n')" != 0000
