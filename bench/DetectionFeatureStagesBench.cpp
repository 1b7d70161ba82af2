// The feature stages of local statistics on a real print: intensity spread,
// high-pass detail, ridge statistics and the gelatine step ratio. The
// prepared image stands in for the masked image and the fast mask for the
// final finger mask.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpCheckHipass.h"
#include "detection/IpFingerMinMaxMean.h"
#include "detection/IpGelatineCheck.h"
#include "detection/IpRidgeStatistics.h"

namespace
{

using BenchCaptures::PreparedPrint;

void BM_FingerMinMaxMean(benchmark::State& state)
{
    ClImage image = PreparedPrint().image;
    ClIpFingerMinMaxMean stage;
    stage.pInImage = &image;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(BM_FingerMinMaxMean)->Unit(benchmark::kMicrosecond);

void BM_CheckHipass(benchmark::State& state)
{
    ClImage image = PreparedPrint().image;
    ClIpCheckHipass stage;
    stage.pInImage = &image;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(BM_CheckHipass)->Unit(benchmark::kMicrosecond);

void BM_RidgeStatistics(benchmark::State& state)
{
    ClImage image = PreparedPrint().image;
    ClIpRidgeStatistics stage;
    stage.pInImage = &image;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(BM_RidgeStatistics)->Unit(benchmark::kMicrosecond);

void BM_GelatineCheck(benchmark::State& state)
{
    ClImage image = PreparedPrint().image, mask = PreparedPrint().mask;
    double adSteps[2] = {};
    ClIpGelatineCheck stage;
    stage.pInImage = &image;
    stage.pInMask = &mask;
    stage.m_pdOutSteps = adSteps;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(BM_GelatineCheck)->Unit(benchmark::kMicrosecond);

} // namespace
