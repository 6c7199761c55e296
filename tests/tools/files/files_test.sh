#!/bin/sh
# The program's files from outside: a print is whole or absent, whatever happens, and exit codes say which.
# usage: files_test.sh VRK
set -eu
vrk=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

{ printf 'P6 200 300 255\n' && head -c 180000 /dev/urandom; } >page.ppm
fails() { # CODE TEXT COMMAND...: the command ends with the code, and says the text in one line
  code=$1 text=$2
  shift 2
  status=0
  "$@" >/dev/null 2>complaint || status=$?
  [ "$status" -eq "$code" ] && grep -q -e "$text" complaint && [ "$(wc -l <complaint)" -eq 1 ] && return
  echo "$* ends with $status and says:" && cat complaint
  exit 1
}

# Exit codes.
fails 2 '"prnt" is no command' "$vrk" prnt
fails 2 'no command is given' "$vrk"
fails 2 'name is empty' "$vrk" print page.ppm -o ''
fails 2 'belongs to the dither' "$vrk" print page.ppm -o out --halftone ed --matrix screens
echo '%PDF-1.4' >page.pdf
fails 1 'page.pdf: .* install the package ghostscript' env PATH=/nowhere "$vrk" print page.pdf -o out
fails 1 'missing.png: No such file' "$vrk" print missing.png -o out
fails 1 'standard output: No space left' sh -c '"$0" tables -o full >/dev/full' "$vrk"
"$vrk" --help | grep -q 'Exit codes: 0'
test ! -e out

# One file to standard output, and from there through a pipe.
"$vrk" print page.ppm -o one --inks 1 >/dev/null
"$vrk" print page.ppm -o - --inks 1 2>said | cmp - one/k.pbm
grep -q ': standard output$' said
"$vrk" print page.ppm -o one --format tiff >/dev/null
test "$(ls one | tr '\n' ' ')" = 'detail.png manifest.json preview.png print.tif '
"$vrk" print page.ppm -o - --format tiff --quiet | cmp - one/print.tif
cat one/print.tif | "$vrk" print - -o one >/dev/null
test ! -e one/print.tif && test -s one/k.pbm
fails 2 'expected --inks 1 or --format tiff' "$vrk" print page.ppm -o -
fails 1 'standard output: Broken pipe' sh -c '
  { until [ -e closed ]; do sleep 0.01; done; "$0" print page.ppm -o - --inks 1; echo $? >code; } |
    { exec <&-; touch closed; }
  exit "$(cat code)"' "$vrk"
fails 1 'standard output: No space left' sh -c '"$0" print page.ppm -o - --inks 1 >/dev/full' "$vrk"
test ! -e ./-

# A print that replaces another one leaves no plane of that, and nothing that is not its own.
"$vrk" print page.ppm -o four --levels 4 >/dev/null
cp -r four both
echo mine >both/notes.pgm
"$vrk" print page.ppm -o six --inks 6 >/dev/null
"$vrk" print page.ppm -o both --inks 6 >/dev/null
test "$(diff -r six both)" = 'Only in both: notes.pgm'

# Prints at once into one directory.
for _ in 1 2 3 4 5; do
  rm -rf both
  for inks in 4 6 4 6; do
    if [ "$inks" -eq 4 ]; then options='--levels 4'; else options='--inks 6'; fi
    # shellcheck disable=SC2086 # several words
    "$vrk" print page.ppm -o both $options >/dev/null &
  done
  wait
  diff -r four both >/dev/null || diff -r six both
done

# Half a picture, no room on the disk, a directory in the way: everything stays as it was.
cp -r four before
head -c 100000 page.ppm >half.ppm
fails 1 'half.ppm: ' "$vrk" print half.ppm -o four --inks 6
fails 1 'four/.*: File too large' sh -c 'ulimit -f 8; exec "$0" print page.ppm -o four --inks 6 --levels 16' "$vrk"
mkdir four/lc.pbm before/lc.pbm
fails 1 'lc.pbm: is a directory' "$vrk" print page.ppm -o four --inks 6
diff -r before four
"$vrk" tables -o t >/dev/null
mv t/dither/screens.dith kept && mkdir t/dither/screens.dith && echo old >t/inks.csc2
fails 1 'screens.dith: is a directory' "$vrk" tables -o t
test "$(cat t/inks.csc2)" = old

# What is read is not written.
cp four/preview.png photo.png
ln photo.png six/linked.png && mv six/linked.png six/detail.png
fails 1 'six/detail.png: would be replaced' "$vrk" print photo.png -o six
fails 1 'six/detail.png: would be replaced' sh -c '"$0" print - -o six <photo.png' "$vrk"
fails 1 'six/lc.pbm: would be replaced' "$vrk" print six/lc.pbm -o six
mkdir own && cp kept own/k.pbm
fails 1 'own/k.pbm: would be replaced' "$vrk" print page.ppm -o own --dith own/k.pbm
echo 'levels = 4' >own/m.pbm
fails 1 'own/m.pbm: would be replaced' "$vrk" print page.ppm -o own --settings own/m.pbm --levels 2
cp page.ppm copy.ppm
fails 1 'standard output is copy.ppm' sh -c '"$0" print copy.ppm -o - --inks 1 1<>copy.ppm' "$vrk"
cmp page.ppm copy.ppm
cmp four/preview.png photo.png

# Signals: the run ends as by the signal and leaves nothing, but for one that it was told to ignore.
mkfifo pipe
for signal in TERM HUP; do
  "$vrk" print - -o new/directory --save-settings new/kept.conf <pipe &
  run=$!
  exec 3>pipe
  head -c 90000 page.ppm >&3
  until ls -A new/directory 2>/dev/null | grep -q .; do sleep 0.01; done
  kill -s $signal $run
  status=0
  wait $run 2>/dev/null || status=$?
  exec 3>&-
  test "$(kill -l $status)" = $signal
  test ! -e new
done
(trap '' HUP && exec "$vrk" print - -o new <pipe >/dev/null) &
run=$!
exec 3>pipe
head -c 90000 page.ppm >&3
until ls -A new 2>/dev/null | grep -q .; do sleep 0.01; done
kill -s HUP $run
tail -c +90001 page.ppm >&3
exec 3>&-
wait $run
test -s new/preview.png

# A confined decoder gives the same print, through a pipe too, and a broken picture the same sentence; nothing stays of a
# run that a signal ends, whatever the command.
if "$vrk" print page.ppm -o confined --sandbox >/dev/null 2>complaint; then
  "$vrk" print page.ppm -o open >/dev/null
  diff -r open confined
  "$vrk" print page.ppm -o one --format tiff >/dev/null
  cat one/print.tif | "$vrk" print - -o confined --sandbox --quiet
  "$vrk" print one/print.tif -o open --quiet
  cmp open/k.pbm confined/k.pbm
  "$vrk" compare page.ppm -o open >/dev/null && "$vrk" compare page.ppm -o confined --sandbox >/dev/null
  cmp open/compare.png confined/compare.png
  fails 1 'half.ppm: the file ends before' "$vrk" print half.ppm -o none --sandbox
else
  grep -q 'built without libseccomp' complaint
fi
fails 1 'page.ppm: has 200 x 300 pixels, expected 1 to 199 across' "$vrk" print page.ppm -o none --max-width 199
mkdir temporary
leaves_nothing() { # COMMAND...: ended by a signal while it writes
  TMPDIR="$work/temporary" "$vrk" "$@" -o ended >/dev/null 2>&1 &
  run=$!
  until ls -A ended 2>/dev/null | grep -q . || ! kill -0 $run 2>/dev/null; do sleep 0.01; done
  kill -s TERM $run 2>/dev/null || true
  wait $run 2>/dev/null || true
  test -z "$(find . -name '.vrk-*' -o -name 'vrk-*')"
  rm -rf ended
}
leaves_nothing print page.ppm
leaves_nothing print page.ppm --sandbox
leaves_nothing compare page.ppm
