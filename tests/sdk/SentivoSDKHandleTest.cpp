// The handle behind the exported functions: wrong states, forged handles,
// bad caller memory, images and properties.
#include "sdk/SentivoSDKHandle.h"

#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <tuple>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
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
    const size_t nSize = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    void* const p =
        mmap(nullptr, nSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
};

using Header = SentivoBitmapInfoHeader;
using Change = void (*)(Header&);

// A 320 x 480 bitmap of 8 bits at 500 dpi, its colours not grey, its header
// changed by f, in an exact allocation nCut bytes short of the whole block.
struct Block
{
    explicit Block(Change f = nullptr, uint32_t nCut = 0)
    {
        Header h{40, 320, 480, 1, 8, 0, 0, 19685, 19685, 0, 0};
        if (f != nullptr)
            f(h);
        n = 1064 + (h.biWidth * (h.biBitCount == 24 ? 24 : 8) + 31) / 32 * 4 * h.biHeight - nCut;
        p = static_cast<uint8_t*>(std::malloc(n));
        for (uint32_t i = 0; i < n; ++i)
            p[i] = i < 40 ? reinterpret_cast<uint8_t*>(&h)[i] : static_cast<uint8_t>(i * 13);
    }
    ~Block() { std::free(p); }
    std::vector<uint8_t> Palette() const { return std::vector<uint8_t>(p + 40, p + 1064); }
    uint8_t* p;
    uint32_t n;
};

const Change kNarrow = [](Header& h) { h.biWidth = 200; };
const Change kBadPels = [](Header& h) { h.biXPelsPerMeter = h.biYPelsPerMeter = 19487; };
const Change kSmallPalette = [](Header& h) { h.biClrUsed = 16; };

class SentivoSDKHandle : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(SentivoInitialize(nullptr), 0);
        ASSERT_EQ(SentivoCreateHandle(&m_h), 0);
    }
    void TearDown() override
    {
        EXPECT_EQ(SentivoDestroyHandle(&m_h), 0);
        EXPECT_EQ(SentivoUninitialize(), 0);
    }
    int32_t Set(int32_t nIndex, const Block& b) { return SentivoSetImage(m_h, nIndex, b.p, b.n); }
    SentivoHandle m_h = nullptr;
};

} // namespace

TEST_F(SentivoSDKHandle, EveryHandleFunctionRefusesNullAndForgedHandles)
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
    Block wrongTail{"Sentivo", &dScore, "Sentivx"}, wrongHead{"Sentivx", &dScore, "Sentivo"},
        nullObject{"Sentivo", nullptr, "Sentivo"};
    Page unreadable(PROT_NONE);
    std::vector<void*> forged = {&wrongTail, &wrongHead, &nullObject, unreadable.p};
    // A readable 8-byte value right in front of an unreadable page: too small
    // to hold a block, and nothing behind it may be read.
    Page edge(PROT_READ | PROT_WRITE), guard(PROT_NONE);
    if (static_cast<char*>(edge.p) + edge.nSize == guard.p)
        forged.push_back(static_cast<char*>(guard.p) - 8);
    for (auto call : calls)
    {
        EXPECT_EQ(call(nullptr), ZRC_ERROR_NO_HANDLE);
        for (void* p : forged)
            EXPECT_EQ(call(p), ZRC_ERROR_INVALID_HANDLE);
    }
    for (SentivoHandle h : forged)
        EXPECT_EQ(SentivoDestroyHandle(&h), ZRC_ERROR_INVALID_HANDLE);
}

TEST_F(SentivoSDKHandle, BadHandleVariablesGive701AndKeepTheHandleAlive)
{
    Page readOnly(PROT_READ), noAccess(PROT_NONE);
    for (void* p : {static_cast<void*>(nullptr), readOnly.p, noAccess.p})
        EXPECT_EQ(SentivoCreateHandle(static_cast<SentivoHandle*>(p)), ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(SentivoDestroyHandle(static_cast<SentivoHandle*>(noAccess.p)), ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(SentivoDestroyHandle(nullptr), ZRC_ERROR_INVALID_PARAMETER);
    // A live handle in a variable that turns read-only cannot be destroyed
    // through it, and stays usable.
    Page variable(PROT_READ | PROT_WRITE);
    auto* pHandle = static_cast<SentivoHandle*>(variable.p);
    ASSERT_EQ(SentivoCreateHandle(pHandle), ZRC_SUCCESS);
    const SentivoHandle hLive = *pHandle;
    variable.Protect(PROT_READ);
    EXPECT_EQ(SentivoDestroyHandle(pHandle), ZRC_ERROR_BAD_POINTER);
    EXPECT_EQ(*pHandle, hLive);
    EXPECT_EQ(SentivoReset(hLive), ZRC_SUCCESS);
    variable.Protect(PROT_READ | PROT_WRITE);
    EXPECT_EQ(SentivoDestroyHandle(pHandle), ZRC_SUCCESS);
    EXPECT_EQ(*pHandle, nullptr); // zeroed, and refused a second time
    EXPECT_EQ(SentivoDestroyHandle(pHandle), ZRC_ERROR_NO_HANDLE);
}

TEST_F(SentivoSDKHandle, SetImageChecksTheIndexFirstThenEachFaultWithItsCodeAndText)
{
    const Block valid;
    EXPECT_EQ(SentivoSetImage(m_h, 7, valid.p, 0), -35); // before the -10 of size 0
    EXPECT_EQ(SentivoSetImage(m_h, -1, valid.p, valid.n), -35);
    EXPECT_EQ(SentivoSetImage(m_h, 0, valid.p, 0), -10);
    const char* const kX = "Standard images must have 500 dpi or 19685 pels in x direction";
    const char* const kMultiple = "Dimensions current image must be multiples of 4";
    const std::tuple<Change, int32_t, const char*> cases[] = {
        // A known compression already fails in the trial load, before its own test.
        {[](Header& h) { h.biCompression = 1; }, -101, "Image area must be positive"},
        {[](Header& h) { h.biBitCount = 24; }, -12, "The image must have a bitdepth of 8 bit"},
        {kSmallPalette, -12, "There should be palette with 256 entries"},
        {[](Header& h) { h.biClrUsed = 256; }, 0, nullptr},
        {[](Header& h) { h.biXPelsPerMeter = h.biYPelsPerMeter = 19488; }, 0, nullptr},
        {[](Header& h) { h.biXPelsPerMeter = h.biYPelsPerMeter = 19881; }, 0, nullptr},
        {kBadPels, -13, kX},
        {[](Header& h) { h.biXPelsPerMeter = 19882; }, -13, kX},
        {[](Header& h) { h.biYPelsPerMeter = 19487; }, -13,
         "Standard images must have 500 dpi or 19685 pels in y direction"},
        {[](Header& h) { h.biYPelsPerMeter = 19686; }, -13,
         "Standard images must have same dpi count in each direction"},
        {[](Header& h) { h.biWidth = 196; }, -14, "Standard image width must at least cover 1 cm"},
        {[](Header& h) { h.biWidth = 197; }, -14, kMultiple},
        {kNarrow, 0, nullptr},
        {[](Header& h) { h.biWidth = 492; }, 0, nullptr},
        {[](Header& h) { h.biWidth = 496; }, -14, "Standard image width must at most cover 2,5 cm"},
        {[](Header& h) { h.biHeight = 198; }, -14, kMultiple},
        {[](Header& h) { h.biHeight = 496; }, -14,
         "Standard image height must at most cover 2,5 cm"},
    };
    for (auto [f, nCode, szText] : cases)
    {
        SCOPED_TRACE(szText != nullptr ? szText : "accepted");
        const Block block(f);
        EXPECT_EQ(Set(0, block), nCode);
        // The texts only reach the log; the handle object shows them directly.
        ClSentivoSDKHandle handle;
        if (nCode != 0)
            ExpectThrows([&] { handle.SetImage(2, block.p, block.n); }, nCode, szText);
    }
    // Blocks too short for header, colours or pixels, also where exactly the
    // header or the colour table ends; the size test comes before the width's.
    const uint32_t nFull = 1064 + 320 * 480;
    for (uint32_t nSize : {1u, 39u, 40u, 41u, 1063u, 1064u, 1065u, nFull - 1})
        EXPECT_EQ(Set(0, Block(nullptr, nFull - nSize)), -21) << nSize;
    EXPECT_EQ(Set(0, Block([](Header& h) { h.biWidth = 322; }, 1)), -21);
}

TEST_F(SentivoSDKHandle, SetImageRewritesThePaletteEvenOnALaterFailureAndKeepsTheOldImage)
{
    // Entry i becomes (i, i, i), its fourth byte kept.
    const Block accepted, refusedLater(kBadPels), refusedBefore(kSmallPalette);
    const std::vector<uint8_t> original = accepted.Palette();
    std::vector<uint8_t> grey = original;
    for (int i = 0; i < 256; ++i)
        grey[4 * i] = grey[4 * i + 1] = grey[4 * i + 2] = static_cast<uint8_t>(i);
    EXPECT_EQ(std::make_tuple(Set(0, accepted), Set(0, refusedLater), Set(0, refusedBefore)),
              std::make_tuple(0, -13, -12));
    EXPECT_TRUE(accepted.Palette() == grey && refusedLater.Palette() == grey &&
                refusedBefore.Palette() == original);
    // Refused narrow images leave the 320-wide one in place, so the input
    // check passes and the finger half is reached.
    ASSERT_EQ(Set(1, accepted) + Set(2, accepted), 0);
    EXPECT_EQ(Set(0, Block([](Header& h) { h.biWidth = 200, h.biYPelsPerMeter = 19882; })), -13);
    EXPECT_EQ(Set(0, Block(kNarrow, 1)), -21);
    EXPECT_EQ(SentivoDetectFinger(m_h), ZRC_ERROR_BITMAP_NO_FINGER);
    EXPECT_EQ(Set(0, Block(kNarrow)), 0);
    EXPECT_EQ(SentivoDetectFinger(m_h), -14);
}

TEST_F(SentivoSDKHandle, PropertiesReportTheNeededSizeFirstAndRefuseWrongKindsAlsoWideAndTyped)
{
    char sz[32] = "untouched";
    const std::tuple<char*, uint32_t, int32_t> reads[] = {
        {sz, 0, -21}, {sz, 10, -21}, {nullptr, 100, -20}, {sz, 11, 0}};
    for (auto [p, nGiven, nCode] : reads)
    {
        uint32_t nSize = nGiven;
        EXPECT_EQ(std::make_tuple(SentivoGetPropertyA(m_h, "Version", p, &nSize), nSize),
                  std::make_tuple(nCode, 11u));
        EXPECT_STREQ(sz, nCode ? "untouched" : "2.0.1012.0");
    }
    uint32_t nSize = sizeof(sz);
    EXPECT_EQ(std::make_tuple(SentivoGetPropertyA(m_h, "Version", sz, nullptr),
                              SentivoGetPropertyA(m_h, "NoSuchName", sz, &nSize),
                              SentivoSetPropertyA(m_h, "NoSuchName", nullptr),
                              SentivoSetPropertyA(m_h, "nSecurityLevel", nullptr),
                              SentivoSetPropertyA(m_h, "bMovementDetection", "true"),
                              SentivoSetPropertyW(m_h, u"VERSION", u"1"),
                              SentivoSetPropertyW(m_h, u"nSecurityLevel", u"3")),
              std::make_tuple(-24, -206, -206, -44, -35, -47, 0));
    // Longer than a first read's 128 bytes: 301 digits, the point and a zero.
    ASSERT_EQ(SentivoSetPropertyA(m_h, "dQueryScore", "1e300"), 0);
    std::vector<char> buffer(128);
    nSize = 128;
    ASSERT_EQ(
        std::make_tuple(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), nSize),
        std::make_tuple(-21, 304u));
    buffer.resize(nSize);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), 0);
    EXPECT_EQ(std::string(buffer.data()), std::to_string(1e300).substr(0, 303));
    // The wide functions count UTF-16 code units and refuse ill-formed text.
    char16_t szWide[16] = {};
    nSize = 0;
    EXPECT_EQ(std::make_tuple(SentivoGetPropertyW(m_h, u"version", szWide, &nSize), nSize),
              std::make_tuple(-21, 11u));
    EXPECT_EQ(SentivoGetPropertyW(m_h, u"version", szWide, &nSize), 0);
    EXPECT_TRUE(std::u16string(szWide) == u"2.0.1012.0");
    const char16_t szUnpaired[] = {u'n', 0xD800, u'x', 0};
    EXPECT_EQ(std::make_tuple(SentivoGetPropertyW(m_h, szUnpaired, szWide, &nSize),
                              SentivoSetPropertyW(m_h, szUnpaired, u"1"),
                              SentivoSetPropertyW(m_h, u"nSecurityLevel", szUnpaired)),
              std::make_tuple(-105, -105, -105));
    nSize = sizeof(sz);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "NSECURITYLEVEL", sz, &nSize), 0);
    EXPECT_STREQ(sz, "3");
    // Typed access: a number of the other kind, of a read-only text or of an
    // enumeration is -44, an unknown name -206; none touches the level.
    ClSentivoSDKHandle handle;
    int32_t nValue = 0;
    double dValue = 0.0;
    handle.SetPropertyInt("nSecurityLevel", 4);
    ExpectThrows([&] { handle.GetPropertyInt("dQueryFAR", &nValue); }, -44);
    ExpectThrows([&] { handle.SetPropertyDouble("nSecurityLevel", 2.0); }, -44);
    ExpectThrows([&] { handle.SetPropertyInt("Version", 1); }, -44);
    ExpectThrows([&] { handle.GetPropertyDouble("bMovementDetection", &dValue); }, -44);
    ExpectThrows([&] { handle.SetPropertyInt("nNoSuchThing", 1); }, -206);
    handle.GetPropertyInt("NSECURITYLEVEL", &nValue);
    EXPECT_EQ(nValue, 4);
}
