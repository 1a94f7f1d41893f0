#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs every Debian package that building, running and testing Ledgewise need.
# Does nothing (and needs no network or root) when they are all present already.
set -euo pipefail

packages=(
  # toolchain
  cmake ninja-build g++ pkg-config clang clang-format libclang-rt-14-dev
  # Qt 6 and the QML modules the views import
  qt6-base-dev qt6-base-dev-tools qt6-declarative-dev qt6-declarative-dev-tools
  qt6-svg-dev qt6-qpa-plugins libqt6svg6 qt6-image-formats-plugins
  qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-window
  qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-layouts
  qml6-module-qtquick-shapes qml6-module-qttest
  # X11 through xcb
  libxcb1-dev libxcb-keysyms1-dev libxcb-xinput-dev libxcb-shape0-dev libx11-dev
  libxkbcommon-dev libxkbcommon-x11-dev libxcb-xkb-dev
  # virtual display, desktop services and the tools tests drive them with
  python3-pyatspi gir1.2-atspi-2.0
  python3-gi gir1.2-gtk-3.0 # a GTK 3 application to drag from, as browsers and file managers are
  xvfb xauth xdotool xclip x11-utils x11-xserver-utils x11-xkb-utils xkb-data dbus dbus-x11 at-spi2-core fonts-dejavu-core
  # opening files and addresses with the user's default applications (xdg-open, xdg-mime)
  xdg-utils
  # checking the launch-at-login entry Ledgewise writes (desktop-file-validate)
  desktop-file-utils
  # checking the installed AppStream data (appstreamcli validate)
  appstream
  # the Debian package: its dependencies (dpkg-shlibdeps) and its check (lintian)
  dpkg-dev lintian
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$p" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$p")
done

[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
