// The finger half on a real print: SentivoDetectFinger as a scanner calls it
// for the second capture of a still finger, and each of its stages alone.
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpFingerprintPositionCheck.h"
#include "detection/IpNormalizeImagesFD.h"
#include "detection/IpSimpleBacklightCheck.h"

namespace
{

using BenchCaptures::PreparedPrint;
using BenchCaptures::RealPrint;
using BenchCaptures::Scanner;

void BM_SentivoDetectFinger(benchmark::State& state)
{
    Scanner scanner;
    // The first capture of a new handle fails as moving; every later one of
    // the same still finger passes.
    SentivoDetectFinger(scanner.Handle());
    for (auto _ : state)
    {
        const int32_t nCode = SentivoDetectFinger(scanner.Handle());
        if (nCode != 0)
            state.SkipWithError("the finger half did not pass");
        benchmark::DoNotOptimize(nCode);
    }
}
BENCHMARK(BM_SentivoDetectFinger)->Unit(benchmark::kMillisecond);

void BM_SimpleBacklightCheck(benchmark::State& state)
{
    ClImage print = RealPrint(), white;
    white.Create(ClImage::eUInt8, print.Width(), print.Height());
    white.Fill<uint8_t>(255);
    ClIpSimpleBacklightCheck check;
    check.pInBacklightImage = &print;
    check.pInDarkImage = &white;
    for (auto _ : state)
        benchmark::DoNotOptimize(check.Run());
}
BENCHMARK(BM_SimpleBacklightCheck)->Unit(benchmark::kMicrosecond);

void BM_NormalizeImagesFD(benchmark::State& state)
{
    ClImage print = RealPrint(), out;
    Sentivo::ClIpNormalizeImagesFD normalize;
    for (auto _ : state)
        benchmark::DoNotOptimize(normalize.Run(&print, &out));
}
BENCHMARK(BM_NormalizeImagesFD)->Unit(benchmark::kMillisecond);

void BM_PrepareFeatureExtraction(benchmark::State& state)
{
    ClImage print = RealPrint(), prepared, mask;
    ClIpPrepareFeatureExtraction prepare;
    prepare.pInImage = &print;
    prepare.pOutImage = &prepared;
    prepare.pOutMask = &mask;
    for (auto _ : state)
        benchmark::DoNotOptimize(prepare.Run());
}
BENCHMARK(BM_PrepareFeatureExtraction)->Unit(benchmark::kMillisecond);

void BM_FingerprintPositionCheck(benchmark::State& state)
{
    ClImage mask = PreparedPrint().mask;
    ClIpFingerprintPositionCheck check;
    check.pInImage = &mask;
    for (auto _ : state)
        benchmark::DoNotOptimize(check.Run());
}
BENCHMARK(BM_FingerprintPositionCheck)->Unit(benchmark::kMicrosecond);

} // namespace
