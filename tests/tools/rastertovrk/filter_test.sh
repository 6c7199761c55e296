#!/bin/sh
# The filter of print queues, run as CUPS runs it: the dots are those of `vrk print`, whoever says how they are made.
# usage: filter_test.sh VRK RASTERTOVRK
set -eu
vrk=$1 filter=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p tmp lib/filter
export TMPDIR="$work/tmp" CUPS_SERVERBIN="$work/lib" PPD="$work/q.ppd"

# Two pages, the second one on glossy paper: the type of media is the third text of a header.
"$vrk" tables -o t >/dev/null
"$vrk" demo -o gray --inks 1 --levels 16 --dpi 50 --format cups --no-preview >/dev/null
cp gray/print.ras glossy.ras
printf 'Glossy' | dd of=glossy.ras bs=1 seek=132 conv=notrunc 2>/dev/null
{ cat gray/print.ras && tail -c +5 glossy.ras; } >two.ras

printer() { # LINE...: what its PPD file says
  printf '*PPD-Adobe: "4.3"\n*FormatVersion: "4.3"\n*LanguageEncoding: ISOLatin1\n*PCFileName: "Q.PPD"\n' >q.ppd
  printf '*Manufacturer: "vrk"\n*ModelName: "q"\n*NickName: "q"\n*ShortNickName: "q"\n' >>q.ppd
  printf '%s\n' '*OpenUI *VrkFilter: PickOne' '*DefaultVrkFilter: burkes' '*VrkFilter Default: ""' '*VrkFilter fan: ""' \
    '*VrkFilter burkes: ""' '*CloseUI: *VrkFilter' "$@" >>q.ppd
}
prints() { # "JOB OPTIONS" OPTION...: the job's dots are those of vrk print with the others
  options=$1
  shift
  "$filter" 7 me title 1 "$options" <two.ras >dots.ras 2>said || { cat said && exit 1; }
  "$vrk" print two.ras --format cups -o - --quiet "$@" | cmp - dots.ras
}
fails() { # TEXT COPIES OPTIONS [FILE]
  text=$1
  shift
  if "$filter" 7 me title "$@" <two.ras >dots.ras 2>said; then exit 1; fi
  test "$(grep -c '^ERROR: ' said)" -eq 1 && grep -q "^ERROR: .*$text" said && return
  echo "expected \"$text\":" && cat said && exit 1
}

printf 'levels=3\ninks=1\n' >four.conf
printf 'levels=4\nlift=2\nfilter=line\n' >queue.conf
printer
prints '' --filter burkes
grep -q '^PAGE: 2 1$' said
prints 'media=A4 VrkFilter=fan contrast=3 vrk-ink-limit=280 order=banded' --filter fan --contrast 3 --ink-limit 280 --order banded
prints 'VrkFilter=Default vrk-split' --split
prints 'filter=sierra-lite noVrkSplit' --filter sierra-lite
printer "*VrkSettings: \"$work/queue.conf\"" '*VrkCurve a: "s:0.3"' '*VrkCurve b: "r=gamma:2"' '*VrkInks: "6"'
prints 'order=planar' --order planar --filter burkes --inks 6 --curve s:0.3 --curve r=gamma:2 --levels 4 --lift 2
prints "settings=$work/four.conf" --filter burkes --inks 1 --levels 3 --curve s:0.3 --curve r=gamma:2 --lift 2
printer "*VrkMediaTable Glossy: \"$work/t/blobs/colors.ctsi:a=1\"" "*VrkMediaTable plain: \"$work/none\""
prints '' --filter burkes --media-table "glossy=t/blobs/colors.ctsi:a=1"
"$vrk" print gray/print.ras --format cups -o - --quiet --filter burkes >plain.ras
"$vrk" print glossy.ras --format cups -o - --quiet --filter burkes --blob t/blobs/colors.ctsi:a=1 | tail -c +5 >>plain.ras
cmp plain.ras dots.ras

# Copies of a file are the filter's to make.
"$filter" 7 me title 3 "" two.ras 2>said >copies.ras
test "$(grep -c '^PAGE: ' said)" -eq 6
{ cat plain.ras && tail -c +5 plain.ras && tail -c +5 plain.ras; } | cmp - copies.ras

# A filter that follows gets the job and the dots, and counts the pages.
printer '*VrkNextFilter: "next"'
printf '#!/bin/sh\necho "$0, $*" && cat\n' >lib/filter/next
chmod 755 lib/filter/next
"$filter" 7 me title 1 a=b <two.ras >next.ras 2>said
{ echo "$work/lib/filter/next, 7 me title 1 a=b" && "$vrk" print two.ras --format cups -o - --quiet --filter burkes; } |
  cmp - next.ras
grep -q '^STATE: -cups-missing-filter-warning$' said
if grep -q '^PAGE:' said; then exit 1; fi
for next in 'exit 3/status 3' 'cat >all; exit 4/status 4' 'kill -9 $$/signal 9'; do
  printf '#!/bin/sh\n%s\n' "${next%/*}" >lib/filter/next
  fails "filter/next: .*${next#*/}" 9 '' two.ras
done
printer '*VrkNextFilter: "missing"'
fails 'missing: No such file' 1 ''
grep -q '^STATE: +cups-missing-filter-warning$' said

# Cancelled in the middle of a page: nothing is left, the filter that follows is gone too.
printer '*VrkNextFilter: "next"'
printf '#!/bin/sh\necho $$ >pid\ncat >all\nsleep 100\n' >lib/filter/next
mkfifo pages
"$filter" 7 me title 1 '' <pages >dots.ras 2>said &
running=$!
exec 3>pages
head -c -100 two.ras >&3 # the rest does not come
while [ -z "$(ls -A tmp)" ] || [ ! -s pid ]; do sleep 0.05; done
kill $running
status=0
wait $running || status=$?
exec 3>&-
test $status -eq 143 && test -z "$(ls -A tmp)" && ! kill -0 "$(cat pid)" 2>/dev/null

# Headers that lie are refused or printed; nothing else happens.
printer
for at in $(seq 4 37 1796); do
  { head -c "$at" gray/print.ras && printf '\377\001\200\003' && tail -c +"$((at + 5))" gray/print.ras; } >lies.ras
  status=0
  "$filter" 7 me title 1 '' lies.ras >dots.ras 2>said || status=$?
  [ $status -eq 0 ] || { [ $status -eq 1 ] && grep -q '^ERROR: lies.ras' said; } || { cat said && exit 1; }
done

head -c 200000 two.ras >broken.ras
fails 'broken.ras, page 2: the stream breaks off' 1 '' broken.ras
cmp dots.ras plain.ras 2>&1 | grep -q 'EOF on dots.ras'
fails '0", expected a number from 1' 0 ''
fails 'is no raster stream' 1 '' q.ppd
fails 'nowhere: No such file' 1 '' nowhere
fails 'vrk-levles is no option of a print queue' 1 vrk-levles=4
fails 'VrkNextFilter is no option' 1 VrkNextFilter=/bin/sh
fails 'vrk-output is no option' 1 vrk-output=/tmp/x
fails 'fam not in' 1 VrkFilter=fam
fails 'format cups or pwg' 1 format=tiff
fails 'belongs to error diffusion' 1 matrix=bayer4
printer '*VrkLevels: "999"'
fails 'the queue: .*999' 1 ''
printer '*VrkLevles: "9"'
fails 'the PPD file: VrkLevles' 1 ''
echo nonsense >q.ppd
fails 'q.ppd, line 1: is no PPD file' 1 ''
