// The profile values on a real print: the prepared image stands in for the
// masked image and the fast mask for the final mask.
#include <benchmark/benchmark.h>

#include "BenchCaptures.h"
#include "detection/IpGetUchidaProfileValuesFD.h"

namespace
{

void BM_GetUchidaProfileValuesFD(benchmark::State& state)
{
    ClImage image = BenchCaptures::PreparedPrint().image;
    ClImage mask = BenchCaptures::PreparedPrint().mask;
    ClIpGetUchidaProfileValuesFD stage;
    stage.pInImage = &image;
    stage.pInMask = &mask;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(stage.Run());
        benchmark::DoNotOptimize(stage.m_adProfileValues[0]);
    }
}
BENCHMARK(BM_GetUchidaProfileValuesFD)->Unit(benchmark::kMicrosecond);

} // namespace
