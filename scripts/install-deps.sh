#!/usr/bin/env bash
# Installs every Debian package KyGraph needs to build, test and run. Idempotent and quiet.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive

pkgs=(
  cmake ninja-build g++ pkg-config clang libclang-rt-14-dev
  libcairo2-dev libpango1.0-dev libisal-dev fonts-noto-cjk
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  nlohmann-json3-dev libcli11-dev libcpp-httplib-dev
  poppler-utils libxml2-utils ccache python3 valgrind
  chromium
  g++-mingw-w64-x86-64 wine wine64 xvfb xauth
)

# Node.js drives the viewer's browser tests. An image may carry its own build of node with npm
# inside; Debian's npm package would fight it, so both are only added where node is absent.
if ! command -v node >/dev/null 2>&1 || ! command -v npm >/dev/null 2>&1; then
  pkgs+=(nodejs npm)
fi

missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO=sudo
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
