#!/usr/bin/env bash
# Installs, once, the Debian packages that both builds, the tests, the benchmarks, the demo and
# signing need.
set -euo pipefail

packages=(
  build-essential cmake ninja-build clang-format clang libclang-rt-14-dev jq valgrind
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  rapidjson-dev libasio-dev libstb-dev
  g++-mingw-w64-x86-64-posix mingw-w64-tools
  wine wine64 wixl msitools
  osslsigncode openssl libengine-pkcs11-openssl
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ "${#missing[@]}" -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
