#!/usr/bin/env bash
# Fuzzes the configuration reader and then the rig reader for SECONDS each (default 600), from
# the corpus earlier runs left in build/linux-fuzz/fuzz/corpus, and prints how many inputs each
# ran. A crashing input is saved in build/linux-fuzz/fuzz/artifacts and fails the run.
#   ./scripts/run-fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh
seconds=${1:-600}
[[ "$seconds" =~ ^[0-9]+$ ]] || { echo "usage: $0 [SECONDS]" >&2; exit 2; }

ensure_packages cmake ninja-build clang libclang-rt-14-dev libturbojpeg0-dev libcli11-dev libstb-dev
cmake --preset linux-fuzz >/dev/null
cmake --build --preset linux-fuzz

build=build/linux-fuzz
declare -A seeds=([config_fuzzer]=fuzz/seeds/config [rig_fuzzer]=sim/rigs)
total=0
for fuzzer in config_fuzzer rig_fuzzer; do
    mkdir -p "$build/fuzz/corpus/$fuzzer" "$build/fuzz/artifacts"
    log="$build/fuzz/$fuzzer.log"
    echo "=== $fuzzer: $seconds s"
    if ! "$build/bin/$fuzzer" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
        -artifact_prefix="$build/fuzz/artifacts/$fuzzer-" \
        "$build/fuzz/corpus/$fuzzer" "${seeds[$fuzzer]}" >"$log" 2>&1; then
        tail -40 "$log"
        echo "=== $fuzzer found a crash: the input is in $build/fuzz/artifacts" >&2
        exit 1
    fi
    runs=$(grep -o 'number_of_executed_units: [0-9]*' "$log" | grep -o '[0-9]*$')
    echo "$fuzzer: $runs inputs, no crash"
    total=$((total + runs))
done
echo "=== $total inputs in all, no crash"
