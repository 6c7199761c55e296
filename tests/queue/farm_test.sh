#!/bin/sh
# A class of two printers: forty jobs print once each, by both. When one application is killed while it prints, its job
# and those behind it go on to the other; when it is back, it takes part again.
# usage: farm_test.sh VRK_PRINTER_APP
set -eu
program=$1
here=$(dirname "$0")
# shellcheck source=/dev/null
. "$here/scheduler.sh"
# shellcheck source=/dev/null
. "$here/printer_app.sh"

work=$(mktemp -d)
trap 'stop_printer_app "$work/app1"; stop_printer_app "$work/app2"; stop_scheduler; rm -rf "$work"' EXIT
chmod 755 "$work"
mkdir "$work/cups" "$work/out1" "$work/out2"

fail() {
  echo "$@"
  lpstat -o -p
  grep -h '"picture"' "$work"/out*/*/manifest.json | sort | uniq -c
  exit 1
}
send() { # FIRST LAST: numbers as CUPS counts its jobs
  for job in $(seq "$1" "$2"); do lp -d farm -t "job $job" "$work/page.pdf" | grep -q "farm-$job " || fail "no job $job"; done
}
wait_for_all() {
  for _ in $(seq 900); do
    [ -z "$(lpstat -o)" ] && return
    sleep 0.1
  done
  fail "there are jobs left"
}
prints_of() { # JOB [PRINTER]: whole prints
  find "$work" -maxdepth 3 -path "$work/out${2:-?}/*/manifest.json" -exec grep -l "\"picture\": \"job $1\"" {} + | wc -l
}
prints_by() { # PRINTER
  find "$work/out$1" -mindepth 2 -maxdepth 2 -name manifest.json | wc -l
}
check_once() { # FIRST LAST
  for job in $(seq "$1" "$2"); do [ "$(prints_of "$job")" -eq 1 ] || fail "job $job has printed $(prints_of "$job") times"; done
}
printing_job() { lpstat -p p1 | sed -n 's/.*now printing p1-\([0-9]*\)\..*/\1/p'; }

start_scheduler "$work/cups"
for n in 1 2; do
  # Nobody else takes this port while the application is away: what answers there that it does not know a job, has
  # printed it, as CUPS sees it. Others take the first free one from 8000 on.
  start_printer_app "$work/app$n" "$program" -o server-port=$((20000 + 2 * ($$ % 10000) + n))
  printer_app "$work/app$n" add -d p$n -m vrk -v "file://$work/out$n"
  lpadmin -p p$n -E -v "$(printer_uri "$work/app$n" p$n)" -m everywhere
  lpadmin -p p$n -c farm
done
lpadmin -p farm -E -o media-default=iso_a6_105x148mm -o print-color-mode-default=color
gs -q -dBATCH -dNOPAUSE -sDEVICE=pdfwrite -sOutputFile="$work/page.pdf" -c '<< /PageSize [298 420] >> setpagedevice
  0 1 297 { dup 298 div dup 1 exch sub 0.5 setrgbcolor 0 1 420 rectfill } for showpage'

send 1 40
wait_for_all
check_once 1 40
for n in 1 2; do
  # Neither waits for the other: the shares are even, but for what one printer is ahead by.
  [ "$(prints_by $n)" -ge 10 ] || fail "printer $n has printed $(prints_by $n) of 40 jobs"
  [ "$(find "$work/out$n" -name y.pbm | wc -l)" -eq "$(prints_by $n)" ] || fail "printer $n prints without colours"
  paper=$(sed -n 's/^\*DefaultPageSize: //p' "$work/cups/etc/ppd/p$n.ppd")
  grep -q "^\*PageSize $paper:" "$work/cups/etc/ppd/p$n.ppd" || fail "the queue has not the paper of the printer, $paper"
done

# Stopped, it can finish no job; of those that it has, one is found that it had not printed yet.
send 41 60
app=$(cat "$work/app1/pid")
for _ in $(seq 200); do
  job=$(printing_job)
  kill -STOP "$app"
  [ -n "$job" ] && [ "$(printing_job)" = "$job" ] && [ "$(prints_of "$job")" -eq 0 ] && break
  kill -CONT "$app"
  job=
  sleep 0.1
done
[ -n "$job" ] || fail "the printer is never caught while it prints"
kill -KILL "$app"
cupsdisable p1 # what its service does when it ends: docs/farm.md
wait_for_all
check_once 41 60
[ "$(prints_of "$job" 2)" -eq 1 ] || fail "job $job did not go on to the other printer"

before=$(prints_by 1)
stop_printer_app "$work/app1"
start_printer_app "$work/app1" "$program" -o server-port="$(cat "$work/app1/port")"
cupsenable p1
send 61 66
wait_for_all
check_once 41 66
[ "$(prints_by 1)" -gt "$before" ] || fail "the printer that came back prints nothing"
