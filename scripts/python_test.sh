#!/usr/bin/env bash
# Builds the Python module `kelcc` and runs its tests. Everything runs under
# the system interpreter /usr/bin/python3: Debian's python3-pybind11,
# python3-numpy, python3-pytest and python3-skimage serve that one, not a
# python3 from pyenv or a virtualenv that may come first on PATH.
#
# Reuses the build tree `build` (or $KELCC_BUILD_DIR) when scripts/test.sh has
# configured it, and configures one otherwise; builds only the library and
# the module.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh python
build=${KELCC_BUILD_DIR:-build}
if [[ -f "$build/CMakeCache.txt" ]]; then
  cmake -S . -B "$build" -DKELCC_BUILD_PYTHON=ON -DKELCC_PYTHON=/usr/bin/python3 >/dev/null
else
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DKELCC_BUILD_PYTHON=ON -DKELCC_PYTHON=/usr/bin/python3 >/dev/null
fi
cmake --build "$build" -j"$(nproc)" --target kelcc_python
PYTHONPATH="$(cd "$build" && pwd)/python${PYTHONPATH:+:$PYTHONPATH}" /usr/bin/python3 -m pytest python/tests -q -rs
