#!/bin/sh
# A printer application in a browser: what is set on its page is what the next job prints with, and the page of the last
# print shows it.
# usage: browser_test.sh VRK PRINTER_APP SCREENSHOTS: a directory to look at afterwards
set -eu
vrk=$1 program=$2 shots=$3
here=$(realpath "$(dirname "$0")")
# shellcheck source=/dev/null
. "$here/printer_app.sh"
work=$(mktemp -d)
trap 'stop_printer_app "$work/app"; rm -rf "$work"' EXIT
cd "$work"
mkdir prints

start_printer_app app "$program" -o server-port=$((40000 + $$ % 10000))
printer_app app add -d p -m vrk -v "file://$work/prints"
page=http://localhost:$(cat app/port)/p
"$vrk" demo -o sample --dpi 100 --quiet
mv sample/preview.png page.png

job=0
prints_with() { # SETTINGS OPTIONS: those of the page, and those of vrk
  # shellcheck disable=SC2086 # words
  "$here/browser.py" set "$page" $1
  job=$((job + 1))
  print_job app p page.png image/png 'resolution printer-resolution 150dpi' | grep '^completed' || { cat app/job.said && exit 1; }
  rm -rf expected
  # shellcheck disable=SC2086 # words
  "$vrk" print page.png -o expected --size A4 --dpi 150 --quiet $2
  diff -rq -x '*.png' -x manifest.json expected "prints/p-00000$job/page-001"
}
prints_with 'vrk-filter=burkes vrk-levels=4 vrk-inks=6 vrk-contrast=5' '--filter burkes --levels 4 --inks 6 --contrast 5'
prints_with 'vrk-filter=default vrk-levels= vrk-inks=4 vrk-halftone=dither vrk-matrix=bayer16 vrk-contrast=' \
  '--halftone dither --matrix bayer16'
"$here/browser.py" look "$page" "$shots"
