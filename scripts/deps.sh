#!/usr/bin/env bash
# Installs what the build needs, where it is missing. Pass "bench" to add the
# peer libraries the benchmarks compare against.
set -euo pipefail
pkgs=(build-essential cmake pkg-config libgtest-dev libpng-dev)
if [[ "${1:-}" == bench ]]; then
  pkgs+=(libbenchmark-dev libopencv-dev libyuv-dev)
fi
missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if ((${#missing[@]})); then
  SUDO=""
  [[ $(id -u) -ne 0 ]] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}"
fi
