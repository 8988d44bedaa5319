#!/usr/bin/env bash
# The long accuracy run of the correctly rounded elementary functions:
# every function of Mivora::math against MPFR, bit for bit, with many more
# random inputs than the ctest run (default 10^8 per function; minutes to
# hours). Needs libmpfr-dev.
#
#   scripts/math_long_run.sh [samples-per-function] [seed] [gtest filter]
#   e.g. scripts/math_long_run.sh 100000000 1 '*pow*'
#
# Functions run one after another; each prints its count and any mismatch.
# Set JOBS to run that many functions at once (default 1). Each row also
# checks samples/400 arguments found near a midpoint, which cost about as
# much again as all the random ones; MIVORA_MATH_HARD_SHARE=4000 checks a
# tenth of that number.
set -euo pipefail
cd "$(dirname "$0")/.."

samples=${1:-100000000}
seed=${2:-$(date +%s)}
filter=${3:-*}
build=build/math-long
jobs=${JOBS:-1}

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DMIVORA_BUILD_BENCHMARKS=OFF \
    -DMIVORA_BUILD_TOOLS=OFF -DMIVORA_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" -j "${jobs}" --target mivora_math_tests
bin="$build/tests/math/mivora_math_tests"

echo "samples per function: $samples, seed: $seed"
mapfile -t tests < <("$bin" --gtest_list_tests --gtest_filter="$filter" |
    awk '/^[^ ]/ {suite=$1} /^  / {print suite $1}')
status=0
run() {
    MIVORA_MATH_SAMPLES=$samples MIVORA_MATH_SEED=$seed "$bin" --gtest_filter="$1" --gtest_brief=1 \
        >"$build/$(echo "$1" | tr '/' '_').log" 2>&1
}
for t in "${tests[@]}"; do
    while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n || status=1; done
    echo "running $t"
    run "$t" &
done
while [ "$(jobs -rp | wc -l)" -gt 0 ]; do wait -n || status=1; done
for t in "${tests[@]}"; do
    log="$build/$(echo "$t" | tr '/' '_').log"
    if grep -q "FAILED" "$log"; then echo "FAILED $t"; grep -m 20 "correctly rounded\|inputs" "$log"; status=1
    else echo "passed $t"; fi
done
exit $status
