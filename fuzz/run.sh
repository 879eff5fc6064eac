#!/bin/sh
# Builds the libFuzzer targets with clang++ and runs each for a bounded time
# on its seed corpus (fuzz/corpus/NAME for the target fuzz_NAME).
#
#   fuzz/run.sh [-t SECONDS] [-j JOBS] [TARGET...]
#
# -t  seconds per target (default 60); -j  targets run at once (default: the
# number of cores). Without TARGET every fuzzer runs. The build directory is
# $PPDFORGE_FUZZ_BUILD_DIR or build-fuzz in the source tree; new corpus
# entries go to BUILD/fuzz-corpus/NAME, crashes to BUILD/fuzz-artifacts/.
# Exits non-zero when a fuzzer finds a crash, a leak or a timeout, or when
# the build fails.
set -eu

here=$(cd "$(dirname "$0")" && pwd)
source_dir=$(dirname "$here")
build=${PPDFORGE_FUZZ_BUILD_DIR:-$source_dir/build-fuzz}
seconds=60
jobs=$(nproc 2>/dev/null || echo 2)

while getopts t:j:h option; do
  case $option in
    t) seconds=$OPTARG ;;
    j) jobs=$OPTARG ;;
    *) sed -n '2,13p' "$0"; exit 2 ;;
  esac
done
shift $((OPTIND - 1))

launcher=
if command -v ccache >/dev/null 2>&1; then launcher=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache; fi
cmake -S "$source_dir" -B "$build" -DCMAKE_CXX_COMPILER=clang++ $launcher \
  -DPPDFORGE_FUZZ=ON -DPPDFORGE_TESTS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -gline-tables-only" >/dev/null
cmake --build "$build" -j"$jobs" --target fuzzers

if [ $# -eq 0 ]; then
  set -- $(cd "$here/corpus" && ls)
fi

mkdir -p "$build/fuzz-corpus" "$build/fuzz-artifacts" "$build/fuzz-logs"
LSAN_OPTIONS="${LSAN_OPTIONS:+$LSAN_OPTIONS:}suppressions=$here/lsan.supp"
export LSAN_OPTIONS
failed=0
running=0
pids=
# Runs one fuzzer in the background; its log goes to fuzz-logs/NAME.log.
start() {
  name=${1#fuzz_}
  binary="$build/fuzz/fuzz_$name"
  if [ ! -x "$binary" ] || [ ! -d "$here/corpus/$name" ]; then
    echo "fuzz: no fuzzer or corpus for '$name'" >&2
    return 1
  fi
  mkdir -p "$build/fuzz-corpus/$name"
  extra=
  if [ -f "$here/$name.options" ]; then extra=$(cat "$here/$name.options"); fi
  echo "fuzz: running fuzz_$name for ${seconds}s"
  # shellcheck disable=SC2086
  "$binary" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2560 -print_final_stats=1 \
    -artifact_prefix="$build/fuzz-artifacts/$name-" $extra \
    "$build/fuzz-corpus/$name" "$here/corpus/$name" >"$build/fuzz-logs/$name.log" 2>&1 &
  pids="$pids $!:$name"
}

# Waits for every started fuzzer and reports each.
finish() {
  for entry in $pids; do
    pid=${entry%%:*}
    name=${entry#*:}
    if wait "$pid"; then
      echo "fuzz: fuzz_$name passed ($(grep -E '^stat::number_of_executed_units' "$build/fuzz-logs/$name.log" | sed 's/.*: *//') runs)"
    else
      echo "fuzz: fuzz_$name FAILED; log follows ($build/fuzz-logs/$name.log)" >&2
      tail -n 60 "$build/fuzz-logs/$name.log" >&2
      failed=1
    fi
  done
  pids=
  running=0
}

for target in "$@"; do
  start "$target" || failed=1
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then finish; fi
done
finish

if [ "$failed" -ne 0 ]; then
  echo "fuzz: failures; crashing inputs are in $build/fuzz-artifacts" >&2
  exit 1
fi
echo "fuzz: all fuzzers passed"
