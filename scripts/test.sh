#!/usr/bin/env bash
# Builds everything (library, tool, tests, benchmarks) and runs the test
# suite; then the same suite under AddressSanitizer and UBSan with a short
# fuzz run over every member, and the threaded tests under ThreadSanitizer
# (clang with its OpenMP runtime, which ThreadSanitizer understands through
# the archer tool).
#
# A long fuzz run: see README.md (Building by hand).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh bench sanitizers python
jobs=$(nproc)
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DKELCC_BUILD_BENCH=ON >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build -j"$jobs" --output-on-failure
# The Python module on the same tree, under the system interpreter.
scripts/python_test.sh

# AddressSanitizer and UBSan, built with clang so that the same build also
# gives the libFuzzer target; its short run from the kept corpus is a test.
CC=clang CXX=clang++ cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELCC_SANITIZE=ON -DKELCC_FUZZ=ON \
  -DKELCC_BUILD_TOOLS=OFF >/dev/null
cmake --build build-asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp" UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build-asan -j"$jobs" --output-on-failure

CC=clang CXX=clang++ cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELCC_SANITIZE_THREAD=ON \
  -DKELCC_BUILD_TOOLS=OFF >/dev/null
cmake --build build-tsan -j"$jobs"
archer=$(clang -print-file-name=libarcher.so)
[[ -f "$archer" ]] || archer=$(ls /usr/lib/llvm-*/lib/libarcher.so | head -1)
OMP_TOOL_LIBRARIES="$archer" TSAN_OPTIONS="halt_on_error=1 ignore_noninstrumented_modules=1" \
  ctest --test-dir build-tsan -j"$jobs" --output-on-failure -R 'Thread|Parallel|Callers|Core'
