#!/usr/bin/env bash
# One entry point for a fresh machine: provides what the build needs (from
# Debian's packages, when apt-get is at hand and something is missing), then
# builds and runs.
#   scripts/quickstart.sh demo   build and run the main job
#   scripts/quickstart.sh test   build and run every test
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A need is KIND:NAME:PACKAGE: a command on PATH (cmd), a package CMake
# finds (lib) or a C header the compiler finds (hdr), and the Debian package that provides it. What is there is
# used as it is, whoever installed it.
BUILD_NEEDS=(cmd:cmake:cmake cmd:c++:g++ cmd:make:make)
TEST_NEEDS=(lib:GTest:libgtest-dev)
TOOL_NEEDS=(cmd:pkg-config:pkg-config lib:CLI11:libcli11-dev lib:SndFile:libsndfile1-dev)
BENCH_NEEDS=(lib:benchmark:libbenchmark-dev)
# The Python module and its tests (scipy is their reference; venv and pip for
# the offline install check): py is a module Debian's python3 imports, pyh
# its C headers.
PYTHON_NEEDS=(pyh:Python.h:python3-dev py:pybind11:python3-pybind11 py:numpy:python3-numpy
              py:scipy:python3-scipy py:pytest:python3-pytest py:soundfile:python3-soundfile
              py:ensurepip:python3-venv py:pip:python3-pip py:setuptools:python3-setuptools
              py:wheel:python3-wheel)
# The accuracy test of the elementary functions compares them with MPFR.
MATH_TEST_NEEDS=(hdr:mpfr.h:libmpfr-dev)
PYTHON=/usr/bin/python3

apt_updated=""

# install_packages PACKAGE...: apt-get install, the package lists refreshed
# once per run. Fails (without stopping the caller) where that cannot work.
install_packages() {
    command -v apt-get >/dev/null || { echo "no apt-get on this machine to install: $*" >&2; return 1; }
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "need root or sudo to install: $*" >&2; return 1; }
        sudo=(sudo)
    fi
    echo "Installing: $*"
    if [ -z "$apt_updated" ]; then
        apt_updated=1
        "${sudo[@]}" apt-get -o DPkg::Lock::Timeout=600 update -qq \
            || echo "apt-get update failed; trying the package lists at hand" >&2
    fi
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -o DPkg::Lock::Timeout=600 install -y -qq --no-install-recommends "$@"
}

# missing_cmake_packages NAME...: prints those find_package cannot find, one
# a line, from a throw-away probe project (all of them if CMake cannot run).
missing_cmake_packages() {
    [ $# -gt 0 ] || return 0
    if ! command -v cmake >/dev/null || ! command -v c++ >/dev/null; then
        printf '%s\n' "$@"
        return 0
    fi
    local dir
    dir="$(mktemp -d "${TMPDIR:-/tmp}/mivora-probe.XXXXXX")"
    cat >"$dir/CMakeLists.txt" <<'EOF'
cmake_minimum_required(VERSION 3.25)
project(mivora_probe CXX)
list(APPEND CMAKE_MODULE_PATH "${MIVORA_CMAKE_DIR}")
file(WRITE "${CMAKE_BINARY_DIR}/missing" "")
foreach(package IN LISTS PROBE)
    find_package(${package} QUIET)
    if(NOT ${package}_FOUND)
        file(APPEND "${CMAKE_BINARY_DIR}/missing" "${package}\n")
    endif()
endforeach()
EOF
    local list
    list="$(IFS=';'; echo "$*")"
    if cmake -S "$dir" -B "$dir/build" -DMIVORA_CMAKE_DIR="$PWD/cmake" "-DPROBE=$list" >/dev/null 2>&1; then
        cat "$dir/build/missing"
    else
        printf '%s\n' "$@"
    fi
    rm -rf "$dir"
}

# missing_needs NEED...: prints the needs not met, one a line.
missing_needs() {
    local need kind name libs=()
    for need in "$@"; do
        IFS=: read -r kind name _ <<<"$need"
        case "$kind" in
            cmd) command -v "$name" >/dev/null || echo "$need" ;;
            py) "$PYTHON" -c "import $name" >/dev/null 2>&1 || echo "$need" ;;
            pyh) "$PYTHON" -c "import os, sysconfig; assert os.path.exists(os.path.join(sysconfig.get_paths()['include'], '$name'))" \
                     >/dev/null 2>&1 || echo "$need" ;;
            hdr) echo "#include <$name>" | c++ -E -x c++ - >/dev/null 2>&1 || echo "$need" ;;
            lib) libs+=("$name") ;;
        esac
    done
    for name in $(missing_cmake_packages "${libs[@]+"${libs[@]}"}"); do
        for need in "$@"; do [[ "$need" == lib:"$name":* ]] && echo "$need"; done
    done
    return 0
}

# provide NEED...: meets the needs, installing what is missing where it can;
# says loudly what is still missing and fails if anything is.
provide() {
    local missing packages=() need
    mapfile -t missing < <(missing_needs "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    for need in "${missing[@]}"; do packages+=("${need##*:}"); done
    install_packages $(printf '%s\n' "${packages[@]}" | sort -u) || true
    mapfile -t missing < <(missing_needs "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    local names=() name package
    packages=()
    for need in "${missing[@]}"; do
        IFS=: read -r _ name package <<<"$need"
        names+=("$name")
        packages+=("$package")
    done
    echo "!!!! MISSING: ${names[*]} (Debian: ${packages[*]}); install them and run again" >&2
    return 1
}


jobs=$(nproc 2>/dev/null || echo 2)

# Sourced by another script: provide the lists and functions only.
[ "${BASH_SOURCE[0]}" = "$0" ] || return 0

case "${1:-}" in
    demo)
        provide "${BUILD_NEEDS[@]}" "${TOOL_NEEDS[@]}"
        cmake --preset release -DMIVORA_BUILD_TOOLS=ON
        cmake --build --preset release -j "$jobs" --target mivora
        ./build/release/tools/mivora/mivora demo --out build/demo
        ;;
    test)
        provide "${BUILD_NEEDS[@]}" "${TEST_NEEDS[@]}" "${MATH_TEST_NEEDS[@]}"
        # The tool's and the benchmarks' packages too if they can be had;
        # without them their parts are left out (the configure says so).
        provide "${TOOL_NEEDS[@]}" "${BENCH_NEEDS[@]}" "${PYTHON_NEEDS[@]}" || true
        cmake --preset release -DMIVORA_BUILD_TESTS=ON
        cmake --build --preset release -j "$jobs"
        ctest --preset release -j "$jobs"
        ;;
    *)
        echo "usage: scripts/quickstart.sh demo|test" >&2
        exit 2
        ;;
esac
