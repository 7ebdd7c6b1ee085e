#!/usr/bin/env bash
# Configures and builds the given presets (default: linux and windows).
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[ "${#presets[@]}" -gt 0 ] || presets=(linux windows)
for preset in "${presets[@]}"; do
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
done
