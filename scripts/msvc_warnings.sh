#!/usr/bin/env bash
# Compiles every source file of src/, standin_stitcher/, tools/ and tests/ with clang and the
# warnings that model MSVC's /W4 (the linux-msvc-warnings preset), warnings as errors, without
# linking or running anything; then checks that the CRT calls MSVC deprecates are allowed in its
# build. Catches most of what would stop the windows-msvc build before it is run on Windows.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset linux-msvc-warnings >/dev/null
commands=build/linux-msvc-warnings/compile_commands.json
# One command per line, each run in its own folder, -fsyntax-only instead of writing an object.
jq -r --arg root "$PWD/" '.[]
  | select(.file | startswith($root + "src/") or startswith($root + "standin_stitcher/")
           or startswith($root + "tools/") or startswith($root + "tests/"))
  | "cd \(.directory | @sh) && \(.command) -fsyntax-only"' "$commands" |
  xargs -d '\n' -P "$(nproc)" -I{} bash -c '{}'
cmake -P cmake/check_crt_deprecations.cmake
