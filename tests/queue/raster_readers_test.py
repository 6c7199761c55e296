#!/usr/bin/env python3
"""What the filters of print systems read in the streams of vrk print: the dots that the plane files have.

usage: raster_readers_test.py VRK
"""
import os
import re
import subprocess
import sys
import tempfile
import zlib

VRK = os.path.abspath(sys.argv[1])
FILTERS = "/usr/lib/cups/filter/"
NAMES = {1: ["k"], 4: ["k", "c", "m", "y"], 6: ["k", "c", "m", "y", "lc", "lm"]}
COLOR_SPACES = {1: 3, 4: 8, 6: 9}  # of libcups: K, KCMY, KCMYcm
LEVELS = {1: "--levels 2", 2: "--levels 4", 4: "--levels 16", 8: "--levels 255 --halftone dither"}
ORDERS = ["chunky", "banded", "planar"]
WIDTH, HEIGHT = 613, 107  # no whole bytes or words a line


def run(*command, **environment):
    done = subprocess.run(command, capture_output=True, env={**os.environ, **environment})
    assert done.returncode == 0, f"{command} ends with {done.returncode}: {done.stderr.decode()}"
    return done.stdout


def vrk(options, *more):
    return run(VRK, "print", "page.ppm", "--quiet", "--no-preview", "--dpi", "300", *options.split(), *more)


def reads(reader, ppd, stream, content="application/vnd.cups-raster"):
    with open("stream", "wb") as file:
        file.write(stream)
    return run(FILTERS + reader, "1", "user", "title", "1", "", "stream", PPD=ppd, CONTENT_TYPE=content,
               FINAL_CONTENT_TYPE="image/pwg-raster")


def planes_of(inks, bits):
    """The rows of samples of every plane."""
    top = 254 if bits == 8 else 2**bits - 1  # level, which is the highest sample
    vrk(f"-o planes --inks {inks} {LEVELS[bits]}")
    planes = []
    for name in NAMES[inks]:
        data = open(f"planes/{name}.{'pbm' if bits == 1 else 'pgm'}", "rb").read()
        row_bytes = (WIDTH + 7) // 8 if bits == 1 else WIDTH
        pixels = data[-HEIGHT * row_bytes:]
        rows = [pixels[y * row_bytes:(y + 1) * row_bytes] for y in range(HEIGHT)]
        if bits == 1:
            planes.append([[row[x // 8] >> (7 - x % 8) & 1 for x in range(WIDTH)] for row in rows])
        else:
            planes.append([[int((top - light) * (2**bits - 1) / top + 0.5) for light in row] for row in rows])
    return planes


def packed(samples, bits):
    digits = "".join(f"{sample:0{bits}b}" for sample in samples)
    digits += "0" * (-len(digits) % 8)
    return int(digits, 2).to_bytes(len(digits) // 8, "big")


def lines_of(planes, bits):
    """Plane after plane of each row, as banded streams and printer languages have them."""
    return [packed(plane[y], bits) for y in range(HEIGHT) for plane in planes]


def epson_lines(data):
    """Colour and bytes of every line that "ESC i" sends."""
    lines, at = [], data.index(b"\x1bi")
    while at < len(data):
        if data[at:at + 2] == b"\x1bi":
            color, compressed = data[at + 2:at + 4]
            count = int.from_bytes(data[at + 5:at + 7], "little")
            assert not compressed and data[at + 7:at + 9] == b"\1\0"
            lines.append((color, data[at + 9:at + 9 + count]))
            at += 9 + count
        else:
            at += 5 + data[at + 3] if data[at:at + 2] == b"\x1b(" else 1
    return lines


def pcl_lines(data):
    lines, at = [], 0
    while found := re.compile(rb"\x1b\*b(\d+)[VW]").search(data, at):
        at = found.end() + int(found[1])
        lines.append(data[found.end():at])
    return lines


def picture_in(pdf):
    """The samples of the largest stream: the page."""
    streams = re.findall(rb"stream\r?\n(.*?)endstream", pdf, re.DOTALL)
    return zlib.decompressobj().decompress(max(streams, key=len))


def light(ink):
    return bytes(255 - value for value in ink)


def same(read, expected, what):
    assert read == expected, f"{what}: other dots"
    print("same dots:", what)


def check_header(stream, inks, bits, order):
    """Ghostscript writes the same header, but for the name of the page's size, which stands last."""
    if inks == 6 and (bits > 1 or order != "chunky"):
        return  # it has none, or gives planar and banded samples of 1 bit the pixels of chunky ones
    drawn = run("gs", "-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=cups", f"-dcupsColorSpace={COLOR_SPACES[inks]}",
                f"-dcupsBitsPerColor={bits}", f"-dcupsColorOrder={ORDERS.index(order)}", "-r300", "-sstdout=%stderr",
                f"-dDEVICEWIDTHPOINTS={WIDTH * 72 / 300}", f"-dDEVICEHEIGHTPOINTS={HEIGHT * 72 / 300}",
                "-sOutputFile=%stdout", "-c", "showpage")
    differing = [at for at in range(1796 - 64) if stream[4 + at] != drawn[4 + at]]
    assert not differing, f"the header of {inks} inks, {bits} bits, {order} differs at {differing}"
    assert len(stream) == len(drawn), f"{inks} inks, {bits} bits, {order}: {len(stream)} bytes, not {len(drawn)}"


def check():
    run("ppdc", "-d", ".", "/usr/share/cups/drv/sample.drv", "/usr/share/cups/drv/cupsfilters.drv")
    with open("epson24.ppd") as ppd, open("six.ppd", "w") as six:
        six.write(ppd.read().replace("*cupsModelNumber: 1", "*cupsModelNumber: 5"))  # rastertoepson: a photo printer
    with open("page.ppm", "wb") as page:
        page.write(b"P6 %d %d 255\n" % (WIDTH, HEIGHT))
        page.write(bytes(v for y in range(HEIGHT) for x in range(WIDTH) for v in (x * 240 // WIDTH, y * 200 // HEIGHT, 99)))
    for inks in NAMES:
        for bits in LEVELS:
            planes = planes_of(inks, bits)
            for order in ORDERS:
                stream = vrk(f"--format cups --order {order} --inks {inks} {LEVELS[bits]}")
                check_header(stream, inks, bits, order)
                if order == "banded":
                    read = [line for line in epson_lines(reads("rastertoepson", "six.ppd", stream)) if any(line[1])]
                    inked = [0, 2, 1, 4, 18, 17][:inks] * HEIGHT  # K, C, M, Y, light C and M in the printer's language
                    # It leaves out lines without ink.
                    same(read, [(color, line) for color, line in zip(inked, lines_of(planes, bits)) if any(line)],
                         f"rastertoepson, {inks} inks of {bits} bits")
                if (inks, bits, order) in [(1, 1, "chunky"), (4, 1, "banded")]:
                    same(pcl_lines(reads("rastertohp", "deskjet.ppd", stream)), lines_of(planes, 1),
                         f"rastertohp, {inks} inks")
                if inks == 1 and order == "chunky":
                    rows = b"".join(lines_of(planes, bits))
                    same(picture_in(reads("rastertopdf", "pwgrast.ppd", stream)), light(rows), f"rastertopdf, {bits} bits")
                    if bits in (1, 8):
                        pwg = reads("rastertopwg", "pwgrast.ppd", stream)
                        same(picture_in(reads("rastertopdf", "pwgrast.ppd", pwg, "image/pwg-raster")), light(rows),
                             f"rastertopwg, {bits} bits")
                if bits == 8 and order == "chunky" and inks != 6:
                    # These halftone what they get, so there is ink and no more to compare.
                    assert len(reads("rastertoescpx", "six.ppd", stream)) > HEIGHT * WIDTH // 8
                    assert len(reads("rastertopclx", "dsgnjt750cpcl.ppd", stream)) > HEIGHT * WIDTH // 8
            if bits == 1 and inks != 6:  # PWG raster has C, M, Y, K, of 8 bits
                stream = vrk(f"--format pwg --inks {inks}")
                cmyk = planes[1:] + planes[:1]
                expected = light(b"".join(lines_of(planes, 1))) if inks == 1 else bytes(
                    255 * cmyk[p][y][x] for y in range(HEIGHT) for x in range(WIDTH) for p in range(4))
                same(picture_in(reads("rastertopdf", "pwgrast.ppd", stream, "image/pwg-raster")), expected,
                     f"rastertopdf, PWG raster of {inks} inks")


with tempfile.TemporaryDirectory() as work:
    os.chdir(work)
    check()
