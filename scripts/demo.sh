#!/usr/bin/env bash
# Judges the bundled sample captures with the command-line tool, as a scanner
# would: each the second of two captures (after previous.bmp where a folder
# has one), with the library's threshold for a false acceptance rate of 1 %.
set -euo pipefail
build_dir=${1:-build}
cd "$(dirname "$0")/.."
exec "$build_dir/bin/sentivo" demo samples
