#!/usr/bin/env bash
# Builds the library and the kelcc tool, then runs the demo on the built-in
# test picture; the pictures land in ./demo-out.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j"$(nproc)" --target kelcc
build/tools/kelcc demo demo-out
