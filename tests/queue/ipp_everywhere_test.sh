#!/bin/sh
# IPP Everywhere, by ipptool's tests of it: all of them that PAPPL itself passes. The files that these tests print are
# not in Debian; pages of our own take their names.
# usage: ipp_everywhere_test.sh PRINTER_APP
set -eu
. "$(dirname "$0")/printer_app.sh"
work=$(mktemp -d)
trap 'stop_printer_app "$work/app"; rm -rf "$work"' EXIT
tests=/usr/share/cups/ipptool

# What PAPPL 1.3.1 does not pass, whatever the printer: a reason for a job that is held, overrides of pages, rendering
# intents.
cat >"$work/known" <<'END'
Print-Job with job-hold-until
PWG 5100.14 section 5.1/5.2 - Required Operations and Attributes
END

start_printer_app "$work/app" "$1"
cd "$work"
mkdir prints
printer_app app add -d p -m vrk -v "file://$work/prints"

cat >pages.ps <<'END'
%!PS
<< /PageSize [288 432] >> setpagedevice
1 0 0 setrgbcolor 20 20 100 100 rectfill showpage
0 0.5 1 setrgbcolor newpath 150 200 90 0 360 arc fill showpage
END
ln -s "$tests"/* .
cat "$tests"/ipp-*.test | sed -n 's/^\tFILE \([a-z].*\)/\1/p' | sort -u >files
draw() { gs -q -dBATCH -dNOPAUSE "$@" pages.ps 2>/dev/null; }
draw -sDEVICE=jpeg -r50 -dLastPage=1 -sOutputFile=page.jpg
draw -sDEVICE=pdfwrite -sOutputFile=page.pdf
for type in sgray-8:18 srgb-8:19; do
  for dpi in 150 300 600; do
    for pages in 1 2; do
      draw -sDEVICE=pwgraster -dcupsBitsPerColor=8 -dcupsColorSpace="${type#*:}" -r$dpi -dLastPage=$pages \
        -sOutputFile="$pages-${type%:*}-${dpi}dpi.pwg"
    done
  done
done
while read -r file; do
  made=page.${file##*.}
  case $file in
    pwg-*/document-*) made=2-$(echo "$file" | sed 's|.*samples-\(.*\)/\(.*\)/.*|\2-\1|').pwg ;;
    pwg-*) made=1-$(echo "$file" | sed 's|.*samples-\(.*\)/\(.*\)/.*|\2-\1|').pwg ;;
  esac
  mkdir -p "$(dirname "$file")"
  [ -e "$made" ] || made=pages.ps # in a form that the printer does not take: passed over
  ln -s "$work/$made" "$file"
done <files

sleep 2 # the printer's up-time is to be above 0
ipptool -tI -f 1-srgb-8-150dpi.pwg "$(printer_uri app p)" ipp-everywhere.test >said || true
sed -n 's/^    \(.*[^ ]\) *\[FAIL\]$/\1/p' said >failed
passed=$(grep -c '\[PASS\]$' said)
echo "$passed passed, $(grep -c '\[SKIP\]$' said) skipped, failed: $(cat failed)"
diff known failed || { grep -A20 "FAIL" said; exit 1; }
test "$passed" -ge 130
