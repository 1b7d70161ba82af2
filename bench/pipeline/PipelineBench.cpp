// The whole flow against its floor, in one run: SentivoEvaluateLiveliness
// and SentivoDetectFinger on a real print (a scanner's second capture of a
// still finger), the transforms that a capture needs (one 320 x 480 forward
// and inverse pair and one 256 x 256 forward transform, each with a fresh
// plan, made as the library makes them), and two handles on two threads.
// After the run it prints the ratios that the library's speed is judged by,
// and the footprint of a process that loads the library and judges 100
// captures (measured by the sentivo_footprint program).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

#include "BenchCaptures.h"
#include "operators/IpFourier2.h"

namespace
{

using BenchCaptures::Scanner;

// Test images of the two transform sizes.
ClImage TransformInput(int32_t nWidth, int32_t nHeight)
{
    ClImage image;
    image.Create(ClImage::eDouble64, nWidth, nHeight);
    for (int32_t y = 0; y < nHeight; ++y)
        for (int32_t x = 0; x < nWidth; ++x)
            image.Row<double>(y)[x] = (x * 7 + y * 13) % 255;
    return image;
}

// The normalisation's pair: forward and inverse at 320 x 480, one object,
// a fresh plan for each.
void BM_TransformPair320x480(benchmark::State& state)
{
    ClImage image = TransformInput(320, 480), spectrum, back;
    for (auto _ : state)
    {
        Fourier::ClIpFourier2 fourier;
        fourier.Run(&image, &spectrum);
        fourier.Run(&spectrum, &back);
        benchmark::DoNotOptimize(back.Data());
    }
}
BENCHMARK(BM_TransformPair320x480)->Unit(benchmark::kMillisecond);

// The spectrum analysis's forward transform at 256 x 256.
void BM_Transform256x256(benchmark::State& state)
{
    ClImage image = TransformInput(256, 256), spectrum;
    for (auto _ : state)
    {
        Fourier::ClIpFourier2 fourier;
        fourier.Run(&image, &spectrum);
        benchmark::DoNotOptimize(spectrum.Data());
    }
}
BENCHMARK(BM_Transform256x256)->Unit(benchmark::kMillisecond);

void BM_EvaluateLiveliness(benchmark::State& state)
{
    Scanner scanner;
    SentivoDetectFinger(scanner.Handle());
    double dScore = 0.0;
    for (auto _ : state)
    {
        if (SentivoEvaluateLiveliness(scanner.Handle(), &dScore) != 0)
            state.SkipWithError("the capture was not judged");
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EvaluateLiveliness)->Unit(benchmark::kMillisecond);

void BM_DetectFinger(benchmark::State& state)
{
    Scanner scanner;
    SentivoDetectFinger(scanner.Handle());
    for (auto _ : state)
    {
        if (SentivoDetectFinger(scanner.Handle()) != 0)
            state.SkipWithError("no finger found");
    }
}
BENCHMARK(BM_DetectFinger)->Unit(benchmark::kMillisecond);

// One handle per thread, each judging its own capture; captures per second
// over all threads.
void BM_HandlesOnThreads(benchmark::State& state)
{
    Scanner scanner;
    SentivoDetectFinger(scanner.Handle());
    double dScore = 0.0;
    for (auto _ : state)
        SentivoEvaluateLiveliness(scanner.Handle(), &dScore);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_HandlesOnThreads)->Threads(1)->Threads(2)->UseRealTime()->Unit(benchmark::kMillisecond);

// Keeps the results for the ratios.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
        {
            m_Seconds[run.benchmark_name()] = run.GetAdjustedRealTime() / 1e3; // ms -> s
            const auto items = run.counters.find("items_per_second");
            if (items != run.counters.end())
                m_Rates[run.benchmark_name()] = items->second;
        }
    }
    std::map<std::string, double> m_Seconds;
    std::map<std::string, double> m_Rates;
};

void PrintFootprint()
{
    const std::string root = BenchCaptures::SourceDir();
    const std::string command = std::string(SENTIVO_FOOTPRINT) + " " + SENTIVO_LIBRARY + " " + root +
                                "/tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp " +
                                root + "/tests/conformance/light/backlight.bmp " + root +
                                "/tests/conformance/light/dark.bmp";
    FILE* pPipe = popen(command.c_str(), "r");
    char szLine[256] = "";
    if (pPipe == nullptr || std::fgets(szLine, sizeof(szLine), pPipe) == nullptr)
        std::printf("footprint: could not run %s\n", SENTIVO_FOOTPRINT);
    else
    {
        double dFirst = 0.0;
        long nPeak = 0;
        int nCode = 0;
        std::sscanf(szLine, "code=%d load_first_ms=%lf peak_rss_kb=%ld", &nCode, &dFirst, &nPeak);
        std::printf("%-46s %8.1f ms   (limit 50 ms)\n", "load + initialisation + first capture", dFirst);
        std::printf("%-46s %8.1f MB   (limit 20 MB)\n", "peak resident memory after 100 captures",
                    nPeak / 1024.0);
    }
    if (pPipe != nullptr)
        pclose(pPipe);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    auto seconds = [&](const char* szName) { return reporter.m_Seconds[szName]; };
    const double dPair = seconds("BM_TransformPair320x480");
    const double dTransforms = dPair + seconds("BM_Transform256x256");
    std::printf("\n");
    if (dTransforms > 0.0 && seconds("BM_EvaluateLiveliness") > 0.0)
        std::printf("%-46s %8.2f x    (limit 3)\n", "SentivoEvaluateLiveliness / transforms",
                    seconds("BM_EvaluateLiveliness") / dTransforms);
    if (dPair > 0.0 && seconds("BM_DetectFinger") > 0.0)
        std::printf("%-46s %8.2f ms   (limit pair + 2 ms = %.2f ms)\n", "SentivoDetectFinger",
                    seconds("BM_DetectFinger") * 1e3, dPair * 1e3 + 2.0);
    const double dOne = reporter.m_Rates["BM_HandlesOnThreads/real_time/threads:1"];
    const double dTwo = reporter.m_Rates["BM_HandlesOnThreads/real_time/threads:2"];
    if (dOne > 0.0 && dTwo > 0.0)
        std::printf("%-46s %8.2f x    (at least 1.9)\n", "captures per second, two handles / one",
                    dTwo / dOne);
    PrintFootprint();
    benchmark::Shutdown();
    return 0;
}
