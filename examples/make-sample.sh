#!/usr/bin/env bash
# Makes sample.mxf: the header partition (partition pack and header metadata, no essence) of a
# second of test picture and tone, wrapped as OP1a by FFmpeg. The same FFmpeg gives the same bytes.
#   examples/make-sample.sh [OUTPUT]        default: examples/sample.mxf
set -euo pipefail
output=${1:-$(dirname "${BASH_SOURCE[0]}")/sample.mxf}
whole=$(mktemp --suffix=.mxf)
trap 'rm -f "$whole"' EXIT

ffmpeg -nostdin -hide_banner -loglevel error -y \
    -f lavfi -i testsrc=size=320x240:rate=25:duration=1 \
    -f lavfi -i sine=frequency=1000:sample_rate=48000:duration=1 \
    -threads 1 -c:v mpeg2video -g 1 -c:a pcm_s16le -ac 2 \
    -timecode 10:00:00:00 \
    -metadata company_name='Corvid' -metadata product_name=Sample \
    -metadata creation_time='2024-01-01T12:00:00Z' \
    -metadata material_package_name='Test picture and tone' \
    -fflags +bitexact -flags:v +bitexact -flags:a +bitexact \
    -f mxf "$whole"

python3 - "$whole" "$output" <<'PYTHON'
import struct
import sys

source, target = sys.argv[1:]
data = open(source, "rb").read()


def triplet(at):
    """Where the value of the triplet at `at` starts and ends."""
    first = data[at + 16]
    if first < 0x80:
        return at + 17, at + 17 + first
    octets = first & 0x7F
    start = at + 17 + octets
    return start, start + int.from_bytes(data[at + 17 : start], "big")


value, end = triplet(0)
(header_byte_count,) = struct.unpack_from(">Q", data, value + 32)
# A fill item between the partition pack and the primer pack belongs to the former.
while data[end + 4 : end + 6] == b"\x01\x01":
    end = triplet(end)[1]
sample = bytearray(data[: end + header_byte_count])
struct.pack_into(">Q", sample, value + 24, 0)  # FooterPartition: there is none
open(target, "wb").write(sample)
PYTHON
