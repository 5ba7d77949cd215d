#!/usr/bin/env bash
# Runs what was installed, and builds and runs a project outside the tree against it.
set -euo pipefail
cmake=$1 prefix=$2 work=$3/consumer compiler=$4 version=$5 libdir=$6 flags=$7
sources=$(dirname "${BASH_SOURCE[0]}")/consumer
unset LD_LIBRARY_PATH
trap 'echo "failed in line $LINENO: $BASH_COMMAND" >&2' ERR

[[ $(readlink -f "$prefix/$libdir/libqo_sonvexLib.so") == *"/libqo_sonvexLib.so.$version" ]]
for program in sonvex-analyser sonvex-talker; do
    "$prefix/bin/$program" --help >/dev/null
done

rm -rf "$work"
"$cmake" -S "$sources" -B "$work" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$work"
"$work/consumer"

[[ $(PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig pkg-config --modversion qo_sonvexLib) == "$version" ]]
