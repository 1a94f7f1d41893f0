#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds and runs every benchmark on a private virtual display and prints the figures.
# LEDGEWISE_BENCH_SECONDS shortens the idle measurements (60 s each by default).
# The soak (a long session of copies, drops, openings and closings with the resident
# memory sampled) runs only when LEDGEWISE_SOAK_SECONDS is set:
#   LEDGEWISE_SOAK_SECONDS=600 bash scripts/bench.sh
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
# The memory benchmark measures CopyQ beside Ledgewise when it is there.
if ! command -v copyq >/dev/null; then
  if ! { apt-get install -y --no-install-recommends copyq >/dev/null 2>&1 ||
         sudo -n apt-get install -y --no-install-recommends copyq >/dev/null 2>&1; }; then
    echo "CopyQ could not be installed from Debian; the memory benchmark runs without it."
  fi
fi
cmake --preset default >/dev/null
cmake --build --preset default
for bench in build/default/bench/*/bench_*; do
  [ -f "$bench" ] && [ -x "$bench" ] || continue
  tests/support/isolated.sh --display "$bench" 2>&1 | grep -v 'dbus-daemon\|QProcess: Destroyed'
done
if [ -n "${LEDGEWISE_SOAK_SECONDS:-}" ]; then
  tests/support/isolated.sh --display build/default/bench/soak/soak_ledgewise 2>&1 | grep -v 'dbus-daemon\|QProcess: Destroyed'
fi
