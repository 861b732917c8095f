#!/usr/bin/env bash
# Lays out every source file as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z --cached --others --exclude-standard '*.cpp' '*.h' | xargs -0 -r clang-format -i
