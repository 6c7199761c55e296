#!/bin/sh
# The filter in queues of a scheduler: the dots that come out are those of `vrk print` on the raster that went in.
# usage: filter_queue_test.sh SOURCE_DIR VRK RASTERTOVRK
set -eu
source=$1 vrk=$2 filter=$3
. "$source/tests/queue/scheduler.sh"
work=$(mktemp -d)
trap 'stop_scheduler; rm -rf "$work"' EXIT
cd "$work"

# The raster that the filter gets is kept.
cat >keeps <<'END'
#!/bin/sh
tee "$TMPDIR/../kept/raster" | "$CUPS_SERVERBIN/filter/rastertovrk" "$@"
END
mkdir kept
chown lp kept
start_scheduler "$work" "$filter" keeps
ppdc -d ppd "$source/tools/rastertovrk/vrk.drv"
cupstestppd -q -I filters ppd/*.ppd
queue() { # NAME PPD [LINE...]
  name=$1
  { sed 's/0 rastertovrk"/0 keeps"/' "$2" && shift 2 && [ $# -eq 0 ] || printf '%s\n' "$@"; } >"$name.ppd"
  lpadmin -p "$name" -E -v "file:$work/$name.out" -P "$name.ppd" 2>/dev/null
}
job() { # lp's arguments: prints, and names the job
  lp "$@" | sed 's/^request id is \([^ ]*\) .*/\1/'
}
prints() { # SECONDS OPTIONS_OF_VRK LP_ARGUMENT...: the queue's dots are those of vrk print
  seconds=$1 options=$2
  shift 2
  rm -f kept/raster
  wait_for_job "$(job "$@")" "$seconds" 'Job completed'
  # shellcheck disable=SC2086 # several options
  "$vrk" print kept/raster --format cups -o - --quiet $options >expected
  cmp expected q.out
}

cat >two.ps <<'END'
%!PS
1 0 0 setrgbcolor 50 50 200 400 rectfill showpage
0 0.5 1 setrgbcolor newpath 300 450 200 0 360 arc fill showpage
END
gs -q -dBATCH -dNOPAUSE -sDEVICE=pdfwrite -sOutputFile=two.pdf two.ps
"$vrk" tables -o t >/dev/null
chmod -R a+rX t
queue q ppd/vrkras.ppd "*VrkMediaTable Glossy: \"$work/t/blobs/colors.ctsi:a=1\""
prints 60 '' -d q -o Resolution=300dpi two.pdf
grep '^q root 1 ' page_log | grep -q ' total 2 ' # what it is charged for
prints 60 '' -d q -o Resolution=300dpi "$source/docs/page.jpg"
prints 60 '--filter sierra-lite --contrast 3 --levels 4 --inks 6 --order banded --ink-limit 250' -d q -o media=A5 \
  -o Resolution=300dpi -o VrkFilter=sierra-lite -o VrkContrast=3 -o VrkLevels=4 -o inks=6 -o VrkOrder=banded \
  -o vrk-ink-limit=250 two.pdf
prints 60 "--blob $work/t/blobs/colors.ctsi:a=1" -d q -o Resolution=300dpi -o MediaType=Glossy two.pdf
prints 60 '--matrix screens' -d q -o Resolution=300dpi -o ColorModel=Gray -o VrkMatrix=screens two.ps

head -c 100000 kept/raster >broken

# A wrong option is said in the log, a broken raster too, and the queue goes on.
wait_for_job "$(job -d q -o Resolution=300dpi -o VrkFilter=fam two.pdf)" 60 '--filter: fam not in {smooth,'
wait_for_job "$(job -d q broken)" 60 'page 1: the stream breaks off after'

# Cancelled in the middle of a page: no process, no file of it, and the queue prints the next job.
cancelled=$(job -d q -o Resolution=1200dpi two.pdf)
wait_for_job "$cancelled" 60 'Printing page 1'
cancel "$cancelled"
for process in $(job_log "$cancelled" | sed -n 's/.*Started filter .*(PID \([0-9]*\)).*/\1/p'); do
  for _ in $(seq 100); do if kill -0 "$process" 2>/dev/null; then sleep 0.1; fi; done
  if kill -0 "$process" 2>/dev/null; then exit 1; fi
done
test -z "$(ls -A tmp)" && test -z "$(find spool -name 'd*')"
prints 60 '' -d q -o Resolution=300dpi two.pdf

# A driver of CUPS follows and speaks its printer's language.
queue pcl ppd/vrkpcl.ppd
wait_for_job "$(job -d pcl -o Resolution=300dpi -o media=A4 two.pdf)" 60 'Job completed'
"$vrk" print kept/raster --format cups -o - --quiet --inks 1 |
  PPD=pcl.ppd lib/filter/rastertohp 1 me title 1 'Resolution=300dpi media=A4' 2>/dev/null | cmp - pcl.out

# What the PPD files offer is what the program offers, and every choice prints.
offered() { "$vrk" print x -o y "--$1" '?' 2>&1 | sed -n 's/.*{\(.*\)}.*/\1/p' | tr ',' '\n' | sort; }
choices() { sed -n "s|^\*$1 \([^/]*\)/.*|\1|p" ppd/vrkras.ppd | grep -v '^Default$' | sort; }
for pair in halftone=VrkHalftone filter=VrkFilter modulation=VrkModulation matrix=VrkMatrix inks=VrkInks; do
  test -n "$(offered "${pair%=*}")" && test "$(offered "${pair%=*}")" = "$(choices "${pair#*=}")"
done
"$vrk" demo -o small --inks 1 --levels 16 --dpi 20 --format cups --no-preview >/dev/null
# shellcheck disable=SC2013 # names of options are words
for option in $(sed -n 's/^\*OpenUI \*\(Vrk[^/]*\).*/\1/p' ppd/vrkras.ppd); do
  for choice in $(choices "$option"); do
    PPD=ppd/vrkras.ppd "$filter" 1 me title 1 "$option=$choice" <small/print.ras >dots.ras 2>said || { cat said && exit 1; }
  done
done
