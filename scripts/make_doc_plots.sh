#!/usr/bin/env bash
# Regenerates the response plots in docs/plots with the mivora tool.
# Usage: scripts/make_doc_plots.sh [path/to/mivora]
set -euo pipefail
cd "$(dirname "$0")/.."
mivora=${1:-build/release/tools/mivora/mivora}
out=docs/plots
mkdir -p "$out"

plot() {
    local name=$1
    shift
    "$mivora" response "$@" --svg "$out/$name.svg"
}

plot peak            peak --freq 1000 --gain 9 --q 1.4
plot lowshelf        lowshelf --order 2 --variant B --freq 200 --gain -6
plot highshelf       highshelf --order 1 --variant A --freq 4000 --gain 6
plot lowpass-butter  lowpass --type butter --order 4 --freq 2000
plot lowpass-cheby   lowpass --type cheby --order 4 --freq 2000 --ripple 1
plot highpass-icheby highpass --type icheby --order 5 --freq 300 --stop-level 360
plot highpass-q      highpass --type q --freq 100 --q 2
plot bandpass-cheby  bandpass --type cheby --order 2 --low 500 --high 2000 --ripple 0.5
plot bandstop-icheby bandstop --type icheby --order 2 --low 500 --high 2000 --stop-level 400
plot bandpass-q      bandpass --type q0 --freq 1000 --q 2
plot dc-highpass     dc-highpass --freq 20
plot allpass         allpass --order 2 --freq 1000
echo "plots written to $out"
