#include "image/Bitmap.h"

#include "ImageTestSupport.h"

using std::make_tuple;

TEST(Bitmap, CheckHeaderReportsTheFirstFailingTestInOrder)
{
    ExpectThrows([] { ClBitmap::CheckHeader(nullptr); }, -10, "ClBitmap::Attach, Pointer is NULL.");
    std::vector<uint8_t> block = MakeBitmapBlock(4, 2, 8, 256);
    auto* pInfo = reinterpret_cast<SentivoBitmapInfoHeader*>(block.data());
    EXPECT_EQ(ClBitmap::CheckHeader(pInfo), pInfo);

    // Each fault joins the earlier ones and is tested before them, so it wins.
    const std::tuple<void (*)(SentivoBitmapInfoHeader&), int32_t, const char*> faults[] = {
        {[](SentivoBitmapInfoHeader& h) { h.biBitCount = 2; }, -12,
         "The Bitmap format does only support 1, 4, 8, 16, 24 and 32 bit counts!"},
        {[](SentivoBitmapInfoHeader& h) { h.biCompression = 4; }, -31,
         "ClBitmap::Attach, Not Supported FOCC."},
        {[](SentivoBitmapInfoHeader& h) { h.biPlanes = 0; }, -11,
         "ClBitmap::Attach, pBI->biPlanes != 1."},
        {[](SentivoBitmapInfoHeader& h) { h.biSize = 124; }, -32,
         "ClBitmap::Attach, Bitmap Header size is not known."},
        {[](SentivoBitmapInfoHeader& h) { std::memcpy(&h, "BM", 2); }, -36,
         "ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected."}};
    for (auto [f, nCode, szText] : faults)
    {
        f(*pInfo);
        ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, nCode, szText);
    }
    for (uint32_t nCompression : {1u, 2u}) // the other counts and kinds pass below
        EXPECT_NO_THROW(ClBitmap::CheckHeader(MakeBitmapBlock(4, 2, 4, 0, nCompression).data()));
}

TEST(Bitmap, SizedBlocksMustHoldHeaderColoursAndEveryPixelRow)
{
    // Colour tables by bit count, compression and colours used, rows of whole
    // 32-bit words; each block in an allocation of exactly its size. Every
    // shorter size is refused with -21, except behind "BM" 2 to 14 bytes,
    // which cannot hold the file header (-10).
    for (auto [nWidth, nBits, nCompression, nClrUsed, nColours, bFile] :
         {std::tuple{4, 8, 0u, 0u, 256u, false}, std::tuple{4, 8, 0u, 0u, 256u, true},
          std::tuple{3, 8, 0u, 17u, 17u, false}, std::tuple{33, 1, 0u, 0u, 2u, true},
          std::tuple{5, 24, 0u, 0u, 0u, false}, std::tuple{1, 24, 0u, 5u, 5u, false},
          std::tuple{5, 16, 3u, 0u, 3u, false}, std::tuple{3, 32, 3u, 9u, 3u, false}})
    {
        std::vector<uint8_t> whole =
            MakeBitmapBlock(nWidth, 3, uint16_t(nBits), nColours, nCompression, bFile);
        const size_t nStart = bFile ? 14 : 0, nWhole = whole.size();
        reinterpret_cast<SentivoBitmapInfoHeader*>(whole.data() + nStart)->biClrUsed = nClrUsed;
        SCOPED_TRACE(testing::Message() << nBits << " bits, " << nColours << " colours");
        for (uint32_t nSize = 1; nSize < nWhole; ++nSize)
        {
            auto block = ExactCopy(whole, nSize);
            ClBitmap bitmap;
            const int32_t nCode = bFile && nSize >= 2 && nSize <= 14 ? -10 : -21;
            ExpectThrows<ClExVelmoran>([&] { bitmap.Attach(block.get(), nSize); }, nCode);
            ASSERT_EQ(bitmap.Header(), nullptr);
        }
        auto block = ExactCopy(whole, nWhole);
        ClBitmap bitmap;
        bitmap.Attach(block.get(), static_cast<uint32_t>(nWhole));
        uint8_t* const pHeader = block.get() + nStart;
        EXPECT_EQ(make_tuple(reinterpret_cast<uint8_t*>(bitmap.Header()), bitmap.Pixels(),
                             bitmap.ColourCount()),
                  make_tuple(pHeader, pHeader + 40 + 4 * nColours, nColours));
    }
    // Colour counts and heights that no block holds.
    for (auto f : {+[](SentivoBitmapInfoHeader& h) { h.biClrUsed = 0xFFFFFFFF; },
                   +[](SentivoBitmapInfoHeader& h) { h.biHeight = -2; }})
    {
        std::vector<uint8_t> grey = MakeBitmapBlock(4, 2, 8, 256);
        f(*reinterpret_cast<SentivoBitmapInfoHeader*>(grey.data()));
        ExpectThrows<ClExVelmoran>([&] { ClBitmap().Attach(grey.data(), 1072); }, -21);
    }
}
