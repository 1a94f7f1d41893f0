#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs a program on a private Xvfb display until it exits, and saves a screenshot of
# the whole display once it is up (the program may save more of its own).
# Usage: virtual-display.sh SCREENSHOT_DIR PROGRAM [ARGS...]
set -euo pipefail
shots=$1; shift

dir=$(mktemp -d)
xvfb_pid=
cleanup() {
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  rm -rf "$dir"
}
trap cleanup EXIT

Xvfb -displayfd 3 -screen 0 1512x982x24 -nolisten tcp -noreset 3>"$dir/display" >"$dir/xvfb.log" 2>&1 &
xvfb_pid=$!
for _ in $(seq 400); do
  number=$(head -n1 "$dir/display" 2>/dev/null || true)
  [ -n "$number" ] && break
  sleep 0.05
done
[ -n "$number" ] || { echo "Xvfb did not start"; cat "$dir/xvfb.log"; exit 1; }
export DISPLAY=:$number QT_QPA_PLATFORM=xcb
export LEDGEWISE_SCREENSHOT_DIR=$shots
# A desktop-like background, so the dark surfaces stand out in the screenshots.
command -v xsetroot >/dev/null && xsetroot -solid '#6b7f99' || true
echo "Virtual display $DISPLAY; screenshots go to $shots"
if command -v dbus-run-session >/dev/null && [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
  dbus-run-session -- "$@"
else
  "$@"
fi
