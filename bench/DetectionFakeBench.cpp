// The fake half on a real print: SentivoDetectFake after a finger was
// found, and the feature driver alone.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpExtractFeatures.h"

namespace
{

void BM_SentivoDetectFake(benchmark::State& state)
{
    BenchCaptures::Scanner scanner;
    SentivoDetectFinger(scanner.Handle());
    if (SentivoDetectFinger(scanner.Handle()) != 0)
        state.SkipWithError("no finger found");
    double dScore = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(SentivoDetectFake(scanner.Handle(), &dScore));
}
BENCHMARK(BM_SentivoDetectFake)->Unit(benchmark::kMillisecond);

void BM_ExtractFeatures(benchmark::State& state)
{
    ClImage image = BenchCaptures::PreparedPrint().image;
    ClImage fastMask = BenchCaptures::PreparedPrint().mask, finalMask;
    ClIpExtractFeatures driver;
    driver.pInImage = &image;
    driver.pInFastMask = &fastMask;
    driver.pOutMask = &finalMask;
    for (auto _ : state)
        benchmark::DoNotOptimize(driver.Run());
}
BENCHMARK(BM_ExtractFeatures)->Unit(benchmark::kMillisecond);

} // namespace
