# Sourced by the compare_*.sh scripts: the vellum program, a scratch folder removed on exit, and
# best, which runs a command once to warm the page cache and then prints the best of three runs
# in seconds, clearing the scratch folder's results after each.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
vellum=${VELLUM:-$here/../build/vellum}
out=$(mktemp -d "${TMPDIR:-/tmp}/vellum-compare.XXXXXX")
trap 'rm -rf "$out"' EXIT

best() {
  local best=""
  "$@" > /dev/null 2>&1 || true
  for _ in 1 2 3; do
    local start end took
    rm -rf "${out:?}"/result* "${out:?}"/track-*
    start=$(date +%s.%N)
    "$@" > /dev/null 2>&1
    end=$(date +%s.%N)
    took=$(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.6f", b - a }')
    if [ -z "$best" ] || awk -v t="$took" -v b="$best" 'BEGIN { exit !(t < b) }'; then best=$took; fi
  done
  rm -rf "${out:?}"/result* "${out:?}"/track-*
  printf '%.3f' "$best"
}
