#!/usr/bin/env bash
# Installs what the build needs, where it is missing. Extra words add groups:
# "bench" the peer libraries the benchmarks compare against (and matplotlib
# for the chart of scripts/bench_table.py), "sanitizers"
# clang with its OpenMP runtime and sanitizer/fuzzer runtimes, "python" the
# system interpreter's pybind11, numpy, pytest and scikit-image (photographs).
set -euo pipefail
pkgs=(build-essential cmake pkg-config libgtest-dev libpng-dev)
for group in "$@"; do
  case "$group" in
    bench) pkgs+=(libbenchmark-dev libopencv-dev libyuv-dev libswscale-dev libavutil-dev libraw-dev python3-matplotlib) ;;
    sanitizers) pkgs+=(clang libomp-dev libclang-rt-14-dev) ;;
    python) pkgs+=(python3-dev python3-pybind11 python3-numpy python3-pytest python3-skimage python3-imageio) ;;
  esac
done
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
