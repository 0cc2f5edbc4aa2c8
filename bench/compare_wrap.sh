#!/usr/bin/env bash
# compare_wrap.sh ES WAV: times `vellum wrap` of an MPEG-2 video elementary stream and a Wave file
# beside `ffmpeg -i ES -i WAV -c copy -f mxf` and `cat ES WAV` into a file on the same file system,
# prints the three times in seconds and their ratios, then the peak memory of `vellum wrap` for the
# input as it is and for the same input four times over (the stream and the sound repeated), which
# must be the same: the wrapper holds a bounded window of the essence, however long the input.
# Each command runs once to warm the page cache, then its best of three runs counts.
# VELLUM names the vellum program (default: build/vellum beside this script's folder).
set -euo pipefail
if [ $# -ne 2 ]; then
  echo "usage: compare_wrap.sh ES WAV" >&2
  exit 2
fi
es=$1
wav=$2
source "$(dirname "$0")/compare_common.sh"

wrap() { "$vellum" wrap "$out/result.mxf" "$es" "$wav"; }
ffwrap() { ffmpeg -v error -nostdin -y -i "$es" -i "$wav" -map 0 -map 1 -c copy -f mxf "$out/result-ffmpeg.mxf"; }
catfiles() { cat "$es" "$wav" > "$out/result.cat"; }

# The peak resident memory in KiB of `vellum wrap` over the given inputs.
peak() {
  /usr/bin/time -f %M "$vellum" wrap "$out/result.mxf" "$@" 2>&1 >/dev/null | tail -1
  rm -f "$out"/result*
}

size=$(( $(stat -c %s "$es") + $(stat -c %s "$wav") ))
printf 'input: %s + %s (%d bytes)\n' "$es" "$wav" "$size"
v=$(best wrap)
c=$(best catfiles)
printf 'vellum wrap:                %s s\n' "$v"
if command -v ffmpeg > /dev/null; then
  f=$(best ffwrap)
  printf 'ffmpeg -c copy -f mxf:      %s s\n' "$f"
  printf 'vellum / ffmpeg:            %s (goal: at most 0.5)\n' "$(awk -v a="$v" -v b="$f" 'BEGIN { printf "%.2f", a / b }')"
else
  printf 'ffmpeg -c copy -f mxf:      (ffmpeg is absent)\n'
fi
printf 'cat ES WAV > file:          %s s\n' "$c"
printf 'vellum / cat:               %s (goal: at most 1.3)\n' "$(awk -v a="$v" -v b="$c" 'BEGIN { printf "%.2f", a / b }')"

if [ -x /usr/bin/time ] && command -v ffmpeg > /dev/null; then
  # Four times the input: the stream repeated is still one stream; the sound four times as long.
  cat "$es" "$es" "$es" "$es" > "$out/long.m2v"
  ffmpeg -v error -nostdin -y -stream_loop 3 -i "$wav" -c copy "$out/long.wav"
  printf 'peak memory, input as it is:  %s KiB\n' "$(peak "$es" "$wav")"
  printf 'peak memory, four times over: %s KiB\n' "$(peak "$out/long.m2v" "$out/long.wav")"
  rm -f "$out/long.m2v" "$out/long.wav"
fi
