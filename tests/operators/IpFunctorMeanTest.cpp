// ClIpFunctorMean against a plain evaluation of its fixed-point definition.
#include <algorithm>
#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpFunctorMean.h"
#include "WindowReference.h"

using namespace TestImages;
using namespace WindowReference;

namespace
{
// Accumulator: int for 8/16-bit, 64-bit for 32-bit, the sample type for floats.
template <typename T>
using Acc = std::conditional_t<std::is_floating_point_v<T>, T,

                               std::conditional_t<sizeof(T) == 4, int64_t, int32_t>>;

template <typename T> Acc<T> Weight(int32_t w)
{
    using A = Acc<T>;
    const int32_t nRaw = 2048 / w + 1;
    A sum = 0; // floating weights are normalised by their running sum
    for (int32_t k = 0; k < w; ++k)
        sum += A(1) / A(w);
    return std::is_integral_v<A> ? static_cast<A>(nRaw / ((int64_t(nRaw) * w) >> 11))
                                 : (A(1) / A(w)) / sum;
}

// Output (x, y) for the normalised width w: the sum of weight x sample, integer
// sums shifted by 11 (22 for the box), exact, wrapped to the accumulator at the
// end; floating sums in the definition's order; the border repeats beyond.
template <typename T>
T Reference(const ClImage& in, int64_t x, int64_t y, uint32_t p, int32_t w, int32_t nMode,
            const ClImage* pDx, const ClImage* pDy)
{
    using A = Acc<T>;
    const int64_t h = w / 2, W = in.Width(), H = in.Height();
    const A weight = Weight<T>(w);
    auto at = [&](int64_t xx, int64_t yy)
    {
        return A(At<T>(in, int32_t(std::clamp<int64_t>(xx, 0, W - 1)),
                       int32_t(std::clamp<int64_t>(yy, 0, H - 1)), p));
    };
    std::conditional_t<std::is_integral_v<A>, int64_t, A> s = 0;
    if (nMode == eModeXY)
        for (int64_t kx = -h; kx <= h; ++kx)
        {
            decltype(s) column = 0; // the vertical kernel first
            for (int64_t ky = -h; ky <= h; ++ky)
                column += weight * at(x + kx, y + ky);
            s += weight * column;
        }
    else if (nMode == eModeX || nMode == eModeY)
        for (int64_t k = -h; k <= h; ++k)
            s += weight * (nMode == eModeX ? at(x + k, y) : at(x, y + k));
    else // whole steps backward from the centre, then forward; the orthogonal mode flips dy;
        // a step that would leave the image is undone
        for (int64_t nSign : {-1, 1})
            for (int64_t k = 0, px = x * 128 + 64, py = y * 128 + 64; k < h + (nSign < 0); ++k)
            {
                const int64_t dx = At<int8_t>(*pDx, x, y), dy = At<int8_t>(*pDy, x, y);
                const int64_t sx = nSign * dx, sy = nSign * (nMode == eModeDirected ? dy : -dy);
                if ((k > 0 || nSign > 0) && std::clamp(px + sx, 0L, 128 * W - 1) == px + sx &&
                    std::clamp(py + sy, 0L, 128 * H - 1) == py + sy)
                    px += sx, py += sy;
                s += weight * at(px / 128, py / 128);
            }
    if constexpr (std::is_integral_v<A>)
        return static_cast<T>(static_cast<A>(static_cast<std::make_unsigned_t<A>>(s)) >>
                              (nMode == eModeXY ? 22 : 11));
    else
        return static_cast<T>(s);
}

// Inside box {left, right, bottom, top} the definition, outside `outside`.
void Check(const ClImage& in, const ClImage& out, int32_t w, int32_t nMode, const ClImage* pDx,
           const ClImage* pDy, const ClImage& outside,
           std::array<int32_t, 4> box = {0, INT32_MAX, 0, INT32_MAX})
{
    ForType(in.DataType(),
            [&](auto t)
            {
                using T = decltype(t);
                for (uint32_t p = 0; p < in.Planes(); ++p)
                    for (int32_t y = 0; y < in.Height(); ++y)
                        for (int32_t x = 0; x < in.Width(); ++x)
                        {
                            const T expected =
                                x >= box[0] && x <= box[1] && y >= box[2] && y <= box[3]
                                    ? Reference<T>(in, x, y, p, w, nMode, pDx, pDy)
                                    : At<T>(outside, x, y, p);
                            ASSERT_TRUE(BitEqual(expected, At<T>(out, x, y, p)))
                                << x << "," << y << "," << p;
                        }
            });
}

} // namespace

TEST(IpFunctorMean, MatchesTheDefinitionOnRandomImagesOfEveryType)
{
    uint32_t nSeed = 100;
    auto expectAll = [&](const ClImage& in)
    {
        ClImage dx = RandomImage(ClImage::eInt8, in.Width(), in.Height(), 1, nSeed++);
        ClImage dy = RandomImage(ClImage::eInt8, in.Width(), in.Height(), 1, nSeed++);
        // Widths below 1 run as 3, even ones as the next odd; the member keeps it.
        for (int32_t nWidth : Widths({INT32_MIN, 0, 40}))
            for (int32_t nMode : {eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho})
            {
                const int32_t nRuns = nWidth < 1 ? 3 : nWidth | 1;
                SCOPED_TRACE(testing::Message() << int(in.DataType()) << " " << in.Width() << "x"
                                                << in.Height() << " " << nWidth << " " << nMode);
                ClIpFunctorMean mean;
                ClImage input = in, out;
                ASSERT_EQ(0, mean.Run(&input, &out, nWidth, nMode, &dx, &dy));
                EXPECT_EQ(nRuns, mean.m_nFilterWidth);
                Check(in, out, nRuns, nMode, &dx, &dy, out);
                // Boxes at the borders change only the box; the window reaches beyond it.
                const int32_t W = in.Width() - 1, H = in.Height() - 1;
                for (std::array<int32_t, 4> box :
                     {std::array{W / 3, W, 0, H / 2}, std::array{0, W / 2, H / 3, H}})
                {
                    if (nMode >= eModeDirected || nWidth < 1 || W < 2 || H < 2)
                        break;
                    mean.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiBox;
                    mean.m_nROILeft = box[0], mean.m_nROIRight = box[1];
                    mean.m_nROIBottom = box[2], mean.m_nROITop = box[3];
                    ClImage before = RandomImage(in.DataType(), W + 1, H + 1, in.Planes(), nSeed++);
                    out.Assign(before);
                    ASSERT_EQ(0, mean.Run(&input, &out, nWidth, nMode));
                    Check(in, out, nRuns, nMode, nullptr, nullptr, before, box);
                }
            }
    };
    for (ClImage::EDataType eType : AllTypes())
        ForType(eType,
                [&](auto t)
                {
                    using T = decltype(t);
                    for (const ClImage& in : Images(eType, nSeed))
                        expectAll(in);
                    if constexpr (std::is_integral_v<T>) // the largest sample: 8/16-bit sums wrap
                        expectAll(ImageOf<T>(eType, 13, 9, {std::numeric_limits<T>::max()}, 1));
                });
    ClImage in = RandomImage(ClImage::eUInt8, 9, 7, 1, 1), out;
    ExpectThrows([&] { ClIpFunctorMean().Run(&in, &out, 3, 4); }, -6, "Unknown error code.");
}
