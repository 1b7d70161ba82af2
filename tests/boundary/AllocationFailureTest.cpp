// The n-th allocation (operator new, replaced below by a counting version)
// fails, for every n along one SentivoSetImage and one evaluation of a real
// capture: the call ends in -102 or lets std::bad_alloc leave, and the same
// handle judges the capture normally afterwards; the sanitizer build checks
// that nothing leaks. FFTW's malloc calls are left alone: it ends the process
// on a failure of its own.
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sentivo/sentivo.h"

namespace
{

std::atomic<long> g_nAllocations{0};
std::atomic<long> g_nFailAt{0}; // 0: never

void* Allocate(std::size_t nSize) noexcept
{
    return ++g_nAllocations == g_nFailAt.load() ? nullptr : std::malloc(nSize == 0 ? 1 : nSize);
}

} // namespace

// clang-format off
void* operator new(std::size_t nSize)
{
    if (void* p = Allocate(nSize))
        return p;
    throw std::bad_alloc();
}

void* operator new[](std::size_t nSize) { return operator new(nSize); }
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void* operator new[](std::size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
// clang-format on

namespace
{

std::vector<uint8_t> Block(const std::string& path)
{
    std::ifstream in(SENTIVO_SOURCE_DIR + path, std::ios::binary);
    in.ignore(14);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

class AllocationFailure : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_Blocks[0] = Block("/tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp");
        m_Blocks[1] = Block("/tests/conformance/light/backlight.bmp");
        m_Blocks[2] = Block("/tests/conformance/light/dark.bmp");
        ASSERT_EQ(SentivoInitialize(nullptr), 0);
        ASSERT_EQ(SentivoCreateHandle(&m_h), 0);
        for (int32_t i = 0; i < 3; ++i)
            ASSERT_EQ(Set(i), 0);
        // The second capture of a still finger: the reference outcome.
        SentivoDetectFinger(m_h);
        m_nCode = SentivoEvaluateLiveliness(m_h, &m_dScore);
    }
    void TearDown() override
    {
        EXPECT_EQ(SentivoDestroyHandle(&m_h), 0);
        EXPECT_EQ(SentivoUninitialize(), 0);
    }
    int32_t Set(int32_t nIndex)
    {
        std::vector<uint8_t> block = m_Blocks[nIndex];
        return SentivoSetImage(m_h, nIndex, block.data(), static_cast<uint32_t>(block.size()));
    }
    // Counts the allocations of f, then makes each of them fail in turn: f
    // gives -102 or throws std::bad_alloc, and after restore the handle
    // judges the capture as before.
    void FailEveryAllocationOf(const std::function<int32_t()>& f, int32_t nCode,
                               const std::function<void()>& restore)
    {
        g_nAllocations = 0;
        ASSERT_EQ(f(), nCode);
        const long nTotal = g_nAllocations;
        ASSERT_GT(nTotal, 0);
        RecordProperty("allocations", static_cast<int>(nTotal));
        for (long n = 1; n <= nTotal; ++n)
        {
            g_nAllocations = 0;
            g_nFailAt = n;
            int32_t nResult = ZRC_ERROR_OUT_OF_MEMORY;
            try
            {
                nResult = f();
            }
            catch (const std::bad_alloc&)
            {
            }
            g_nFailAt = 0;
            EXPECT_EQ(nResult, ZRC_ERROR_OUT_OF_MEMORY) << "allocation " << n;
            restore();
            double dScore = -1.0;
            EXPECT_EQ(SentivoEvaluateLiveliness(m_h, &dScore), m_nCode) << "after allocation " << n;
            EXPECT_EQ(dScore, m_dScore) << "after allocation " << n;
        }
    }

    std::vector<uint8_t> m_Blocks[3];
    SentivoHandle m_h = nullptr;
    int32_t m_nCode = 1;
    double m_dScore = -1.0;
};

} // namespace

TEST_F(AllocationFailure, EveryAllocationOfSetImageMayFail)
{
    std::vector<uint8_t> block = m_Blocks[0];
    FailEveryAllocationOf(
        [&] { return SentivoSetImage(m_h, 0, block.data(), static_cast<uint32_t>(block.size())); },
        0, [&] { ASSERT_EQ(Set(0), 0); });
}

TEST_F(AllocationFailure, EveryAllocationOfAnEvaluationMayFail)
{
    double dScore = 0;
    FailEveryAllocationOf([&] { return SentivoEvaluateLiveliness(m_h, &dScore); }, m_nCode, [] {});
}
