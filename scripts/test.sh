#!/usr/bin/env bash
# Sets up this machine, compiles everything with the warnings that model MSVC's
# (scripts/msvc_warnings.sh), builds the linux, windows, linux-sanitize, linux-tsan and linux-fuzz
# builds, and runs every test (the windows build's under Wine; linux-fuzz's fuzz each target).
# Each build's tests run while the next build compiles: the tests mostly wait (on the link's
# passes, on Wine), the compiler mostly computes. Logs: build/test-logs/PRESET.log.
#   test.sh --quick    the linux build only, built incrementally, with a 10-second stress run
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" = "--quick" ]; then
  ./scripts/build.sh linux
  QUORVEL_STRESS_SECONDS=10 exec ctest --preset linux --parallel 4 --timeout 900
fi

./scripts/setup.sh

# One Wine prefix for the run, made before the tests start so that parallel tests do not race
# to create it.
export QUORVEL_WINEPREFIX="$PWD/build/wineprefix"
logs=build/test-logs
rm -rf "$logs"
mkdir -p "$logs"
cmake/wine-run.sh wineboot --init >/dev/null 2>&1 || true

status=0
tests_running=""

# Waits for a job started in the background, prints whether it passed and its log, and keeps its
# result.
report_job() {
  local pid=$1 log=$2 title=$3
  if wait "$pid"; then
    echo "=== $title passed ==="
  else
    status=1
    echo "=== $title FAILED ==="
  fi
  cat "$logs/$log.log"
}

# The tests started last, if any.
finish_tests() {
  [ -n "$tests_running" ] || return 0
  report_job "$tests_pid" "$tests_running" "$tests_running: tests"
  tests_running=""
}

# The warning model only compiles, and at the lowest priority: it takes the processor time that the
# builds leave (their last files and links, the tests' waits) and what it still needs at the end.
nice -n 19 ./scripts/msvc_warnings.sh >"$logs/linux-msvc-warnings.log" 2>&1 &
warnings_pid=$!

for preset in linux windows linux-sanitize linux-tsan linux-fuzz; do
  echo "=== $preset: build ==="
  build_status=0
  ./scripts/build.sh "$preset" || build_status=$?
  finish_tests
  if [ "$build_status" -ne 0 ]; then
    status=1
    continue
  fi
  ctest --preset "$preset" --parallel 4 --timeout 900 >"$logs/$preset.log" 2>&1 &
  tests_pid=$!
  tests_running=$preset
done
finish_tests
report_job "$warnings_pid" linux-msvc-warnings "linux-msvc-warnings:"
exit $status
