// Timings of the sample-by-sample operators, the two-image operators, the
// mean filter of the functor line and the histogram on images of the
// scanner's size (320 x 480), in the types the flow gives them.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>

#include "image/Histogram.h"
#include "operators/IpAnd.h"
#include "operators/IpBinarizeGlobal.h"
#include "operators/IpConvertDataType.h"
#include "operators/IpFunctorMean.h"
#include "operators/IpInvert.h"
#include "operators/IpSubtract.h"

namespace
{

constexpr int32_t kWidth = 320;
constexpr int32_t kHeight = 480;

// Random samples of a type, 0 to 255 (whole numbers for floating types).
ClImage Noise(ClImage::EDataType eType, uint32_t nSeed)
{
    ClImage image;
    image.Create(eType, kWidth, kHeight);
    std::mt19937 rng(nSeed);
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
        {
            const uint8_t v = static_cast<uint8_t>(rng());
            if (eType == ClImage::eDouble64)
                image.Row<double>(y)[x] = v;
            else
                image.Row<uint8_t>(y)[x] = v;
        }
    return image;
}

void SubtractBytes(benchmark::State& state)
{
    ClImage first = Noise(ClImage::eUInt8, 1), second = Noise(ClImage::eUInt8, 2), out;
    ClIpSubtract subtract;
    for (auto _ : state)
    {
        subtract.Run(&first, &second, &out);
        benchmark::DoNotOptimize(out.Data());
    }
}

void SubtractDoubles(benchmark::State& state)
{
    ClImage first = Noise(ClImage::eDouble64, 1), second = Noise(ClImage::eDouble64, 2), out;
    ClIpSubtract subtract;
    for (auto _ : state)
    {
        subtract.Run(&first, &second, &out);
        benchmark::DoNotOptimize(out.Data());
    }
}

void AndBytes(benchmark::State& state)
{
    ClImage first = Noise(ClImage::eUInt8, 3), second = Noise(ClImage::eUInt8, 4), out;
    ClIpAnd combine;
    for (auto _ : state)
    {
        combine.Run(&first, &second, &out);
        benchmark::DoNotOptimize(out.Data());
    }
}

void BinarizeBytes(benchmark::State& state)
{
    ClImage in = Noise(ClImage::eUInt8, 5), out;
    ClIpBinarizeGlobal binarize;
    for (auto _ : state)
    {
        binarize.Run(&in, &out, 100.0);
        benchmark::DoNotOptimize(out.Data());
    }
}

void InvertBytes(benchmark::State& state)
{
    ClImage image = Noise(ClImage::eUInt8, 6);
    ClIpInvert invert;
    for (auto _ : state)
    {
        invert.Run(&image);
        benchmark::DoNotOptimize(image.Data());
    }
}

void ConvertBytesToDoubles(benchmark::State& state)
{
    ClImage in = Noise(ClImage::eUInt8, 7), out;
    ClIpConvertDataType convert;
    convert.m_bRound = false;
    for (auto _ : state)
    {
        convert.Run(&in, &out, ClImage::eDouble64);
        benchmark::DoNotOptimize(out.Data());
    }
}

void FunctorMeanDoublesXY(benchmark::State& state)
{
    ClImage in = Noise(ClImage::eDouble64, 8), out;
    ClIpFunctorMean mean;
    for (auto _ : state)
    {
        mean.Run(&in, &out, static_cast<int32_t>(state.range(0)), eModeXY);
        benchmark::DoNotOptimize(out.Data());
    }
}

void HistogramWholeImage(benchmark::State& state)
{
    const ClImage image = Noise(ClImage::eUInt8, 9);
    ClHistogram histogram;
    for (auto _ : state)
    {
        histogram.Create(image);
        benchmark::DoNotOptimize(histogram.m_nBins);
    }
}

} // namespace

BENCHMARK(SubtractBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(SubtractDoubles)->Unit(benchmark::kMicrosecond);
BENCHMARK(AndBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BinarizeBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(InvertBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(ConvertBytesToDoubles)->Unit(benchmark::kMicrosecond);
BENCHMARK(FunctorMeanDoublesXY)->Arg(3)->Arg(7)->Unit(benchmark::kMicrosecond);
BENCHMARK(HistogramWholeImage)->Unit(benchmark::kMicrosecond);
