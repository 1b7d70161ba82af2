// Allocation failures along one SentivoSetImage and one
// SentivoEvaluateLiveliness of a real capture: the n-th allocation of the
// library's own (operator new, replaced below by a counting version) fails,
// for every n. Each call then ends in -102 or lets std::bad_alloc leave the
// library, never crashes or hangs, and the same handle judges the capture
// normally afterwards. The sanitizer build checks that nothing leaks.
// FFTW allocates with malloc and ends the process on a failure of its own;
// no caller can prevent that, so its allocations are left alone.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <fstream>
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

bool Fails()
{
    const long n = ++g_nAllocations;
    return n == g_nFailAt.load();
}

void* Allocate(std::size_t nSize)
{
    return std::malloc(nSize == 0 ? 1 : nSize);
}

} // namespace

void* operator new(std::size_t nSize)
{
    void* p = Fails() ? nullptr : Allocate(nSize);
    if (p == nullptr)
        throw std::bad_alloc();
    return p;
}
void* operator new[](std::size_t nSize)
{
    return operator new(nSize);
}
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    return Fails() ? nullptr : Allocate(nSize);
}
void* operator new[](std::size_t nSize, const std::nothrow_t&) noexcept
{
    return Fails() ? nullptr : Allocate(nSize);
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete[](void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}

namespace
{

std::vector<uint8_t> Block(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return std::vector<uint8_t>(file.begin() + (file.size() > 14 ? 14 : 0), file.end());
}

struct Outcome
{
    int32_t nCode = 1;
    double dScore = -1.0;
    bool bThrew = false;
};

// Counts the allocations of f, or makes the n-th of them fail.
template <typename F> Outcome Counted(long nFailAt, long& nCount, F&& f)
{
    Outcome outcome;
    g_nAllocations = 0;
    g_nFailAt = nFailAt;
    try
    {
        outcome.nCode = f(outcome.dScore);
    }
    catch (const std::bad_alloc&)
    {
        outcome.bThrew = true;
    }
    nCount = g_nAllocations;
    g_nFailAt = 0;
    return outcome;
}

class AllocationFailure : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const std::string folder = SENTIVO_SOURCE_DIR;
        m_Blocks[0] = Block(folder + "/tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp");
        m_Blocks[1] = Block(folder + "/tests/conformance/light/backlight.bmp");
        m_Blocks[2] = Block(folder + "/tests/conformance/light/dark.bmp");
        ASSERT_EQ(SentivoInitialize(nullptr), 0);
        ASSERT_EQ(SentivoCreateHandle(&m_h), 0);
        for (int32_t i = 0; i < 3; ++i)
            ASSERT_EQ(Set(i), 0);
        // The second capture of a still finger: the reference outcome.
        SentivoDetectFinger(m_h);
        m_Reference.nCode = SentivoEvaluateLiveliness(m_h, &m_Reference.dScore);
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
    void ExpectNormal(long n)
    {
        double dScore = -1.0;
        const int32_t nCode = SentivoEvaluateLiveliness(m_h, &dScore);
        EXPECT_EQ(nCode, m_Reference.nCode) << "after failing allocation " << n;
        EXPECT_EQ(dScore, m_Reference.dScore) << "after failing allocation " << n;
    }
    static void ExpectFailedCleanly(const Outcome& outcome, long n)
    {
        EXPECT_TRUE(outcome.bThrew || outcome.nCode == ZRC_ERROR_OUT_OF_MEMORY)
            << "allocation " << n << " gave code " << outcome.nCode;
    }

    std::vector<uint8_t> m_Blocks[3];
    SentivoHandle m_h = nullptr;
    Outcome m_Reference;
};

} // namespace

TEST_F(AllocationFailure, EveryAllocationOfSetImageMayFail)
{
    long nTotal = 0;
    std::vector<uint8_t> block = m_Blocks[0];
    auto setImage = [&](double&)
    { return SentivoSetImage(m_h, 0, block.data(), static_cast<uint32_t>(block.size())); };
    ASSERT_EQ(Counted(0, nTotal, setImage).nCode, 0);
    ASSERT_GT(nTotal, 0);
    RecordProperty("allocations", static_cast<int>(nTotal));
    for (long n = 1; n <= nTotal; ++n)
    {
        long nCount = 0;
        ExpectFailedCleanly(Counted(n, nCount, setImage), n);
        ASSERT_EQ(Set(0), 0);
        ExpectNormal(n);
    }
}

TEST_F(AllocationFailure, EveryAllocationOfAnEvaluationMayFail)
{
    long nTotal = 0;
    auto evaluate = [&](double& dScore) { return SentivoEvaluateLiveliness(m_h, &dScore); };
    ASSERT_EQ(Counted(0, nTotal, evaluate).nCode, m_Reference.nCode);
    ASSERT_GT(nTotal, 0);
    RecordProperty("allocations", static_cast<int>(nTotal));
    for (long n = 1; n <= nTotal; ++n)
    {
        long nCount = 0;
        ExpectFailedCleanly(Counted(n, nCount, evaluate), n);
        ExpectNormal(n);
    }
}
