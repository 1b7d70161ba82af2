// The detection handle through the exported functions, fed with bitmap blocks
// built here and allocated with exactly the size handed over, so that the
// sanitizer build catches any read behind a block.
#include "sdk/SentivoSDKHandle.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "classifier/RateTables.h"
#include "image/ImageTestSupport.h"
#include "sentivo/sentivo.h"

namespace
{

struct Layout
{
    int32_t nWidth = 320, nHeight = 480, nXPels = 19685, nYPels = 19685;
    uint16_t nPlanes = 1, nBitCount = 8;
    uint32_t nCompression = 0, nClrUsed = 0, nInfoSize = 40;
    bool bTwoSignatures = false; // "BM" at the start and again 14 bytes on
};

template <typename T, typename V> Layout With(T Layout::*pField, V value)
{
    Layout layout;
    layout.*pField = static_cast<T>(value);
    return layout;
}

Layout Pels(int32_t nX, int32_t nY)
{
    Layout layout = With(&Layout::nXPels, nX);
    layout.nYPels = nY;
    return layout;
}

// Byte c of colour entry i as a scanner driver might leave it: anything but grey.
uint8_t Colour(int i, int c)
{
    return static_cast<uint8_t>(c == 0 ? 255 - i : c == 1 ? i * 7 : c == 2 ? 3 : i ^ 0xA5);
}

// Info header, 256 colour entries, rows padded to 4 bytes; nCut bytes short.
struct Block
{
    explicit Block(const Layout& s = {}, uint32_t nCut = 0)
    {
        const uint32_t nFull = 1064 + (s.nWidth * s.nBitCount + 31) / 32 * 4 * s.nHeight;
        std::vector<uint8_t> full(nFull);
        const SentivoBitmapInfoHeader header{s.nInfoSize, s.nWidth,       s.nHeight, s.nPlanes,
                                             s.nBitCount, s.nCompression, 0,         s.nXPels,
                                             s.nYPels,    s.nClrUsed,     0};
        std::memcpy(full.data(), &header, 40);
        for (uint32_t i = 0; i < 1024; ++i)
            full[40 + i] = Colour(i / 4, i % 4);
        for (uint32_t i = 1064; i < nFull; ++i)
            full[i] = static_cast<uint8_t>(i * 13);
        for (uint32_t nAt : {0u, 14u})
            if (s.bTwoSignatures)
                std::memcpy(&full[nAt], "BM", 2);
        n = nFull - nCut;
        p = static_cast<uint8_t*>(std::malloc(n));
        std::memcpy(p, full.data(), n);
    }
    ~Block() { std::free(p); }
    Block(const Block&) = delete;
    // Every entry (i, i, i) with its fourth byte kept, or every entry as built.
    bool HasPalette(bool bGrey) const
    {
        for (int i = 0; i < 1024; ++i)
            if (p[40 + i] != (bGrey && i % 4 != 3 ? i / 4 : Colour(i / 4, i % 4)))
                return false;
        return true;
    }
    uint8_t* p;
    uint32_t n;
};

// The text of a double property: "%f" with trailing zeros cut down to one.
std::string Fixed(double d)
{
    char sz[400];
    std::snprintf(sz, sizeof(sz), "%f", d);
    std::string s = sz;
    while (s.back() == '0' && s[s.size() - 2] != '.')
        s.pop_back();
    return s;
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
    void SetAll(const Layout& layout)
    {
        const Block block(layout);
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

TEST_F(SentivoSDKHandle, SetImageChecksTheIndexFirstAndANullBitmapEmptiesTheSlot)
{
    const Block valid;
    EXPECT_EQ(SentivoSetImage(m_h, 7, nullptr, 0), -35);
    EXPECT_EQ(SentivoSetImage(m_h, 7, valid.p, 0), -35); // before the -10 of size 0
    EXPECT_EQ(SentivoSetImage(m_h, -1, valid.p, valid.n), -35);
    EXPECT_EQ(SentivoSetImage(m_h, 0, valid.p, 0), -10);

    SetAll({});
    EXPECT_EQ(SentivoSetImage(m_h, 1, nullptr, 12345), 0); // the size is ignored
    EXPECT_EQ(SentivoDetectFinger(m_h), -37);
    EXPECT_EQ(SentivoSetImage(m_h, 1, nullptr, 0), 0);
    EXPECT_EQ(Set(1, valid), 0);
    EXPECT_EQ(SentivoDetectFinger(m_h), -101);
}

TEST_F(SentivoSDKHandle, SetImageRefusesEachFaultWithItsCodeAndText)
{
    const struct
    {
        Layout layout;
        int32_t nCode;
        const char* szText;
    } cases[] = {
        {With(&Layout::bTwoSignatures, true), -36,
         "ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected."},
        {With(&Layout::nInfoSize, 124), -32, "ClBitmap::Attach, Bitmap Header size is not known."},
        {With(&Layout::nPlanes, 2), -11, "ClBitmap::Attach, pBI->biPlanes != 1."},
        {With(&Layout::nCompression, 4), -31, "ClBitmap::Attach, Not Supported FOCC."},
        // A known compression already fails in the trial load, before its own test.
        {With(&Layout::nCompression, 1), -101, "Image area must be positive"},
        {With(&Layout::nBitCount, 24), -12, "The image must have a bitdepth of 8 bit"},
        {With(&Layout::nClrUsed, 16), -12, "There should be palette with 256 entries"},
        {With(&Layout::nClrUsed, 256), 0, nullptr},
        {Pels(19488, 19488), 0, nullptr},
        {Pels(19881, 19881), 0, nullptr},
        {Pels(19487, 19487), -13, "Standard images must have 500 dpi or 19685 pels in x direction"},
        {Pels(19882, 19685), -13, "Standard images must have 500 dpi or 19685 pels in x direction"},
        {Pels(19685, 19487), -13, "Standard images must have 500 dpi or 19685 pels in y direction"},
        {Pels(19685, 19686), -13, "Standard images must have same dpi count in each direction"},
        {With(&Layout::nWidth, 196), -14, "Standard image width must at least cover 1 cm"},
        {With(&Layout::nWidth, 197), -14, "Dimensions current image must be multiples of 4"},
        {With(&Layout::nWidth, 200), 0, nullptr},
        {With(&Layout::nWidth, 492), 0, nullptr},
        {With(&Layout::nWidth, 496), -14, "Standard image width must at most cover 2,5 cm"},
        {With(&Layout::nHeight, 196), -14, "Standard image height must at least cover 1 cm"},
        {With(&Layout::nHeight, 198), -14, "Dimensions current image must be multiples of 4"},
        {With(&Layout::nHeight, 496), -14, "Standard image height must at most cover 2,5 cm"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.szText != nullptr ? c.szText : "accepted");
        const Block block(c.layout);
        EXPECT_EQ(Set(0, block), c.nCode);
        // The texts only reach the log; the handle object shows them directly.
        ClSentivoSDKHandle handle;
        if (c.nCode == 0)
            EXPECT_NO_THROW(handle.SetImage(2, block.p, block.n));
        else
            ExpectThrows([&] { handle.SetImage(2, block.p, block.n); }, c.nCode, c.szText);
    }
}

TEST_F(SentivoSDKHandle, SetImageRefusesBlocksTooShortForHeaderColoursOrPixels)
{
    const uint32_t nFull = 1064 + 320 * 480;
    for (uint32_t nSize : {1u, 39u, 40u, 41u, 1063u, 1064u, 1065u, nFull - 1})
        EXPECT_EQ(Set(0, Block({}, nFull - nSize)), -21) << nSize;
    // Rows of width 322 take 324 bytes; the size test comes before the width's.
    EXPECT_EQ(Set(0, Block(With(&Layout::nWidth, 322), 1)), -21);
    EXPECT_EQ(Set(0, Block(With(&Layout::nWidth, 322))), -14);
}

TEST_F(SentivoSDKHandle, SetImageRewritesTheCallersPaletteEvenWhenALaterTestFails)
{
    const Block accepted, refusedLater(Pels(19487, 19487)),
        refusedBefore(With(&Layout::nClrUsed, 16));
    ASSERT_TRUE(accepted.HasPalette(false));
    EXPECT_EQ(Set(0, accepted), 0);
    EXPECT_TRUE(accepted.HasPalette(true));
    EXPECT_EQ(Set(0, refusedLater), -13);
    EXPECT_TRUE(refusedLater.HasPalette(true));
    EXPECT_EQ(Set(0, refusedBefore), -12);
    EXPECT_TRUE(refusedBefore.HasPalette(false));
}

TEST_F(SentivoSDKHandle, FailedSetImageKeepsTheOldImage)
{
    SetAll({});
    Layout narrow = With(&Layout::nWidth, 200), narrowBadPels = narrow;
    narrowBadPels.nYPels = 19882;
    EXPECT_EQ(Set(0, Block(narrowBadPels)), -13);
    EXPECT_EQ(Set(0, Block(narrow, 1)), -21);
    // Still 320 wide: the input check passes and the finger half is reached.
    EXPECT_EQ(SentivoDetectFinger(m_h), -101);
    EXPECT_EQ(Set(0, Block(narrow)), 0);
    EXPECT_EQ(SentivoDetectFinger(m_h), -14);
}

TEST_F(SentivoSDKHandle, PropertiesHaveTheirDefaultsAndSurviveReset)
{
    EXPECT_EQ(Get("Version"), "2.0.1012.0");
    EXPECT_EQ(Put("Version", "2.0.1012.0"), -47);
    EXPECT_EQ(Get("nSecurityLevel"), "1");
    EXPECT_EQ(Get("bMovementDetection"), "True");
    for (const char* szQuery : {"dQueryScore", "dQueryFAR", "dQueryFRR"})
        EXPECT_EQ(Get(szQuery), "0.0") << szQuery;

    EXPECT_EQ(Put("nsecuritylevel", "2"), 0);
    EXPECT_EQ(Put("nSecurityLevel", "abc"), -101);
    EXPECT_EQ(Put("bMovementDetection", "False"), 0);
    EXPECT_EQ(Put("bMovementDetection", "true"), -35);
    EXPECT_EQ(Put("dQueryScore", "42"), 0);

    SetAll({});
    EXPECT_EQ(SentivoReset(m_h), 0);
    EXPECT_EQ(Get("NSECURITYLEVEL"), "2");
    EXPECT_EQ(Get("bMovementDetection"), "False");
    EXPECT_EQ(Get("dQueryScore"), "42.0");
    EXPECT_EQ(SentivoDetectFinger(m_h), -37);
}

TEST_F(SentivoSDKHandle, QueryFarGivesTheScoreAndFrrOfItsRateTableRow)
{
    for (double dFAR : {0.01, 0.1})
    {
        // The first row whose FAR is at most the target; the table never rises.
        int32_t k = 0;
        while (NeuralNet::FarTable[k] > dFAR)
            ++k;
        const double dFar = NeuralNet::FarTable[k], dFrr = NeuralNet::FrrTable[k];
        ASSERT_EQ(Put("dQueryFAR", Fixed(dFAR).c_str()), 0);
        EXPECT_EQ(Get("dQueryFAR"), Fixed(dFAR));
        EXPECT_EQ(Get("dQueryFRR"), Fixed(dFrr));
        EXPECT_EQ(Get("dQueryScore"), Fixed(100.0 * dFrr / (dFrr + dFar)));
    }
}

TEST_F(SentivoSDKHandle, GetPropertyReportsTheNeededSizeBeforeUsingTheBuffer)
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
    const std::string sLong = Fixed(1e300);
    ASSERT_EQ(Put("dQueryScore", "1e300"), 0);
    std::vector<char> buffer(128);
    nSize = 128;
    EXPECT_EQ(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), -21);
    ASSERT_EQ(nSize, sLong.size() + 1);
    buffer.resize(nSize);
    EXPECT_EQ(SentivoGetPropertyA(m_h, "dQueryScore", buffer.data(), &nSize), 0);
    EXPECT_EQ(std::string(buffer.data()), sLong);
}

TEST_F(SentivoSDKHandle, WideFunctionsCountUtf16CodeUnits)
{
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"nSecurityLevel", u"3"), 0);
    EXPECT_EQ(Get("nSecurityLevel"), "3");
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"VERSION", u"1"), -47);
    char16_t sz[16] = {};
    uint32_t nSize = 0;
    EXPECT_EQ(SentivoGetPropertyW(m_h, u"version", sz, &nSize), -21);
    EXPECT_EQ(nSize, 11u);
    EXPECT_EQ(SentivoGetPropertyW(m_h, u"version", sz, &nSize), 0);
    EXPECT_TRUE(std::u16string(sz) == u"2.0.1012.0");

    const char16_t szUnpaired[] = {u'n', 0xD800, u'x', 0};
    EXPECT_EQ(SentivoGetPropertyW(m_h, szUnpaired, sz, &nSize), -105);
    EXPECT_EQ(SentivoSetPropertyW(m_h, szUnpaired, u"1"), -105);
    EXPECT_EQ(SentivoSetPropertyW(m_h, u"nSecurityLevel", szUnpaired), -105);
    EXPECT_EQ(Get("nSecurityLevel"), "3");
}

TEST_F(SentivoSDKHandle, DetectionReportsMissingAndMisfitImagesAndLeavesTheScoreAtZero)
{
    auto expectAll = [this](int32_t nCode)
    {
        EXPECT_EQ(SentivoDetectFake(m_h, nullptr), -44);
        EXPECT_EQ(SentivoEvaluateLiveliness(m_h, nullptr), -44);
        double dFake = 123.0, dBoth = 123.0;
        EXPECT_EQ(SentivoDetectFake(m_h, &dFake), nCode);
        EXPECT_EQ(SentivoEvaluateLiveliness(m_h, &dBoth), nCode);
        EXPECT_EQ(SentivoDetectFinger(m_h), nCode);
        EXPECT_EQ(dFake, 0.0);
        EXPECT_EQ(dBoth, 0.0);
    };
    expectAll(-37);
    SetAll(With(&Layout::nWidth, 200));
    expectAll(-14);
    SetAll({});
    expectAll(-101); // the two halves are not built yet
}
