#!/usr/bin/env bash
# Checks that an outside project can use Mivora every supported way.
#
# From a clean temporary directory: builds the library alone (no tests,
# benchmarks, tools or examples) and installs it into a fresh prefix, then
# builds and runs the program in tests/consumer/ against it
#   1. with find_package(Mivora CONFIG) and CMAKE_PREFIX_PATH,
#   2. with a plain compiler command from `pkg-config --cflags --libs mivora`,
#   3. with add_subdirectory of this source tree (only the library may build),
# for the static library, and 1 and 2 again for the shared library, where the
# exported symbols, the SONAME and the library the program loads are checked.
#   scripts/check_consumers.sh            run every check
#   KEEP_TMP=1 scripts/check_consumers.sh keep the temporary directory
set -euo pipefail
src="$(cd "$(dirname "$0")/.." && pwd)"
consumer="$src/tests/consumer"
CXX="${CXX:-c++}"

for tool in cmake pkg-config nm readelf ldd "$CXX"; do
    command -v "$tool" >/dev/null || { echo "check_consumers: '$tool' not found" >&2; exit 1; }
done

work="$(mktemp -d "${TMPDIR:-/tmp}/mivora-consumers.XXXXXX")"
if [ -z "${KEEP_TMP:-}" ]; then
    trap 'rm -rf "$work"' EXIT
else
    echo "check_consumers: keeping $work"
fi

step() { printf '\n== %s\n' "$*"; }
fail() { echo "check_consumers: FAIL: $*" >&2; exit 1; }

# Quiet unless something goes wrong; then show what the command printed.
quiet() {
    local log="$work/last.log"
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        fail "command failed: $*"
    fi
}

library_off=(-DMIVORA_BUILD_TESTS=OFF -DMIVORA_BUILD_BENCHMARKS=OFF
             -DMIVORA_BUILD_TOOLS=OFF -DMIVORA_BUILD_EXAMPLES=OFF -DMIVORA_BUILD_PYTHON=OFF)

# install_library NAME SHARED(ON|OFF): build and install into $work/NAME/prefix.
install_library() {
    local dir="$work/$1"
    quiet cmake -S "$src" -B "$dir/build" -DCMAKE_BUILD_TYPE=Release \
        -DBUILD_SHARED_LIBS="$2" -DCMAKE_INSTALL_PREFIX="$dir/prefix" "${library_off[@]}"
    quiet cmake --build "$dir/build" -j2
    quiet cmake --install "$dir/build"
    [ -f "$dir/prefix/include/mivora/IirProcess.h" ] || fail "header not installed"
    [ -f "$dir/prefix/lib/cmake/Mivora/MivoraConfig.cmake" ] || fail "MivoraConfig.cmake not installed"
    [ -f "$dir/prefix/lib/cmake/Mivora/MivoraConfigVersion.cmake" ] || fail "MivoraConfigVersion.cmake not installed"
    [ -f "$dir/prefix/lib/pkgconfig/mivora.pc" ] || fail "mivora.pc not installed"
}

# run_consumer EXE: run it, show its report, fail on a non-zero exit.
run_consumer() {
    "$1" || fail "$1 exited with $?"
}

# via_find_package NAME: consumer built with find_package against NAME's prefix.
via_find_package() {
    local dir="$work/$1"
    step "$1: find_package(Mivora CONFIG)"
    quiet cmake -S "$consumer" -B "$dir/consumer-package" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_PREFIX_PATH="$dir/prefix" -DMIVORA_CONSUMER_MODE=package
    quiet cmake --build "$dir/consumer-package"
    run_consumer "$dir/consumer-package/mivora_consumer"
}

# via_pkg_config NAME [EXTRA LDFLAGS...]: consumer built by one compiler command.
via_pkg_config() {
    local dir="$work/$1"; shift
    step "$(basename "$dir"): $CXX \$(pkg-config --cflags --libs mivora)"
    local flags
    flags="$(PKG_CONFIG_PATH="$dir/prefix/lib/pkgconfig" pkg-config --cflags --libs mivora)" \
        || fail "pkg-config cannot find mivora"
    echo "pkg-config: $flags"
    # shellcheck disable=SC2086  # the flags are meant to split into words
    quiet "$CXX" -std=c++17 -O2 -Wall -Wextra -Wpedantic -Werror \
        "$consumer/main.cpp" -o "$dir/consumer-pc" $flags "$@"
    run_consumer "$dir/consumer-pc"
}

# via_subdirectory: consumer with add_subdirectory of the source tree. Finding
# GoogleTest or Google Benchmark is disabled, so configuring fails if the
# subproject reaches for them; afterwards the only Mivora target may be the
# library.
via_subdirectory() {
    local dir="$work/subdirectory"
    step "add_subdirectory(mivora)"
    quiet cmake -S "$consumer" -B "$dir" -DCMAKE_BUILD_TYPE=Release \
        -DMIVORA_CONSUMER_MODE=subdirectory -DMIVORA_SOURCE_DIR="$src" \
        -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON
    quiet cmake --build "$dir" -j2
    local extra
    extra="$(cmake --build "$dir" --target help | sed -n 's/^\.\.\. //p' | grep -i mivora \
             | grep -v -x -e mivora_iir -e mivora_consumer || true)"
    [ -z "$extra" ] || fail "add_subdirectory built more than the library: $extra"
    run_consumer "$dir/mivora_consumer"
}

# check_shared_symbols NAME: SONAME libmivora.so.<major>; only public class
# members exported.
check_shared_symbols() {
    local lib="$work/$1/prefix/lib/libmivora.so"
    step "$1: exported symbols of $(basename "$(readlink -f "$lib")")"
    [ -L "$lib" ] || fail "no libmivora.so link in the prefix"
    local soname
    soname="$(readelf -d "$lib" | sed -n 's/.*Library soname: \[\(.*\)\].*/\1/p')"
    [[ "$soname" =~ ^libmivora\.so\.[0-9]+$ ]] || fail "unexpected SONAME '$soname'"
    echo "SONAME $soname"
    local symbols foreign
    symbols="$(nm -D --defined-only --demangle "$lib" | awk '{ $1 = ""; $2 = ""; sub(/^ +/, ""); print }')"
    [ -n "$symbols" ] || fail "the shared library exports nothing"
    # Only members of the public classes, and none of their private ones.
    local classes=(IirProcess IirChannels) class name private=()
    foreign="$(grep -v -E "^Mivora::($(IFS='|'; echo "${classes[*]}"))::" <<<"$symbols" || true)"
    [ -z "$foreign" ] || fail "symbols other than public class members exported: $foreign"
    for class in "${classes[@]}"; do
        for name in $(sed -n '/^private:/,/^};/p' "$src/include/mivora/$class.h" \
                      | grep -oE '[A-Za-z_][A-Za-z0-9_]*\(' | tr -d '(' | sort -u); do
            grep -q "^Mivora::$class::$name(" <<<"$symbols" && private+=("$class::$name")
        done
    done
    [ ${#private[@]} -eq 0 ] || fail "private members exported: ${private[*]}"
    echo "$(wc -l <<<"$symbols") symbols, all public members of ${classes[*]}"
}

# check_loads_shared NAME EXE: EXE loads the shared library from NAME's prefix.
check_loads_shared() {
    local want="$work/$1/prefix/lib/" got
    got="$(ldd "$2" | awk '/libmivora\.so/ { print $3 }')"
    [[ "$got" == "$want"* ]] || fail "$2 loads '${got:-no libmivora}', not the one in $want"
    echo "$(basename "$2") loads $got"
}

start=$SECONDS

step "static library: build and install"
install_library static OFF
[ -f "$work/static/prefix/lib/libmivora.a" ] || fail "libmivora.a not installed"
[ ! -e "$work/static/prefix/lib/libmivora.so" ] || fail "static build installed a shared library"
via_find_package static
via_pkg_config static
via_subdirectory

step "shared library: build and install"
install_library shared ON
check_shared_symbols shared
via_find_package shared
check_loads_shared shared "$work/shared/consumer-package/mivora_consumer"
via_pkg_config shared -Wl,-rpath,"$work/shared/prefix/lib"
check_loads_shared shared "$work/shared/consumer-pc"

printf '\ncheck_consumers: all ways work (%ss)\n' "$((SECONDS - start))"
