#!/usr/bin/env bash
# Runs the benchmarks on a Release build: the whole flow against the
# transforms it needs (with the ratios and the footprint), then every stage
# and operator alone. Extra arguments go to both programs, for example
# --benchmark_filter=Spectrum.
set -euo pipefail
build_dir=${1:-build}
cd "$(dirname "$0")/.."
for program in sentivo_pipeline_bench sentivo_bench; do
    if [ ! -x "$build_dir/bin/$program" ]; then
        echo "no $program built in $build_dir" >&2
        exit 1
    fi
done
"$build_dir/bin/sentivo_pipeline_bench" "${@:2}"
echo
exec "$build_dir/bin/sentivo_bench" --benchmark_counters_tabular=true "${@:2}"
