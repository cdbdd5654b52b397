#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, only those missing, with sudo
# when not root. Safe to run again and again: with everything present it only checks.
#
#   scripts/install-deps.sh           what the build and `make test` need
#   scripts/install-deps.sh --fuzz    also clang and xxd, for the fuzzers of `make test-long`
set -euo pipefail

packages=(
  g++ make cmake ninja-build ccache pkg-config
  qt6-base-dev qt6-multimedia-dev
  qt6-declarative-dev qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qtquick
  qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-shapes
  qml6-module-qtquick-templates qml6-module-qtquick-window qml6-module-qtquick-dialogs
  qml6-module-qt-labs-folderlistmodel
  fonts-material-design-icons-iconfont
  xvfb
  pulseaudio pulseaudio-utils libpulse-dev
  libfftw3-dev
  libavahi-client-dev avahi-daemon avahi-utils dbus-daemon python3-dbus
  libavcodec-dev libavformat-dev libavutil-dev libswresample-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  python3 python3-liblo
  qtkeychain-qt6-dev gnome-keyring dbus libsecret-tools openssl
  clang-format
  desktop-file-utils appstream dpkg-dev
)
if [[ "${1:-}" == "--fuzz" ]]; then
  packages+=(clang xxd)
fi

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$package")
done

if ((${#missing[@]} == 0)); then
  exit 0
fi

echo "Installing missing Debian packages: ${missing[*]}"
if [[ $(id -u) -eq 0 ]]; then
  sudo=()
elif command -v sudo >/dev/null; then
  sudo=(sudo)
else
  echo "These packages are missing and there is no sudo to install them: ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q
"${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
