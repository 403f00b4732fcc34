#!/usr/bin/env bash
# Builds the HTML API reference of include/kelcc.h and include/kelcore.h with
# Doxygen (Debian's package, installed when missing) into build/docs/html.
# Not part of the test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
if ! command -v doxygen >/dev/null; then
  SUDO=""
  [[ $(id -u) -ne 0 ]] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq doxygen
fi
mkdir -p build/docs
doxygen docs/Doxyfile
echo "API reference: build/docs/html/index.html"
