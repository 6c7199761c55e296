#!/bin/sh
# Prints by many threads, with a program that was compiled with the thread sanitizer: no two of them touch the same place
# without order, and the dots are those of one thread.
# usage: threads_test.sh VRK
set -eu
vrk=$1
TSAN_OPTIONS="suppressions=$(realpath "$(dirname "$0")")/threads.supp exitcode=66 halt_on_error=1"
export TSAN_OPTIONS
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

for options in '--inks 6 --levels 4' '--halftone dither' '--precision 16 --format tiff'; do
  for threads in 1 3 16; do
    # shellcheck disable=SC2086 # several options
    "$vrk" demo -o $threads --threads $threads --dpi 60 $options >/dev/null
    rm $threads/manifest.json # which has times
    diff -r 1 $threads
  done
  rm -r 1 3 16
done
