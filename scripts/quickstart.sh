#!/usr/bin/env bash
# One entry point for a fresh machine: installs what the build needs from
# Debian's packages when missing, then builds and runs.
#   scripts/quickstart.sh demo   build and run the main job
#   scripts/quickstart.sh test   build and run every test
set -euo pipefail
cd "$(dirname "$0")/.."

PACKAGES=(cmake g++ make libgtest-dev libbenchmark-dev pkg-config libcli11-dev libsndfile1-dev libmpfr-dev)
# Also needed by the reliability checks CI runs (scripts/ci_checks.sh):
# clang with its sanitizer and libFuzzer runtimes, clang-tidy, cppcheck.
CHECK_PACKAGES=(clang libclang-rt-14-dev clang-tidy cppcheck)

install_missing() {
    local missing=()
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

jobs=$(nproc 2>/dev/null || echo 2)

# Sourced by another script: provide the lists and install_missing only.
[ "${BASH_SOURCE[0]}" = "$0" ] || return 0

case "${1:-}" in
    demo)
        install_missing "${PACKAGES[@]}"
        cmake --preset release
        cmake --build --preset release -j "$jobs" --target mivora
        ./build/release/tools/mivora/mivora demo --out build/demo
        ;;
    test)
        install_missing "${PACKAGES[@]}"
        cmake --preset release
        cmake --build --preset release -j "$jobs"
        ctest --preset release -j "$jobs"
        ;;
    *)
        echo "usage: scripts/quickstart.sh demo|test" >&2
        exit 2
        ;;
esac
