#!/bin/sh
# Instructions that not every processor has stand in the functions of their level only: those that came with AVX in
# namespace avx2, those of SSSE3 and SSE4.1 there and in namespace sse41.
# usage: levels_test.sh LIBRARY OBJDUMP
set -eu
listing=$(mktemp)
trap 'rm -f "$listing"' EXIT
"$2" -dC --no-show-raw-insn "$1" >"$listing"
awk '
/^[0-9a-f]+ <.*>:$/ { function_name = $0; next }
$2 ~ /^v[a-z]/ { level = "avx2" }
$2 ~ /^(phadd|phsub|pmaddubs|pmulhrs|pshufb|psign|pabs|palignr|pblend|blend|dpp|extractps|insertps|mpsad|packusdw|pcmpeqq|pextr[bdq]|phmin|pinsr[bdq]|pmaxs[bd]|pmaxu[wd]|pmins[bd]|pminu[wd]|pmov[sz]x|pmuldq|pmulld|ptest|round[ps])/ {
  level = "sse41"
}
level != "" {
  ++found[level]
  if (function_name !~ "vrk::(avx2" (level == "sse41" ? "|sse41" : "") ")::") {
    print level ": " $2 " in " function_name
    failed = 1
  }
  level = ""
}
END { exit failed || !found["avx2"] || !found["sse41"] }' "$listing"
