#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Ledgewise and starts it. With no display (a server, CI, a container) it starts
# a virtual X display, runs Ledgewise there and writes screenshots of what it shows.
# Installs the Debian packages it needs first. Stop it with Ctrl+C.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target ledgewise
app=build/default/app/ledgewise

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$app" "$@"
fi

shots=${LEDGEWISE_SCREENSHOTS:-$PWD/build/screenshots}
mkdir -p "$shots"
echo "No display found: running Ledgewise on a virtual display (Xvfb)."
exec tests/support/virtual-display.sh "$shots" "$app" "$@"
