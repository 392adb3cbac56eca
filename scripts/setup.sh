#!/usr/bin/env bash
# Installs what TendMark needs on Debian 12 (when missing) and builds it.
# Usage: scripts/setup.sh [build-folder] [extra cmake options...]
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(build-essential cmake ninja-build ccache pkg-config clang-format
          qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libqt6svg6 libqt6charts6-dev
          qt6-image-formats-plugins qt6-l10n-tools libsqlite3-dev libxlsxwriter-dev sqlite3 poppler-utils adwaita-icon-theme libgl-dev
          fonts-dejavu-core fonts-liberation xvfb xauth mdbtools-dev libmdb3)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
fi

build="${1:-build}"
shift || true
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
