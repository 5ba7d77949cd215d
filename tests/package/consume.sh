#!/usr/bin/env bash
# Installs the build, moves what was installed, and builds and runs a project outside the tree against it.
set -euo pipefail
cmake=$1 build=$2 compiler=$3 version=$4 libdir=$5 flags=$6
sources=$(dirname "${BASH_SOURCE[0]}")/consumer
work=$build/package-test
prefix=$work/moved
unset LD_LIBRARY_PATH
trap 'echo "failed in line $LINENO: $BASH_COMMAND" >&2' ERR

rm -rf "$work"
"$cmake" --install "$build" --prefix "$work/installed" >"$build/package-test.log"
mv "$work/installed" "$prefix"

[[ $(readlink -f "$prefix/$libdir/libqo_sonvexLib.so") == *"/libqo_sonvexLib.so.$version" ]]
for program in sonvex-analyser sonvex-talker; do
    "$prefix/bin/$program" --help >/dev/null
done

"$cmake" -S "$sources" -B "$work/with-cmake" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$work/with-cmake"
"$work/with-cmake/consumer"

export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
[[ $(pkg-config --modversion qo_sonvexLib) == "$version" ]]
read -ra options < <(pkg-config --cflags --libs qo_sonvexLib)
# shellcheck disable=SC2086
"$compiler" -std=c++17 $flags "$sources/main.cpp" -o "$work/with-pkg-config" "${options[@]}"
LD_LIBRARY_PATH=$prefix/$libdir "$work/with-pkg-config"
