#!/usr/bin/env bash
# unwrap_rss.sh [FILE...]: the peak resident memory of `vellum unwrap` over each file (by
# /usr/bin/time -v), beside that of `cat`. Without files it uses the benchmark's file of 1 GiB and
# makes a file of 4 GiB from it with ffmpeg (the same essence four times over, copied, not coded).
# The peak should not grow with the file's length.
# VELLUM names the vellum program (default: build/vellum beside this script's folder).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
vellum=${VELLUM:-$here/../build/vellum}
tmp=${TMPDIR:-/tmp}
files=("$@")
if [ ${#files[@]} -eq 0 ]; then
  one=$tmp/vellum-bench-op1a-1GiB.mxf
  four=$tmp/vellum-bench-op1a-4GiB.mxf
  if [ ! -f "$one" ]; then
    echo "no $one: run vellum_bench --benchmark_filter=Unwrap first, or name files" >&2
    exit 2
  fi
  if [ ! -f "$four" ]; then
    ffmpeg -v error -nostdin -y -stream_loop 3 -i "$one" -map 0 -c copy -f mxf "$four.partial"
    mv "$four.partial" "$four"
  fi
  files=("$one" "$four")
fi
out=$(mktemp -d "$tmp/vellum-rss.XXXXXX")
trap 'rm -rf "$out"' EXIT

peak() { /usr/bin/time -v "$@" 2>&1 >/dev/null | awk -F': ' '/Maximum resident set size/ {print $2}'; }

for file in "${files[@]}"; do
  size=$(stat -c %s "$file")
  unwrap_kib=$(peak "$vellum" unwrap "$file" "$out")
  rm -rf "${out:?}"/*
  cat_kib=$(peak cat "$file")
  printf '%s (%d MiB): vellum unwrap peak RSS %d KiB, cat %d KiB\n' "$file" $((size >> 20)) "$unwrap_kib" "$cat_kib"
done
