// The feature stages on a real print, each alone. The prepared image stands
// in for the masked image that the feature driver hands them, and the fast
// mask for the final finger mask.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpCheckHipass.h"
#include "detection/IpFingerMinMaxMean.h"
#include "detection/IpGelatineCheck.h"
#include "detection/IpGetMoonValues.h"
#include "detection/IpGetUchidaProfileValuesFD.h"
#include "detection/IpRidgeEdgeCheck.h"
#include "detection/IpRidgeStatistics.h"
#include "detection/IpSpectrumAnalysis.h"

namespace
{

using BenchCaptures::PreparedPrint;

// The stages that read one image and keep their results as members.
template <class Stage>
void RunOnPreparedImage(benchmark::State& state)
{
    ClImage image = PreparedPrint().image;
    Stage stage;
    stage.pInImage = &image;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(RunOnPreparedImage<ClIpFingerMinMaxMean>)->Name("BM_FingerMinMaxMean")->Unit(benchmark::kMicrosecond);
BENCHMARK(RunOnPreparedImage<ClIpCheckHipass>)->Name("BM_CheckHipass")->Unit(benchmark::kMicrosecond);
BENCHMARK(RunOnPreparedImage<ClIpRidgeStatistics>)->Name("BM_RidgeStatistics")->Unit(benchmark::kMicrosecond);
BENCHMARK(RunOnPreparedImage<ClIpGetMoonValues>)->Name("BM_GetMoonValues")->Unit(benchmark::kMillisecond);

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

void BM_RidgeEdgeCheck(benchmark::State& state)
{
    ClImage image = PreparedPrint().image;
    double adFeatures[LiveDetection::ClIpRidgeEdgeCheck::kFeatures] = {};
    LiveDetection::ClIpRidgeEdgeCheck check;
    check.pInImage = &image;
    check.padOutFeatures = adFeatures;
    for (auto _ : state)
        benchmark::DoNotOptimize(check.Run());
}
BENCHMARK(BM_RidgeEdgeCheck)->Unit(benchmark::kMillisecond);

void BM_GetUchidaProfileValuesFD(benchmark::State& state)
{
    ClImage image = PreparedPrint().image, mask = PreparedPrint().mask;
    ClIpGetUchidaProfileValuesFD stage;
    stage.pInImage = &image;
    stage.pInMask = &mask;
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.Run());
}
BENCHMARK(BM_GetUchidaProfileValuesFD)->Unit(benchmark::kMicrosecond);

void BM_SpectrumAnalysis(benchmark::State& state)
{
    ClImage image = PreparedPrint().image, mask = PreparedPrint().mask;
    ClIpSpectrumAnalysis analysis;
    analysis.pInImage = &image;
    analysis.pInMaskImage = &mask;
    for (auto _ : state)
        if (analysis.Run() != 0)
            state.SkipWithError("the print has no mask");
}
BENCHMARK(BM_SpectrumAnalysis)->Unit(benchmark::kMillisecond);

} // namespace
