#!/usr/bin/env bash
# Measures every cost the plug-in adds, each as the ratio of two figures of one run, interleaved
# and repeated (medians); writes build/bench/results.json and prints the table. Exits 1 when a
# goal is not met. --quick takes about two minutes instead of about eight.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
./scripts/build.sh linux >/dev/null

repetitions=9
min_time=0.5
if [ "${1:-}" = "--quick" ]; then
  repetitions=3
  min_time=0.1
fi

mkdir -p build/bench
# Standard output holds the command handler's own stream-logger lines; the figures go to the file.
build/linux/bin/plugin_costs_bench \
  --benchmark_repetitions="$repetitions" --benchmark_min_time="$min_time" \
  --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
  --benchmark_out=build/bench/run.json --benchmark_out_format=json >/dev/null
build/linux/bin/bench_results build/bench/run.json build/bench/results.json
