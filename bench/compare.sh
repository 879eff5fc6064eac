#!/usr/bin/env bash
# Times whole processes: `ppdforge generate` against CUPS's PPD compiler ppdc
# on the same printer (the anchor's big.drv / big20.drv and the products of
# examples/big and examples/big20 made from them by bench/make_examples.py).
#
#   bench/compare.sh [PPDFORGE] [ANCHOR]
#
# PPDFORGE defaults to build/ppdforge, ANCHOR to ../shared/bench-anchor next to
# the repository. Environment: ROUNDS (default 7) rounds of RUNS (default 3)
# runs; in each round ppdc runs first, then ppdforge, so that both see the
# same machine load; CASES (e.g. "1,3") keeps only those cases, numbered as
# printed by default (1 English ... 6 the 20 models in 8 languages, hidden). Prints the median wall time of each tool and their ratio,
# the median CPU time (user + system, per round; steadier than the wall time
# on a busy machine) and its ratio, and the peak memory (maximum resident set
# size, from /usr/bin/time -v).
# Needs hyperfine, GNU time, ppdc and cupstestppd (Debian: hyperfine, time,
# cups-ppdc, cups-client). Before timing, the PPDs of both tools are checked
# with cupstestppd.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
repo="$(dirname "$here")"
ppdforge="$(realpath "${1:-$repo/build/ppdforge}")"
anchor="$(realpath "${2:-$repo/../shared/bench-anchor}")"
rounds="${ROUNDS:-7}"
runs="${RUNS:-3}"
languages="en,de,fr,es,it,ja,pt,ru,zh_CN"
big="$repo/examples/big/alp9100.plist"
bundle="$repo/examples/big/acme-laserpro.bundle"
big20=("$repo"/examples/big20/*.plist)

for tool in hyperfine ppdc cupstestppd python3; do
  command -v "$tool" >/dev/null || { echo "compare.sh: $tool is missing" >&2; exit 2; }
done
[ -x /usr/bin/time ] || { echo "compare.sh: /usr/bin/time (GNU time) is missing" >&2; exit 2; }
[ -x "$ppdforge" ] || { echo "compare.sh: no ppdforge program at $ppdforge" >&2; exit 2; }

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/ppdc" "$work/ppdforge" "$work/root/usr/lib/cups/filter"
for filter in rastertoacme pdftoacme pstoacme urftoacme; do
  printf '#!/bin/sh\nexit 0\n' >"$work/root/usr/lib/cups/filter/$filter"
  chmod 755 "$work/root/usr/lib/cups/filter/$filter"
done

# Appends the wall times of a hyperfine run to one file and its mean CPU time
# (user + system) to another.
cat >"$work/times.py" <<'EOF'
import json, sys
result = json.load(open(sys.argv[1]))["results"][0]
with open(sys.argv[2], "a") as times:
    times.write("".join("%r\n" % t for t in result["times"]))
with open(sys.argv[3], "a") as cpu:
    cpu.write("%r\n" % (result["user"] + result["system"]))
EOF

# name | environment of ppdc | ppdc command | ppdforge command
cases=(
  "English|-|ppdc -d $work/ppdc big.drv|$ppdforge generate $big --strings $bundle -o $work/ppdforge/alp9100.ppd"
  "8 languages|-|ppdc -D L10N -l $languages -d $work/ppdc big.drv|$ppdforge generate $big --strings $bundle --languages $languages -o $work/ppdforge/alp9100.ppd"
  "8 languages, CUPS catalogs hidden|LOCALEDIR=/nonexistent|ppdc -D L10N -l $languages -d $work/ppdc big.drv|$ppdforge generate $big --strings $bundle --languages $languages -o $work/ppdforge/alp9100.ppd"
  "20 models, English|-|ppdc -d $work/ppdc big20.drv|$ppdforge generate ${big20[*]} --strings $bundle -o $work/ppdforge"
  "20 models, 8 languages|-|ppdc -D L10N -l $languages -d $work/ppdc big20.drv|$ppdforge generate ${big20[*]} --strings $bundle --languages $languages -o $work/ppdforge"
  "20 models, 8 languages, CUPS catalogs hidden|LOCALEDIR=/nonexistent|ppdc -D L10N -l $languages -d $work/ppdc big20.drv|$ppdforge generate ${big20[*]} --strings $bundle --languages $languages -o $work/ppdforge"
)

# Runs "$@" with the case's environment in the anchor directory (ppdc reads
# its #po catalogs relative to it).
in_anchor() {
  local environment="$1"
  shift
  if [ "$environment" = "-" ]; then
    (cd "$anchor" && "$@")
  else
    (cd "$anchor" && env "$environment" "$@")
  fi
}

check() {
  local failed=0 ppd
  for ppd in "$work"/ppdc/*.ppd "$work"/ppdforge/*.ppd; do
    if ! cupstestppd -q -R "$work/root" "$ppd"; then
      echo "compare.sh: cupstestppd rejects $ppd" >&2
      failed=1
    fi
  done
  rm -f "$work"/ppdc/*.ppd "$work"/ppdforge/*.ppd
  return $failed
}

# Peak memory in KiB: the largest of three runs.
peak() {
  local environment="$1" command="$2" best=0 kib i
  for i in 1 2 3; do
    # shellcheck disable=SC2086
    kib=$(in_anchor "$environment" /usr/bin/time -v $command 2>&1 >/dev/null |
      awk -F: '/Maximum resident set size/ {gsub(/ /, "", $2); print $2}')
    [ "$kib" -gt "$best" ] && best=$kib
  done
  echo "$best"
}

printf '%-46s %11s %11s %7s %11s %11s %7s %10s %10s\n' "case" "ppdc" "ppdforge" "ratio" \
  "ppdc cpu" "ours cpu" "ratio" "ppdc mem" "ours mem"
number=0
for entry in "${cases[@]}"; do
  number=$((number + 1))
  if [ -n "${CASES:-}" ] && [[ ",$CASES," != *",$number,"* ]]; then continue; fi
  IFS='|' read -r name environment ppdc_command ours_command <<<"$entry"
  # shellcheck disable=SC2086
  in_anchor "$environment" $ppdc_command >/dev/null
  # shellcheck disable=SC2086
  $ours_command
  check
  : >"$work/ppdc.times"
  : >"$work/ours.times"
  : >"$work/ppdc.cpu"
  : >"$work/ours.cpu"
  for ((round = 0; round < rounds; round++)); do
    in_anchor "$environment" hyperfine -N --style none --warmup 1 --runs "$runs" \
      --export-json "$work/round.json" "$ppdc_command" >/dev/null 2>&1
    python3 "$work/times.py" "$work/round.json" "$work/ppdc.times" "$work/ppdc.cpu"
    in_anchor - hyperfine -N --style none --warmup 1 --runs "$runs" \
      --export-json "$work/round.json" "$ours_command" >/dev/null 2>&1
    python3 "$work/times.py" "$work/round.json" "$work/ours.times" "$work/ours.cpu"
  done
  ppdc_memory=$(peak "$environment" "$ppdc_command")
  ours_memory=$(peak - "$ours_command")
  python3 - "$name" "$work" "$ppdc_memory" "$ours_memory" <<'EOF'
import statistics, sys
name, work, ppdc_kib, ours_kib = sys.argv[1:]
def median(file):
    return statistics.median(float(x) for x in open(work + "/" + file).read().split())
ppdc, ours = median("ppdc.times"), median("ours.times")
ppdc_cpu, ours_cpu = median("ppdc.cpu"), median("ours.cpu")
print("%-46s %8.2f ms %8.2f ms %6.1fx %8.2f ms %8.2f ms %6.1fx %6.1f MiB %6.1f MiB" %
      (name, ppdc * 1000, ours * 1000, ppdc / ours, ppdc_cpu * 1000, ours_cpu * 1000, ppdc_cpu / ours_cpu,
       int(ppdc_kib) / 1024, int(ours_kib) / 1024))
EOF
done
