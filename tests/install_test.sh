#!/bin/sh
# Installs the build into a folder of its own and builds C programs against what is there, in the ways users do:
# by the CMake package, by pkg-config, and with the static library and a C compiler alone.
# usage: install_test.sh SOURCE_DIR BUILD_DIR C_FLAGS
# shellcheck disable=SC2046,SC2086 # flags and tables are several words
set -eu
source=$1 build=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/installed" >/dev/null
CFLAGS=$flags cmake -S "$source/tests/install" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/installed" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer"

PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name vrk.pc)")
export PKG_CONFIG_PATH
cc $flags -Wall -Werror "$source/tests/install/consumer.c" -o "$work/by_pkg_config" $(pkg-config --cflags --libs vrk)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir vrk) "$work/by_pkg_config"

library=$(find "$work/installed" -name libvrk.a)
cc $flags -I"$work/installed/include" "$source/tests/install/consumer.c" "$library" -o "$work/static"
"$work/static"
"$work/installed/bin/vrk" --help >/dev/null

# The driver that others start from: its printer gets the dots of the same pages by the program.
cc $flags -std=c99 -D_DEFAULT_SOURCE -Wall -Wextra -Werror "$source/examples/raster_driver.c" -o "$work/raster_driver" \
  $(pkg-config --cflags --libs vrk) -lcups
cc $flags -Wall -Wextra -Werror "$source/tests/install/raster_pages.c" -o "$work/raster_pages"
cd "$work"
vrk=$work/installed/bin/vrk
"$vrk" tables -o t >/dev/null
tables="$(echo t/*.csc2) $(echo t/*.edtb) $(echo t/*.edpr)"
"$vrk" demo -o gray --inks 1 --levels 16 --dpi 50 --format pwg >/dev/null
{ cat gray/print.pwg && tail -c +5 gray/print.pwg; } >two.pwg
LD_LIBRARY_PATH=$(pkg-config --variable=libdir vrk) ./raster_driver $tables <two.pwg 2>/dev/null | ./raster_pages
set -- $tables
"$vrk" print two.pwg -o out --csc2 "$1" --edtb "$2" --edpr "$3" --precision 8 >/dev/null
cmp 1-0.pbm out/page-001/k.pbm
cmp 2-3.pbm out/page-002/y.pbm
