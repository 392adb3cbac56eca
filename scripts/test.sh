#!/usr/bin/env bash
# Sets up and builds TendMark with warnings as errors, then runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build-test -DTENDMARK_WERROR=ON -DCMAKE_BUILD_TYPE=Debug
scripts/check-format.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build-test --output-on-failure -j"$(nproc)"
