#!/usr/bin/env bash
# The C quick start of the README is examples/quickstart.c, which the suite
# builds and runs: the first C code block after the file's name must equal
# the file line for line.
#   CheckQuickstartDocs.sh SOURCE_DIR
set -euo pipefail
source_dir=$1
program=$source_dir/examples/quickstart.c
checked=0
failed=0
for doc in "$source_dir/README.md"; do
    [ -f "$doc" ] && grep -q 'examples/quickstart\.c' "$doc" || continue
    shown=$(awk '
        !named && /examples\/quickstart\.c/ { named = 1 }
        named && !inside && !done && /^```c[[:space:]]*$/ { inside = 1; next }
        inside && /^```[[:space:]]*$/ { inside = 0; done = 1 }
        inside { print }' "$doc")
    checked=$((checked + 1))
    if [ -z "$shown" ]; then
        echo "$doc: names examples/quickstart.c but shows no C code block after it" >&2
        failed=1
    elif ! diff -u --label "$program" --label "$doc" "$program" - <<<"$shown" >&2; then
        echo "$doc: the C quick start differs from examples/quickstart.c" >&2
        failed=1
    fi
done
if [ "$checked" = 0 ]; then
    echo "README.md does not show examples/quickstart.c" >&2
    exit 1
fi
exit "$failed"
