#!/usr/bin/env bash
# Builds the linux-fuzz preset and fuzzes one target, or every one, for the given time (default
# 300 s each), growing its corpus in build/linux-fuzz/corpus/<target>/ from run to run, and prints
# each target's executions and coverage.
#   scripts/fuzz.sh [TARGET] [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
target=${1:-all}
seconds=${2:-300}
./scripts/build.sh linux-fuzz
if [ "$target" = all ]; then
  targets=(fuzz/*_fuzz.cpp)
  targets=("${targets[@]##*/}")
  targets=("${targets[@]%.cpp}")
else
  targets=("$target")
fi
status=0
summaries=()
for name in "${targets[@]}"; do
  echo "=== $name, ${seconds} s ==="
  summary=$(bash fuzz/run_fuzzer.sh "build/linux-fuzz/bin/$name" "fuzz/corpus/$name" \
    "build/linux-fuzz/corpus/$name" "$seconds") || status=1
  echo "$summary"
  summaries+=("$(tail -n 1 <<<"$summary")")
done
printf '%s\n' "${summaries[@]}"
exit $status
