#pragma once
// What evaluate measures on labelled batch output, and metrics.json.
//
// Counts: live and fake are all captures of that label; unlabelled lines
// are left out of every measure. A capture without a score (a finger the
// library did not accept, a capture that could not be read) is counted in
// failed by its code, and is not part of APCER, BPCER, the EER or the DET
// curve: these measure the scores, over the captures that have one.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "BatchRecord.h"
#include "PadMetrics.h"

namespace SentivoTool
{

struct Evaluation
{
    std::vector<std::string> sources;
    size_t nLive = 0, nFake = 0, nUnlabelled = 0;
    ScoreSets scores;                 // the labelled captures with a score
    std::map<int32_t, size_t> failed; // labelled captures without a score, by code
    size_t nFailedLive = 0, nFailedFake = 0;

    double dThreshold = 0.0;
    std::string thresholdFrom; // "far 0.01", or "given"
    // The library's own rates at the threshold, from its rate tables.
    double dLibraryFar = 0.0, dLibraryFrr = 0.0;

    std::optional<double> apcer, bpcer, eer;
    std::optional<BpcerAtApcer> bpcer20, bpcer100;
    std::vector<OperatingPoint> points;
};

// The threshold where none is given: the library's for a false acceptance
// rate of 1 %.
constexpr double kDefaultFar = 0.01;

// Threshold given as a score, or (bFar) as the false acceptance rate whose
// threshold the library's rate tables give.
Evaluation Evaluate(const std::vector<std::string>& sources, const std::vector<ResultFile>& files,
                    double dValue, bool bFar);

std::string MetricsJson(const Evaluation& evaluation);

} // namespace SentivoTool
