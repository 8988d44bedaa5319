#!/usr/bin/env bash
# The reliability checks CI runs after the tests. Each builds in its own
# directory under build/ and any finding fails it. Each first provides what it
# needs (scripts/quickstart.sh: installed with apt-get where missing and
# possible); a check whose tools cannot be had fails, loudly, alone.
#   scripts/ci_checks.sh                 all of them
#   scripts/ci_checks.sh NAME...         some: cppcheck tidy headers lto bare
#                                        no-exceptions sanitize tsan fuzz
# FUZZ_SECONDS (default 30) is how long each fuzz target runs.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quickstart.sh   # BUILD_NEEDS and the rest, provide

JOBS=2
FUZZ_SECONDS="${FUZZ_SECONDS:-30}"

LIBRARY_ONLY=(-DMIVORA_BUILD_TESTS=OFF -DMIVORA_BUILD_BENCHMARKS=OFF -DMIVORA_BUILD_TOOLS=OFF
              -DMIVORA_BUILD_EXAMPLES=OFF -DMIVORA_INSTALL=OFF -DMIVORA_CHECK_HEADERS=OFF -DMIVORA_BUILD_PYTHON=OFF)

# Static analysis of the library: include/ and src/, never tests or tools.
check_cppcheck() {
    cppcheck --std=c++17 --language=c++ --enable=warning,style,performance,portability \
        --suppressions-list=.cppcheck-suppressions --inline-suppr --error-exitcode=1 --quiet \
        -I include -I src src include
}

check_tidy() {
    # Compile commands of the library alone; nothing needs building.
    cmake -S . -B build/lint -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "${LIBRARY_ONLY[@]}" >/dev/null
    run-clang-tidy -p build/lint -j "$JOBS" -quiet "$PWD/src/"
}

# Every header of include/ and src/ alone, with clang (the test build does the
# same with the default compiler).
check_headers() {
    cmake -S . -B build/headers -DCMAKE_CXX_COMPILER=clang++ "${LIBRARY_ONLY[@]}" \
        -DMIVORA_CHECK_HEADERS=ON >/dev/null
    cmake --build build/headers -j "$JOBS" --target mivora_header_check
}

# Link-time optimisation across the library, tests and tool with GCC, whose
# -Wodr finds one name given to two different types (undefined behaviour).
check_lto() {
    cmake -S . -B build/lto -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ \
        -DCMAKE_INTERPROCEDURAL_OPTIMIZATION=ON \
        "-DCMAKE_CXX_FLAGS=-Wodr -Werror=odr" "-DCMAKE_EXE_LINKER_FLAGS=-Wodr -Werror=odr" \
        -DMIVORA_BUILD_TESTS=ON -DMIVORA_BUILD_TOOLS=ON -DMIVORA_BUILD_BENCHMARKS=OFF \
        -DMIVORA_BUILD_EXAMPLES=OFF -DMIVORA_INSTALL=OFF -DMIVORA_CHECK_HEADERS=OFF >/dev/null
    cmake --build build/lto -j "$JOBS"
    ctest --test-dir build/lto -j "$JOBS" --output-on-failure
}

# A machine without the tool's and the benchmarks' packages, imitated by
# keeping CMake from finding them: the plain configure must still build and
# test the library, saying what it leaves out.
check_bare() {
    local log=build/bare-configure.log
    mkdir -p build
    cmake -S . -B build/bare -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON \
        -DCMAKE_DISABLE_FIND_PACKAGE_SndFile=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON \
        -DMIVORA_CHECK_HEADERS=OFF 2>&1 | tee "$log"
    grep -q "leaving out the benchmarks .*, the mivora tool .*libcli11-dev libsndfile1-dev" "$log" \
        || { echo "the configure did not name the missing packages" >&2; return 1; }
    cmake --build build/bare -j "$JOBS"
    [ ! -e build/bare/tools ] || { echo "the tool's directory was configured all the same" >&2; return 1; }
    ctest --test-dir build/bare -j "$JOBS" --output-on-failure
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

# What each check needs (see BUILD_NEEDS in scripts/quickstart.sh); clang's
# sanitizer runtimes are checked by linking (provide_clang_runtime).
needs_of() {
    case "$1" in
        cppcheck) echo cmd:cppcheck:cppcheck ;;
        tidy) echo "${BUILD_NEEDS[*]}" cmd:clang-tidy:clang-tidy cmd:run-clang-tidy:clang-tidy ;;
        headers) echo cmd:cmake:cmake cmd:make:make cmd:clang++:clang ;;
        lto) echo cmd:cmake:cmake cmd:make:make cmd:g++:g++ "${TEST_NEEDS[*]}" "${TOOL_NEEDS[*]}" ;;
        bare | no-exceptions) echo "${BUILD_NEEDS[*]}" "${TEST_NEEDS[*]}" ;;
        sanitize) echo cmd:cmake:cmake cmd:make:make cmd:clang++:clang "${TEST_NEEDS[*]}" "${TOOL_NEEDS[*]}" ;;
        tsan) echo cmd:cmake:cmake cmd:make:make cmd:clang++:clang "${TEST_NEEDS[*]}" ;;
        fuzz) echo cmd:cmake:cmake cmd:make:make cmd:clang++:clang "${TOOL_NEEDS[*]}" ;;
    esac
}

# provide_clang_runtime SANITIZERS: clang++ links a program with
# -fsanitize=SANITIZERS, installing the runtime package of the installed
# clang's own major version when it does not.
provide_clang_runtime() {
    local dir
    dir="$(mktemp -d "${TMPDIR:-/tmp}/mivora-clang-rt.XXXXXX")"
    local probe=(clang++ -x c++ - -o "$dir/probe" "-fsanitize=$1")
    local program='int main() { return 0; }'
    [[ "$1" == *fuzzer* ]] && program='extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }'
    if ! "${probe[@]}" <<<"$program" >/dev/null 2>&1; then
        local major
        major="$(clang++ -dumpversion | cut -d. -f1)"
        install_packages "libclang-rt-$major-dev" || true
        if ! "${probe[@]}" <<<"$program" >/dev/null 2>&1; then
            echo "!!!! MISSING: clang $major cannot link -fsanitize=$1 (Debian: libclang-rt-$major-dev)" >&2
            rm -rf "$dir"
            return 1
        fi
    fi
    rm -rf "$dir"
}

# provide_for CHECK: everything CHECK needs, or a loud failure.
provide_for() {
    local needs
    read -r -a needs <<<"$(needs_of "$1")"
    provide "${needs[@]}" || return 1
    case "$1" in
        sanitize) provide_clang_runtime address,undefined ;;
        tsan) provide_clang_runtime thread ;;
        fuzz) provide_clang_runtime fuzzer,address,undefined ;;
    esac
}

ALL=(cppcheck tidy headers lto bare no-exceptions sanitize tsan fuzz)
selected=("$@")
[ ${#selected[@]} -gt 0 ] || selected=("${ALL[@]}")

passed=0
failed=()
for check in "${selected[@]}"; do
    printf '\n==== %s\n' "$check"
    case "$check" in
        cppcheck) fn=(check_cppcheck) ;;
        tidy) fn=(check_tidy) ;;
        headers) fn=(check_headers) ;;
        lto) fn=(check_lto) ;;
        bare) fn=(check_bare) ;;
        no-exceptions | sanitize | tsan) fn=(check_preset "$check") ;;
        fuzz) fn=(check_fuzz) ;;
        *) echo "unknown check '$check' (known: ${ALL[*]})" >&2; exit 2 ;;
    esac
    if ! provide_for "$check"; then
        failed+=("$check")
        echo "==== $check: FAILED: what it needs cannot be had here (see MISSING above)"
        continue
    fi
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
