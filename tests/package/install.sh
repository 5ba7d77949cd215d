#!/usr/bin/env bash
# Installs the build and moves what was installed, for the tests that look at the package.
set -euo pipefail
cmake=$1 build=$2 prefix=$3

rm -rf "$prefix" "$prefix-before"
"$cmake" --install "$build" --prefix "$prefix-before" >"$prefix.log"
mv "$prefix-before" "$prefix"
