#!/usr/bin/env bash
# Runs the benchmarks of bench/ on a Release build.
set -euo pipefail
build_dir=${1:-build}
cd "$(dirname "$0")/.."
if [ ! -x "$build_dir/bin/sentivo_bench" ]; then
    echo "no benchmarks built in $build_dir" >&2
    exit 1
fi
exec "$build_dir/bin/sentivo_bench" --benchmark_counters_tabular=true "${@:2}"
