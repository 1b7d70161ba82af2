#!/usr/bin/env python3
"""Writes classifier/RateTables.cpp: the false acceptance and false rejection
rates of the trained net at the 1000 thresholds k / 999.

Only some rows come from the evaluation of the net (GIVEN_ROWS below). The
other rows are filled in between them:

* Every rate is a count of errors over the evaluation set: FAR = n / 21741,
  FRR = n / 7511. The generator works on those integer counts.
* Between two fixed rows the counts move along the straight line that joins
  the fixed rows' counts. For row k the point on that line is chosen whose
  score 100 * FRR / (FRR + FAR) is 100 * k / 999, clamped to the scores of the
  two fixed rows, and its counts are rounded to whole numbers. Since the FAR
  count only falls and the FRR count only rises along the line, both tables
  stay monotonic and the score never falls.
* The net's output for a feature vector equal to the mean of the evaluation
  set falls on row 553, whose score is 55.124; that row is fixed as well.

Each value is written as n / N printed with %.15f, trailing zeros dropped,
which is how the given rows are printed. Before writing, the script checks
every rule the tables must keep and stops with an error if one is broken.

Usage: generate_rate_tables.py [output file]
(default: classifier/RateTables.cpp beside this script's folder)
"""

import os
import sys

FAR_DENOMINATOR = 21741  # impostor attempts of the evaluation set
FRR_DENOMINATOR = 7511  # genuine attempts of the evaluation set
ROWS = 1000
SCORE_TOLERANCE = 0.77

# Rows measured on the evaluation set: row, FarTable, FrrTable, as printed.
GIVEN_ROWS = [
    (0, "0.813072075801481", "0.0"),
    (1, "0.719654109746562", "0.000798828385035"),
    (2, "0.662343038498689", "0.001331380641725"),
    (5, "0.506140471919415", "0.002795899347623"),
    (10, "0.420909801757049", "0.004393556117694"),
    (25, "0.338070925900373", "0.008787112235388"),
    (50, "0.272756542937307", "0.014378910930635"),
    (100, "0.207442159974242", "0.023166023166023"),
    (200, "0.153764776229244", "0.038476900545866"),
    (300, "0.123361390920381", "0.052855811476501"),
    (400, "0.101375281725772", "0.067234722407136"),
    (500, "0.082930867945357", "0.082678737851152"),
    (600, "0.068810082332919", "0.102116895220343"),
    (700, "0.056391150361069", "0.130075888696578"),
    (800, "0.042316360792972", "0.166156304087339"),
    (900, "0.027275654293731", "0.235521235521236"),
    (950, "0.01720252058323", "0.31154307016376"),
    (975, "0.010211121843521", "0.389295699640527"),
    (990, "0.005381537187802", "0.506324058048196"),
    (995, "0.003127731015133", "0.577819198508854"),
    (998, "0.001747849684927", "0.685394754360272"),
    (999, "0.0", "0.856077752629477"),
]

# Rows whose score is fixed to three decimals: row, score.
FIXED_SCORES = [(553, 55.124)]

# The rows where FAR and FRR are nearest, and their rates to four decimals.
NEAREST_ROWS = (499, 500)
NEAREST_RATES = ("0.0829", "0.0827")


class RuleBroken(Exception):
    pass


def require(condition, message):
    if not condition:
        raise RuleBroken(message)


def literal(count, denominator):
    text = "%.15f" % (count / denominator)
    text = text.rstrip("0")
    return text + "0" if text.endswith(".") else text


def score(far, frr):
    # Same operations in the same order as the library: left to right, doubles.
    return 100.0 * frr / (frr + far)


def count_score(far_count, frr_count):
    return score(far_count / FAR_DENOMINATOR, frr_count / FRR_DENOMINATOR)


def target(k):
    return 100.0 * k / (ROWS - 1)


def given_counts():
    rows = {}
    for k, far_text, frr_text in GIVEN_ROWS:
        far_count = round(float(far_text) * FAR_DENOMINATOR)
        frr_count = round(float(frr_text) * FRR_DENOMINATOR)
        require(literal(far_count, FAR_DENOMINATOR) == far_text,
                "row %d: FAR %s is not a count over %d" % (k, far_text, FAR_DENOMINATOR))
        require(literal(frr_count, FRR_DENOMINATOR) == frr_text,
                "row %d: FRR %s is not a count over %d" % (k, frr_text, FRR_DENOMINATOR))
        rows[k] = (far_count, frr_count)
    return rows


def point_on_segment(start, end, wanted):
    """The real-valued counts on the line from start to end whose score is
    wanted, which must lie between the scores of the two ends."""
    lo, hi = 0.0, 1.0
    for _ in range(100):
        mid = (lo + hi) / 2
        far = start[0] + mid * (end[0] - start[0])
        frr = start[1] + mid * (end[1] - start[1])
        if count_score(far, frr) < wanted:
            lo = mid
        else:
            hi = mid
    u = (lo + hi) / 2
    return start[0] + u * (end[0] - start[0]), start[1] + u * (end[1] - start[1])


def fix_score(k, wanted, before, after):
    """Counts for row k, between its fixed neighbours, that score wanted to
    three decimals, as near as possible to the straight line between them."""
    ideal_far, ideal_frr = point_on_segment(before, after, wanted)
    best = None
    for far_count in range(after[0], before[0] + 1):
        for frr_count in range(before[1], after[1] + 1):
            if abs(count_score(far_count, frr_count) - wanted) >= 0.0004:
                continue
            distance = ((far_count - ideal_far) / ideal_far) ** 2 + (
                (frr_count - ideal_frr) / ideal_frr) ** 2
            if best is None or distance < best[0]:
                best = (distance, (far_count, frr_count))
    require(best is not None, "row %d: no counts score %.3f" % (k, wanted))
    return best[1]


def fill(fixed):
    counts = [None] * ROWS
    anchors = sorted(fixed)
    for k in anchors:
        counts[k] = fixed[k]
    for k0, k1 in zip(anchors, anchors[1:]):
        start, end = fixed[k0], fixed[k1]
        s0, s1 = count_score(*start), count_score(*end)
        for k in range(k0 + 1, k1):
            wanted = min(max(target(k), s0), s1)
            far, frr = point_on_segment(start, end, wanted)
            counts[k] = (round(far), round(frr))
    return counts


def check(far_texts, frr_texts):
    far = [float(t) for t in far_texts]
    frr = [float(t) for t in frr_texts]
    require(len(far) == ROWS and len(frr) == ROWS, "tables must have %d rows" % ROWS)
    for k, far_text, frr_text in GIVEN_ROWS:
        require(far_texts[k] == far_text and frr_texts[k] == frr_text,
                "row %d differs from the given row" % k)
    scores = [score(far[k], frr[k]) for k in range(ROWS)]
    for k in range(ROWS):
        for value, denominator, name in ((far[k], FAR_DENOMINATOR, "FAR"),
                                         (frr[k], FRR_DENOMINATOR, "FRR")):
            require(abs(value * denominator - round(value * denominator)) < 1e-9,
                    "row %d: %s is not a multiple of 1/%d" % (k, name, denominator))
        require(far[k] != 0.0 or frr[k] != 0.0, "row %d: both rates are 0" % k)
        require(abs(scores[k] - target(k)) <= SCORE_TOLERANCE,
                "row %d: score %.6f is more than %.2f from %.6f"
                % (k, scores[k], SCORE_TOLERANCE, target(k)))
        if k > 0:
            require(far[k] <= far[k - 1], "row %d: FAR rises" % k)
            require(frr[k] >= frr[k - 1], "row %d: FRR falls" % k)
            require(scores[k] >= scores[k - 1], "row %d: score falls" % k)
    for k, wanted in FIXED_SCORES:
        require(round(scores[k], 3) == wanted, "row %d: score %.6f is not %.3f"
                % (k, scores[k], wanted))
    gaps = [abs(far[k] - frr[k]) for k in range(ROWS)]
    nearest = min(gaps)
    require([k for k in range(ROWS) if gaps[k] == nearest] == list(NEAREST_ROWS),
            "the rates are not nearest at rows %s" % (NEAREST_ROWS,))
    for k in NEAREST_ROWS:
        require(("%.4f" % far[k], "%.4f" % frr[k]) == NEAREST_RATES,
                "row %d: rates are not %s" % (k, NEAREST_RATES))


def format_table(name, texts, comment):
    lines = ["// %s" % comment, "const double %s[] = {" % name]
    for first in range(0, ROWS, 4):
        items = ", ".join(texts[first:first + 4])
        lines.append("    %s, // %d" % (items, first))
    lines.append("};")
    return "\n".join(lines)


def source(far_texts, frr_texts):
    return "\n".join([
        "// Generated by scripts/generate_rate_tables.py; do not edit by hand.",
        "// Rates of the trained net at the thresholds k / 999, k = 0 to 999: every FAR",
        "// is a count over %d impostor attempts, every FRR a count over %d genuine"
        % (FAR_DENOMINATOR, FRR_DENOMINATOR),
        "// attempts.",
        '#include "classifier/RateTables.h"',
        "",
        "namespace NeuralNet",
        "{",
        "",
        "const int32_t nRateTableSize = %d;" % ROWS,
        "",
        "// clang-format off",
        format_table("FarTable", far_texts, "False acceptance rate of row k."),
        "",
        format_table("FrrTable", frr_texts, "False rejection rate of row k."),
        "// clang-format on",
        "",
        "} // namespace NeuralNet",
        "",
    ])


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    output = sys.argv[1] if len(sys.argv) > 1 else os.path.join(
        root, "classifier", "RateTables.cpp")
    fixed = given_counts()
    for k, wanted in FIXED_SCORES:
        before = fixed[max(j for j in fixed if j < k)]
        after = fixed[min(j for j in fixed if j > k)]
        fixed[k] = fix_score(k, wanted, before, after)
    counts = fill(fixed)
    far_texts = [literal(c[0], FAR_DENOMINATOR) for c in counts]
    frr_texts = [literal(c[1], FRR_DENOMINATOR) for c in counts]
    try:
        check(far_texts, frr_texts)
    except RuleBroken as error:
        sys.exit("generate_rate_tables: %s" % error)
    with open(output, "w", encoding="ascii", newline="\n") as stream:
        stream.write(source(far_texts, frr_texts))


if __name__ == "__main__":
    main()
