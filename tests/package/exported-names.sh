#!/usr/bin/env bash
# Fails if the shared object shows a name that no pattern allows, or if a pattern matches none.
set -euo pipefail
nm=$1 library=$2 patterns=$3

names=$("$nm" --dynamic --demangle --defined-only "$library" | sed -E 's/^[0-9a-f]* [A-Za-z] //')
if foreign=$(grep -Ev -f "$patterns" <<<"$names"); then
    printf 'Names that are no part of the interface:\n%s\n' "$foreign" >&2
    exit 1
fi
while read -r pattern; do
    grep -Eq -- "$pattern" <<<"$names" || {
        echo "No name matches $pattern" >&2
        exit 1
    }
done <"$patterns"
