#!/usr/bin/env bash
# Makes the starting corpora of the fuzz targets: make-corpus.sh OUTDIR
# Cuts partition packs, Primer packs, RIPs, index segments, metadata sets and header metadata
# regions out of the shared samples, examples/small.mxf and a few tiny files made here with
# ffmpeg, one directory for each target (OUTDIR/<Target>/). Nothing is fetched.
set -euo pipefail
out=${1:?usage: make-corpus.sh OUTDIR}
here=$(cd "$(dirname "$0")" && pwd)
root=$(dirname "$here")
samples=${VELLUM_SAMPLES_DIR:-$root/../shared/samples}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"

inputs=()
for f in "$samples"/*.mxf "$root"/examples/*.mxf; do
  [ -f "$f" ] && inputs+=("$f")
done

if command -v ffmpeg > /dev/null; then
  common=(-v error -nostdin -y -fflags +bitexact -flags +bitexact)
  video=(-f lavfi -i "testsrc=size=32x32:rate=25")
  audio=(-f lavfi -i "sine=frequency=1000:sample_rate=48000")
  ffmpeg "${common[@]}" "${video[@]}" "${audio[@]}" -t 0.24 -c:v mpeg2video -g 3 -bf 1 \
    -c:a pcm_s16le -f mxf "$work/op1a-mpeg2-pcm.mxf"
  ffmpeg "${common[@]}" "${video[@]}" -t 0.2 -c:v mpeg2video -g 3 -bf 1 -flags -cgop \
    -f mxf "$work/op1a-open-gop.mxf"
  ffmpeg "${common[@]}" "${audio[@]}" -t 0.04 -c:a pcm_s24le -f mxf_opatom "$work/opatom-pcm.mxf"
  ffmpeg "${common[@]}" "${video[@]}" -t 0.12 -c:v mpeg2video -g 1 -f mxf "$work/op1a-intra.mxf"
  inputs+=("$work"/*.mxf)
else
  echo "make-corpus.sh: ffmpeg is not installed; only the samples are cut" >&2
fi

python3 - "$out" "${inputs[@]}" <<'PY'
import hashlib, os, sys

out = sys.argv[1]
PREFIX = bytes.fromhex("060e2b34")
PARTITION = bytes.fromhex("060e2b34020501010d01020101")
PRIMER = bytes.fromhex("060e2b34020501010d01020101050100")
RIP = bytes.fromhex("060e2b34020501010d01020101110100")
INDEX = bytes.fromhex("060e2b34025301010d01020101100100")
LEGACY_INDEX = bytes.fromhex("060e2b34025301010d01020101100000")
WHOLE_LIMIT = 96 * 1024

def save(target, data):
    d = os.path.join(out, target)
    os.makedirs(d, exist_ok=True)
    with open(os.path.join(d, hashlib.sha1(data).hexdigest()), "wb") as f:
        f.write(data)

def packets(data):
    """Every KLV packet at the top level: (offset, key, value offset, end)."""
    pos = data.find(PREFIX)
    while 0 <= pos and pos + 17 <= len(data):
        key = data[pos:pos + 16]
        first = data[pos + 16]
        if first < 0x80:
            length, field = first, 1
        else:
            n = first & 0x7f
            if n == 0 or n > 8 or pos + 17 + n > len(data):
                return
            length, field = int.from_bytes(data[pos + 17:pos + 17 + n], "big"), 1 + n
        start = pos + 16 + field
        end = start + length
        if end > len(data):
            return
        yield pos, key, start, end
        pos = end

for path in sys.argv[2:]:
    data = open(path, "rb").read()
    # Whole files for the stream targets, the big ones cut to their head and tail.
    whole = data if len(data) <= WHOLE_LIMIT else data[:WHOLE_LIMIT // 2]
    for target in ("KlvReaderFuzzer", "SequentialReaderFuzzer", "WholeFileFuzzer"):
        save(target, whole)
    if len(data) > WHOLE_LIMIT:
        save("KlvReaderFuzzer", data[-WHOLE_LIMIT // 2:])
    region = None
    sets = 0
    for pos, key, start, end in packets(data):
        value = data[start:end]
        if key[:13] == PARTITION and 2 <= key[13] <= 4:
            status = key[14]
            first = (key[13] - 2) | (4 if status in (1, 3) else 0) | (8 if status in (3, 4) else 0)
            save("PartitionPackFuzzer", bytes([first]) + value)
        elif key == PRIMER:
            save("PrimerPackFuzzer", value)
            region = [pos, end]
            continue
        elif key == RIP:
            save("RandomIndexPackFuzzer", value)
        elif key in (INDEX, LEGACY_INDEX):
            save("IndexTableSegmentFuzzer", value)
        elif key[4] == 0x02 and key[5] == 0x53 and len(value) < 65536:
            if sets < 400:
                save("MetadataSetFuzzer", data[pos:end])
                sets += 1
            if region is not None:
                region[1] = end
                continue
        elif key[4] == 0x01 and region is not None:
            # A fill item inside the metadata region.
            region[1] = end
            continue
        if region is not None:
            save("PartitionMetadataFuzzer", data[region[0]:region[1]])
            region = None
PY
for d in "$out"/*/; do
  echo "$(basename "$d"): $(ls "$d" | wc -l) inputs"
done
