#pragma once
// Presentation-attack measures of scored captures. A capture is accepted as
// live when its score is at least the threshold. APCER: the share of attack
// (fake) captures accepted; BPCER: the share of live captures rejected.
//
// The operating points of a score set are the thresholds at each distinct
// score, in rising order, and one above every score (where nothing is
// accepted); between two of them neither rate changes. They are the points
// of the DET curve, joined by straight lines.
#include <cstddef>
#include <optional>
#include <vector>

namespace SentivoTool
{

struct ScoreSets
{
    std::vector<double> live;
    std::vector<double> fake;
};

struct OperatingPoint
{
    double dThreshold; // +infinity for the point above every score
    double dApcer;
    double dBpcer;
    size_t nFakeAccepted;
    size_t nLiveRejected;
};

// Share of fake scores at or above the threshold; none without fake scores.
std::optional<double> Apcer(const std::vector<double>& fake, double dThreshold);
// Share of live scores below the threshold; none without live scores.
std::optional<double> Bpcer(const std::vector<double>& live, double dThreshold);

// The operating points; empty unless both classes have scores.
std::vector<OperatingPoint> OperatingPoints(const ScoreSets& scores);

// The equal error rate: where the DET curve crosses APCER = BPCER. The
// first operating point (the lowest score) has APCER 1 and BPCER 0, the last
// APCER 0 and BPCER 1, so the curve crosses; the rate is read on the straight
// line between the last point with APCER above BPCER and the next one.
std::optional<double> EqualErrorRate(const std::vector<OperatingPoint>& points);

struct BpcerAtApcer
{
    double dBpcer;
    double dThreshold; // the lowest operating threshold that keeps the APCER
};

// The lowest BPCER of an operating point whose APCER is at most
// nPercent %: the one at the lowest such threshold (BPCER only rises with
// the threshold). Compared in whole counts, so 1 of 20 is within 5 %.
std::optional<BpcerAtApcer> BpcerAtApcerOf(const ScoreSets& scores,
                                           const std::vector<OperatingPoint>& points, int nPercent);

// Counts of scores in nBins equal bins from dLow to dHigh; the last bin
// holds dHigh, scores outside fall in the first or last bin.
std::vector<size_t> Histogram(const std::vector<double>& scores, int nBins, double dLow,
                              double dHigh);

} // namespace SentivoTool
