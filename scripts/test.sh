#!/usr/bin/env bash
# Sets up this machine, compiles everything with the warnings that model MSVC's
# (scripts/msvc_warnings.sh), builds the linux, linux-sanitize, linux-tsan, linux-fuzz and windows
# builds, and runs every test (the windows build's under Wine; linux-fuzz's fuzz each target for
# 30 s).
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh

# One Wine prefix for the run, made before the tests start so that parallel tests do not race
# to create it.
export QUORVEL_WINEPREFIX="$PWD/build/wineprefix"
mkdir -p build
cmake/wine-run.sh wineboot --init >/dev/null 2>&1 || true

status=0
echo "=== linux-msvc-warnings ==="
./scripts/msvc_warnings.sh || status=1
for preset in linux linux-sanitize linux-tsan linux-fuzz windows; do
  echo "=== $preset ==="
  ./scripts/build.sh "$preset"
  ctest --preset "$preset" --parallel 2 --timeout 900 || status=1
done
exit $status
