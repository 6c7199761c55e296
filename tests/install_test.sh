#!/bin/sh
# Installs the build into a folder of its own and builds C programs against what is there, in the ways users do:
# by the CMake package, by pkg-config, and with the static library and a C compiler alone.
# usage: install_test.sh SOURCE_DIR BUILD_DIR C_FLAGS
set -eu
source=$1 build=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/installed" >/dev/null
CFLAGS=$flags cmake -S "$source/tests/install" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/installed" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer"

export PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name vrk.pc)")
cc $flags -Wall -Werror "$source/tests/install/consumer.c" -o "$work/by_pkg_config" $(pkg-config --cflags --libs vrk)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir vrk) "$work/by_pkg_config"

library=$(find "$work/installed" -name libvrk.a)
cc $flags -I"$work/installed/include" "$source/tests/install/consumer.c" "$library" -o "$work/static"
"$work/static"
"$work/installed/bin/vrk" --help >/dev/null
