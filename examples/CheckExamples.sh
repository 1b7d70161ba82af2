#!/usr/bin/env bash
# Installs the build into a prefix in the build tree, builds the C and the C++
# example against it (through find_package or through pkg-config) and runs
# both on captures whose outcomes are known.
#   CheckExamples.sh BUILD_DIR SOURCE_DIR find_package|pkg-config
set -euo pipefail
build_dir=$(cd "$1" && pwd)
source_dir=$(cd "$2" && pwd)
way=$3
work=$build_dir/examples-check/$way
captures=$source_dir/tests/conformance/synthetic
# The examples run under the sanitizers: a fault of theirs aborts the run.
warnings=(-Wall -Wextra -Werror -pedantic -fsanitize=address,undefined -fno-sanitize-recover=all)

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
libdir=$(dirname "$(find "$work/prefix" -name 'libsentivo.so' | head -n 1)")

case $way in
find_package)
    cmake -S "$source_dir/examples" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
        -DCMAKE_C_FLAGS="${warnings[*]}" -DCMAKE_CXX_FLAGS="${warnings[*]}" >/dev/null
    cmake --build "$work/build" >/dev/null
    c_program=$work/build/quickstart
    cxx_program=$work/build/score_capture
    ;;
pkg-config)
    export PKG_CONFIG_PATH=$libdir/pkgconfig
    mkdir -p "$work/build"
    c_program=$work/build/quickstart
    cxx_program=$work/build/score_capture
    cc -std=c99 "${warnings[@]}" $(pkg-config --cflags sentivo) "$source_dir/examples/quickstart.c" \
        -o "$c_program" $(pkg-config --libs sentivo)
    c++ -std=c++17 "${warnings[@]}" $(pkg-config --cflags sentivo) \
        "$source_dir/examples/score_capture.cpp" -o "$cxx_program" $(pkg-config --libs sentivo)
    ;;
*)
    echo "CheckExamples.sh: unknown way '$way' (find_package or pkg-config)" >&2
    exit 64
    ;;
esac
export LD_LIBRARY_PATH=$libdir

failures=0
fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# Runs both programs alike; they must answer alike (but for their own names
# in a usage line). Sets status, out and err from the C program.
run_both() {
    local cxx_status=0
    status=0
    "$c_program" "$@" >"$work/c.out" 2>"$work/c.err" || status=$?
    "$cxx_program" "$@" >"$work/cxx.out" 2>"$work/cxx.err" || cxx_status=$?
    out=$(cat "$work/c.out")
    err=$(sed "s#$c_program#PROGRAM#" "$work/c.err")
    [ "$status" = "$cxx_status" ] && cmp -s "$work/c.out" "$work/cxx.out" &&
        [ "$err" = "$(sed "s#$cxx_program#PROGRAM#" "$work/cxx.err")" ] ||
        fail "$*: C and C++ answer differently"
}

files() { echo "$captures/$1/current.bmp $captures/$1/backlight.bmp $captures/$1/dark.bmp"; }

# A skewed finger ends in the finger half, with the library's text.
run_both $(files skewed)
[ "$status:$out" = "1:code -770: The fingerprint has to be placed straightly. Adjust finger placement." ] ||
    fail "skewed: exit $status, '$out'"

# Well-placed fingers pass the finger half, movement test included (a finger
# that counted as moving would end with -15); code 0 comes with a score on
# the scale and exit 0, any other code alone with exit 1.
for name in live_a live_b moving_2; do
    run_both $(files $name)
    if [[ "$out" =~ ^code\ 0:\ .*$'\n'score\ ([0-9.]+)\  ]]; then
        awk -v s="${BASH_REMATCH[1]}" 'BEGIN { exit !(s <= 100) }' && [ "$status" = 0 ] ||
            fail "$name: exit $status, '$out'"
    elif ! [[ "$out" =~ ^code\ -[0-9]+:\ [^$'\n']+$ && "$status" = 1 ]] ||
        [[ "$out" =~ ^code\ -(15|768|769|770|799): ]]; then
        fail "$name: exit $status, '$out'"
    fi
done

# Files that cannot be judged: one line naming the file, exit 2.
read -r current backlight dark <<<"$(files live_a)"
head -c 3000 "$current" >"$work/truncated.bmp"
for bad in "$work/missing.bmp" "$source_dir/examples/quickstart.c" "$work" "$work/truncated.bmp"; do
    run_both "$current" "$backlight" "$bad"
    [[ "$status" = 2 && -z "$out" && "$err" == "$bad: "* && "$(wc -l <<<"$err")" = 1 ]] ||
        fail "$bad: exit $status, '$out', '$err'"
done

run_both "$current"
[[ "$status" = 64 && "$err" == usage:* ]] || fail "one argument: exit $status, '$err'"

[ "$failures" = 0 ] || exit 1
echo "examples built through $way: all checks passed"
