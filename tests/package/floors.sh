#!/usr/bin/env bash
# The check of the floors finds each kind of include that leads up, aside or out, in a copy of the sources, and nothing
# in the sources themselves.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
cp -r src apps "$copy"

scripts/check-floors "$copy" >/dev/null
mkdir "$copy/src/attic"
echo "// nobody knows what may be here" >"$copy/src/attic/Thing.h"
planted=(
    'src/avb/AvtpFrame.h|#include "engine/Run.h"'
    'src/core/logging/Log.cpp|#include "core/facts/Fact.h"'
    'src/core/facts/Fact.h|#include "core/facade/Sonvex.h"'
    'src/threading/Worker.cpp|# include <pcap/pcap.h>'
    'src/kernels/Status.cpp|#include <sonvex/version.h>'
    'src/kernels/loops/Vector.h|#include <QString>'
    'apps/monitoring/Result.h|#include "analyser/output/Output.h"'
    'apps/monitoring/meters/Meter.h|#include "monitoring/Result.h"'
    'apps/discovery/Survey.h|#include "monitoring/Session.h"'
    'apps/talker/main.cpp|#include "core/logging/Log.h"'
    'src/avb/AvtpPacketReceiver.cpp|#include <engine/Run.h>'
    'apps/common/Text.cpp|#include "monitoring/Session.h"'
)
for plant in "${planted[@]}"; do
    echo "${plant#*|}" >>"$copy/${plant%%|*}"
done
if said=$(scripts/check-floors "$copy" 2>&1); then
    echo "nothing was found"
    exit 1
fi
[[ $said == *"src/attic/Thing.h: 'src/attic' has no floor"* && $said == *" $((${#planted[@]} + 1)) includes lead"* ]] || {
    echo "not what was planted: $said"
    exit 1
}
for plant in "${planted[@]}"; do
    [[ $said =~ ${plant%%|*}:[0-9]+:\ [^$'\n']*"${plant##*include }" ]] || {
        echo "not found: $plant in $said"
        exit 1
    }
done
