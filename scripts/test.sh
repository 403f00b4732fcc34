#!/usr/bin/env bash
# Builds everything (library, tool, tests, benchmarks) and runs the test
# suite, then the same suite under AddressSanitizer and UBSan.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh bench
jobs=$(nproc)
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DKELCC_BUILD_BENCH=ON >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build -j"$jobs" --output-on-failure
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELCC_SANITIZE=ON -DKELCC_BUILD_TOOLS=OFF >/dev/null
cmake --build build-asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --test-dir build-asan -j"$jobs" --output-on-failure
