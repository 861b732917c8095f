#!/usr/bin/env bash
# Runs clang-tidy over the source files that differ from the last commit; with ALL=1 over all of them.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset dev >/dev/null
if [[ ${ALL:-} ]]; then
    git ls-files -z '*.cpp'
else
    git diff --name-only -z --diff-filter=d HEAD -- '*.cpp'
    git ls-files -z --others --exclude-standard '*.cpp'
fi | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy -p build/dev --quiet
