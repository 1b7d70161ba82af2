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
