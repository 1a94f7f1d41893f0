#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds Ledgewise and runs every test: the full suite (unit tests and real windows on
# a virtual display), the unit tests again under AddressSanitizer + UBSan, and each
# fuzzer for a bounded time. Installs the Debian packages it needs first.
#   scripts/test.sh           everything
#   scripts/test.sh --quick   the default build's suite only
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

quick=false
[ "${1:-}" = --quick ] && quick=true
fuzz_seconds=${LEDGEWISE_FUZZ_SECONDS:-30}
summary=$(mktemp)
trap 'rm -f "$summary"' EXIT

run_ctest() {
  local preset=$1
  local log
  log=$(mktemp)
  set +e
  ctest --preset "$preset" 2>&1 | tee "$log"
  local rc=${PIPESTATUS[0]}
  set -e
  grep -E 'tests passed, [0-9]+ tests? failed out of' "$log" >>"$summary" || true
  rm -f "$log"
  return "$rc"
}

echo "== licence lines and format"
python3 scripts/spdx.py
# shellcheck disable=SC2046
clang-format --dry-run -Werror $(git ls-files '*.cpp' '*.h')

echo "== build (default)"
cmake --preset default >/dev/null
cmake --build --preset default
echo "== tests (default)"
status=0
run_ctest default || status=1

if [ "$quick" = false ]; then
  echo "== build (asan + ubsan)"
  cmake --preset asan >/dev/null
  cmake --build --preset asan
  echo "== unit tests (asan + ubsan)"
  run_ctest asan || status=1

  echo "== fuzzers (${fuzz_seconds}s each)"
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz --target ledgewise_fuzzers
  for fuzzer in build/fuzz/fuzz/fuzz_*; do
    [ -f "$fuzzer" ] && [ -x "$fuzzer" ] || continue
    corpus=$(mktemp -d)
    cp -r "fuzz/corpus/$(basename "$fuzzer")/." "$corpus/" 2>/dev/null || true
    if "$fuzzer" -max_total_time="$fuzz_seconds" -print_final_stats=0 "$corpus" >"$corpus.log" 2>&1; then
      echo "$(basename "$fuzzer"): no crash in ${fuzz_seconds}s ($(grep -c . "$corpus.log") log lines)"
      echo "100% tests passed, 0 tests failed out of 1" >>"$summary"
    else
      tail -n 40 "$corpus.log"
      echo "$(basename "$fuzzer"): FAILED"
      echo "0% tests passed, 1 tests failed out of 1" >>"$summary"
      status=1
    fi
    rm -rf "$corpus" "$corpus.log"
  done
fi

total=0 failed=0
while read -r line; do
  f=$(sed -E 's/.*tests passed, ([0-9]+) tests? failed out of ([0-9]+).*/\1/' <<<"$line")
  t=$(sed -E 's/.*tests passed, ([0-9]+) tests? failed out of ([0-9]+).*/\2/' <<<"$line")
  total=$((total + t)); failed=$((failed + f))
done <"$summary"
echo
echo "ledgewise: $((total - failed)) passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$total" -gt 0 ] || status=1
exit "$status"
