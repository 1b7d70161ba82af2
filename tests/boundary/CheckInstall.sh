#!/usr/bin/env bash
# Installs the build into a scratch prefix and builds a C program against the
# installed package twice: through pkg-config and through find_package.
set -euo pipefail
build_dir=$1
source_dir=$2
check_source=$source_dir/tests/boundary/c_api_check.c
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
libdir=$(dirname "$(find "$work/prefix" -name 'libsentivo.so' | head -n 1)")
test -f "$work/prefix/include/sentivo/sentivo.h"
test -f "$work/prefix/include/sentivo/sentivo_errors.h"
test -L "$libdir/libsentivo.so"

export PKG_CONFIG_PATH=$libdir/pkgconfig
test "$(pkg-config --modversion sentivo)" = "2.0.1012.0"
cc -std=c99 -Wall -Werror $(pkg-config --cflags sentivo) "$check_source" -o "$work/with_pkgconfig" $(pkg-config --libs sentivo)
LD_LIBRARY_PATH=$libdir "$work/with_pkgconfig"

cmake -S "$source_dir/tests/boundary/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCHECK_SOURCE="$check_source" >/dev/null
cmake --build "$work/consumer" >/dev/null
LD_LIBRARY_PATH=$libdir "$work/consumer/consumer"
echo "installed package: pkg-config and find_package consumers work"
