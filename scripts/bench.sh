#!/usr/bin/env bash
# Runs the benchmarks beside the peer libraries and memcpy, one thread.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh bench
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DKELCC_BUILD_BENCH=ON >/dev/null
cmake --build build -j"$(nproc)" --target kelcc_bench
OMP_NUM_THREADS=${OMP_NUM_THREADS:-1} build/bench/kelcc_bench --benchmark_min_time=0.2 "$@"
