#!/bin/sh
# PDF and PostScript: the pages are what Ghostscript draws, and nothing that a document does harms anything.
# usage: document_test.sh VRK
set -eu
vrk=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fails() { # TEXT COMMAND...: the command ends with 1, and says the text in one line
  text=$1
  shift
  status=0
  "$@" >/dev/null 2>complaint || status=$?
  [ "$status" -eq 1 ] && grep -q -e "$text" complaint && [ "$(wc -l <complaint)" -eq 1 ] && return
  echo "$* ends with $status and says:" && cat complaint
  exit 1
}

cat >two.ps <<'END'
%!PS
<< /PageSize [200 300] >> setpagedevice
1 0 0 setrgbcolor 20 20 100 100 rectfill showpage
0 0.5 1 setrgbcolor newpath 100 150 60 0 360 arc fill showpage
END
gs -q -dBATCH -dNOPAUSE -sDEVICE=pdfwrite -sOutputFile=two.pdf two.ps
gs -q -dBATCH -dNOPAUSE -sDEVICE=cups -dcupsColorSpace=1 -dcupsBitsPerColor=8 -r100x50 -sOutputFile=two.ras two.pdf 2>/dev/null
"$vrk" print two.ras -o expected >/dev/null
test -s expected/page-002/c.pbm

# By any name, and through a pipe.
for name in two.pdf two.ps -dNOSAFER '%pipe%touch harmed'; do
  [ -e "$name" ] || cp two.pdf ./"$name"
  "$vrk" print --dpi 100x50 -o out -- "$name" >/dev/null
  for plane in k c m y; do for page in 1 2; do cmp expected/page-00$page/$plane.pbm out/page-00$page/$plane.pbm; done; done
done
cat two.pdf | "$vrk" print - --dpi 100x50 -o out >/dev/null
cmp expected/page-002/m.pbm out/page-002/m.pbm

# As one stream of all pages, which a printer's own filter reads.
cat two.ras | "$vrk" print - --format cups --order planar --levels 4 --quiet >kcmy.ras
"$vrk" print two.pdf --dpi 100x50 --format cups --order planar --levels 4 -o - --quiet | cmp - kcmy.ras
"$vrk" print two.ras --format cups --order planar --levels 4 -o one >/dev/null
{ cat one/page-001/print.ras && tail -c +5 one/page-002/print.ras; } | cmp - kcmy.ras
fails 'has several pages, expected one' "$vrk" print two.ras --format tiff -o -

# Documents that cannot be drawn, in part or as a whole.
fails 'ends.pdf: Ghostscript cannot draw it: ' sh -c 'head -c 300 two.pdf >ends.pdf && "$0" print ends.pdf -o none' "$vrk"
printf '%%!PS\nnonsense\n' >wrong.ps
fails 'wrong.ps: Ghostscript cannot draw it: Error: /undefined in nonsense' "$vrk" print wrong.ps -o none
printf '%%!PS\n(/etc/passwd) (r) file 100 string readstring showpage\n' >reads.ps
fails 'reads.ps: .*invalidfileaccess' "$vrk" print reads.ps -o none
test ! -e none
{ cat two.ps && echo nonsense; } >late.ps
fails 'late.ps: .*undefined in nonsense' "$vrk" print late.ps --dpi 100x50 -o late
cmp expected/page-002/c.pbm late/page-002/c.pbm
test ! -e harmed
