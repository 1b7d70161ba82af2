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
warnings=(-Wall -Wextra -Werror -pedantic)

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

# Runs both programs with the same arguments; they must answer alike.
# Sets status, out and err from the C program.
run_both() {
    set +e
    "$c_program" "$@" >"$work/c.out" 2>"$work/c.err"
    status=$?
    "$cxx_program" "$@" >"$work/cxx.out" 2>"$work/cxx.err"
    local cxx_status=$?
    set -e
    out=$(cat "$work/c.out")
    err=$(cat "$work/c.err")
    [ "$status" = "$cxx_status" ] || fail "$*: exit $status from C, $cxx_status from C++"
    cmp -s "$work/c.out" "$work/cxx.out" || fail "$*: C and C++ print differently"
    # Alike but for the program's own name in a usage line.
    [ "${err//$c_program/PROGRAM}" = "$(sed "s#$cxx_program#PROGRAM#" "$work/cxx.err")" ] ||
        fail "$*: C and C++ complain differently"
}

files() { echo "$captures/$1/current.bmp $captures/$1/backlight.bmp $captures/$1/dark.bmp"; }

# A skewed finger ends in the finger half, with the library's text.
run_both $(files skewed)
[ "$status" = 1 ] || fail "skewed: exit $status, not 1"
[ "$out" = "code -770: The fingerprint has to be placed straightly. Adjust finger placement." ] ||
    fail "skewed: '$out'"

# Well-placed fingers pass the finger half, movement test included (a finger
# that counted as moving would end with -15); a code of 0 comes with a score
# on the scale.
for name in live_a live_b moving_2; do
    run_both $(files $name)
    code=$(sed -n 's/^code \(-\{0,1\}[0-9]*\): .*/\1/p' <<<"$out" | head -n 1)
    case $code in
    "") fail "$name: no code in '$out'" ;;
    -15 | -768 | -769 | -770 | -799) fail "$name: ended in the finger half: '$out'" ;;
    0)
        [ "$status" = 0 ] || fail "$name: exit $status with code 0"
        score=$(sed -n 's/^score \([0-9.]*\) .*/\1/p' <<<"$out")
        awk -v s="$score" 'BEGIN { exit !(s != "" && s >= 0 && s <= 100) }' ||
            fail "$name: score '$score' off the scale"
        ;;
    *)
        [ "$status" = 1 ] || fail "$name: exit $status with code $code"
        [ "$(wc -l <<<"$out")" = 1 ] || fail "$name: a score without code 0: '$out'"
        ;;
    esac
done

# Files that cannot be judged: one line naming the file, exit 2.
read -r current backlight dark <<<"$(files live_a)"
head -c 3000 "$current" >"$work/truncated.bmp"
for bad in "$work/missing.bmp" "$source_dir/examples/quickstart.c" "$work" "$work/truncated.bmp"; do
    for slot in 0 2; do
        args=("$current" "$backlight" "$dark")
        args[$slot]=$bad
        run_both "${args[@]}"
        [ "$status" = 2 ] || fail "$bad: exit $status, not 2"
        [ -z "$out" ] || fail "$bad: printed '$out'"
        [[ "$err" == "$bad: "* && "$(wc -l <<<"$err")" = 1 ]] || fail "$bad: complaint '$err'"
    done
done

run_both "$current"
[ "$status" = 64 ] || fail "one argument: exit $status, not 64"
[[ "$err" == usage:* ]] || fail "one argument: '$err'"

[ "$failures" = 0 ] || exit 1
echo "examples built through $way: all checks passed"
