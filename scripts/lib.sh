# What the scripts share; to be sourced. Leaves the caller in the project's root.
# shellcheck shell=bash disable=SC2034
set -euo pipefail
shopt -s inherit_errexit

cd "$(dirname "${BASH_SOURCE[0]}")/.."
project_root=$PWD

# Read by CMake on the first configuration of a build folder. Without a writable cache ccache would fail every compile.
cache=$(ccache --get-config cache_dir 2>/dev/null) || cache=
if [[ -n $cache ]] && mkdir -p "$cache" 2>/dev/null && [[ -w $cache ]]; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
fi

die() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# build PRESET: everything, tests and benchmarks included, or what further arguments to cmake --build say.
build() {
    cmake --preset "$1" >/dev/null &&
        cmake --build --preset "$@"
}

# run_emulated EMULATOR PROGRAM ...: a GoogleTest program once per core, each time with another share of its tests. Says
# how many passed, and shows what the runs that failed had to say. Transforms above order 16 take the same code as those
# of 15 and 16, and an emulator minutes.
run_emulated() {
    local shards logs passed failed=0
    shards=$(nproc)
    logs=$(mktemp -d)
    # shellcheck disable=SC2016
    seq 0 $((shards - 1)) |
        GTEST_TOTAL_SHARDS=$shards SONVEX_TEST_MAX_ORDER=${SONVEX_TEST_MAX_ORDER-16} xargs -P "$shards" -I '{}' \
            bash -c 'GTEST_SHARD_INDEX=$1 "${@:2}" >"$0/$1" 2>&1 || { tail -n 200 "$0/$1" && exit 1; }' \
            "$logs" '{}' "$@" || failed=1
    passed=$(awk '/^\[  PASSED  \]/ { sum += $4 } END { print sum + 0 }' "$logs"/*)
    rm -rf "$logs"
    ((!failed)) || return 1
    ((passed > 0)) || die "no test ran: $*"
    echo "$passed tests passed"
}

# The names of the kernels' CPU levels, the lowest first.
cpu_levels() {
    sed -n 's/^ *LEVEL(argument, \([a-z0-9_]*\),.*/\1/p' src/kernels/CpuLevels.h
}

# All C++ files of the project, each ended by a zero byte.
cpp_files() {
    local folders=()
    for folder in "$@"; do
        [[ ! -d $folder ]] || folders+=("$folder")
    done
    find "${folders[@]}" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 | sort -z
}

cpp_folders=(include src apps tests benchmarks fuzz examples)

# The command that runs another one in a network of its own, as words in the array network_namespace.
find_network_namespace() {
    local candidates=("unshare --net" "unshare --map-root-user --net")
    for candidate in "${candidates[@]}"; do
        read -ra network_namespace <<<"$candidate"
        if "${network_namespace[@]}" ip link set lo up 2>/dev/null; then
            return
        fi
    done
    die "this system forbids network namespaces to $(id -un): run as root, or allow them with" \
        "'sysctl kernel.unprivileged_userns_clone=1 user.max_user_namespaces=10000'"
}
