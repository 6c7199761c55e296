#!/bin/sh
# What `make dist` packed is what users need, and works where they unpack it.
# usage: dist_test.sh FOLDER
set -eu
source=$(realpath "$(dirname "$0")/..") packages=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

cmake -E tar x "$packages"/vrk-*-win32.zip
mv vrk-*-win32 windows
"$source/tests/exports_test.sh" "$source" windows/bin/vrk.dll i686-w64-mingw32-objdump
diff -r "$source/include/vrk.h" windows/include/vrk.h
diff -r "$source/include/vrk.def" windows/include/vrk.def
i686-w64-mingw32-gcc-posix -Iwindows/include "$source/tests/install/consumer.c" windows/lib/libvrk.dll.a -o consumer.exe
"$source/tests/microsoft_test.sh" "$source" windows/bin/vrk.dll windows/lib/vrk.lib i686-w64-mingw32-objdump
test -s windows/share/doc/vrk/docs/windows.md
examples=windows/share/doc/vrk/examples
i686-w64-mingw32-gcc-posix -Iwindows/include "$examples"/print_page.c "$examples"/print_page_windows.c -o page.exe

tar xf "$packages"/vrk-*-linux-*.tar.gz
for package in vrk vrk-printer-app; do dpkg-deb -x "$packages/$package"_*.deb debian; done
if dpkg-deb -f "$packages"/vrk_*.deb Depends | grep pappl; then exit 1; fi # only the printer application needs it
for root in vrk-*-linux-* debian/usr; do
  cc -I"$root/include" "$source/tests/install/consumer.c" -L"$root/lib" -lvrk -o consumer
  LD_LIBRARY_PATH=$root/lib ./consumer
  "$root/lib/cups/filter/rastertovrk" 2>&1 | grep -q '^ERROR: usage: '
  test -s "$root/share/cups/drv/vrk.drv"
  "$root/bin/vrk" --version >/dev/null
  "$root/bin/vrk-printer-app" --version >/dev/null
  grep -q '^\.TH VRK ' "$root/share/man/man1/vrk.1"
  "$root/bin/vrk" completion bash | cmp - "$root/share/bash-completion/completions/vrk"
  for page in print demo tables inspect link chart calibrate compare report; do
    grep -q "^\.TH VRK-$(echo $page | tr '[:lower:]' '[:upper:]') " "$root/share/man/man1/vrk-$page.1"
    grep -q '^\.SH EXAMPLES' "$root/share/man/man1/vrk-$page.1"
  done
  test -s "$root/share/zsh/vendor-completions/_vrk" -a -s "$root/share/fish/vendor_completions.d/vrk.fish"
done
