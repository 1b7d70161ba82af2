#include "operators/IpFilterMedian.h"

#include "image/SampleTraits.h"

int32_t ClIpFilterMedian::Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    m_nFilterWidth = nWidth;
    m_nMode = nMode;
    return Run();
}

ClProcessorBase* ClIpFilterMedian::NewInstance() const
{
    return NewProcessor<ClIpFilterMedian>();
}

int32_t ClIpFilterMedian::CheckImages() const
{
    if (m_pInImage == nullptr || m_pOutImage == nullptr || m_nFilterWidth < 3)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    if (m_pInImage->Width() < 1 || m_pInImage->Height() < 1 || m_pInImage->Data() == nullptr)
        return ZRC_ERROR_BITMAP_DIMENSION;
    return 0;
}

int32_t ClIpFilterMedian::FilterLines(bool bColumns)
{
    const int32_t nCheck = CheckImages();
    if (nCheck != 0)
        return nCheck;
    return SelectDataType(m_pInImage->DataType(),
                          [&](auto tag)
                          {
                              using T = typename decltype(tag)::Type;
                              m_pOutImage->CreateLike(*m_pInImage);
                              RunningMedian::Lines<T>(*m_pInImage, *m_pOutImage, m_nFilterWidth / 2,
                                                      bColumns);
                              return 0;
                          });
}

int32_t ClIpFilterMedian::FilterHistogram()
{
    int32_t nCheck = CheckImages();
    if (nCheck == 0 && m_nFilterWidth > 100)
        nCheck = ZRC_ERROR_PARAM_OUT_OF_RANGE;
    if (nCheck != 0)
        return nCheck;
    const ClImage::EDataType eType = m_pInImage->DataType();
    if (eType != ClImage::eUInt8 && eType != ClImage::eInt8)
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    // The range test comes before the forcing to odd, so 100 runs as 101.
    m_nFilterWidth |= 1;
    m_pOutImage->Assign(*m_pInImage);
    if (m_nFilterWidth == 3 && eType == ClImage::eUInt8)
        RunningMedian::Box3<uint8_t>(*m_pInImage, *m_pOutImage);
    else if (m_nFilterWidth == 3)
        RunningMedian::Box3<int8_t>(*m_pInImage, *m_pOutImage);
    else if (eType == ClImage::eUInt8)
        RunningMedian::Histogram<uint8_t>(*m_pInImage, *m_pOutImage, m_nFilterWidth);
    else
        RunningMedian::Histogram<int8_t>(*m_pInImage, *m_pOutImage, m_nFilterWidth);
    return 0;
}
