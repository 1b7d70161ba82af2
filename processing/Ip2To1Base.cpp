#include "processing/Ip2To1Base.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/Ip2To1Paths.h"
#include "processing/OutImageTypeParameter.h"
#include "processing/SelectDataTypes.h"
#include "sdk/Exception.h"

namespace
{

// Background of the canvas: one plane takes the fill colour, two to four
// planes the plane fill colours in order, more planes are left as they are.
template <typename TO> void FillCanvas(ClImage& canvas, double dFill, const double* pPlaneFills)
{
    const uint32_t nPlanes = canvas.Planes();
    if (nPlanes < 1 || nPlanes > ClIp2to1Base::kMaxFillPlanes)
        return;
    TO values[ClIp2to1Base::kMaxFillPlanes];
    for (uint32_t p = 0; p < nPlanes; ++p)
        values[p] = SampleFromDouble<TO>(nPlanes == 1 ? dFill : pPlaneFills[p]);
    for (int32_t y = 0; y < canvas.Height(); ++y)
    {
        TO* pRow = canvas.Row<TO>(y);
        for (int32_t x = 0; x < canvas.Width(); ++x)
            for (uint32_t p = 0; p < nPlanes; ++p)
                pRow[static_cast<int64_t>(x) * nPlanes + p] = values[p];
    }
}

// Copies an input onto the canvas from sample nStart, row by row at the
// canvas's pitch, converting each sample by a plain cast. Equal planes copy one
// to one, a one-plane input on a three-plane canvas fills all three, other
// pairs copy nothing. A negative offset places both inputs at the same shift,
// so an input can reach past the end of a canvas row: it then runs on into
// the next row as the placement has it, and what would lie beyond the buffer
// is not written.
template <typename TO, typename TS>
void PlaceOnCanvas(const ClImage& source, ClImage& canvas, int64_t nStart)
{
    const uint32_t nPlanes = canvas.Planes();
    const bool bSame = source.Planes() == nPlanes;
    if (!bSame && !(source.Planes() == 1 && nPlanes == 3))
        return;
    const int64_t nPitch = canvas.RowPitch();
    const int64_t nTotal = nPitch * canvas.Height();
    const int64_t nSamples = static_cast<int64_t>(source.Width()) * nPlanes;
    TO* pCanvas = reinterpret_cast<TO*>(canvas.Data());
    for (int32_t y = 0; y < source.Height(); ++y)
    {
        const int64_t nRowStart = nStart + y * nPitch;
        if (nRowStart >= nTotal)
            break;
        const int64_t nCount = std::min(nSamples, nTotal - nRowStart);
        const TS* pSource = source.Row<TS>(y);
        TO* pTarget = pCanvas + nRowStart;
        if (bSame)
        {
            for (int64_t i = 0; i < nCount; ++i)
                pTarget[i] = CastSample<TO>(pSource[i]);
        }
        else
        {
            for (int64_t i = 0; i < nCount; ++i)
                pTarget[i] = CastSample<TO>(pSource[i / 3]);
        }
    }
}

} // namespace

ClIp2to1Base::ClIp2to1Base()
{
    SetDefaults();
}

void ClIp2to1Base::SetDefaults()
{
    m_dFillColor = 0.0;
    m_eOutImageType = ClImage::eDefaultType;
    m_bSizeMustBeEqual = true;
    m_nOffsetX = 0;
    m_nOffsetY = 0;
    for (double& dFill : m_dPlaneFillColors)
        dFill = m_dFillColor;
}

void ClIp2to1Base::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pInImage1, "InImage1", "In1: Original Image", ClParameterInterface::eInput);
    list.Add(m_pInImage2, "InImage2", "In2: 2nd Original Image", ClParameterInterface::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Output Image", ClParameterInterface::eOutput);
    DescribeOutImageType(list, m_eOutImageType);
    list.Add(m_bSizeMustBeEqual, "SizeMustBeEqual", "Bool: Size must be equal",
             ClParameterInterface::eInput)
        .SetEntries("false\0true\0", nullptr);
    list.Add(m_dFillColor, "FillColor", "Double: Fillcolor for Offset-Images",
             ClParameterInterface::eInput, 0, 255);
    list.Add(m_nOffsetX, "OffsetX", "Long: Offset of Image2 to Image1 in x-direction",
             ClParameterInterface::eInput, 0, 0);
    list.Add(m_nOffsetY, "OffsetY", "Long: Offset of Image2 to Image1 in y-direction",
             ClParameterInterface::eInput, 0, 0);
}

void ClIp2to1Base::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    container.AddImage("pInImage1")->Bind(m_pInImage1, ClParameter::eFlagInput);
    container.AddImage("pInImage2")->Bind(m_pInImage2, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
    DefineOutImageType(container, m_eOutImageType);
    // The one boolean of the library whose entries are in lower case.
    TpParameterEnumPointer<bool>* pEqual = container.AddEnum<bool>("SizeMustBeEqual");
    pEqual->Bind(m_bSizeMustBeEqual);
    pEqual->AddEntry(false, "false");
    pEqual->AddEntry(true, "true");
    TpParameterNumeric<double>* pFill = container.AddDouble("FillColor");
    pFill->Bind(m_dFillColor);
    pFill->SetLimits(0.0, 255.0);
    container.AddInt("OffsetX")->Bind(m_nOffsetX);
    container.AddInt("OffsetY")->Bind(m_nOffsetY);
}

int32_t ClIp2to1Base::Run(ClImage* pFirst, ClImage* pSecond, ClImage* pOut,
                          ClImage::EDataType eOutType)
{
    m_pInImage1 = pFirst;
    m_pInImage2 = pSecond;
    m_pOutImage = pOut;
    m_eOutImageType = eOutType;
    return Run();
}

bool ClIp2to1Base::HasImages() const
{
    return m_pInImage1 != nullptr && m_pInImage2 != nullptr && m_pOutImage != nullptr &&
           m_pInImage1->Data() != nullptr && m_pInImage2->Data() != nullptr;
}

bool ClIp2to1Base::CheckInput()
{
    return HasImages();
}

int32_t ClIp2to1Base::Init()
{
    if (!CheckInput())
        return ZRC_ERROR_PARAM_IS_MISSING;
    if (!m_bSizeMustBeEqual)
        return 0;
    if (m_pInImage1->Width() != m_pInImage2->Width() ||
        m_pInImage1->Height() != m_pInImage2->Height() || m_nOffsetX != 0 || m_nOffsetY != 0)
        return ZRC_ERROR_INVALID_PARAMETER;
    return 0;
}

int32_t ClIp2to1Base::Process()
{
    // Init has checked this already; Process called on its own must not read
    // missing images either.
    if (!HasImages())
        return ZRC_ERROR_PARAM_IS_MISSING;
    const ClImage& first = *m_pInImage1;
    const ClImage& second = *m_pInImage2;
    ClImage& out = *m_pOutImage;

    const ClImage::EDataType eType =
        m_eOutImageType < ClImage::eDefaultType ? m_eOutImageType : first.DataType();
    // An output type that is no sample format is refused before the output is
    // touched, with the code of an unknown type.
    if (!IsSampleType(eType))
        return ZRC_ERROR_INTERNAL;

    // Geometry: a canvas that holds both images, and the overlap as the
    // smaller size less the offset (negative when the offset passes it).
    const int64_t nOffsetX = m_nOffsetX;
    const int64_t nOffsetY = m_nOffsetY;
    const int64_t ax = std::llabs(nOffsetX);
    const int64_t ay = std::llabs(nOffsetY);
    const int64_t w1 = first.Width(), h1 = first.Height();
    const int64_t w2 = second.Width(), h2 = second.Height();
    int64_t nCanvasWidth = std::max(w1, w2 + ax);
    int64_t nCanvasHeight = std::max(h1, h2 + ay);
    const int64_t nOverlapWidth = std::min(w1, w2) - ax;
    const int64_t nOverlapHeight = std::min(h1, h2) - ay;
    if (nOffsetX < 0)
        nCanvasWidth = std::max(w2, w1 + ax);
    if (nOffsetY < 0)
        nCanvasHeight = std::max(h2, h1 + ay);
    // An offset whose canvas no image can hold is a bad parameter.
    if (nCanvasWidth > std::numeric_limits<int32_t>::max() ||
        nCanvasHeight > std::numeric_limits<int32_t>::max())
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    m_nOverlapWidth = static_cast<int32_t>(nOverlapWidth);
    m_nOverlapHeight = static_cast<int32_t>(nOverlapHeight);
    const bool bAligned = w1 == w2 && h1 == h2 && nOffsetX == 0 && nOffsetY == 0;

    ClImage temporary;
    ClImage& target = (&out == &first || &out == &second) ? temporary : out;
    target.CreateAs(first, eType);

    const int32_t nSelected = SelectDataTypes(
        first.DataType(), second.DataType(), target.DataType(),
        [&](auto tag1, auto tag2, auto tagOut)
        {
            using T1 = typename decltype(tag1)::Type;
            using T2 = typename decltype(tag2)::Type;
            using TO = typename decltype(tagOut)::Type;
            target.Create(SampleTraits<TO>::eType, static_cast<int32_t>(nCanvasWidth),
                          static_cast<int32_t>(nCanvasHeight), first.Planes(), first.XResolution(),
                          first.YResolution());
            if (bAligned)
                return 0;
            FillCanvas<TO>(target, m_dFillColor, m_dPlaneFillColors);
            const int64_t nPitch = target.RowPitch();
            const int64_t s =
                (nOffsetX < 0 ? ax * first.Planes() : 0) + (nOffsetY < 0 ? ay * nPitch : 0);
            PlaceOnCanvas<TO, T1>(first, target, s);
            PlaceOnCanvas<TO, T2>(second, target,
                                  s + (nOffsetX > 0 ? nOffsetX * first.Planes() : 0) +
                                      (nOffsetY > 0 ? nOffsetY * nPitch : 0));
            return 0;
        });
    if (nSelected != 0)
        return nSelected;

    const int64_t nOutPitch = target.RowPitch();
    const int64_t nSecondPitch = second.RowPitch();
    const int64_t nFirstPitch = first.RowPitch();
    m_nOutStart = 0;
    m_nIn1Start = 0;
    m_nIn2Start = 0;
    if (!bAligned)
    {
        m_nOutStart = ax * target.Planes() + ay * nOutPitch;
        m_nIn2Start =
            (nOffsetX < 0 ? ax * second.Planes() : 0) + (nOffsetY < 0 ? ay * nSecondPitch : 0);
        m_nIn1Start = (nOffsetX > 0 ? nOffsetX * first.Planes() : 0) +
                      (nOffsetY > 0 ? nOffsetY * nFirstPitch : 0);
    }

    const int32_t nResult = Dispatch(first, second, target, m_nOverlapWidth, m_nOverlapHeight,
                                     first.Planes(), second.Planes(), m_nIn1Start, nFirstPitch,
                                     m_nIn2Start, nSecondPitch, m_nOutStart, nOutPitch);
    out.Swap(target);
    return nResult;
}

int32_t ClIp2to1Base::Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                               int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                               uint32_t nSecondPlanes, int64_t nFirstStart, int64_t nFirstPitch,
                               int64_t nSecondStart, int64_t nSecondPitch, int64_t nOutStart,
                               int64_t nOutPitch)
{
    const Ip2To1Paths::Overlap g{nOverlapWidth, nOverlapHeight, nFirstPlanes, nSecondPlanes,
                                 nFirstStart,   nFirstPitch,    nSecondStart, nSecondPitch,
                                 nOutStart,     nOutPitch};
    return DispatchPixels(first, second, out, g,
                          [&](double a, double b) { return PixelOp(first, second, out, a, b); });
}

double ClIp2to1Base::PixelOp(const ClImage&, const ClImage&, const ClImage&, double, double)
{
    return 0.0;
}
