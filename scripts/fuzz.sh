#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs the flow's target for the given number
# of seconds, seeded with the conformance captures:
#   scripts/fuzz.sh [SECONDS] [TARGET]
# Without clang it says so and exits 0, so that CI on a machine without it
# goes on.
set -euo pipefail
seconds=${1:-60}
target=${2:-evaluate_capture}
cd "$(dirname "$0")/.."
if ! command -v clang++ >/dev/null 2>&1; then
    echo "fuzz: clang++ not installed, skipped"
    exit 0
fi
build_dir=build-fuzz
cmake -S . -B "$build_dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang \
    -DCMAKE_CXX_COMPILER=clang++ -DSENTIVO_BUILD_FUZZ=ON -DSENTIVO_BUILD_TESTS=OFF \
    -DSENTIVO_BUILD_BENCH=OFF -DSENTIVO_BUILD_TOOLS=OFF -DSENTIVO_WERROR=OFF >/dev/null
cmake --build "$build_dir" -j "$(nproc)" --target "fuzz_$target"
corpus="$build_dir/corpus/$target"
mkdir -p "$corpus"
if [ "$target" = evaluate_capture ]; then
    # The replay program writes the conformance captures as seeds.
    cmake --build "$build_dir" -j "$(nproc)" --target replay_evaluate_capture_seeds >/dev/null
    "$build_dir/bin/replay_evaluate_capture_seeds" tests/conformance --write-corpus "$corpus"
fi
"$build_dir/bin/fuzz_$target" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2048 \
    -print_final_stats=1 "$corpus"
