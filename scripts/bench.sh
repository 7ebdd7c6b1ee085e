#!/usr/bin/env bash
# Measures every cost the plug-in adds, each as the ratio of two figures of one run, interleaved
# and repeated (medians), or where a few microseconds sit on top of milliseconds, as the difference
# of two instruction counts taken once under callgrind; writes build/bench/results.json and prints
# the table. Exits 1 when a goal is not met. --quick takes about two minutes instead of about eight.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
./scripts/build.sh linux >/dev/null

repetitions=9
min_time=0.5
if [ "${1:-}" = "--quick" ]; then
  repetitions=5
  min_time=0.1
fi

mkdir -p build/bench
# Standard output holds the command handler's own stream-logger lines; the figures go to the file.
# The counted benchmarks run only under callgrind, below.
build/linux/bin/plugin_costs_bench --benchmark_filter=-Instructions \
  --benchmark_repetitions="$repetitions" --benchmark_min_time="$min_time" \
  --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
  --benchmark_out=build/bench/run.json --benchmark_out_format=json >/dev/null

# Instructions are the same for the same binary and inputs whatever else the machine does. Only
# the counted stretches collect, in the thread that runs them: the plug-in's command thread,
# which wakes on its own clock, adds nothing.
rm -rf build/bench/callgrind
mkdir -p build/bench/callgrind
valgrind --tool=callgrind --collect-atstart=no \
  --callgrind-out-file=build/bench/callgrind/callgrind.out \
  build/linux/bin/plugin_costs_bench --benchmark_filter=Instructions \
  >/dev/null 2>build/bench/callgrind/valgrind.log
# One line per counted stretch: "LABEL/requests:N TOTAL".
awk '/^desc: Trigger: Client Request: / { name = $5 } /^totals: / && name { print name, $2 }' \
  build/bench/callgrind/callgrind.out.* >build/bench/instructions.txt

build/linux/bin/bench_results build/bench/run.json build/bench/instructions.txt \
  build/bench/results.json
