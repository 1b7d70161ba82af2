// Timings of the neighbourhood filters, the labeling and the wavelet on
// captures of the scanner's size (320 x 480, 8-bit).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include "operators/IpFilterMax.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "operators/IpFilterMin.h"
#include "operators/IpLabeling.h"
#include "operators/WaveletD97.h"

namespace
{

constexpr int32_t kWidth = 320;
constexpr int32_t kHeight = 480;

// A finger-like capture: curved ridges of about 9 pixels' period inside an
// ellipse, mid grey with noise outside.
const ClImage& Capture()
{
    static const ClImage image = []
    {
        ClImage img;
        img.Create(ClImage::eUInt8, kWidth, kHeight);
        std::mt19937 rng(5);
        std::normal_distribution<double> noise(0.0, 6.0);
        for (int32_t y = 0; y < kHeight; ++y)
        {
            uint8_t* pRow = img.Row<uint8_t>(y);
            for (int32_t x = 0; x < kWidth; ++x)
            {
                const double dx = (x - 160.0) / 120.0, dy = (y - 250.0) / 190.0;
                const bool bFinger = dx * dx + dy * dy < 1.0;
                const double r = std::hypot(x - 160.0, y - 330.0);
                double v =
                    bFinger ? 120.0 + 70.0 * std::sin(r * 2.0 * 3.141592653589793 / 9.0) : 200.0;
                v += noise(rng);
                pRow[x] = static_cast<uint8_t>(std::clamp(v, 0.0, 255.0));
            }
        }
        return img;
    }();
    return image;
}

// The mask of the finger with small holes: 255 on the finger, 0 around it
// and in the holes, as the hole filling labels it.
ClImage FingerMask()
{
    ClImage mask;
    mask.Create(ClImage::eUInt8, kWidth, kHeight);
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
        {
            const double dx = (x - 160.0) / 120.0, dy = (y - 250.0) / 190.0;
            const bool bHole = ((x / 23) * 7 + (y / 31) * 3) % 11 == 0 && x % 23 < 5 && y % 31 < 4;
            mask.Row<uint8_t>(y)[x] = dx * dx + dy * dy < 1.0 && !bHole ? 255 : 0;
        }
    return mask;
}

// The ridges binarised: many long regions.
ClImage RidgeMask()
{
    ClImage mask;
    mask.Create(ClImage::eUInt8, kWidth, kHeight);
    const ClImage& capture = Capture();
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
            mask.Row<uint8_t>(y)[x] = capture.Row<uint8_t>(y)[x] >= 120 ? 255 : 0;
    return mask;
}

template <typename F> void RunExtreme(benchmark::State& state)
{
    ClImage in = Capture(), out;
    F filter;
    for (auto _ : state)
    {
        filter.Run(&in, &out, static_cast<int32_t>(state.range(0)), eModeXY);
        benchmark::DoNotOptimize(out.Data());
    }
}

void FilterMaxXY(benchmark::State& state)
{
    RunExtreme<ClIpFilterMax>(state);
}
void FilterMinXY(benchmark::State& state)
{
    RunExtreme<ClIpFilterMin>(state);
}

// The falloff passes of the flow: maxima along rows and down columns,
// minima along rows.
template <typename F> void RunExtremeLine(benchmark::State& state, int32_t nMode)
{
    ClImage in = Capture(), out;
    F filter;
    for (auto _ : state)
    {
        filter.Run(&in, &out, static_cast<int32_t>(state.range(0)), nMode);
        benchmark::DoNotOptimize(out.Data());
    }
}

void FilterMaxX(benchmark::State& state)
{
    RunExtremeLine<ClIpFilterMax>(state, eModeX);
}
void FilterMaxY(benchmark::State& state)
{
    RunExtremeLine<ClIpFilterMax>(state, eModeY);
}
void FilterMinX(benchmark::State& state)
{
    RunExtremeLine<ClIpFilterMin>(state, eModeX);
}

void FilterMidXY(benchmark::State& state)
{
    ClImage in = Capture(), out;
    ClIpFilterMid filter;
    for (auto _ : state)
    {
        filter.Run(&in, &out, static_cast<int32_t>(state.range(0)));
        benchmark::DoNotOptimize(out.Data());
    }
}

void FilterMedianXY(benchmark::State& state)
{
    ClImage in = Capture(), out;
    ClIpFilterMedian filter;
    for (auto _ : state)
    {
        filter.Run(&in, &out, static_cast<int32_t>(state.range(0)), eModeXY);
        benchmark::DoNotOptimize(out.Data());
    }
}

void LabelingFingerMask(benchmark::State& state)
{
    ClImage in = FingerMask(), out;
    ClIpLabeling labeling;
    for (auto _ : state)
    {
        labeling.Run(&in, &out);
        benchmark::DoNotOptimize(labeling.m_nRegionCount);
    }
    state.counters["regions"] = labeling.m_nRegionCount;
}

void LabelingRidges(benchmark::State& state)
{
    ClImage in = RidgeMask(), out;
    ClIpLabeling labeling;
    for (auto _ : state)
    {
        labeling.Run(&in, &out);
        benchmark::DoNotOptimize(labeling.m_nRegionCount);
    }
    state.counters["regions"] = labeling.m_nRegionCount;
}

void WaveletTwoLevels(benchmark::State& state)
{
    ClImage image;
    image.Create(ClImage::eDouble64, kWidth, kHeight);
    const ClImage& capture = Capture();
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
            image.Row<double>(y)[x] = capture.Row<uint8_t>(y)[x];
    ClWaveletD97 wavelet;
    const int32_t nLevel = static_cast<int32_t>(state.range(0));
    for (auto _ : state)
    {
        // Forward and back, so that every iteration starts from the capture.
        wavelet.Transform(image, nLevel);
        wavelet.Transform(image, -nLevel);
        benchmark::DoNotOptimize(image.Data());
    }
    state.SetLabel("forward + inverse");
}

} // namespace

BENCHMARK(FilterMaxXY)->Arg(7)->Arg(11)->Arg(15)->Arg(21)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMinXY)->Arg(7)->Arg(11)->Arg(15)->Arg(21)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMaxX)->Arg(21)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMaxY)->Arg(5)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMinX)->Arg(51)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMidXY)->Arg(7)->Arg(11)->Arg(15)->Arg(21)->Unit(benchmark::kMicrosecond);
BENCHMARK(FilterMedianXY)->Arg(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(LabelingFingerMask)->Unit(benchmark::kMicrosecond);
BENCHMARK(LabelingRidges)->Unit(benchmark::kMicrosecond);
BENCHMARK(WaveletTwoLevels)->Arg(2)->Unit(benchmark::kMicrosecond);
