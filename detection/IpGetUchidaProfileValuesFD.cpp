#include "detection/IpGetUchidaProfileValuesFD.h"

#include <cmath>
#include <utility>

#include "image/ArrayStatic.h"
#include "image/SampleTraits.h"
#include "parameters/ParameterContainer.h"
#include "processing/PixelWalk.h"

namespace
{

using StVertex = ClIpGetUchidaProfileValuesFD::StVertex;
using PixelWalk::TpView;

// Triangle tags in the work mask: a pixel under the mask (1) that a triangle
// of minima (2) and a triangle of maxima (4) cover is a valid pixel (7).
constexpr uint8_t kUnderMask = 1, kLowerTag = 2, kUpperTag = 4, kValid = 7;
constexpr int32_t kOne = 65536; // 1.0 in 16.16 fixed point

// The darkest and the brightest masked pixel of a block; 256 and -1 while
// the block has none.
struct StBlockRecord
{
    StVertex Minimum;
    StVertex Maximum;
};

StBlockRecord FindExtremes(const TpView<const uint8_t>& image, const TpView<uint8_t>& mask,
                           int32_t x0, int32_t y0, int32_t b)
{
    // Two separate tests: the first counted pixel sets both; on equal values
    // the first pixel stays. Written as selections, since which pixel wins
    // is as good as random to the processor's branch prediction.
    int32_t nMax = -1, nMaxX = 0, nMaxY = 0, nMin = 256, nMinX = 0, nMinY = 0;
    for (int32_t y = y0; y < y0 + b; ++y)
    {
        const uint8_t* pImage = image.Row(y);
        const uint8_t* pMask = mask.Row(y);
        for (int32_t x = x0; x < x0 + b; ++x)
        {
            const int32_t g = pImage[x];
            const bool bCounted = pMask[x] != 0;
            const bool bMax = bCounted && g > nMax;
            const bool bMin = bCounted && g < nMin;
            nMax = bMax ? g : nMax;
            nMaxX = bMax ? x : nMaxX;
            nMaxY = bMax ? y : nMaxY;
            nMin = bMin ? g : nMin;
            nMinX = bMin ? x : nMinX;
            nMinY = bMin ? y : nMinY;
        }
    }
    return {{nMinX, nMinY, nMin}, {nMaxX, nMaxY, nMax}};
}

// One side of a triangle, walked a row at a time: corner indices, x and
// value in 16.16 fixed point and their steps per row.
struct StSide
{
    int32_t nStart, nEnd;
    int32_t nX, nValue, nDx, nDValue;
};

// Sets a side up from corner s to the corner nStep further round; the two
// never share a row, so the division is safe. Divisions truncate toward zero.
void SetUpSide(StSide& side, const StVertex* P, int32_t s, int32_t nStep)
{
    const StVertex& S = P[s];
    const StVertex& E = P[(s + nStep) % 3];
    side = {s, (s + nStep) % 3, S.nX * kOne, S.nValue * kOne, 0, 0};
    side.nDx = (E.nX - S.nX) * kOne / (E.nY - S.nY);
    side.nDValue = (E.nValue - S.nValue) * kOne / (E.nY - S.nY);
}

// At the row of a side's end corner: that corner starts the next side, and
// so does each following corner on the same row (a flat side is stepped
// past). A triangle's corners are never all on one row, so this ends.
void NextSide(StSide& side, const StVertex* P, int32_t y, int32_t nStep)
{
    int32_t s = side.nEnd;
    while (P[(s + nStep) % 3].nY == y)
        s = (s + nStep) % 3;
    SetUpSide(side, P, s, nStep);
}

// A corner as the stage makes it: a pixel position with a grey value.
bool IsPixelCorner(const StVertex& p, int32_t W, int32_t H)
{
    constexpr int32_t kLargest = 32767; // the integer part of a 16.16 value
    return p.nX >= 0 && p.nX < W && p.nX <= kLargest && p.nY >= 0 && p.nY < H && p.nY <= kLargest &&
           p.nValue >= 0 && p.nValue <= 255;
}

} // namespace

ClIpGetUchidaProfileValuesFD::ClIpGetUchidaProfileValuesFD()
    : ClIpStageBase("IpGetUchidaProfileValuesFD")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareInput("pInMask", pInMask, "Mask image not assigned", ZRC_ERROR_BAD_POINTER, eUntyped);
}

void ClIpGetUchidaProfileValuesFD::SetDefaults()
{
    pInImage = nullptr;
    pInMask = nullptr;
    dInBlockSize = 8.0;
    m_pdInBlockSize = &dInBlockSize;
    m_pdOutProfileValues = m_adProfileValues;
}

void ClIpGetUchidaProfileValuesFD::DefineParameters(ClParameterContainer& container)
{
    ClIpStageBase::DefineParameters(container);
    container.AddDouble("dInBlockSize")->Bind(dInBlockSize, ClParameter::eFlagInput);
}

ClProcessorBase* ClIpGetUchidaProfileValuesFD::NewInstance() const
{
    return NewProcessor<ClIpGetUchidaProfileValuesFD>();
}

int32_t ClIpGetUchidaProfileValuesFD::Process()
{
    // The mask is read along the image's rows: one 8-bit plane of its size.
    if (pInMask->DataType() != ClImage::eUInt8 || pInMask->Planes() != 1 ||
        pInMask->Width() != pInImage->Width() || pInMask->Height() != pInImage->Height())
        STAGE_THROW("Mask image does not fit the input image", ZRC_ERROR_INVALID_PARAMETER);
    const TpView<const uint8_t> I = PixelWalk::View<uint8_t>(std::as_const(*pInImage));
    const int32_t W = I.Width(), H = I.Height();

    // 1. The work mask: 255 becomes 1, which the triangle tags complete to 7.
    ClImage WorkMask;
    WorkMask.Assign(*pInMask);
    const TpView<uint8_t> M(WorkMask);
    PixelWalk::ForEachPixel([](uint8_t& m) { m = m == 255 ? kUnderMask : m; }, M);

    // 2. Blocks of b by b pixels, the size read through its pointer (the
    // field itself if that was cleared); a rest at the right and bottom
    // belongs to no block. A size below 1 (or not a number) would divide by
    // zero: it makes no block, so the values come out as for an empty mask.
    const int32_t b = TruncateToInt32(m_pdInBlockSize != nullptr ? *m_pdInBlockSize : dInBlockSize);
    const int32_t bw = b >= 1 ? W / b : 0, bh = b >= 1 ? H / b : 0;

    // 3. The extremes of every block, row after row of blocks.
    TpArrayStatic<StBlockRecord> blocks(static_cast<uint32_t>(bw * bh));
    for (int32_t i = 0; i < bh; ++i)
        for (int32_t j = 0; j < bw; ++j)
            blocks[i * bw + j] = FindExtremes(I, M, j * b, i * b, b);

    // 4-5. Each square of four neighbouring blocks A B / D C gives two
    // triangles per surface, A B C and A C D, where all four have extremes.
    LowerProfile.Create(ClImage::eUInt8, W, H);
    LowerProfile.Fill<uint8_t>(0);
    UpperProfile.Create(ClImage::eUInt8, W, H);
    UpperProfile.Fill<uint8_t>(0);
    for (int32_t i = 0; i + 1 < bh; ++i)
    {
        for (int32_t j = 0; j + 1 < bw; ++j)
        {
            const StBlockRecord& A = blocks[i * bw + j];
            const StBlockRecord& B = blocks[i * bw + j + 1];
            const StBlockRecord& C = blocks[(i + 1) * bw + j + 1];
            const StBlockRecord& D = blocks[(i + 1) * bw + j];
            if (A.Minimum.nValue != 256 && B.Minimum.nValue != 256 && C.Minimum.nValue != 256 &&
                D.Minimum.nValue != 256)
            {
                FillTriangle(LowerProfile, WorkMask, A.Minimum, B.Minimum, C.Minimum, kLowerTag);
                FillTriangle(LowerProfile, WorkMask, A.Minimum, C.Minimum, D.Minimum, kLowerTag);
            }
            if (A.Maximum.nValue != -1 && B.Maximum.nValue != -1 && C.Maximum.nValue != -1 &&
                D.Maximum.nValue != -1)
            {
                FillTriangle(UpperProfile, WorkMask, A.Maximum, B.Maximum, C.Maximum, kUpperTag);
                FillTriangle(UpperProfile, WorkMask, A.Maximum, C.Maximum, D.Maximum, kUpperTag);
            }
        }
    }

    // 6-8. Only the valid pixels keep their surface values; their sums give
    // the six means.
    const TpView<uint8_t> U(UpperProfile), L(LowerProfile);
    int64_t N = 0, nSumU = 0, nSumL = 0, nSumI = 0;
    PixelWalk::ForEachPixel(
        [&](const uint8_t& m, uint8_t& u, uint8_t& l, const uint8_t& g)
        {
            if (m != kValid)
            {
                u = l = 0;
                return;
            }
            ++N;
            nSumU += u;
            nSumL += l;
            nSumI += g;
        },
        M, U, L, I);
    const double dN = static_cast<double>(N);
    const double dMeanU = static_cast<double>(nSumU) / dN;
    const double dMeanL = static_cast<double>(nSumL) / dN;
    const double dMeanI = static_cast<double>(nSumI) / dN;
    const double dMeanIL = static_cast<double>(nSumI - nSumL) / dN;
    const double dMeanUI = static_cast<double>(nSumU - nSumI) / dN;
    const double dMeanUL = static_cast<double>(nSumU + nSumL) / dN;

    // 9. Squared deviations, added pixel by pixel. The distance to the upper
    // surface is taken around the mean distance to the lower one: the net
    // was trained on that slip of the two means. Each square depends on one
    // grey value or one difference of two, so it is taken from a table of
    // the same products.
    double adSquareU[256], adSquareL[256], adSquareI[256], adSquareDifference[511];
    for (int32_t v = 0; v < 256; ++v)
    {
        adSquareU[v] = (v - dMeanU) * (v - dMeanU);
        adSquareL[v] = (v - dMeanL) * (v - dMeanL);
        adSquareI[v] = (v - dMeanI) * (v - dMeanI);
    }
    for (int32_t d = -255; d <= 255; ++d)
        adSquareDifference[d + 255] = (d - dMeanIL) * (d - dMeanIL);
    double s[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    PixelWalk::ForEachPixel(
        [&](const uint8_t& m, const uint8_t& u, const uint8_t& l, const uint8_t& g)
        {
            if (m != kValid)
                return;
            s[0] += adSquareU[u];
            s[1] += adSquareL[l];
            s[2] += adSquareI[g];
            s[3] += adSquareDifference[g - l + 255];
            s[4] += adSquareDifference[u - g + 255];
        },
        M, U, L, I);

    // 10-11. Deviations over N - 1; every value as a fraction of full scale.
    // No valid pixel gives NaN means and -0.0 deviations, one gives NaN
    // deviations: no error.
    const double dDivisor = static_cast<double>(N - 1);
    const double adValues[kValues] = {dMeanU, dMeanL, dMeanI, dMeanUI, dMeanIL, dMeanUL,
                                      s[0],   s[1],   s[2],   s[4],    s[3]};
    for (int k = 0; k < kValues; ++k)
        m_adProfileValues[k] = (k < 6 ? adValues[k] : std::sqrt(adValues[k] / dDivisor)) / 255.0;
    return 0;
}

void ClIpGetUchidaProfileValuesFD::FillTriangle(ClImage& destination, ClImage& workMask,
                                                const StVertex& P0, const StVertex& P1,
                                                const StVertex& P2, uint8_t nTag)
{
    const TpView<uint8_t> D(destination), M(workMask);
    if (M.Width() != D.Width() || M.Height() != D.Height())
        SENTIVO_THROW("Images of different sizes", ZRC_ERROR_INVALID_PARAMETER);
    const StVertex P[3] = {P0, P1, P2};
    // The stage passes pixel positions with grey values only. For such
    // corners each side stays between its two corners and the rows run from
    // the top corner to the row above the bottom one, so every span lies in
    // the image and the 16.16 values fit 32 bits. Other corners draw nothing.
    for (const StVertex& p : P)
        if (!IsPixelCorner(p, D.Width(), D.Height()))
            return;

    // 1-3. The corner where the left side starts and the one where the right
    // side starts. Both second tests read P0 whichever corner is under test,
    // which leaves out every triangle whose P0 is the lowest corner; the
    // stage's P0 never is, and the rule stays as the net was trained on it.
    int32_t i = 0, j = 0;
    while (i < 3 && !(P[i].nY < P[(i + 2) % 3].nY && P[0].nY <= P[(i + 1) % 3].nY))
        ++i;
    while (j < 3 && !(P[j].nY < P[(j + 1) % 3].nY && P[0].nY <= P[(j + 2) % 3].nY))
        ++j;
    if (i == 3 || j == 3)
        return; // all three on one row

    // 4. The left side runs backward round the corners, the right forward.
    StSide left, right;
    SetUpSide(left, P, i, 2);
    SetUpSide(right, P, j, 1);

    // 5. Row by row down to the bottom corner, whose row is not drawn. The
    // span ends before the right x; a triangle the other way round has no
    // span on any row.
    int32_t y = P[i].nY;
    do
    {
        const int32_t xl = left.nX >> 16, xr = right.nX >> 16;
        if (xr - xl > 0)
        {
            uint8_t* pOut = D.Row(y);
            uint8_t* pMask = M.Row(y);
            const int32_t dv = (right.nValue - left.nValue) / (xr - xl);
            int32_t v = left.nValue;
            for (int32_t x = xl; x < xr; ++x, v += dv)
            {
                pOut[x] = static_cast<uint8_t>(v >> 16);
                pMask[x] |= nTag;
            }
        }
        left.nX += left.nDx;
        left.nValue += left.nDValue;
        right.nX += right.nDx;
        right.nValue += right.nDValue;
        ++y;
        if (y == P[left.nEnd].nY)
            NextSide(left, P, y, 2);
        if (y == P[right.nEnd].nY)
            NextSide(right, P, y, 1);
    } while (P[left.nStart].nY < P[left.nEnd].nY);
}
