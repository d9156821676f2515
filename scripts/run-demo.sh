#!/usr/bin/env bash
# The demo on a Debian 12 machine without a camera: installs what is missing, builds the telvarra
# program, the library and the SDK simulators (linux preset, not the tests), then lists the
# virtual cameras of sim/rigs/default.rig and saves a few frames of each as PNG files.
# TELVARRA_DEMO_OUTPUT names the folder for the pictures (default build/demo).
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
source scripts/ensure-packages.sh

# The test packages too: configuring the preset looks for GoogleTest even when no test is built.
ensure_packages cmake ninja-build g++ libcli11-dev libstb-dev libturbojpeg0-dev zlib1g-dev googletest \
    libgtest-dev libgmock-dev

build=build/linux
log=build/demo-build.log
mkdir -p build
echo "=== building telvarra, the library and the SDK simulators (the first time takes a minute or two)"
if ! { cmake --preset linux && cmake --build --preset linux --target telvarra_demo; } >"$log" 2>&1; then
    tail -n 40 "$log"
    echo "=== build failed; the whole log is in $log"
    exit 1
fi

# The simulators are found where a vendor SDK would be: through the library search path.
export TELVARRA_SIM_RIG="$root/sim/rigs/default.rig"
export LD_LIBRARY_PATH="$root/$build/lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
telvarra="$root/$build/bin/telvarra"

output="${TELVARRA_DEMO_OUTPUT:-$root/build/demo}"
rm -rf "$output"
mkdir -p "$output"
# The library keeps a camera_<id>.cfg per opened camera in the current folder: keep them here.
cd "$output"

echo
echo "\$ telvarra list"
"$telvarra" list || true
echo

# Every camera the list shows: the rows between the header and the first blank line (the Canon
# driver prints each body it finds before the table).
rows() { "$telvarra" list | awk '$1 == "ID" && $2 == "MAKE" { table = 1; next } table && NF == 0 { exit } table'; }
cameras=$(rows | awk '{ print $1 }')
if [ -z "$cameras" ]; then
    echo "=== no cameras: is $TELVARRA_SIM_RIG there?"
    exit 1
fi

status=0
first=""
for id in $cameras; do
    echo "\$ telvarra grab $id -n 3 -o ."
    "$telvarra" grab "$id" -n 3 -o . || status=1
    first=${first:-$id}
done
# Canon bodies take stills too: their shutter button pressed from here.
for id in $(rows | awk '$2 == "Canon" { print $1 }'); do
    echo "\$ telvarra still $id -o ."
    "$telvarra" still "$id" -o . || status=1
done
echo "\$ telvarra grab $first --mirror h --rotate 1 -o turned"
"$telvarra" grab "$first" --mirror h --rotate 1 -o turned || status=1

echo
echo "=== the pictures are in $output:"
find . -name '*.png' | sort | sed 's|^\./|  |'
exit $status
