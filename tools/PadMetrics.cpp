#include "PadMetrics.h"

#include <algorithm>
#include <limits>

namespace SentivoTool
{

std::optional<double> Apcer(const std::vector<double>& fake, double dThreshold)
{
    if (fake.empty())
        return std::nullopt;
    const auto nAccepted = std::count_if(fake.begin(), fake.end(),
                                         [&](double dScore) { return dScore >= dThreshold; });
    return static_cast<double>(nAccepted) / static_cast<double>(fake.size());
}

std::optional<double> Bpcer(const std::vector<double>& live, double dThreshold)
{
    if (live.empty())
        return std::nullopt;
    const auto nRejected =
        std::count_if(live.begin(), live.end(), [&](double dScore) { return dScore < dThreshold; });
    return static_cast<double>(nRejected) / static_cast<double>(live.size());
}

std::vector<OperatingPoint> OperatingPoints(const ScoreSets& scores)
{
    std::vector<OperatingPoint> points;
    if (scores.live.empty() || scores.fake.empty())
        return points;
    std::vector<double> live = scores.live;
    std::vector<double> fake = scores.fake;
    std::sort(live.begin(), live.end());
    std::sort(fake.begin(), fake.end());
    std::vector<double> thresholds = live;
    thresholds.insert(thresholds.end(), fake.begin(), fake.end());
    std::sort(thresholds.begin(), thresholds.end());
    thresholds.erase(std::unique(thresholds.begin(), thresholds.end()), thresholds.end());
    thresholds.push_back(std::numeric_limits<double>::infinity());

    // One sweep: the live scores below the threshold and the fake scores at
    // or above it.
    size_t nLiveBelow = 0;
    size_t nFakeBelow = 0;
    for (const double t : thresholds)
    {
        while (nLiveBelow < live.size() && live[nLiveBelow] < t)
            ++nLiveBelow;
        while (nFakeBelow < fake.size() && fake[nFakeBelow] < t)
            ++nFakeBelow;
        const size_t nAccepted = fake.size() - nFakeBelow;
        points.push_back({t, static_cast<double>(nAccepted) / static_cast<double>(fake.size()),
                          static_cast<double>(nLiveBelow) / static_cast<double>(live.size()),
                          nAccepted, nLiveBelow});
    }
    return points;
}

std::optional<double> EqualErrorRate(const std::vector<OperatingPoint>& points)
{
    for (size_t i = 0; i + 1 < points.size(); ++i)
    {
        const double d0 = points[i].dApcer - points[i].dBpcer;
        const double d1 = points[i + 1].dApcer - points[i + 1].dBpcer;
        if (d0 > 0.0 && d1 <= 0.0)
        {
            const double s = d0 / (d0 - d1);
            return points[i].dApcer + s * (points[i + 1].dApcer - points[i].dApcer);
        }
    }
    return std::nullopt;
}

std::optional<BpcerAtApcer> BpcerAtApcerOf(const ScoreSets& scores,
                                           const std::vector<OperatingPoint>& points, int nPercent)
{
    const size_t nFake = scores.fake.size();
    for (const OperatingPoint& point : points)
    {
        if (point.nFakeAccepted * 100 <= static_cast<size_t>(nPercent) * nFake)
            return BpcerAtApcer{point.dBpcer, point.dThreshold};
    }
    return std::nullopt;
}

std::vector<size_t> Histogram(const std::vector<double>& scores, int nBins, double dLow,
                              double dHigh)
{
    std::vector<size_t> counts(static_cast<size_t>(nBins), 0);
    for (const double dScore : scores)
    {
        const double dBin = (dScore - dLow) / (dHigh - dLow) * nBins;
        const int nBin = !(dBin > 0.0) ? 0 : dBin >= nBins ? nBins - 1 : static_cast<int>(dBin);
        ++counts[static_cast<size_t>(nBin)];
    }
    return counts;
}

} // namespace SentivoTool
