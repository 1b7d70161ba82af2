// Timings of the operators on the capture sizes the detection uses: the
// Fourier transform on 320 x 480 (normalisation) and 256 x 256 (spectrum
// analysis), the 8-bit to double conversion and the subtraction of two
// captures.
#include <random>

#include <benchmark/benchmark.h>

#include "operators/IpConvertDataType.h"
#include "operators/IpFourier2.h"
#include "operators/IpSubtract.h"

namespace
{

ClImage RandomCapture(ClImage::EDataType eType, int32_t nWidth, int32_t nHeight, uint32_t nSeed)
{
    ClImage image;
    image.Create(eType, nWidth, nHeight);
    std::mt19937 rng(nSeed);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int32_t y = 0; y < nHeight; ++y)
        for (int32_t x = 0; x < nWidth; ++x)
        {
            if (eType == ClImage::eDouble64)
                image.Row<double>(y)[x] = byte(rng);
            else
                image.Row<uint8_t>(y)[x] = static_cast<uint8_t>(byte(rng));
        }
    return image;
}

void FourierForward(benchmark::State& state)
{
    ClImage in = RandomCapture(ClImage::eDouble64, static_cast<int32_t>(state.range(0)),
                               static_cast<int32_t>(state.range(1)), 1);
    ClImage spectrum;
    Fourier::ClIpFourier2 fourier;
    for (auto _ : state)
    {
        if (fourier.Run(&in, &spectrum) != 0)
            state.SkipWithError("forward transform failed");
        benchmark::DoNotOptimize(spectrum.Data());
    }
}
BENCHMARK(FourierForward)->Args({320, 480})->Args({256, 256})->Unit(benchmark::kMicrosecond);

void FourierInverse(benchmark::State& state)
{
    ClImage in = RandomCapture(ClImage::eDouble64, static_cast<int32_t>(state.range(0)),
                               static_cast<int32_t>(state.range(1)), 2);
    ClImage spectrum, back;
    Fourier::ClIpFourier2 fourier;
    fourier.Run(&in, &spectrum);
    for (auto _ : state)
    {
        if (fourier.Run(&spectrum, &back) != 0)
            state.SkipWithError("inverse transform failed");
        benchmark::DoNotOptimize(back.Data());
    }
}
BENCHMARK(FourierInverse)->Args({320, 480})->Args({256, 256})->Unit(benchmark::kMicrosecond);

void ConvertBytesToDouble(benchmark::State& state)
{
    ClImage in = RandomCapture(ClImage::eUInt8, 320, 480, 3);
    ClImage out;
    ClIpConvertDataType convert;
    convert.m_bRound = state.range(0) != 0;
    for (auto _ : state)
    {
        convert.Run(&in, &out, ClImage::eDouble64);
        benchmark::DoNotOptimize(out.Data());
    }
}
BENCHMARK(ConvertBytesToDouble)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void SubtractCaptures(benchmark::State& state)
{
    ClImage first = RandomCapture(ClImage::eUInt8, 320, 480, 4);
    ClImage second = RandomCapture(ClImage::eUInt8, 320, 480, 5);
    ClImage out;
    ClIpSubtract subtract;
    for (auto _ : state)
    {
        subtract.Run(&first, &second, &out, static_cast<ClImage::EDataType>(state.range(0)));
        benchmark::DoNotOptimize(out.Data());
    }
}
BENCHMARK(SubtractCaptures)
    ->Arg(ClImage::eUInt8)
    ->Arg(ClImage::eInt16)
    ->Unit(benchmark::kMicrosecond);

} // namespace
