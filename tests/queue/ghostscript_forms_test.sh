#!/bin/sh
# Every form of raster that Ghostscript writes prints as the same page does that it draws as a picture.
# usage: ghostscript_forms_test.sh VRK
set -eu
vrk=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Colours in fifths, which 8 bits and 16 have exactly.
cat >rgb.ps <<'END'
%!PS
<< /PageSize [72 36] >> setpagedevice
0 1 35 { /i exch def i 6 mod 5 div i 6 idiv 5 div i 7 mul 6 mod 5 div setrgbcolor i 2 mul 0 2 36 rectfill } for
showpage
END
sed 's/setrgbcolor/pop pop setgray/' rgb.ps >gray.ps
sed 's/setrgbcolor/i 5 mul 6 mod 5 div setcmykcolor/' rgb.ps >cmyk.ps

draw() { # FILE OPTION...
  file=$1
  shift
  gs -q -dBATCH -dNOPAUSE -r100 -sstdout=%stderr -sOutputFile="$file" "$@" 2>said || { cat said && exit 1; }
}
print() { "$vrk" print "$1" --dpi 100 -o "$2" --quiet --no-preview --picture-profile none; }
same() { # DEVICE PAGE BITS SPACE ORDER
  draw page.ras -sDEVICE="$1" -dcupsColorSpace="$4" -dcupsBitsPerColor="$3" -dcupsColorOrder="$5" "$2".ps
  print page.ras out
  for ink in k c m y; do cmp "$2$3/$ink.pbm" out/page-001/$ink.pbm || { echo "$*" && exit 1; }; done
}

draw rgb.ppm -sDEVICE=ppmraw rgb.ps
draw gray.pgm -sDEVICE=pgmraw gray.ps
draw cmyk.pam -sDEVICE=pamcmyk32 cmyk.ps
draw rgb.png -sDEVICE=png48 rgb.ps
{ echo P5 100 50 65535 && tail -c 5000 gray.pgm | od -An -v -tu1 -w1 | while read -r v; do printf "\\$(printf %03o "$v")%.0s" 1 2; done; } >gray16.pgm
print rgb.ppm rgb8 && print gray.pgm gray8 && print cmyk.pam cmyk8 && print rgb.png rgb16 && print gray16.pgm gray16
cp -r cmyk8 cmyk16 # amounts of ink go the same way

for bits in 8 16; do
  for order in 0 1 2; do
    for space in 1 4 19 20; do same cups rgb $bits $space $order; done
    for space in 0 3 18; do same cups gray $bits $space $order; done
    for space in 6 8; do same cups cmyk $bits $space $order; done
  done
  for device in pwgraster urf; do
    same $device rgb $bits 19 0
    same $device rgb $bits 20 0
    same $device gray $bits 18 0
    same $device cmyk $bits 6 0
  done
done
for bits in 1 2 4; do # dots that Ghostscript has made of colours are nothing to make others of
  draw page.ras -sDEVICE=cups -dcupsColorSpace=1 -dcupsBitsPerColor=$bits rgb.ps
  print page.ras out 2>said && exit 1
  grep -q "page 1: its header has $bits bits\? a colour, expected 8 or 16" said
done
