#!/usr/bin/env bash
# The reliability checks CI runs after the tests. Each builds in its own
# directory under build/ and any finding fails it.
#   scripts/ci_checks.sh                 all of them
#   scripts/ci_checks.sh NAME...         some: cppcheck tidy no-exceptions
#                                        sanitize tsan fuzz
# FUZZ_SECONDS (default 30) is how long each fuzz target runs.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quickstart.sh   # PACKAGES, CHECK_PACKAGES, install_missing

JOBS=2
FUZZ_SECONDS="${FUZZ_SECONDS:-30}"

# Static analysis of the library: include/ and src/, never tests or tools.
check_cppcheck() {
    cppcheck --std=c++17 --language=c++ --enable=warning,style,performance,portability \
        --suppressions-list=.cppcheck-suppressions --inline-suppr --error-exitcode=1 --quiet \
        -I include -I src src include
}

check_tidy() {
    # Compile commands of the library alone; nothing needs building.
    cmake -S . -B build/lint -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DMIVORA_BUILD_TESTS=OFF \
        -DMIVORA_BUILD_BENCHMARKS=OFF -DMIVORA_BUILD_TOOLS=OFF -DMIVORA_BUILD_EXAMPLES=OFF \
        -DMIVORA_INSTALL=OFF -DMIVORA_BUILD_PYTHON=OFF >/dev/null
    run-clang-tidy -p build/lint -j "$JOBS" -quiet "$PWD/src/"
}

# Configure, build and test one preset.
check_preset() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -j "$JOBS"
    ctest --preset "$1" -j "$JOBS"
}

# Each fuzz target from its committed seeds, for FUZZ_SECONDS. New inputs go
# to a scratch corpus so the committed one stays as it is.
check_fuzz() {
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz -j "$JOBS"
    local artifacts=build/fuzz/findings
    mkdir -p "$artifacts"
    for seeds in fuzz/corpus/*/; do
        local name
        name="$(basename "$seeds")"
        local scratch="build/fuzz/corpus/$name"
        mkdir -p "$scratch"
        echo "-- mivora_fuzz_$name for ${FUZZ_SECONDS}s"
        "build/fuzz/fuzz/mivora_fuzz_$name" -max_total_time="$FUZZ_SECONDS" -timeout=10 \
            -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$artifacts/$name-" \
            "$scratch" "$seeds" 2>&1 | grep -vE '^#[0-9]+[[:space:]]+(NEW|REDUCE|pulse)|NEW_FUNC|# Uses: [0-9]+$|Recommended dictionary' || {
            echo "mivora_fuzz_$name found a problem; the input is in $artifacts/" >&2
            return 1
        }
    done
}

ALL=(cppcheck tidy no-exceptions sanitize tsan fuzz)
selected=("$@")
[ ${#selected[@]} -gt 0 ] || selected=("${ALL[@]}")

install_missing "${PACKAGES[@]}" "${CHECK_PACKAGES[@]}"

passed=0
failed=()
for check in "${selected[@]}"; do
    printf '\n==== %s\n' "$check"
    case "$check" in
        cppcheck) fn=(check_cppcheck) ;;
        tidy) fn=(check_tidy) ;;
        no-exceptions | sanitize | tsan) fn=(check_preset "$check") ;;
        fuzz) fn=(check_fuzz) ;;
        *) echo "unknown check '$check' (known: ${ALL[*]})" >&2; exit 2 ;;
    esac
    start=$SECONDS
    # A subshell outside any condition, so that set -e stops a check at its
    # first failing step.
    set +e
    (set -e; "${fn[@]}")
    status=$?
    set -e
    if [ "$status" -eq 0 ]; then
        passed=$((passed + 1))
        echo "==== $check: passed in $((SECONDS - start))s"
    else
        failed+=("$check")
        echo "==== $check: FAILED after $((SECONDS - start))s"
    fi
done

echo
[ ${#failed[@]} -eq 0 ] || echo "failed: ${failed[*]}"
echo "checks: $passed passed, ${#failed[@]} failed"
[ ${#failed[@]} -eq 0 ]
