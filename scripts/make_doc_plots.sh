#!/usr/bin/env bash
# Regenerates the response plots in docs/plots and the gallery page
# docs/gallery.md (one plot per design) with the mivora tool.
# Usage: scripts/make_doc_plots.sh [path/to/mivora]
set -euo pipefail
cd "$(dirname "$0")/.."
mivora=${1:-build/release/tools/mivora/mivora}
out=docs/plots
mkdir -p "$out"

plot() {
    local name=$1
    shift
    "$mivora" response "$@" --svg "$out/$name.svg" >/dev/null
}

# Plots the choosing-a-design guide shows.
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

# The gallery: every design once, name and the tool arguments that make it.
gallery=(
    "g-peak-pq|peak --variant pq --freq 1000 --gain 9 --q 1.4"
    "g-peak-cq|peak --variant cq --freq 1000 --gain 9 --q 1.4"
    "g-lows-a|lowshelf --order 1 --variant A --freq 200 --gain 9"
    "g-lows-b|lowshelf --order 1 --variant B --freq 200 --gain 9"
    "g-lows-2a|lowshelf --order 2 --variant A --freq 200 --gain 9"
    "g-lows-2b|lowshelf --order 2 --variant B --freq 200 --gain 9"
    "g-lows-pm-2a|lowshelf --order 2 --variant A --damping 2 --freq 200 --gain 9"
    "g-lows-pm-2b|lowshelf --order 2 --variant B --damping 2 --freq 200 --gain 9"
    "g-lows-c|lowshelf --order 1 --freq 200 --gain 9 --weight 0.5 --level 0"
    "g-lows-2c|lowshelf --order 2 --freq 200 --gain 9 --weight 0.5 --level 0"
    "g-higs-a|highshelf --order 1 --variant A --freq 4000 --gain -9"
    "g-higs-b|highshelf --order 1 --variant B --freq 4000 --gain -9"
    "g-higs-2a|highshelf --order 2 --variant A --freq 4000 --gain -9"
    "g-higs-2b|highshelf --order 2 --variant B --freq 4000 --gain -9"
    "g-higs-pm-2a|highshelf --order 2 --variant A --damping 2 --freq 4000 --gain -9"
    "g-higs-pm-2b|highshelf --order 2 --variant B --damping 2 --freq 4000 --gain -9"
    "g-higs-c|highshelf --order 1 --freq 4000 --gain -9 --weight 0.5 --level 0"
    "g-higs-2c|highshelf --order 2 --freq 4000 --gain -9 --weight 0.5 --level 0"
    "g-lpf|lowpass --type butter --order 3 --freq 2000"
    "g-lpf-chev|lowpass --type cheby --order 3 --freq 2000 --ripple 1"
    "g-lpf-ichev|lowpass --type icheby --order 3 --freq 2000 --stop-level 360"
    "g-lpf-q|lowpass --type q --freq 2000 --q 2"
    "g-hpf|highpass --type butter --order 3 --freq 200"
    "g-hpf-chev|highpass --type cheby --order 3 --freq 200 --ripple 1"
    "g-hpf-ichev|highpass --type icheby --order 3 --freq 200 --stop-level 360"
    "g-hpf-q|highpass --type q --freq 200 --q 2"
    "g-bpf-qfct|bandpass --type q --freq 1000 --q 2"
    "g-bpf-q|bandpass --type q0 --freq 1000 --q 2"
    "g-bpf|bandpass --type butter --order 2 --low 500 --high 2000"
    "g-bpf-chev|bandpass --type cheby --order 2 --low 500 --high 2000 --ripple 1"
    "g-bpf-ichev|bandpass --type icheby --order 2 --low 500 --high 2000 --stop-level 400"
    "g-bef|bandstop --type butter --order 2 --low 500 --high 2000"
    "g-bef-chev|bandstop --type cheby --order 2 --low 500 --high 2000 --ripple 1"
    "g-bef-ichev|bandstop --type icheby --order 2 --low 500 --high 2000 --stop-level 400"
    "g-dcf-lpf|dc-lowpass --freq 100"
    "g-dcf-hpf|dc-highpass --freq 20"
    "g-apf-1st|allpass --order 1 --freq 1000"
    "g-apf-2nd|allpass --order 2 --freq 1000"
)

{
    echo "# Gallery: every design"
    echo
    echo "One response per design, as the library itself reports it (\`power\` and"
    echo "\`phase\`, fs 48000 Hz). Made by \`scripts/make_doc_plots.sh\`; the tool"
    echo "arguments under each plot make it again, and \`mivora list\` names the"
    echo "library call each one makes. The \`alpha\` forms of the DC filters write what"
    echo "the frequency forms write for the matching coefficient."
    for entry in "${gallery[@]}"; do
        name=${entry%%|*}
        args=${entry#*|}
        # shellcheck disable=SC2086
        plot "$name" $args
        echo
        echo "![${args}](plots/${name}.svg)"
        echo
        echo "\`mivora response ${args}\`"
    done
} > docs/gallery.md
echo "plots in $out, gallery in docs/gallery.md"
