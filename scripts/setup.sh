#!/usr/bin/env bash
# Installs the Debian packages the build needs. Idempotent: only what is
# missing is installed, and a failure names the packages that did not install.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  libxml2-dev libxml2-utils libicu-dev libboost-log-dev
  libfast-float-dev libcli11-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev
  libsqlite3-dev
  zlib1g-dev libbz2-dev liblzma-dev libzstd-dev gzip bzip2 xz-utils zstd
  python3-dev python3-venv python3-pip python3-setuptools python3-wheel python3-pybind11
  python3-numpy python3-pandas python3-dask python3-distributed python3-pytest
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all build dependencies are installed"
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then sudo_cmd=(sudo); else
    echo "setup: not root and no sudo; install these packages first: ${missing[*]}" >&2
    exit 1
  fi
fi
export DEBIAN_FRONTEND=noninteractive
if ! "${sudo_cmd[@]}" apt-get update -qq; then
  echo "setup: apt-get update failed; cannot install ${missing[*]}" >&2
  exit 1
fi
if ! "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"; then
  still=()
  for p in "${missing[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || still+=("$p")
  done
  echo "setup: could not install: ${still[*]}" >&2
  exit 1
fi
echo "setup: done"
