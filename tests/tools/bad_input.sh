#!/usr/bin/env bash
# Every command of the tool on bad input: a missing, unreadable, non-bitmap,
# truncated or empty file, a folder without captures, malformed manifests
# and results, bad option values. Each must answer with exactly one line on
# standard error that names the file or option, and the stated exit status
# (64 for usage errors, 1 otherwise); none may crash.
set -u
tool=$1
source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sample=$source_dir/samples/live/print_arch
C=$sample/current.bmp B=$sample/backlight.bmp D=$sample/dark.bmp
missing=$work/missing.bmp
text=$source_dir/tests/tools/data/README.md
trunc=$work/truncated.bmp
head -c 5000 "$C" >"$trunc"
empty=$work/empty.bmp
: >"$empty"
folder=$work/folder.bmp
mkdir -p "$folder" "$work/no_captures/sub"
printf 'current,dark\nc.bmp,d.bmp\n' >"$work/bad_header.csv"
printf 'current,backlight,dark\nc.bmp,b.bmp\n' >"$work/short_row.csv"
printf '{"current": "c.bmp", "backlight": "b.bmp", "dark": "d.bmp"}\n{"current": \n' >"$work/broken.jsonl"
printf 'current,label,finger_code,message,score\na.bmp,,0,ok,50\n' >"$work/unlabelled.csv"
printf 'current,label,finger_code,message,score\na.bmp,live,0,ok,fifty\n' >"$work/bad_score.csv"
: >"$work/plain_file"

failures=0
# expect STATUS TEXT COMMAND...: the status, one line on standard error
# holding TEXT.
expect() {
    local want=$1 needle=$2
    shift 2
    local err status
    err=$("$tool" "$@" 2>&1 >/dev/null)
    status=$?
    local lines
    lines=$(printf '%s' "$err" | grep -c '')
    if [ "$status" -ne "$want" ] || [ "$lines" -ne 1 ] || [[ "$err" != *"$needle"* ]]; then
        echo "FAILED: sentivo $*"
        echo "  status $status (want $want), $lines lines on standard error (want 1), want text: $needle"
        printf '  %s\n' "$err"
        failures=$((failures + 1))
    fi
}

# score, features, inspect: the file that cannot be used is named.
for command in score features; do
    expect 1 "cannot open $missing" $command "$missing" "$B" "$D"
    expect 1 "$text: refused by the image check (-32): The header size" $command "$C" "$text" "$D"
    expect 1 "$trunc: refused by the image check" $command "$C" "$B" "$trunc"
    expect 1 "$empty: the file is empty" $command "$empty" "$B" "$D"
    expect 1 "$folder: it is a folder" $command "$C" "$folder" "$D"
    expect 64 "needs CURRENT BACKLIGHT DARK" $command "$C" "$B"
    expect 64 "--security-level needs a whole number" $command --security-level high "$C" "$B" "$D"
    expect 64 "--security-level needs a value" $command "$C" "$B" "$D" --security-level
    expect 64 "unexpected operand '$C'" $command "$C" "$B" "$D" "$C"
done
expect 64 "--no-movement takes no value" score --no-movement=yes "$C" "$B" "$D"
expect 1 "cannot open $missing" features --previous "$missing" "$C" "$B" "$D"
expect 64 "--repeat and --previous exclude each other" features --repeat --previous "$C" "$C" "$B" "$D"
expect 64 "needs --out DIR" inspect "$C" "$B" "$D"
expect 1 "$trunc: " inspect "$trunc" "$B" "$D" --out "$work/inspect"
expect 1 "$work/plain_file/out" inspect "$C" "$B" "$D" --out "$work/plain_file/out"

# check: each file gets its line on standard output; standard error stays empty.
out=$("$tool" check "$missing" "$trunc" "$C" 2>"$work/check_err")
status=$?
if [ $status -ne 1 ] || [ -s "$work/check_err" ] || [[ "$out" != *"$missing"*"-200"*"cannot open"* ]] ||
    [ "$(printf '%s\n' "$out" | grep -c '')" -ne 3 ]; then
    echo "FAILED: sentivo check (status $status)"; printf '%s\n' "$out"; failures=$((failures + 1))
fi
expect 64 "needs at least one FILE" check

# batch: sources and options.
expect 1 "$work/no_captures: no captures (no folder in it holds current.bmp)" batch "$work/no_captures"
expect 1 "$work/nothing: no such file or folder" batch "$work/nothing"
expect 1 "$work/plain_file: neither a folder nor a manifest (.csv or .jsonl)" batch "$work/plain_file"
expect 1 "$work/bad_header.csv:1: the header is not current,backlight,dark[,label]" batch "$work/bad_header.csv"
expect 1 "$work/short_row.csv:2: 2 fields, not 3" batch "$work/short_row.csv"
expect 1 "$work/broken.jsonl:2: not a JSON object" batch "$work/broken.jsonl"
# manifest NAME TEXT: a manifest of that text, named by its path.
manifest() { printf "$2" >"$work/$1"; echo "$work/$1"; }
h='current,backlight,dark,label\n'
expect 1 ":2: label 'alive' is neither live, fake nor empty" batch "$(manifest l.csv "${h}c,b,d,alive\n")"
expect 1 ":2: no path for backlight" batch "$(manifest p.csv "${h}c,,d,live\n")"
expect 1 "e.csv: empty, needs the header current,backlight,dark[,label]" batch "$(manifest e.csv '')"
expect 1 "o.csv: the manifest lists no captures" batch "$(manifest o.csv "$h")"
expect 1 "k.jsonl:1: no path for backlight" batch "$(manifest k.jsonl '{"current": "c", "dark": "d"}\n')"
expect 1 "m.jsonl:1: label is not a text" batch \
    "$(manifest m.jsonl '{"current": "c", "backlight": "b", "dark": "d", "label": 1}\n')"
expect 64 "--threads needs a whole number from 1 to 1024, not '0'" batch --threads 0 "$sample"
expect 64 "--threads needs a whole number from 1 to 1024, not 'many'" batch --threads many "$sample"
expect 64 "--format needs csv or jsonl, not 'xml'" batch --format xml "$sample"
expect 64 "--resume needs --output FILE" batch --resume "$sample"
expect 64 "needs at least one SOURCE" batch --quiet
expect 1 "cannot write $work/plain_file/out.csv" batch --output "$work/plain_file/out.csv" "$sample"
printf 'not,batch,output\n' >"$work/foreign.csv"
expect 1 "$work/foreign.csv:1: not the header of batch output" batch --resume --output "$work/foreign.csv" "$sample"
# Resuming with another format or another choice of features would mix lines.
"$tool" batch --quiet --output "$work/plain.csv" "$sample" 2>/dev/null
expect 1 "$work/plain.csv: holds output of another format than jsonl; resume with its own --format" batch --format jsonl --resume --output "$work/plain.csv" "$sample"
expect 1 "$work/plain.csv: lacks the features" batch --features --resume --output "$work/plain.csv" "$sample"

# evaluate: results and options.
expect 1 "cannot open $work/none.csv" evaluate "$work/none.csv" --out "$work/ev"
expect 1 "$text:1: not the header of batch output" evaluate "$text" --out "$work/ev"
expect 1 "no capture has a label" evaluate "$work/unlabelled.csv" --out "$work/ev"
expect 1 "$work/bad_score.csv:2: score 'fifty' is not a number" evaluate "$work/bad_score.csv" --out "$work/ev"
h='current,label,finger_code,message,score\n'
j='{"current": "a", "label": null, "finger_code": '
for case in "${h}a,live,0,m\n|r1.csv:2: 4 fields, not 5" \
    "${h}a,live,0,m,5\nb,alive,0,m,5\n|r2.csv:3: label 'alive' is neither live, fake nor empty" \
    "${h}a,live,zero,m,5\n|r3.csv:2: finger_code 'zero' is not a whole number" \
    "${h}a,live,0,m,inf\n|r4.csv:2: score 'inf' is not a number" \
    "${h}a,live,0,\"m,5\n|r5.csv:2: a quoted field is not closed" \
    "${j}0, \"score\": 5}\n{\"current\": \"b\",\n|r6.csv:2: not a JSON object" \
    "${j}0.5, \"score\": 5}\n|r7.csv:1: finger_code is not a whole number" \
    "${j}0, \"score\": \"5\"}\n|r8.csv:1: score is neither a number nor null"; do
    name=${case#*|} name=${name%%:*}
    expect 1 "$work/${case#*|}" evaluate "$(manifest "$name" "${case%%|*}")" --out "$work/ev"
done
expect 1 "$work/plain_file/ev" evaluate "$work/unlabelled.csv" "$source_dir/tests/tools/data/evaluate_live.csv" --out "$work/plain_file/ev"
expect 64 "needs --out DIR" evaluate "$source_dir/tests/tools/data/evaluate_live.csv"
expect 64 "--far needs a number from 0 to 1, not '2'" evaluate "$work/unlabelled.csv" --out "$work/ev" --far 2
expect 64 "--threshold needs a number from 0 to 100, not '-1'" evaluate "$work/unlabelled.csv" --out "$work/ev" --threshold -1
expect 64 "--threshold and --far exclude each other" evaluate "$work/unlabelled.csv" --out "$work/ev" --threshold 50 --far 0.1
expect 64 "needs at least one RESULTS file" evaluate --out "$work/ev"

# threshold, demo, version and the command itself.
expect 64 "--far needs a number from 0 to 1, not 'abc'" threshold --far abc
expect 64 "--frr needs a number from 0 to 1, not '1.5'" threshold --frr 1.5
expect 64 "--score needs a number from 0 to 100, not 'nan'" threshold --score nan
expect 64 "--far and --table exclude each other" threshold --far 0.1 --table
expect 64 "needs one of --far X" threshold
expect 1 "$work/no_captures: no captures" demo "$work/no_captures"
expect 1 "$work/nothing: no such file or folder" demo "$work/nothing"
expect 64 "unexpected operand" demo "$work" "$work"
expect 64 "unexpected operand 'now'" version now
expect 64 "unknown command 'frobnicate'" frobnicate
expect 64 "needs a COMMAND"
for command in version check score batch evaluate threshold features inspect demo; do
    expect 64 "sentivo $command: unknown option '--bogus'" $command --bogus
done

if [ $failures -ne 0 ]; then
    echo "$failures cases failed"
    exit 1
fi
echo "bad input: every case answered in one line"
