#!/bin/sh
# Jobs and clients that are not as they should be cost a printer application one job each and a sentence about it; the
# next job prints, and the memory of the process stays small.
# usage: hostile_jobs_test.sh PRINTER_APP
set -eu
. "$(dirname "$0")/printer_app.sh"
work=$(mktemp -d)
clients=
trap 'kill $clients 2>/dev/null || true; stop_printer_app "$work/app"; rm -rf "$work"' EXIT
cd "$work"

expect() { # TEXT COMMAND...: what it says has the text
  text=$1
  shift
  said=$("$@")
  case $said in *"$text"*) return ;; esac
  echo "$* says: $said, expected: $text"
  tail -20 app/log
  exit 1
}

cat >files.py <<'END'
import random, struct, zlib

def header(width=100, height=100, dpi=100, bits=24, space=19, colors=3, bytes_per_line=None, per_color=8, pages=0):
    page = bytearray(1796)
    page[:9] = b"PwgRaster"
    fields = {276: dpi, 280: dpi, 340: 1, 372: width, 376: height, 384: per_color, 388: bits, 400: space, 420: colors,
              392: (width * bits + 7) // 8 if bytes_per_line is None else bytes_per_line, 452: pages}
    for place, value in fields.items():
        page[place:place + 4] = struct.pack(">I", value & 0xffffffff)
    return bytes(page)

def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

def png(width, height, interlaced, data):
    head = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, interlaced)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(data)) + chunk(b"IEND", b"")

white = b"\x63\x63\xff\xff\xff"  # all 100 lines of a page of 100 x 100 pixels
rubbish = random.Random(1).randbytes(50000)
for name, data in {
    "good": header() + white, "two": header() + white + header() + white,
    "random": rubbish, "random-behind": b"RaS2" + rubbish,
    "million": b"RaS2" + header(1000000, 1000000) + white, "gray": b"RaS2" + header(1000000, 1000000, 2400, 8, 18, 1),
    "endless": b"RaS2" + header(2**32 - 1, 2**32 - 1), "empty": b"RaS2" + header(0, 0), "dpi": b"RaS2" + header(dpi=2**31),
    "lines": b"RaS2" + header(height=101) + white, "bytes": b"RaS2" + header(bytes_per_line=30) + white,
    "colors": b"RaS2" + header(colors=5) + white, "space": b"RaS2" + header(space=77) + white,
    "bit": b"RaS2" + header(bits=1, space=3, colors=1, per_color=1) + white,
    "pages": b"RaS2" + header(pages=3) + white + header(pages=3) + white,
    "million.png": png(1000000, 1000000, 0, b"\0" * 1000), "laced.png": png(60000, 60000, 1, b"\0" * 1000),
    "short.png": png(3000, 60000, 0, b"\0" * 9001 * 100), "random.png": b"\x89PNG\r\n\x1a\n" + rubbish,
    "random.jpg": b"\xff\xd8\xff\xe0" + rubbish,
}.items():
    open(name, "wb").write((b"RaS2" if name in ("good", "two") else b"") + data)
open("cut", "wb").write(open("two", "rb").read()[:-3])
END
python3 files.py

# Of what PAPPL itself refuses, only the log says more.
cat >cases <<'END'
random image/pwg-raster Job aborted
random-behind image/pwg-raster Job aborted
random image/urf Job aborted
million image/pwg-raster page 1: has 1000000 x 1000000 pixels at 100 x 100 dpi, expected a page of at most 432 x 1200 mm
gray image/pwg-raster page 1: has 1000000 x 1000000 pixels
endless image/pwg-raster Job aborted
empty image/pwg-raster Job aborted
dpi image/pwg-raster page 1: its header has 2147483648 dpi
cut image/pwg-raster page 2: the stream breaks off after 0 of 100 lines
lines image/pwg-raster page 1: the stream breaks off after 100 of 101 lines
bytes image/pwg-raster Job aborted
colors image/pwg-raster page 1: its header has 5 colours, expected 3
space image/pwg-raster page 1: its header has colour space 77
bit image/pwg-raster page 1: has pixels of 1 bit, expected sgray_8, srgb_8 or adobe-rgb_8
pages image/pwg-raster ends after page 2, expected 3 pages
million.png image/png has 1000000 x 1000000 pixels, expected 1 to 65500 across
laced.png image/png is interlaced and so needs 10301 MB of memory
short.png image/png short.png: 
random.png image/png random.png: 
random.jpg image/jpeg random.jpg: 
random image/jpeg is neither PNG, JPEG
END

start_printer_app app "$1"
mkdir prints
for printer in p stalled; do printer_app app add -d $printer -m vrk -v "file://$work/prints"; done
pid=$(cat app/pid)

cat >clients.py <<'END'
import socket, sys, time

port, stalled, good = int(sys.argv[1]), b"stalled", open("good", "rb").read()

def connect():
    return socket.create_connection(("127.0.0.1", port), timeout=20)

def attribute(tag, name, value):
    return bytes([tag, 0, len(name)]) + name + bytes([0, len(value)]) + value

def send_half_a_job(printer):
    uri = b"ipp://localhost/ipp/print/" + printer
    asked = b"\2\0\0\2\0\0\0\1\1" + attribute(0x47, b"attributes-charset", b"utf-8") + \
        attribute(0x48, b"attributes-natural-language", b"en") + attribute(0x45, b"printer-uri", uri) + \
        attribute(0x49, b"document-format", b"image/pwg-raster") + b"\3" + good[:-2]
    client = connect()
    client.sendall(b"POST /ipp/print/" + printer + b" HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/ipp\r\n"
                   b"Content-Length: 100000\r\n\r\n" + asked)
    return client

silent = send_half_a_job(stalled)
for hangs_up in range(3):
    send_half_a_job(b"p").close()
    time.sleep(0.5)
idle = [connect() for i in range(1000)]
for client in idle[::2]:
    client.sendall(b"POST /ipp/print/p HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/ipp\r\nContent-Length: 9\r\n\r\n\2")
print("connected", flush=True)
time.sleep(60)
END
python3 clients.py "$(cat app/port)" >clients &
clients=$!
for _ in $(seq 100); do [ -s clients ] || sleep 0.1; done
test -s clients
expect completed print_job app p good image/pwg-raster # beside a thousand others

while read -r file type text; do
  expect "$text" print_job app p "$file" "$type"
  case $said in completed*) echo "$file: $said" && exit 1 ;; esac
  expect completed print_job app p good image/pwg-raster
done <cases

expect completed print_job app stalled good image/pwg-raster # whose last client has been silent for long enough
kill $clients
test "$(find prints -name manifest.json | wc -l)" -gt 0
test "$pid" -eq "$(cat app/pid)" && kill -0 "$pid"
peak=$(awk '/^VmHWM/ { print $2 }' /proc/"$pid"/status)
echo "peak memory: $peak kB"
test "$peak" -lt 200000
