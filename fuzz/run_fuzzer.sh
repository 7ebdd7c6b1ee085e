#!/usr/bin/env bash
# Runs one fuzz target for a bounded time and prints its figures.
#   run_fuzzer.sh FUZZER SEEDS CORPUS SECONDS [--fresh]
# The target reads the committed SEEDS folder and grows CORPUS, the only folder it writes to
# (crash inputs land beside it); --fresh empties CORPUS first. Exits with the fuzzer's status.
set -uo pipefail
fuzzer=$1 seeds=$2 corpus=$3 seconds=$4
[ "${5:-}" = "--fresh" ] && rm -rf "$corpus"
mkdir -p "$corpus"
here=$(cd "$(dirname "$0")" && pwd)
name=$(basename "$fuzzer")
dictionary="$here/$name.dict"
options=(-max_total_time="$seconds" -print_final_stats=1 -timeout=20
         -artifact_prefix="$(dirname "$corpus")/$name-")
[ -f "$dictionary" ] && options+=(-dict="$dictionary")
# The plug-in keeps its file contexts for the life of the process, on purpose.
export LSAN_OPTIONS="suppressions=$here/../cmake/lsan.supp:print_suppressions=0"
log="$(dirname "$corpus")/$name.log"
# Standard output carries the plug-in's stream-logger lines only; libFuzzer reports on stderr.
"$fuzzer" "${options[@]}" -close_fd_mask=1 "$corpus" "$seeds" 2>"$log"
status=$?
[ "$status" -eq 0 ] || tail -n 60 "$log"
executions=$(grep -o 'stat::number_of_executed_units: [0-9]*' "$log" | grep -o '[0-9]*$')
done_line=$(grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -n 1)
cov=$(grep -oE 'cov: [0-9]+' <<<"$done_line" | grep -oE '[0-9]+')
ft=$(grep -oE 'ft: [0-9]+' <<<"$done_line" | grep -oE '[0-9]+')
echo "$name: executions ${executions:-?} cov ${cov:-?} ft ${ft:-?} status $status (log: $log)"
exit $status
