#!/usr/bin/env bash
# Runs the benchmarks (ours beside OpenCV, libyuv, swscale, LibRaw and memcpy)
# over the matrix of configurations and renders one table:
#
#   hot and cold frames x 1920x1080, 1921x1080 (odd: the tails) and 64x64
#   x 1 and 2 threads
#
# Each configuration is one run of build/bench/kelcc_bench writing Google
# Benchmark JSON (<cache>-<W>x<H>-t<N>.json); scripts/bench_table.py reads
# them all and writes table.md and ratios.png beside them.
#
#   scripts/bench.sh                  the full matrix into docs/bench/
#   scripts/bench.sh --quick          short runs into build/bench-results/
#   scripts/bench.sh 'YUY2|NV12'      only the groups matching a regular
#                                     expression (into build/bench-results/)
#   --out DIR                         write elsewhere
#   --only CACHE:WxH:N[,...]          a part of the matrix, e.g. hot:1920x1080:1
#
# The full run measures every entry with repetitions and reports the median;
# it takes about 15 minutes on an idle two-core machine.
set -euo pipefail
cd "$(dirname "$0")/.."

quick=0
filter=""
out=""
only=""
while (($#)); do
  case "$1" in
    --quick) quick=1 ;;
    --out) out="$2"; shift ;;
    --out=*) out="${1#--out=}" ;;
    --only) only="$2"; shift ;;
    --only=*) only="${1#--only=}" ;;
    -h|--help) sed -n '2,21p' "$0"; exit 0 ;;
    -*) echo "bench.sh: unknown option $1" >&2; exit 2 ;;
    *) filter="$1" ;;
  esac
  shift
done
if [[ -z "$out" ]]; then
  if ((quick)) || [[ -n "$filter" || -n "$only" ]]; then out=build/bench-results; else out=docs/bench; fi
fi
command="scripts/bench.sh"
((quick)) && command+=" --quick"
[[ -n "$only" ]] && command+=" --only $only"
[[ -n "$filter" ]] && command+=" '$filter'"

scripts/deps.sh bench
build=${KELCC_BENCH_BUILD:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DKELCC_BUILD_BENCH=ON >/dev/null
cmake --build "$build" -j"$(nproc)" --target kelcc_bench
bin="$build/bench/kelcc_bench"

# Timing: every entry is measured for min_time seconds, repeated, and the
# median of the repetitions kept. Small frames take microseconds a call, so
# a shorter time gives them thousands of calls all the same.
if ((quick)); then
  reps=1
  time_big=0.005
  time_small=0.002
else
  reps=3
  time_big=0.02
  time_small=0.005
fi

configs=()
if [[ -n "$only" ]]; then
  IFS=, read -ra configs <<<"$only"
else
  for cache in hot cold; do
    for size in 1920x1080 1921x1080 64x64; do
      for threads in 1 2; do configs+=("$cache:$size:$threads"); done
    done
  done
fi

mkdir -p "$out"
rm -f "$out"/*.json
start=$(date +%s)
for c in "${configs[@]}"; do
  IFS=: read -r cache size threads <<<"$c"
  t=$time_big
  [[ "$size" == 64x64 ]] && t=$time_small
  json="$out/$cache-$size-t$threads.json"
  echo "== $cache $size $threads thread(s) -> $json"
  args=(--kb_cache="$cache" --kb_size="$size" --kb_threads="$threads" --benchmark_min_time="$t"
        --benchmark_out="$json" --benchmark_out_format=json)
  ((reps > 1)) && args+=(--benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true)
  [[ -n "$filter" ]] && args+=(--benchmark_filter="$filter")
  "$bin" "${args[@]}" >"$out/$cache-$size-t$threads.log" 2>&1 || { tail -20 "$out/$cache-$size-t$threads.log"; exit 1; }
  # Of the aggregates keep the median (the one the table reads): a quarter
  # of the size in the repository.
  /usr/bin/python3 -c '
import json, sys
d = json.load(open(sys.argv[1]))
d["benchmarks"] = [b for b in d["benchmarks"] if b.get("aggregate_name", "median") == "median"]
json.dump(d, open(sys.argv[1], "w"), indent=1)' "$json"
done
elapsed=$(($(date +%s) - start))
echo "measured ${#configs[@]} configurations in ${elapsed} s"
rm -f "$out"/*.log
/usr/bin/python3 scripts/bench_table.py "$out" --command "$command" --seconds "$elapsed"
