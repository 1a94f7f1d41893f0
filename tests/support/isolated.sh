#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs one test in a sandbox of its own: a fresh HOME with its XDG folders, a private
# session D-Bus, and with --display a private Xvfb server (found with -displayfd, so
# parallel tests never race for a display number).
# Usage: isolated.sh --display|--no-display COMMAND [ARGS...]
set -euo pipefail
mode=$1; shift

sandbox=$(mktemp -d "${TMPDIR:-/tmp}/ledgewise-test.XXXXXX")
xvfb_pid=
cleanup() {
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null
  rm -rf "$sandbox"
}
trap cleanup EXIT

export HOME=$sandbox/home
export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share XDG_CACHE_HOME=$HOME/.cache
export XDG_RUNTIME_DIR=$sandbox/runtime
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$HOME/Downloads"
mkdir -m 0700 -p "$XDG_RUNTIME_DIR"
export LEDGEWISE_TEST_SANDBOX=$sandbox
# No test reaches out to the real update feed; update tests serve their own.
export LEDGEWISE_UPDATE_FEED=
unset WAYLAND_DISPLAY

if [ "$mode" = --display ]; then
  Xvfb -displayfd 3 -screen 0 "${LEDGEWISE_TEST_SCREEN:-1512x982}x24" -nolisten tcp -noreset 3>"$sandbox/display" >"$sandbox/xvfb.log" 2>&1 &
  xvfb_pid=$!
  for _ in $(seq 400); do
    number=$(head -n1 "$sandbox/display" 2>/dev/null || true)
    [ -n "$number" ] && break
    kill -0 "$xvfb_pid" 2>/dev/null || break
    sleep 0.05
  done
  [ -n "$number" ] || { echo "Xvfb did not start:"; cat "$sandbox/xvfb.log"; exit 1; }
  export DISPLAY=:$number
  # LEDGEWISE_TEST_MONITORS="WxH+X+Y ..." splits the screen into that many monitors,
  # which Qt shows as separate screens (the first is the primary one).
  if [ -n "${LEDGEWISE_TEST_MONITORS:-}" ]; then
    # The first monitor takes over Xvfb's one output; the others have none.
    i=0 output=screen
    for geometry in $LEDGEWISE_TEST_MONITORS; do
      size=${geometry%%+*}; offset=${geometry#"$size"}
      xrandr --setmonitor "monitor-$i" "${size%x*}/300x${size#*x}/200$offset" "$output" >/dev/null
      i=$((i + 1)) output=none
    done
  fi
  export QT_QPA_PLATFORM=xcb
else
  unset DISPLAY
  export QT_QPA_PLATFORM=offscreen
fi

dbus-run-session -- "$@"
