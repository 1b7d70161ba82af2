// The wavelet denoising and the ridge edge measure on a real print, with the
// prepared image standing in for the masked image that the feature driver
// hands them.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpGetMoonValues.h"
#include "detection/IpRidgeEdgeCheck.h"

namespace
{

void BM_GetMoonValues(benchmark::State& state)
{
    ClImage image = BenchCaptures::PreparedPrint().image;
    ClIpGetMoonValues moon;
    moon.pInImage = &image;
    for (auto _ : state)
        benchmark::DoNotOptimize(moon.Run());
    benchmark::DoNotOptimize(moon.dOutDeviation);
}
BENCHMARK(BM_GetMoonValues)->Unit(benchmark::kMillisecond);

void BM_RidgeEdgeCheck(benchmark::State& state)
{
    ClImage image = BenchCaptures::PreparedPrint().image;
    double adFeatures[LiveDetection::ClIpRidgeEdgeCheck::kFeatures] = {};
    LiveDetection::ClIpRidgeEdgeCheck check;
    check.pInImage = &image;
    check.padOutFeatures = adFeatures;
    for (auto _ : state)
        benchmark::DoNotOptimize(check.Run());
    benchmark::DoNotOptimize(adFeatures[0]);
}
BENCHMARK(BM_RidgeEdgeCheck)->Unit(benchmark::kMillisecond);

} // namespace
