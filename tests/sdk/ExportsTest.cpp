// The exported functions' frames: initialisation counting, handle resolution
// and the codes for wrong states, forged handles and bad caller memory.
#include <vector>
#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "sentivo/sentivo.h"

namespace
{

// One page with the given protection; its address is what a wild pointer of
// the caller would hold.
struct Page
{
    explicit Page(int nProtection) { Protect(nProtection); }
    ~Page() { munmap(p, nSize); }
    void Protect(int nProtection) { mprotect(p, nSize, nProtection); }
    void* Get() const { return p; }

    const size_t nSize = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    void* const p =
        mmap(nullptr, nSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
};

class Initialized : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS); }
    void TearDown() override { EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS); }
};

} // namespace

TEST(Exports, InitialisationIsCountedAndBalanced)
{
    SentivoHandle hHandle = reinterpret_cast<SentivoHandle>(0x1234);
    EXPECT_EQ(SentivoUninitialize(), ZRC_ERROR_NOT_INITIALIZED);
    // The initialise check comes before the pointer check.
    EXPECT_EQ(SentivoCreateHandle(nullptr), ZRC_ERROR_NOT_INITIALIZED);

    ASSERT_EQ(SentivoInitialize(reinterpret_cast<void*>(0x77)), ZRC_SUCCESS);
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
    // Still usable after one of two releases.
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);

    // The live handle fails with -2 until a new initialisation, then works again.
    EXPECT_EQ(SentivoReset(hHandle), ZRC_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_ERROR_NOT_INITIALIZED);
    SentivoHandle hUntouched = reinterpret_cast<SentivoHandle>(0x5678);
    EXPECT_EQ(SentivoCreateHandle(&hUntouched), ZRC_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(hUntouched, reinterpret_cast<SentivoHandle>(0x5678));
    EXPECT_EQ(SentivoUninitialize(), ZRC_ERROR_NOT_INITIALIZED);

    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
}

TEST_F(Initialized, HandlesAreIndependentAndDestroyedOnesZeroedAndRefused)
{
    SentivoHandle hFirst = nullptr, hSecond = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hFirst), ZRC_SUCCESS);
    ASSERT_EQ(SentivoCreateHandle(&hSecond), ZRC_SUCCESS);
    ASSERT_EQ(SentivoSetPropertyA(hFirst, "nSecurityLevel", "2"), ZRC_SUCCESS);
    char szValue[16];
    uint32_t nSize = sizeof(szValue);
    ASSERT_EQ(SentivoGetPropertyA(hSecond, "nSecurityLevel", szValue, &nSize), ZRC_SUCCESS);
    EXPECT_STREQ(szValue, "1");

    EXPECT_EQ(SentivoDestroyHandle(&hFirst), ZRC_SUCCESS);
    EXPECT_EQ(hFirst, nullptr);
    EXPECT_EQ(SentivoDestroyHandle(&hFirst), ZRC_ERROR_NO_HANDLE);
    EXPECT_EQ(SentivoReset(hSecond), ZRC_SUCCESS);
    EXPECT_EQ(SentivoDestroyHandle(&hSecond), ZRC_SUCCESS);
    EXPECT_EQ(SentivoDestroyHandle(nullptr), ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(SentivoCreateHandle(nullptr), ZRC_ERROR_BAD_POINTER);
}

TEST_F(Initialized, EveryHandleFunctionRefusesNullAndForgedHandles)
{
    static double dScore = 0.0;
    static uint32_t nSize = 0;
    const auto calls = {
        +[](SentivoHandle h) { return SentivoReset(h); },
        +[](SentivoHandle h) { return SentivoSetImage(h, 0, nullptr, 0); },
        +[](SentivoHandle h) { return SentivoDetectFinger(h); },
        +[](SentivoHandle h) { return SentivoDetectFake(h, &dScore); },
        +[](SentivoHandle h) { return SentivoEvaluateLiveliness(h, &dScore); },
        +[](SentivoHandle h) { return SentivoSetPropertyA(h, "nSecurityLevel", "1"); },
        +[](SentivoHandle h) { return SentivoSetPropertyW(h, u"nSecurityLevel", u"1"); },
        +[](SentivoHandle h) { return SentivoGetPropertyA(h, "Version", nullptr, &nSize); },
        +[](SentivoHandle h) { return SentivoGetPropertyW(h, u"Version", nullptr, &nSize); },
    };
    // Right head, overwritten tail; a block of another kind; a live-looking
    // block whose object is null.
    struct Block
    {
        char szHead[8];
        void* pObject;
        char szTail[8];
    };
    Block wrongTail{"Sentivo", &dScore, "Sentivx"};
    Block wrongHead{"Sentivx", &dScore, "Sentivo"};
    Block nullObject{"Sentivo", nullptr, "Sentivo"};
    Page unreadable(PROT_NONE);
    std::vector<void*> forged = {&wrongTail, &wrongHead, &nullObject, unreadable.Get()};
    // A readable 8-byte value right in front of an unreadable page: too small
    // to hold a block, and nothing behind it may be read.
    Page edge(PROT_READ | PROT_WRITE);
    Page guard(PROT_NONE);
    if (static_cast<char*>(edge.Get()) + edge.nSize == guard.Get())
        forged.push_back(static_cast<char*>(edge.Get()) + edge.nSize - 8);
    for (auto call : calls)
    {
        EXPECT_EQ(call(nullptr), ZRC_ERROR_NO_HANDLE);
        for (void* p : forged)
            EXPECT_EQ(call(p), ZRC_ERROR_INVALID_HANDLE);
    }
    for (SentivoHandle h : forged)
        EXPECT_EQ(SentivoDestroyHandle(&h), ZRC_ERROR_INVALID_HANDLE);
}

TEST_F(Initialized, BadHandleVariablesGive701AndKeepTheHandleAlive)
{
    Page readOnly(PROT_READ);
    Page noAccess(PROT_NONE);
    EXPECT_EQ(SentivoCreateHandle(static_cast<SentivoHandle*>(readOnly.Get())),
              ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(SentivoCreateHandle(static_cast<SentivoHandle*>(noAccess.Get())),
              ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(SentivoDestroyHandle(static_cast<SentivoHandle*>(noAccess.Get())),
              ZRC_ERROR_BAD_POINTER);

    // A live handle in a variable that turns read-only cannot be destroyed
    // through it, and stays usable.
    Page variable(PROT_READ | PROT_WRITE);
    auto* pHandle = static_cast<SentivoHandle*>(variable.Get());
    ASSERT_EQ(SentivoCreateHandle(pHandle), ZRC_SUCCESS);
    const SentivoHandle hLive = *pHandle;
    variable.Protect(PROT_READ);
    EXPECT_EQ(SentivoDestroyHandle(pHandle), ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(*pHandle, hLive);
    EXPECT_EQ(SentivoReset(hLive), ZRC_SUCCESS);
    variable.Protect(PROT_READ | PROT_WRITE);
    EXPECT_EQ(SentivoDestroyHandle(pHandle), ZRC_SUCCESS);
    EXPECT_EQ(*pHandle, nullptr);
}
