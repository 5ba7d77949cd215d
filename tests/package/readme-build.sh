#!/usr/bin/env bash
# Builds the host in the README against the installed package in both ways that the README shows, word for word.
set -euo pipefail
readme=$1 cmake=$2 prefix=$3 work=$4/readme compiler=$5 libdir=$6 flags=$7
unset LD_LIBRARY_PATH

# block LANGUAGE: the code of that language.
block() {
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$readme"
}

# refuses HOST: fails unless it gets as far as to look for its adapter.
refuses() {
    local said status=0
    said=$("$1" nowhere0 2>&1) || status=$?
    [[ $status == 1 && $'\n'$said$'\n' == *$'\n'"There is no adapter 'nowhere0'"$'\n'* ]] || {
        echo "$1: expected it to refuse the adapter, got status $status and: $said" >&2
        return 1
    }
}

rm -rf "$work"
mkdir -p "$work/bin"
cd "$work"
block cpp >main.cpp
block cmake >CMakeLists.txt

# What the README calls g++ is the compiler of the build with its sanitizers.
printf '#!/bin/sh\nexec "%s" %s "$@"\n' "$compiler" "$flags" >bin/g++
chmod +x bin/g++
export PATH=$work/bin:$PATH CXX=$work/bin/g++ CMAKE_PREFIX_PATH=$prefix PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig

"$cmake" -S . -B with-cmake -G Ninja
"$cmake" --build with-cmake
refuses with-cmake/host

bash -euo pipefail -c "$(block sh)"
export LD_LIBRARY_PATH=$prefix/$libdir
refuses ./host
