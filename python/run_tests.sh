#!/usr/bin/env bash
# Installs the package offline into a fresh virtual environment made with the
# system's Python (whose numpy, pytest and dask it sees) and runs its tests
# there against a given libsentivo.so.
#   run_tests.sh WORK_DIR SOURCE_DIR LIBRARY [PYTHON] [PYTEST ARGS...]
set -euo pipefail
work=$1
source_dir=$2
library=$3
python=${4:-/usr/bin/python3}
shift $(( $# < 4 ? $# : 4 ))

test -f "$library" || { echo "run_tests.sh: $library: no such library" >&2; exit 1; }
rm -rf "$work"
mkdir -p "$work"
# pip builds a local folder in place: build from a copy, not in the source tree.
cp -r "$source_dir/python" "$work/src"
rm -rf "$work/src/build" "$work/src"/*.egg-info
"$python" -m venv --system-site-packages "$work/venv"
"$work/venv/bin/pip" install --no-build-isolation --no-index --quiet --disable-pip-version-check "$work/src"

cd "$work"
export SENTIVO_LIBRARY=$library SENTIVO_SOURCE_DIR=$source_dir SENTIVO_EXPECT_INSTALLED=1
export PYTHONDONTWRITEBYTECODE=1
exec "$work/venv/bin/python" -m pytest -p no:cacheprovider -q "$source_dir/python/tests" "$@"
