// The spectrum analysis on a real print: the prepared image stands in for
// the masked image and the fast mask for the final mask.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpSpectrumAnalysis.h"

namespace
{

void BM_SpectrumAnalysis(benchmark::State& state)
{
    ClImage image = BenchCaptures::PreparedPrint().image;
    ClImage mask = BenchCaptures::PreparedPrint().mask;
    ClIpSpectrumAnalysis analysis;
    analysis.pInImage = &image;
    analysis.pInMaskImage = &mask;
    for (auto _ : state)
    {
        const int32_t nCode = analysis.Run();
        if (nCode != 0)
            state.SkipWithError("the print has no mask");
        benchmark::DoNotOptimize(analysis.m_adSpectrum[19]);
    }
}
BENCHMARK(BM_SpectrumAnalysis)->Unit(benchmark::kMillisecond);

} // namespace
