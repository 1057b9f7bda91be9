#!/usr/bin/env bash
# Installs into a prefix of its own, moves that prefix, and builds a host against it: by find_package, then by pkg-config.
# Usage: installed_package.sh CMAKE COMPILER BUILD_FOLDER LIBRARY_FOLDER_NAME CONSUMER_FOLDER
set -euo pipefail
cmake=$1 compiler=$2 build=$3 libdir=$4 consumer=$5

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$cmake" --install "$build" --prefix "$scratch/installed" > "$scratch/install.log"
prefix="$scratch/moved prefix"
mv "$scratch/installed" "$prefix"

echo "find_package"
"$cmake" -S "$consumer" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$scratch/build"
"$scratch/build/consumer"

echo "pkg-config"
# pkg-config escapes the blank of the prefix as a shell would want it.
flags=$(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags --libs captionfx)
eval "'$compiler' -std=c++17 '$consumer/consumer.cpp' -o '$scratch/by_pkg_config' $flags"
LD_LIBRARY_PATH="$prefix/$libdir" "$scratch/by_pkg_config"

echo "the installed tool"
"$prefix/bin/captionfx" --version
