#!/usr/bin/env bash
# Same bits on three machines. Runs the golden values (tests/golden), the
# main suite and, where it is built, the accuracy test of the elementary
# functions against MPFR (natively; under qemu with CROSS_CHECK_MATH=1), on:
#   native    x86-64 as built (the FMA3 kernels and elementary functions
#             when the CPU has FMA)
#   nofma     the same x86-64 binaries under qemu-x86_64 -cpu Nehalem (no
#             FMA/AVX): the portable kernels and elementary functions, and
#             the C library's non-FMA variants of whatever it still provides
#   aarch64   cross-compiled with g++-aarch64-linux-gnu, run under
#             qemu-aarch64 (GoogleTest built for the target from Debian's
#             /usr/src/googletest)
# Every machine must pass; a failing one does not stop the others. Installs
# qemu-user and g++-aarch64-linux-gnu when missing. CI runs it from .ci/run.
#   scripts/cross_check.sh [native] [nofma] [aarch64]   (default: all three)
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/quickstart.sh
provide "${BUILD_NEEDS[@]}" "${TEST_NEEDS[@]}" cmd:qemu-x86_64:qemu-user cmd:qemu-aarch64:qemu-user \
    cmd:aarch64-linux-gnu-g++:g++-aarch64-linux-gnu

NOFMA_CPU=${NOFMA_CPU:-Nehalem}
SYSROOT=/usr/aarch64-linux-gnu
GOLDEN=tests/golden/golden_values.txt
NATIVE=build/release
CROSS=build/aarch64
GTEST_PREFIX=build/aarch64-gtest/install
jobs=$(nproc 2>/dev/null || echo 2)
machines=("$@")
[ ${#machines[@]} -gt 0 ] || machines=(native nofma aarch64)

failed=()
timings=()
# step NAME COMMAND...: runs it, records its time and whether it failed.
# (A step runs where set -e does not apply: steps chain with && instead.)
step() {
    local name=$1 start rc=0 ms
    shift
    echo "== $name"
    start=$(date +%s%N)
    "$@" || rc=$?
    ms=$((($(date +%s%N) - start) / 1000000))
    timings+=("$(printf '%-32s %4d.%d s' "$name" $((ms / 1000)) $((ms % 1000 / 100)))$([ $rc -eq 0 ] || echo "  FAILED")")
    [ $rc -eq 0 ] || failed+=("$name")
    return 0
}

build_native() {
    local targets=(mivora_tests mivora_golden)
    cmake --preset release >/dev/null &&
        if cmake --build "$NATIVE" --target help | grep -q mivora_math_tests; then targets+=(mivora_math_tests); fi &&
        cmake --build "$NATIVE" -j "$jobs" --target "${targets[@]}"
}

# golden BINARY [RUNNER...]: the golden check; on a mismatch under a runner,
# the first differing cases of the first differing groups against the
# native binary's values.
golden() {
    local bin=$1 out rc=0
    shift
    out=$("$@" "$bin" check "$GOLDEN") || rc=$?
    grep -v ' | ' <<<"$out" || true
    [ $rc -ne 0 ] && [ $# -gt 0 ] && [ -x "$NATIVE/tests/mivora_golden" ] || return $rc
    local groups
    mapfile -t groups < <(grep '^DIFFERS' <<<"$out" | sed 's/^DIFFERS  \(.*\): expected.*/\1/' | head -3)
    [ ${#groups[@]} -gt 0 ] || return $rc
    echo "-- first differing cases of ${#groups[@]} groups (< native, > $*):"
    diff <("$NATIVE/tests/mivora_golden" print "${groups[@]}") <("$@" "$bin" print "${groups[@]}") | grep '^[<>]' | head -8
    return $rc
}

# The accuracy test against MPFR, when this build has it. Under qemu it
# costs minutes of CPU (its 4 exp tests alone took 21 s of 12 s natively
# for all 24), so there it runs only with CROSS_CHECK_MATH=1; the golden
# values check the functions' bits on every machine.
math_tests() {
    local bin=$NATIVE/tests/math/mivora_math_tests
    if [ ! -x "$bin" ]; then
        echo "(mivora_math_tests not built here)"
    elif [ $# -gt 0 ] && [ "${CROSS_CHECK_MATH:-0}" != 1 ]; then
        echo "(skipped under qemu; CROSS_CHECK_MATH=1 runs it)"
    else
        "$@" "$bin" --gtest_brief=1
    fi
}

nofma_path() {  # the FMA3 kernels must not be chosen without FMA
    local path
    path=$(qemu-x86_64 -cpu "$NOFMA_CPU" "$NATIVE/tests/mivora_golden" path)
    echo "processing path under -cpu $NOFMA_CPU: $path"
    [ "$path" = portable ]
}

build_cross_gtest() {
    [ -f "$GTEST_PREFIX/lib/cmake/GTest/GTestConfig.cmake" ] && return 0
    cmake -S /usr/src/googletest -B build/aarch64-gtest/build --toolchain "$PWD/cmake/aarch64-linux-gnu.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DBUILD_GMOCK=OFF -DCMAKE_INSTALL_PREFIX="$PWD/$GTEST_PREFIX" >/dev/null &&
        cmake --build build/aarch64-gtest/build -j "$jobs" &&
        cmake --install build/aarch64-gtest/build >/dev/null
}

build_cross() {
    build_cross_gtest || return 1
    cmake -S . -B "$CROSS" --toolchain cmake/aarch64-linux-gnu.cmake --no-warn-unused-cli -DCMAKE_BUILD_TYPE=Release \
        -DGTest_DIR="$PWD/$GTEST_PREFIX/lib/cmake/GTest" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
        -DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST \
        -DMIVORA_BUILD_BENCHMARKS=OFF -DMIVORA_BUILD_TOOLS=OFF -DMIVORA_BUILD_EXAMPLES=OFF -DMIVORA_INSTALL=OFF \
        >/dev/null || return 1
    cmake --build "$CROSS" -j "$jobs" --target mivora_tests mivora_golden || return 1
    # GCC contracts a*b + c into fmadd on AArch64 unless told not to: every
    # file of the library and of the tests must be compiled without.
    local loose
    loose=$(grep '"command"' "$CROSS/compile_commands.json" | grep -v -- '-ffp-contract=off' || true)
    if [ -n "$loose" ]; then
        echo "compiled without -ffp-contract=off:"
        echo "$loose"
        return 1
    fi
}

cross_run() { qemu-aarch64 -L "$SYSROOT" "$@"; }

for machine in "${machines[@]}"; do
    case "$machine" in
        native)
            step "native: build" build_native
            step "native: golden values" golden "$NATIVE/tests/mivora_golden"
            step "native: main suite" "$NATIVE/tests/mivora_tests" --gtest_brief=1
            step "native: math accuracy (MPFR)" math_tests
            ;;
        nofma)
            [ -x "$NATIVE/tests/mivora_golden" ] || step "native: build" build_native
            step "nofma: no FMA kernels" nofma_path
            step "nofma: golden values" golden "$NATIVE/tests/mivora_golden" qemu-x86_64 -cpu "$NOFMA_CPU"
            step "nofma: main suite" qemu-x86_64 -cpu "$NOFMA_CPU" "$NATIVE/tests/mivora_tests" --gtest_brief=1
            step "nofma: math accuracy (MPFR)" math_tests qemu-x86_64 -cpu "$NOFMA_CPU"
            ;;
        aarch64)
            step "aarch64: cross build" build_cross
            step "aarch64: golden values" golden "$CROSS/tests/mivora_golden" cross_run
            step "aarch64: main suite" cross_run "$CROSS/tests/mivora_tests" --gtest_brief=1
            ;;
        *)
            echo "usage: scripts/cross_check.sh [native] [nofma] [aarch64]" >&2
            exit 2
            ;;
    esac
done

echo
echo "== cross-machine check: time per step"
printf '%s\n' "${timings[@]}"
if [ ${#failed[@]} -gt 0 ]; then
    echo "FAILED: ${failed[*]}"
    exit 1
fi
echo "every machine run gives the golden bits and passes the suites"
