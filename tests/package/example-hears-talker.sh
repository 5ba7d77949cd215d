#!/usr/bin/env bash
# Runs the example against the talker in a network of its own: it must print the amplitude that the talker sends.
set -euo pipefail
host=$1 talker=$2

if [[ ${3-} != inside ]]; then
    source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"
    find_network_namespace
    exec "${network_namespace[@]}" tests/package/example-hears-talker.sh "$host" "$talker" inside
fi

ip link set lo up
"$talker" --device lo --source 02:00:00:00:00:01 --channels 2 --samples-per-packet 6 \
    --signal square:100:0.5 --signal silence --seconds 40 >/dev/null &
trap 'kill $!' EXIT

peaks=$(timeout 30 "$host" lo 020000000001) || true
[[ $(tail -n 1 <<<"$peaks") =~ ^peak:\ 0\.(5|49999?)$ && $(wc -l <<<"$peaks") == 100 ]] || {
    echo "expected a hundred lines with a peak of a half, got:"$'\n'"$peaks"
    exit 1
}
