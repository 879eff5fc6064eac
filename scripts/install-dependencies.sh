#!/usr/bin/env bash
# Installs the Debian packages that ppdforge needs to build and test, and
# only those that are missing (nothing is downloaded when all are there).
set -euo pipefail

packages=(
  g++ make cmake pkg-config
  libplist-dev libicu-dev libfmt-dev libcli11-dev zlib1g-dev
  libcups2-dev cups-client cups-ppdc strace
  googletest libgtest-dev libbenchmark-dev
  clang libclang-rt-14-dev
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done

if [ "${#missing[@]}" -eq 0 ]; then
  echo "All needed Debian packages are installed."
  exit 0
fi

echo "Installing missing Debian packages: ${missing[*]}"
run_as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then
    run_as_root=(sudo)
  else
    echo "error: these packages are missing and this user cannot install them: ${missing[*]}" >&2
    exit 1
  fi
fi
export DEBIAN_FRONTEND=noninteractive
"${run_as_root[@]}" apt-get update
"${run_as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
