#!/usr/bin/env bash
# Configures and builds: build.sh PRESET [TARGET...]. Without a target, everything.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" && exit 1; }
if (($#)); then
    cmake --build --preset "$preset" --target "$@"
else
    cmake --build --preset "$preset"
fi
