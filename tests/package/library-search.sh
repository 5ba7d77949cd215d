#!/usr/bin/env bash
# Fails if a program or library below one of the folders has an empty or relative entry in its RUNPATH or RPATH: the
# loader would search its libraries in the current folder.
set -euo pipefail
readelf=$1
shift
entry="(/[^:]*|[$]ORIGIN(/[^:]*)?)"
failed=0

for folder in "$@"; do
    binaries=0 paths=0
    while IFS= read -r file; do
        [[ $(head -c 4 "$file" | tr -d '\0') == $'\x7fELF' ]] || continue
        binaries=$((binaries + 1))
        dynamic=$(LC_ALL=C "$readelf" --dynamic --wide "$file")
        while IFS= read -r path; do
            paths=$((paths + 1))
            [[ $path =~ ^$entry(:$entry)*$ ]] || {
                echo "$file: [$path]" >&2
                failed=1
            }
        done < <(sed -nE 's/.*\((RUNPATH|RPATH)\) .*\[(.*)\]$/\2/p' <<<"$dynamic")
    done < <(find "$folder" -name package-test -prune -o -type f \( -perm /111 -o -name '*.so*' \) -print)
    echo "$folder: $binaries programs and libraries, $paths of them with a search path"
    ((paths > 0)) || {
        echo "Nothing to look at in $folder" >&2
        failed=1
    }
done
exit "$failed"
