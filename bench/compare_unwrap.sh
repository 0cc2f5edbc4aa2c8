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
source "$(dirname "$0")/compare_common.sh"

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
