#!/usr/bin/env bash
# Checks and scores the bundled sample captures with the command-line tool.
set -euo pipefail
build_dir=${1:-build}
cd "$(dirname "$0")/.."
exec "$build_dir/bin/sentivo" demo samples/*/*/current.bmp
