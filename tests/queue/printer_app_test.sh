#!/bin/sh
# What a printer application prints is what vrk prints; what is wrong costs its job a sentence and nothing else.
# usage: printer_app_test.sh VRK PRINTER_APP
set -eu
vrk=$1 program=$2
. "$(dirname "$0")/printer_app.sh"
work=$(mktemp -d)
trap 'stop_printer_app "$work/app"; rm -rf "$work"' EXIT
cd "$work"

expect() { # TEXT COMMAND...: what it says begins with the text
  text=$1
  shift
  said=$("$@")
  case $said in "$text"*) return ;; esac
  echo "$* says: $said, expected: $text"
  tail -30 app/job.said
  tail -20 "$work/app/log"
  exit 1
}
prints() { # JOB FILE TYPE OPTIONS ATTRIBUTE...: the job has the dots that vrk makes with these options
  job=$1 file=$2 type=$3 options=$4
  shift 4
  rm -rf expected
  # shellcheck disable=SC2086 # words
  "$vrk" print "$file" -o expected $options >/dev/null
  expect 'completed Job completed.' print_job app p "$file" "$type" "$@"
  for page in prints/p-"$job"/page-*; do
    of=expected/$(basename "$page")
    [ -e "$of" ] || of=expected
    for plane in "$of"/?.p?m "$of"/l?.p?m; do [ ! -e "$plane" ] || cmp "$plane" "$page/$(basename "$plane")"; done
    test "$(ls "$of"/*.p?m | wc -l)" -eq "$(ls "$page"/*.p?m | wc -l)"
  done
}

cat >two.ps <<'END'
%!PS
<< /PageSize [200 300] >> setpagedevice
1 0 0 setrgbcolor 20 20 100 100 rectfill showpage
0 0.5 1 setrgbcolor newpath 100 150 60 0 360 arc fill showpage
END
draw() { gs -q -dBATCH -dNOPAUSE "$@" two.ps 2>/dev/null; }
draw -sDEVICE=pwgraster -dcupsBitsPerColor=8 -dcupsColorSpace=19 -r100 -sOutputFile=two.pwg
draw -sDEVICE=pwgraster -dcupsBitsPerColor=8 -dcupsColorSpace=18 -r100 -sOutputFile=gray.pwg
draw -sDEVICE=appleraster -dcupsBitsPerColor=8 -dcupsColorSpace=19 -r100 -sOutputFile=two.urf
draw -sDEVICE=png16m -r40 -dLastPage=1 -sOutputFile=one.png
draw -sDEVICE=jpeg -r40 -dFirstPage=2 -dLastPage=2 -sOutputFile=one.jpg

start_printer_app app "$program"
mkdir prints
printer_app app add -d p -m vrk -v "file://$work/prints"

prints 000001 two.pwg image/pwg-raster ''
prints 000002 two.urf image/urf ''
prints 000003 gray.pwg image/pwg-raster ''
prints 000004 one.png image/png '--size A4 --dpi 150' 'resolution printer-resolution 150dpi'
prints 000005 one.jpg image/jpeg '--size 10x15cm --fill' 'keyword media om_small-photo_100x150mm' 'keyword print-scaling fill'
prints 000006 two.pwg image/pwg-raster '--filter burkes --levels 4' 'keyword vrk-filter burkes' 'integer vrk-levels 4'
expect 'aborted --filter: nonsense not in {' print_job app p two.pwg image/pwg-raster 'keyword vrk-filter nonsense'
expect 'aborted vrk-csc2: names a file of the machine' print_job app p two.pwg image/pwg-raster 'text vrk-csc2 /etc/passwd'
test ! -e prints/p-000007 && test ! -e prints/p-000008

# A printer that takes a stream.
cat >printer.py <<'END'
import socket
server = socket.create_server(("127.0.0.1", 0))
print(server.getsockname()[1], flush=True)
client = server.accept()[0]
with open("sent", "wb") as to:
    while data := client.recv(65536):
        to.write(data)
END
python3 printer.py >port &
device=$!
for _ in $(seq 100); do [ -s port ] || sleep 0.1; done
printer_app app add -d s -m vrk -v "socket://localhost:$(cat port)"
expect completed print_job app s two.pwg image/pwg-raster 'keyword vrk-order planar' 'keyword print-color-mode monochrome'
wait $device
"$vrk" print two.pwg --format cups --order planar --inks 1 -o - --quiet 2>/dev/null | cmp - sent

# Who may look at prints and change printers, where there is a password.
stop_printer_app app
echo word >password
chmod 600 password
start_printer_app app "$program" -o password-file=password
status() { curl -s -o page -w '%{http_code}' "$@" "http://localhost:$(cat app/port)/p/last"; }
test "$(status)" -eq 401 && test "$(status -u x:words)" -eq 401 && test "$(status -u x:word)" -eq 200
grep -q 'Job 6, two.pwg, page 2: 278 x 417 pixels at 100 dpi' page
expect completed print_job app p two.pwg image/pwg-raster
refused=$(SNAP_COMMON=$work TMPDIR=$work "$program" server -o listen-hostname='*' -o spool-directory=none 2>&1 || true)
case $refused in *"add -o password-file=FILE"*) ;; *) echo "$refused" && exit 1 ;; esac

# A printer that is deleted leaves an application that can end, and its last print goes with the next start.
test -e app/state/last/1
printer_app app delete -d p
stop_printer_app app
start_printer_app app "$program"
test ! -e app/state/last/1 && test -e app/state/last/2
