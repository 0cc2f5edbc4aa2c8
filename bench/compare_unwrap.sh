#!/usr/bin/env bash
# compare_unwrap.sh FILE: times `vellum unwrap FILE` beside `ffmpeg -i FILE -map 0 -c copy -f null -`
# and `cat FILE > /dev/null`, and prints the three times in seconds. Each command runs once to
# warm the page cache, then its best of three runs counts.
# VELLUM names the vellum program (default: build/vellum beside this script's folder).
set -euo pipefail
if [ $# -ne 1 ]; then
  echo "usage: compare_unwrap.sh FILE" >&2
  exit 2
fi
file=$1
here=$(cd "$(dirname "$0")" && pwd)
vellum=${VELLUM:-$here/../build/vellum}
out=$(mktemp -d "${TMPDIR:-/tmp}/vellum-compare.XXXXXX")
trap 'rm -rf "$out"' EXIT

best() {
  local best=""
  "$@" > /dev/null 2>&1 || true
  for _ in 1 2 3; do
    local start end took
    start=$(date +%s.%N)
    "$@" > /dev/null 2>&1
    end=$(date +%s.%N)
    took=$(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.6f", b - a }')
    if [ -z "$best" ] || awk -v t="$took" -v b="$best" 'BEGIN { exit !(t < b) }'; then best=$took; fi
    rm -rf "$out"/*
  done
  printf '%.3f' "$best"
}

unwrap() { "$vellum" unwrap "$file" "$out"; }
ffcopy() { ffmpeg -v error -nostdin -i "$file" -map 0 -c copy -f null -; }
catfile() { cat "$file" > /dev/null; }

size=$(stat -c %s "$file")
printf 'file: %s (%d bytes)\n' "$file" "$size"
printf 'vellum unwrap:              %s s\n' "$(best unwrap)"
if command -v ffmpeg > /dev/null; then
  printf 'ffmpeg -c copy -f null:     %s s\n' "$(best ffcopy)"
else
  printf 'ffmpeg -c copy -f null:     (ffmpeg is absent)\n'
fi
printf 'cat > /dev/null:            %s s\n' "$(best catfile)"
