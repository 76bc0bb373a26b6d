#!/bin/sh
# Installs the built library into a scratch prefix, then builds and runs a
# small consumer twice: through find_package(orvspx) and through pkg-config.
set -eu
build_dir=$1
consumer_dir=$2
cmake=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$cmake" --install "$build_dir" --prefix "$work/prefix" >/dev/null

"$cmake" -S "$consumer_dir" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
"$cmake" --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer"

libdir=$(ls -d "$work/prefix"/lib*/pkgconfig | head -n 1)
export PKG_CONFIG_PATH="$libdir"
cc -std=c99 -Wall -Wextra -pedantic -Werror -o "$work/consumer-pc" "$consumer_dir/consumer.c" \
   $(pkg-config --cflags --libs orvspx) -Wl,-rpath,"$(pkg-config --variable=libdir orvspx)"
"$work/consumer-pc"
echo "install test: both consumers ran"
