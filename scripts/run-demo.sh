#!/usr/bin/env bash
# Sets up and builds TendMark, then starts it on a demo database.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build
demo="${TENDMARK_DEMO:-$HOME/tendmark-demo.tmdb}"
if [ ! -f "$demo" ]; then
    build/app/tendmark-cli demo "$demo" --clients 2000 --seed 1
fi
exec build/app/tendmark "$demo"
