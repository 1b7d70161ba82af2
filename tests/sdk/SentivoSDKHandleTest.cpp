// The detection handle through the exported functions, fed with bitmap blocks
// built here and allocated with exactly the size handed over, so that the
// sanitizer build catches any read behind a block.
#include "sdk/SentivoSDKHandle.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "classifier/RateTables.h"
#include "image/ImageTestSupport.h"
#include "sentivo/sentivo.h"

namespace
{

using Header = SentivoBitmapInfoHeader;
using Change = void (*)(Header&);

// A 320 x 480 bitmap of 8 bits at 500 dpi with 256 colour entries that are
// anything but grey, its header changed by f, in an allocation nCut bytes
// short of the whole block.
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
    Block(const Block&) = delete;
    std::vector<uint8_t> Palette() const { return std::vector<uint8_t>(p + 40, p + 1064); }
    uint8_t* p;
    uint32_t n;
};

const Change kNarrow = [](Header& h) { h.biWidth = 200; };
const Change kBadPels = [](Header& h) { h.biXPelsPerMeter = h.biYPelsPerMeter = 19487; };
const Change kSmallPalette = [](Header& h) { h.biClrUsed = 16; };
void NarrowWithBadPels(Header& h)
{
    h.biWidth = 200;
    h.biYPelsPerMeter = 19882;
}

// The text of a double property: "%f" with trailing zeros cut down to one.
std::string Fixed(double d)
{
    std::string s = std::to_string(d);
    return s.erase(std::max(s.find_last_not_of('0') + 1, s.find('.') + 2));
}

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
    void SetAll(Change f)
    {
        const Block block(f);
        for (int32_t nIndex : {0, 1, 2})
            ASSERT_EQ(Set(nIndex, block), 0);
    }
    int32_t Put(const char* szName, const char* szValue)
    {
        return SentivoSetPropertyA(m_h, szName, szValue);
    }
    std::string Get(const char* szName)
    {
        char sz[512] = {};
        uint32_t nSize = sizeof(sz);
        EXPECT_EQ(SentivoGetPropertyA(m_h, szName, sz, &nSize), 0) << szName;
        return sz;
    }

    SentivoHandle m_h = nullptr;
};

} // namespace

TEST_F(SentivoSDKHandle, SetImageChecksTheIndexFirstAndDetectionNeedsAllThreeImages)
{
    const Block valid;
    EXPECT_EQ(SentivoSetImage(m_h, 7, nullptr, 0), -35);
    EXPECT_EQ(SentivoSetImage(m_h, 7, valid.p, 0), -35); // before the -10 of size 0
    EXPECT_EQ(SentivoSetImage(m_h, -1, valid.p, valid.n), -35);
    EXPECT_EQ(SentivoSetImage(m_h, 0, valid.p, 0), -10);

    // Every detection call reports a missing image, also one emptied by a null
    // bitmap (whose size is ignored), and then that the halves are not built
    // yet; the score stays 0, and a null score pointer gives -44.
    auto expectAll = [this](int32_t nCode)
    {
        double dFake = 123.0, dBoth = 123.0;
        EXPECT_EQ(SentivoDetectFake(m_h, nullptr), -44);
        EXPECT_EQ(SentivoEvaluateLiveliness(m_h, nullptr), -44);
        EXPECT_EQ(SentivoDetectFake(m_h, &dFake), nCode);
        EXPECT_EQ(SentivoEvaluateLiveliness(m_h, &dBoth), nCode);
        EXPECT_EQ(SentivoDetectFinger(m_h), nCode);
        EXPECT_EQ(std::make_pair(dFake, dBoth), std::make_pair(0.0, 0.0));
    };
    expectAll(-37);
    SetAll(nullptr);
    EXPECT_EQ(SentivoSetImage(m_h, 1, nullptr, 12345), 0);
    expectAll(-37);
    EXPECT_EQ(Set(1, valid), 0);
    expectAll(-101);
}

TEST_F(SentivoSDKHandle, SetImageRefusesEachFaultWithItsCodeAndText)
{
    const char* const kX = "Standard images must have 500 dpi or 19685 pels in x direction";
    const char* const kMultiple = "Dimensions current image must be multiples of 4";
    const std::tuple<Change, int32_t, const char*> cases[] = {
        // "BM" at the start and again 14 bytes on.
        {[](Header& h) { h.biSize = h.biBitCount = 0x4D42; }, -36,
         "ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected."},
        {[](Header& h) { h.biSize = 124; }, -32,
         "ClBitmap::Attach, Bitmap Header size is not known."},
        {[](Header& h) { h.biPlanes = 2; }, -11, "ClBitmap::Attach, pBI->biPlanes != 1."},
        {[](Header& h) { h.biCompression = 4; }, -31, "ClBitmap::Attach, Not Supported FOCC."},
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
        {[](Header& h) { h.biHeight = 196; }, -14,
         "Standard image height must at least cover 1 cm"},
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
        if (nCode == 0)
            EXPECT_NO_THROW(handle.SetImage(2, block.p, block.n));
        else
            ExpectThrows([&] { handle.SetImage(2, block.p, block.n); }, nCode, szText);
    }

    // Blocks too short for header, colours or pixels, also where exactly the
    // header or the colour table ends.
    const uint32_t nFull = 1064 + 320 * 480;
    for (uint32_t nSize : {1u, 39u, 40u, 41u, 1063u, 1064u, 1065u, nFull - 1})
        EXPECT_EQ(Set(0, Block(nullptr, nFull - nSize)), -21) << nSize;
    // Rows of width 322 take 324 bytes; the size test comes before the width's.
    const Change kWidth322 = [](Header& h) { h.biWidth = 322; };
    EXPECT_EQ(Set(0, Block(kWidth322, 1)), -21);
    EXPECT_EQ(Set(0, Block(kWidth322)), -14);
}

TEST_F(SentivoSDKHandle, SetImageRewritesThePaletteEvenOnALaterFailureAndKeepsTheOldImage)
{
    // Entry i becomes (i, i, i), its fourth byte kept.
    const Block accepted, refusedLater(kBadPels), refusedBefore(kSmallPalette);
    const std::vector<uint8_t> original = accepted.Palette();
    std::vector<uint8_t> grey = original;
    for (int i = 0; i < 256; ++i)
        grey[4 * i] = grey[4 * i + 1] = grey[4 * i + 2] = static_cast<uint8_t>(i);
    EXPECT_EQ(Set(0, accepted), 0);
    EXPECT_TRUE(accepted.Palette() == grey);
    EXPECT_EQ(Set(0, refusedLater), -13);
    EXPECT_TRUE(refusedLater.Palette() == grey);
    EXPECT_EQ(Set(0, refusedBefore), -12);
    EXPECT_TRUE(refusedBefore.Palette() == original);

    // Refused narrow images leave the 320-wide one in place, so the input
    // check passes and the finger half is reached.
    SetAll(nullptr);
    EXPECT_EQ(Set(0, Block(NarrowWithBadPels)), -13);
    EXPECT_EQ(Set(0, Block(kNarrow, 1)), -21);
    EXPECT_EQ(SentivoDetectFinger(m_h), -101);
    EXPECT_EQ(Set(0, Block(kNarrow)), 0);
    EXPECT_EQ(SentivoDetectFinger(m_h), -14);
}

TEST_F(SentivoSDKHandle, PropertiesHaveTheirDefaultsSurviveResetAndQueriesFillEachOther)
{
    EXPECT_EQ(Get("Version"), "2.0.1012.0");
    EXPECT_EQ(Get("nSecurityLevel") + Get("bMovementDetection"), "1True");
    EXPECT_EQ(Get("dQueryScore") + Get("dQueryFAR") + Get("dQueryFRR"), "0.00.00.0");

    EXPECT_EQ(Put("nsecuritylevel", "2"), 0);
    EXPECT_EQ(Put("nSecurityLevel", "abc"), -101);
    EXPECT_EQ(Put("bMovementDetection", "False"), 0);
    EXPECT_EQ(Put("bMovementDetection", "true"), -35);
    SetAll(nullptr);
    EXPECT_EQ(SentivoReset(m_h), 0);
    EXPECT_EQ(Get("NSECURITYLEVEL") + Get("bMovementDetection"), "2False");
    EXPECT_EQ(SentivoDetectFinger(m_h), -37);

    // Each query property sets the other two from the rate tables.
    using NeuralNet::FarTable;
    using NeuralNet::FrrTable;
    auto all = [&] { return Get("dQueryFAR") + " " + Get("dQueryFRR") + " " + Get("dQueryScore"); };
    auto score = [](int32_t k) { return Fixed(100.0 * FrrTable[k] / (FrrTable[k] + FarTable[k])); };
    // The first row whose FAR is at most, or whose FRR is at least, the target.
    int32_t k = 0, m = 0;
    while (FarTable[k] > 0.01)
        ++k;
    while (FrrTable[m] < 0.2)
        ++m;
    ASSERT_EQ(Put("dQueryFAR", "0.01"), 0);
    EXPECT_EQ(all(), "0.01 " + Fixed(FrrTable[k]) + " " + score(k));
    ASSERT_EQ(Put("dQueryFRR", "0.2"), 0);
    EXPECT_EQ(all(), Fixed(FarTable[m]) + " 0.2 " + score(m));
    // A score interpolates between rows: no row's FAR; it survives a reset.
    ASSERT_EQ(Put("dQueryScore", "60"), 0);
    EXPECT_EQ(SentivoReset(m_h), 0);
    EXPECT_EQ(Get("dQueryScore"), "60.0");
    EXPECT_NE(Get("dQueryFAR"), Fixed(FarTable[m]));
}

TEST_F(SentivoSDKHandle, GetPropertyReportsTheNeededSizeBeforeUsingTheBufferAlsoWide)
{
    const uint32_t nNeeded = sizeof("2.0.1012.0");
    char sz[32];
    std::memset(sz, 'x', sizeof(sz));
    for (uint32_t nGiven : {0u, nNeeded - 1})
    {
        uint32_t nSize = nGiven;
        EXPECT_EQ(SentivoGetPropertyA(m_h, "Version", sz, &nSize), -21);
        EXPECT_EQ(nSize, nNeeded);
        EXPECT_EQ(std::string(sz, sizeof(sz)), std::string(sizeof(sz), 'x'));
    }
    uint32_t nSize = 100;
    EXPECT_EQ(SentivoGetPropertyA(m_h, "Version", nullptr, &nSize), -20);
    EXPECT_EQ(nSize, nNeeded);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "Version", sz, &nSize), 0);
    EXPECT_STREQ(sz, "2.0.1012.0");
    EXPECT_EQ(SentivoGetPropertyA(m_h, "Version", sz, nullptr), -24);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "NoSuchName", sz, &nSize), -206);
    EXPECT_EQ(Put("NoSuchName", nullptr), -206);
    EXPECT_EQ(Put("nSecurityLevel", nullptr), -44);

    // Longer than a first read's 128 bytes: 301 digits before the point.
    ASSERT_EQ(Put("dQueryScore", "1e300"), 0);
    std::vector<char> buffer(128);
    nSize = 128;
    EXPECT_EQ(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), -21);
    ASSERT_EQ(nSize, Fixed(1e300).size() + 1);
    buffer.resize(nSize);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), 0);
    EXPECT_EQ(std::string(buffer.data()), Fixed(1e300));

    // The wide functions count UTF-16 code units and refuse ill-formed text.
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"nSecurityLevel", u"3"), 0);
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"VERSION", u"1"), -47);
    char16_t szWide[16] = {};
    nSize = 0;
    EXPECT_EQ(SentivoGetPropertyW(m_h, u"version", szWide, &nSize), -21);
    EXPECT_EQ(nSize, 11u);
    EXPECT_EQ(SentivoGetPropertyW(m_h, u"version", szWide, &nSize), 0);
    EXPECT_TRUE(std::u16string(szWide) == u"2.0.1012.0");

    const char16_t szUnpaired[] = {u'n', 0xD800, u'x', 0};
    EXPECT_EQ(SentivoGetPropertyW(m_h, szUnpaired, szWide, &nSize), -105);
    EXPECT_EQ(SentivoSetPropertyW(m_h, szUnpaired, u"1"), -105);
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"nSecurityLevel", szUnpaired), -105);
    EXPECT_EQ(Get("nSecurityLevel"), "3");
}
