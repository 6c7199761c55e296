#!/bin/sh
# The program from its command line: its own tables serve it, a broken picture leaves nothing behind.
# usage: program_test.sh VRK
set -eu
vrk=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$vrk" demo --dpi 20 -o demo --inks 6 >/dev/null
for file in k.pbm c.pbm m.pbm y.pbm lc.pbm lm.pbm preview.png detail.png; do test -s "demo/$file"; done

"$vrk" tables -o t >/dev/null
# shellcheck disable=SC2046 # names of our own
"$vrk" inspect $(find t -type f) --plot drawn >/dev/null
test "$(ls drawn | wc -l)" -eq "$(find t -type f | wc -l)"
if "$vrk" tables -o none inks.csc2 ink 2>complaint; then exit 1; fi
grep -q 'no table "ink"; there are inks.csc2, ' complaint && test ! -e none
{ printf 'P6 40 20 255\n' && head -c 2400 /dev/zero | tr '\0' '\147'; } >page.ppm
print() { "$vrk" print page.ppm -o out "$@" >/dev/null; }
for table in t/colors/*.csc1; do print --csc1 "$table"; done
for table in t/levels/*.edpr; do print --edpr "$table"; done
for table in t/filters/*.edtb; do print --edtb "$table"; done
print --csc2 t/six/inks.csc2 --edpr t/six/levels.edpr
for table in t/cells/*.edpr; do print --edpr "$table"; done
for table in t/dither/*.dith; do print --dith "$table"; done
for table in t/curves/*.1dlt; do print --curve "$table" --post "$table" --post k="$table"; done
print --post t/six/split.1dlt
print --blob t/blobs/inks.ctsi
print --blob t/blobs/colors.ctsi:a=1 --blob t/blobs/tones.ctsi:step=-1 --blob t/blobs/ink-tones.ctsi \
  --blob t/blobs/ranks.ctsi:step=1
print --blob t/blobs/older-tones.ctsi:step=1 --balance2 1,2 --inks 1 --halftone dither
print --blob t/blobs/inks.ctsi:b=1 --blob t/blobs/levels.ctsi:levels=6

# A chart of which each ink is measured as if its dots grew, and a page in four inks and in six with the curves from it.
for inks in 4 6; do
  "$vrk" chart -o chart --inks $inks --size A5 --dpi 100 --steps 6 >/dev/null
  sed -e 's/^CTI2/CTI3/' -e 's/ XYZ_X XYZ_Y XYZ_Z/ LAB_L LAB_A LAB_B/' chart/chart.ti2 |
    awk -v inks=$inks '/^[0-9]/ { for (i = 3; i < 3 + inks; ++i) l[i] = $i; used = 0
        for (i = 3; i < 3 + inks; ++i) used += l[i]
        for (i = 1; i < 3 + inks; ++i) printf "%s ", $i; print 95 - 7 * sqrt(used), 0, used; next } { print }' >measured.ti3
  "$vrk" calibrate measured.ti3 -o curves.1dlt >/dev/null
  test -s curves.png
  "$vrk" print page.ppm -o out --inks $inks --post curves.1dlt >/dev/null
done

"$vrk" compare page.ppm -o sheet --inks 6 --levels 3 --modulation none --crop 39 0 >/dev/null
test -s sheet/compare.png

# Words that bash offers for the last one of a command line.
# shellcheck disable=SC2094 # the file and the command of one name
"$vrk" completion bash >completion
completes() { # WORDS WORD...
  test "$1" = "$(shift && bash -c '. ./completion && COMP_WORDS=(vrk "$@") COMP_CWORD=$# && _vrk && echo "${COMPREPLY[*]}"' bash "$@")"
}
completes 'print' pri
completes 'chart calibrate compare' c
completes '--fill --filter' print --fil
completes 'smooth shiau-fan sierra-lite sierra-two-row' print photo.jpg --filter s
completes 'burkes' print --filter = b
completes 'planes pwg' print photo.jpg --format p
completes '' print --profile --
completes '' print pho
completes '--points --precision' link --p

if head -c 1000 page.ppm | "$vrk" print - -o broken 2>complaint; then exit 1; fi
test "$(wc -l <complaint)" -eq 1
grep -q '^vrk: standard input: ' complaint
test -z "$(ls -A broken)"
