// The cost of the SDK boundary per capture: taking in a 320 x 480 bitmap
// (validation and copy), and the threshold queries of an application.
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include "sentivo/sentivo.h"

namespace
{

// An 8-bit 320 x 480 bitmap block without file header, at 500 dpi.
std::vector<uint8_t> CaptureBlock()
{
    const int32_t nWidth = 320;
    const int32_t nHeight = 480;
    std::vector<uint8_t> block(40 + 1024 + static_cast<size_t>(nWidth * nHeight));
    const uint32_t header[10] = {40,    nWidth, nHeight, 1 | (8u << 16), 0, nWidth * nHeight, 19685,
                                 19685, 256,    256};
    std::memcpy(block.data(), header, sizeof(header));
    for (size_t i = 40 + 1024; i < block.size(); ++i)
        block[i] = static_cast<uint8_t>(i * 31);
    return block;
}

class Sdk
{
public:
    Sdk()
    {
        SentivoInitialize(nullptr);
        SentivoCreateHandle(&m_hHandle);
    }
    ~Sdk()
    {
        SentivoDestroyHandle(&m_hHandle);
        SentivoUninitialize();
    }
    SentivoHandle Handle() const { return m_hHandle; }

private:
    SentivoHandle m_hHandle = nullptr;
};

void BM_SetImage320x480(benchmark::State& state)
{
    Sdk sdk;
    std::vector<uint8_t> block = CaptureBlock();
    for (auto _ : state)
    {
        const int32_t nCode =
            SentivoSetImage(sdk.Handle(), 0, block.data(), static_cast<uint32_t>(block.size()));
        benchmark::DoNotOptimize(nCode);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(block.size()));
}
BENCHMARK(BM_SetImage320x480);

void BM_ThresholdForFAR(benchmark::State& state)
{
    Sdk sdk;
    char szScore[64];
    for (auto _ : state)
    {
        SentivoSetPropertyA(sdk.Handle(), "dQueryFAR", "0.01");
        uint32_t nSize = sizeof(szScore);
        SentivoGetPropertyA(sdk.Handle(), "dQueryScore", szScore, &nSize);
        benchmark::DoNotOptimize(szScore);
    }
}
BENCHMARK(BM_ThresholdForFAR);

void BM_RatesForScore(benchmark::State& state)
{
    Sdk sdk;
    for (auto _ : state)
        benchmark::DoNotOptimize(SentivoSetPropertyA(sdk.Handle(), "dQueryScore", "50.0"));
}
BENCHMARK(BM_RatesForScore);

} // namespace
