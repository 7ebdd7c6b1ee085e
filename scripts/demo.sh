#!/usr/bin/env bash
# Sets up this machine, builds the plug-in, and has the host simulator drive it: natively, then
# the shipped .prm under Wine. Each run ends with the plug-in's own log.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
export QUORVEL_WINEPREFIX="$PWD/build/wineprefix"
./scripts/build.sh linux windows >/dev/null

# On Linux the plug-in gets a profile folder of the demo's own, laid out as on Windows.
profile="$PWD/build/demo-profile"
mkdir -p "$profile/AppData/Local"

echo "=== linux build ==="
USERPROFILE="$profile" build/linux/bin/qvo-host start-up
USERPROFILE="$profile" build/linux/bin/qvo-host info samples/*.qvo
echo "--- end of Plugin.log ---"
tail -n 3 "$profile/AppData/Local/quorvel/Adobe/Plugin.log"

echo
echo "=== windows build: QuorvelOmniImporter.prm under Wine ==="
cmake/wine-run.sh build/windows/bin/qvo-host.exe start-up
cmake/wine-run.sh build/windows/bin/qvo-host.exe info samples/*.qvo
echo "--- end of Plugin.log ---"
tail -n 3 "$QUORVEL_WINEPREFIX/drive_c/users/$(whoami)/AppData/Local/quorvel/Adobe/Plugin.log"
