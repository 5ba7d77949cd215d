#!/usr/bin/env bash
# Runs an example against the talker in a network of its own.
# Usage: examples-hear-talker.sh peak|facts HOST TALKER
set -euo pipefail
what=$1 host=$2 talker=$3

if [[ ${4-} != inside ]]; then
    source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"
    find_network_namespace
    exec "${network_namespace[@]}" tests/package/examples-hear-talker.sh "$what" "$host" "$talker" inside
fi

ip link set lo up
talk() {
    "$talker" --device lo --source 02:00:00:00:00:01 --channels 2 --samples-per-packet 6 "$@" >/dev/null &
    trap 'kill $! 2>/dev/null || true' EXIT
}

case $what in
peak) # it must print the amplitude that the talker sends
    talk --signal square:100:0.5 --signal silence --seconds 40
    printed=$(timeout 30 "$host" lo 020000000001) || true
    [[ $(tail -n 1 <<<"$printed") =~ ^peak:\ 0\.(5|49999?)$ && $(wc -l <<<"$printed") -ge 100 ]] && exit # more if it is late
    ;;
facts) # it must count the faults that the talker makes, with no line of the log anywhere
    faults=()
    for second in 1 2 3; do # the host listens for two seconds of four
        faults+=(--drop $((8000 * second)) --drop $((8000 * second + 1)) --length-at $((8000 * second + 100)):20)
    done
    talk --seconds 4 "${faults[@]}"
    printed=$(QT_LOGGING_RULES='*=false' timeout 30 "$host" lo 020000000001 2>&1) || true
    value() { awk -v name="$1" 'index($0, name) == 1 { print $NF }' <<<"$printed"; }
    captured=$(value "frames captured") lost=$(value lost) gaps=$(value "in gaps")
    refused=$(value "refused for data length") taken=$(value taken)
    ((captured > 10000 && gaps > 0 && lost == 2 * gaps && refused > 0 && taken == captured - gaps - refused)) && exit
    ;;
esac
echo "not what was expected:"$'\n'"$printed"
exit 1
