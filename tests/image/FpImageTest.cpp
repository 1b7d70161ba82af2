#include "image/FpImage.h"

#include <fstream>
#include <iterator>

#include "ImageTestSupport.h"

using std::make_tuple;

TEST(Image, CreatePadsRowsReusesASoleBufferAndKeepsTheHeaderOfARefusal)
{
    ClImage image;
    // Rows are padded to four bytes; the pitch counts samples.
    for (auto [eType, nWidth, nPlanes, nStride, nPitch] :
         {std::tuple{ClImage::eUInt8, 3, 1u, 4, 4}, std::tuple{ClImage::eUInt8, 3, 3u, 12, 12},
          std::tuple{ClImage::eInt16, 5, 1u, 12, 6}, std::tuple{ClImage::eDouble64, 3, 2u, 48, 6}})
    {
        image.Create(eType, nWidth, 2, nPlanes);
        EXPECT_EQ(make_tuple(image.RowStride(), image.RowPitch(), image.ByteSize()),
                  make_tuple(int64_t(nStride), int64_t(nPitch), int64_t(2 * nStride)));
    }

    // A sole sharer keeps its buffer for the same byte size, whatever the shape.
    image.Create(ClImage::eUInt8, 4, 2);
    uint8_t* const pBuffer = image.Data();
    std::memset(pBuffer, 7, 8);
    image.Create(ClImage::eUInt16, 2, 2);
    EXPECT_EQ(make_tuple(image.Data(), image.Data()[5]), make_tuple(pBuffer, uint8_t(7)));
    // A second sharer forces a new buffer and keeps its pixels.
    ClImage sharer(image);
    image.Create(ClImage::eUInt16, 2, 2);
    std::memset(image.Data(), 1, 8);
    EXPECT_EQ(make_tuple(sharer.Data(), sharer.Data()[5], sharer.ShareCount()),
              make_tuple(pBuffer, uint8_t(7), 1L));

    // A refusal keeps the new header and the old buffer; an empty byte size
    // equal to the last one is refused all the same.
    uint8_t* const pOld = image.Data();
    for (auto [eType, nWidth, nHeight] :
         {std::tuple{ClImage::eUInt8, 4, 0}, std::tuple{ClImage::eUInt8, 0, 3},
          std::tuple{ClImage::eUInt8, 0, 3}, std::tuple{ClImage::eUInt8, -4, 2},
          std::tuple{ClImage::eUnknownType, 4, 2}})
    {
        ExpectThrows([&] { image.Create(eType, nWidth, nHeight); }, -101,
                     "Image area must be positive");
        EXPECT_EQ(make_tuple(image.Width(), image.Height(), image.Data()),
                  make_tuple(nWidth, nHeight, pOld));
    }
}

TEST(Image, CreateAsCreateLikeAssignAndSwapOnOtherImagesAndThemselves)
{
    ClImage source, as, copy, other;
    source.Create(ClImage::eInt16, 3, 2, 1, 100, 200);
    source.SetContent(ClImage::eHSV);
    source.SetOrigin(0x8201);
    source.SetBounds(-5.0, 5.0);
    std::memset(source.Data(), 0xA5, 16);
    const auto header = [](const ClImage& i)
    {
        return make_tuple(i.DataType(), i.Width(), i.YResolution(), i.Content(), i.Origin(),
                          i.LowerBound());
    };
    const auto sourceHeader = header(source);

    // CreateAs takes the type's bounds, Assign (through CreateLike) the source's.
    as.CreateAs(source, ClImage::eFloat32);
    EXPECT_EQ(header(as), make_tuple(ClImage::eFloat32, 3, 200, ClImage::eHSV, 0x8201u, -1.0));
    ExpectThrows([&] { as.CreateAs(as, ClImage::eUInt8); }, -44,
                 "this function dose not work on the same image.");
    copy.Assign(source);
    EXPECT_EQ(header(copy), sourceHeader);
    EXPECT_TRUE(copy.Data() != source.Data() && !std::memcmp(copy.Data(), source.Data(), 12));

    const uint8_t* pBuffer = copy.Data();
    copy.CreateLike(copy);
    copy.Assign(copy);
    copy.Swap(copy);
    EXPECT_EQ(make_tuple(copy.Data(), header(copy)), make_tuple(pBuffer, sourceHeader));
    other.Create(ClImage::eUInt8, 7, 1);
    const uint8_t* pOther = other.Data();
    copy.Swap(other);
    EXPECT_EQ(make_tuple(copy.Data(), copy.UpperBound(), other.Data(), header(other)),
              make_tuple(pOther, 255.0, pBuffer, sourceHeader));
}

TEST(Image, FromBitmapSharesTheCapturePixelsAndAssignBitmapCopiesThem)
{
    std::ifstream in(SENTIVO_SOURCE_DIR
                     "/tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp",
                     std::ios::binary);
    const std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)),
                                    std::istreambuf_iterator<char>());
    ASSERT_EQ(file.size(), 1078u + 320 * 480);
    // The info-header part, as an application hands it over.
    const uint32_t nSize = static_cast<uint32_t>(file.size() - 14);
    auto block = ExactCopy(std::vector<uint8_t>(file.begin() + 14, file.end()), nSize);
    ClBitmap bitmap;
    bitmap.Attach(block.get(), nSize);
    ClImage shared, image;
    EXPECT_TRUE(shared.FromBitmap(bitmap));
    EXPECT_EQ(make_tuple(shared.Data(), shared.Width(), shared.Height(), shared.Content()),
              make_tuple(block.get() + 1064, 320, 480, ClImage::eGrayscale));

    // AssignBitmap gives a buffer of its own, also to an image that shares it.
    image.AssignBitmap(bitmap);
    shared.AssignBitmap(bitmap);
    // (The copied pixels are compared through the conformance captures.)
    EXPECT_TRUE(image.Data() != bitmap.Pixels() && shared.Data() != bitmap.Pixels());
    EXPECT_EQ(std::memcmp(shared.Data(), image.Data(), 320 * 480), 0);
}

TEST(Image, FillWritesEverySampleOfEveryPlaneAndNoPadding)
{
    // Rows of 15 bytes and a padding byte; rows of three 16-bit samples.
    ClImage bytes, shorts;
    bytes.Create(ClImage::eUInt8, 5, 3, 3);
    std::memset(bytes.Data(), 0xAB, 48);
    bytes.Fill<uint8_t>(200);
    for (int32_t i = 0; i < 48; ++i)
        EXPECT_EQ(bytes.Data()[i], i % 16 < 15 ? 200 : 0xAB) << i;
    shorts.Create(ClImage::eInt16, 3, 4);
    shorts.Fill<int16_t>(-1234);
    for (int32_t i = 0; i < 12; ++i)
        EXPECT_EQ(shorts.Row<int16_t>(i / 3)[i % 3], -1234);
    ExpectThrows([&] { bytes.Fill<int16_t>(3); }, -101, "Image Type is not the assigned type");
}
