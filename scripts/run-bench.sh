#!/usr/bin/env bash
# Builds and runs the frame path's benchmark on a Debian 12 machine, installing what it needs
# (Google Benchmark, and libyuv and OpenCV to compare with): the frame routines against memcpy,
# libyuv and OpenCV, then getCurrentFrame through the facade on simulator frames, printed as
# tables of ratios at the end. Arguments go to the benchmark (--benchmark_filter=REGEX,
# --benchmark_repetitions=N, ...). Nothing else should run meanwhile: other work skews the times.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/ensure-packages.sh

ensure_packages cmake ninja-build g++ libcli11-dev libstb-dev libturbojpeg0-dev zlib1g-dev \
    libbenchmark-dev libyuv-dev libopencv-core-dev

echo "=== building the benchmark (preset bench)"
cmake --preset bench >/dev/null
cmake --build --preset bench --parallel "${TELVARRA_BUILD_JOBS:-$(nproc)}"
# The cameras write their configuration files into the current folder.
cd build/bench
LD_LIBRARY_PATH="$PWD/lib" ./bin/frame_path_bench "$@"
