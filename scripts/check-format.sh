#!/usr/bin/env bash
# Fails when a C++ file differs from .clang-format; `clang-format -i FILE` fixes it.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
