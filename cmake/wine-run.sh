#!/usr/bin/env bash
# Runs one Windows test executable under Wine, quietly, in the build's own Wine prefix.
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX="${QUORVEL_WINEPREFIX:-${WINEPREFIX:-$HOME/.wine}}"
exec wine "$@"
