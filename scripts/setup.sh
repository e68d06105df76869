#!/usr/bin/env bash
# Installs the build and test dependencies from Debian's packages.
# Idempotent: only packages that are missing are installed, and apt-get update
# runs only when something has to be installed. Must run as root (or via sudo).
set -euo pipefail

packages=(
  build-essential cmake pkg-config git
  libboost1.81-dev
  libboost-thread1.81-dev libboost-filesystem1.81-dev libboost-json1.81-dev
  libboost-date-time1.81-dev libboost-system1.81-dev
  libpugixml-dev
  gettext locales
  libgtest-dev libgmock-dev googletest
  libbenchmark-dev
  libspdlog-dev
  clang libclang-rt-14-dev
  python3
  chromium
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if ((${#missing[@]})); then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  echo "setup: installing ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
else
  echo "setup: all dependencies present"
fi

# The translation tests switch the C library to Japanese and need a UTF-8
# locale to exist; generate ja_JP.UTF-8 once if it is missing.
if ! locale -a 2>/dev/null | grep -qi '^ja_JP\.utf-\?8$'; then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  if [ -f /etc/locale.gen ] && ! grep -q '^ja_JP.UTF-8 UTF-8' /etc/locale.gen; then
    echo 'ja_JP.UTF-8 UTF-8' | $SUDO tee -a /etc/locale.gen >/dev/null
  fi
  if ! grep -q '^en_US.UTF-8 UTF-8' /etc/locale.gen 2>/dev/null; then
    echo 'en_US.UTF-8 UTF-8' | $SUDO tee -a /etc/locale.gen >/dev/null
  fi
  $SUDO locale-gen >/dev/null
fi
