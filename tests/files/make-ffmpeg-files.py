"""Makes small real MXF files with FFmpeg: make-ffmpeg-files.py OUTDIR [--ffmpeg PATH]

The same FFmpeg makes the same bytes every time. What it has no encoder or muxer for is left out,
and said.
Exit status 77 where there is no FFmpeg at all, 1 when making a file fails.
"""
import argparse
import os
import shutil
import subprocess
import sys

SKIP = 77
EXACT = ["-fflags", "+bitexact", "-flags:a", "+bitexact", "-threads", "1"]
TIMECODE = ["-timecode", "10:11:12:13"]
DROP_FRAME = ["-timecode", "01:00:00;02"]
PLAIN_TEXT = [
    "-metadata",
    "company_name=Corvid Tests",
    "-metadata",
    "product_name=Maker of files",
    "-metadata",
    "product_version=1.2.3",
]
MARKUP_TEXT = [
    "-metadata",
    "company_name=<Möwe & \"Söhne\"> 'Ltd' ]]>",
    "-metadata",
    "product_name=映画 🎬 ½",
    "-metadata",
    "material_package_name=a <b/> & c",
    "-store_user_comments",
    "1",
    "-metadata",
    "comment_Größe=5 > 4 && \ttab",
    "-metadata",
    "comment_two=line\r\nbreak",
]
# An IMX picture fills its bit rate; the encoder needs some noise for that.
D10 = [
    "-pix_fmt",
    "yuv422p",
    "-g",
    "1",
    "-flags:v",
    "+bitexact+ildct+low_delay",
    "-dc",
    "10",
    "-intra_vlc",
    "1",
    "-non_linear_quant",
    "1",
    "-ps",
    "1",
    "-qscale:v",
    "1",
    "-qmin",
    "1",
    "-qmax",
    "12",
    "-lmin",
    "1*QP2LAMBDA",
    "-rc_max_vbv_use",
    "1",
    "-b:v",
    "30000k",
    "-minrate",
    "30000k",
    "-maxrate",
    "30000k",
    "-bufsize",
    "1200000",
    "-rc_init_occupancy",
    "1200000",
]
SECONDS_PER_FILE = 60


def video(size="64x48", rate="25", seconds="0.2", more=""):
    return [
        "-f",
        "lavfi",
        "-i",
        "testsrc=size=%s:rate=%s:duration=%s%s" % (size, rate, seconds, more),
    ]


def audio(seconds="0.2"):
    return ["-f", "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=" + seconds]


def sound(tracks):
    """Maps one picture and that many mono tracks of one tone."""
    maps = [word for _ in range(tracks) for word in ("-map", "1:a")]
    return ["-map", "0:v"] + maps + ["-c:a", "pcm_s16le", "-ac", "1"]


# name: (muxer, encoders needed, arguments). A name that ends in -streamed is written to a pipe.
FILES = {
    "op1a-mpeg2": ("mxf", ["mpeg2video"], video() + ["-c:v", "mpeg2video"]),
    "op1a-mpeg2-longgop-text": (
        "mxf",
        ["mpeg2video"],
        video(seconds="0.5")
        + audio("0.5")
        + ["-c:v", "mpeg2video", "-g", "6", "-bf", "2"]
        + sound(2)
        + TIMECODE
        + PLAIN_TEXT,
    ),
    "op1a-mpeg2-markup-text": (
        "mxf",
        ["mpeg2video"],
        video() + audio() + ["-c:v", "mpeg2video"] + sound(1) + MARKUP_TEXT,
    ),
    "op1a-mpeg2-streamed": (
        "mxf",
        ["mpeg2video"],
        video() + audio() + ["-c:v", "mpeg2video"] + sound(1) + TIMECODE,
    ),
    "op1a-h264-dropframe": (
        "mxf",
        ["libx264"],
        video(rate="30000/1001")
        + audio()
        + ["-c:v", "libx264", "-preset", "ultrafast", "-threads", "1", "-pix_fmt", "yuv420p"]
        + sound(4)
        + DROP_FRAME,
    ),
    "op1a-jpeg2000": ("mxf", ["jpeg2000"], video() + ["-c:v", "jpeg2000", "-pix_fmt", "yuv422p"]),
    "op1a-dnxhd": (
        "mxf",
        ["dnxhd"],
        video("256x120", rate="24")
        + ["-c:v", "dnxhd", "-profile:v", "dnxhr_lb", "-pix_fmt", "yuv422p"]
        + TIMECODE,
    ),
    "op1a-dv": (
        "mxf",
        ["dvvideo"],
        video("720x576") + audio() + ["-c:v", "dvvideo", "-pix_fmt", "yuv420p"] + sound(2),
    ),
    "op1a-prores": (
        "mxf",
        ["prores"],
        video()
        + audio()
        + ["-c:v", "prores", "-profile:v", "3", "-pix_fmt", "yuv422p10le"]
        + sound(8)
        + TIMECODE,
    ),
    "op1a-mpeg2-16-tracks": (
        "mxf",
        ["mpeg2video"],
        video() + audio() + ["-c:v", "mpeg2video"] + sound(16),
    ),
    "op1a-mpeg2-stereo24": (
        "mxf",
        ["mpeg2video"],
        video() + audio() + ["-c:v", "mpeg2video", "-c:a", "pcm_s24le", "-ac", "2"] + TIMECODE,
    ),
    "d10-imx30": (
        "mxf_d10",
        ["mpeg2video"],
        video("720x608", more=",noise=alls=10:all_seed=1")
        + audio()
        + ["-c:v", "mpeg2video"]
        + D10
        + ["-c:a", "pcm_s16le", "-ac", "4"],
    ),
    "opatom-video-dnxhd": (
        "mxf_opatom",
        ["dnxhd"],
        video("256x120")
        + ["-c:v", "dnxhd", "-profile:v", "dnxhr_lb", "-pix_fmt", "yuv422p"]
        + TIMECODE
        + PLAIN_TEXT,
    ),
    "opatom-audio": (
        "mxf_opatom",
        ["pcm_s16le"],
        audio() + ["-c:a", "pcm_s16le", "-ac", "1", "-mxf_audio_edit_rate", "25"],
    ),
}


def available(ffmpeg):
    """Names of the encoders and muxers that this FFmpeg has."""
    names = set()
    for what in ("-encoders", "-muxers"):
        text = subprocess.run(
            [ffmpeg, "-hide_banner", what], stdout=subprocess.PIPE, check=True
        ).stdout.decode()
        names |= {words[1] for words in map(str.split, text.splitlines()) if len(words) > 1}
    return names


def make(ffmpeg, folder, name, muxer, arguments):
    target = os.path.join(folder, name + ".mxf")
    command = [ffmpeg, "-hide_banner", "-loglevel", "error", "-nostdin", "-y"]
    command += arguments + EXACT + ([] if "-flags:v" in arguments else ["-flags:v", "+bitexact"])
    if not name.endswith("-streamed"):
        return subprocess.run(command + ["-f", muxer, target], timeout=SECONDS_PER_FILE).returncode
    made = subprocess.run(
        command + ["-f", muxer, "pipe:1"], stdout=subprocess.PIPE, timeout=SECONDS_PER_FILE
    )
    with open(target, "wb") as file:
        file.write(made.stdout)
    return made.returncode


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--ffmpeg", default=shutil.which("ffmpeg"))
    arguments = parser.parse_args()
    if not arguments.ffmpeg or not os.path.exists(arguments.ffmpeg):
        print("skipped: no ffmpeg")
        return SKIP
    os.makedirs(arguments.folder, exist_ok=True)
    present, failed, made = available(arguments.ffmpeg), [], 0
    for name, (muxer, encoders, words) in FILES.items():
        lacking = [need for need in [muxer] + encoders if need not in present]
        if lacking:
            print("%s: left out, this ffmpeg has no %s" % (name, ", ".join(lacking)))
        elif make(arguments.ffmpeg, arguments.folder, name, muxer, words):
            failed.append(name)
        else:
            made += 1
    print(
        "%d files made, %d failed%s"
        % (made, len(failed), ": " + ", ".join(failed) if failed else "")
    )
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
