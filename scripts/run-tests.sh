#!/usr/bin/env bash
# Builds and runs the whole test suite on a Debian 12 machine, installing what it needs:
#   linux           the shared library and its tests
#   linux-sanitize  the same under the address and undefined-behaviour sanitizers
#   linux-tsan      the concurrency tests alone, under ThreadSanitizer
#   linux-fuzz      the configuration and rig readers fuzzed (clang's libFuzzer) for 45 s each
#   windows         the DLL cross-built with mingw-w64, its tests run under Wine
# TELVARRA_LEGS="linux windows" runs a subset.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh

ensure_packages cmake ninja-build g++ binutils googletest libgtest-dev libgmock-dev \
    g++-mingw-w64-x86-64-posix wine64 libcli11-dev libstb-dev libturbojpeg0-dev zlib1g-dev \
    libz-mingw-w64-dev \
    python3-venv python3-pip python3-numpy python3-pytest pkg-config clang libclang-rt-14-dev

jobs=$(nproc)
summary=()

start_wine() {
    export WINEPREFIX="$PWD/build/windows/wineprefix" WINEDEBUG=-all
    mkdir -p "$WINEPREFIX"
    # One persistent server for the whole run, started before any program talks to the prefix:
    # a server that a program starts exits a few seconds after its last client, and a program
    # connecting while it exits dies with "Connection reset by peer".
    wineserver -k >/dev/null 2>&1 && wineserver -w || true
    wineserver -p
    wineboot -i >/dev/null 2>&1 || true
    trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
}

for leg in ${TELVARRA_LEGS:-linux linux-sanitize linux-tsan linux-fuzz windows}; do
    echo "=== $leg: configure and build"
    cmake --preset "$leg" >/dev/null
    cmake --build --preset "$leg" --parallel "$jobs"
    [ "$leg" = windows ] && start_wine
    echo "=== $leg: test"
    log="build/$leg/test-output.txt"
    retry=()
    # Under Wine a test program now and then dies while starting (no output, a few hundredths of
    # a second): the Windows leg runs a failed test once more, so only a test that fails twice
    # is red.
    [ "$leg" = windows ] && retry=(--repeat until-pass:2)
    if ! ctest --preset "$leg" --parallel "$jobs" "${retry[@]}" 2>&1 | tee "$log"; then
        echo "=== $leg: FAILED"
        exit 1
    fi
    summary+=("$leg: $(grep -E 'tests passed' "$log")")
done

echo "=== all legs passed"
printf '  %s\n' "${summary[@]}"
