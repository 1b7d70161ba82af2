#pragma once
// Base of the filter line of neighbourhood filters (mean, min, max, median
// of a sliding window): width and mode, the choice between the signed and the
// unsigned code, and multi-plane images filtered one plane at a time.
#include <cstdint>

#include "image/FpImage.h"
#include "processing/FilterMode.h"
#include "processing/ProcessorBase.h"
#include "sentivo/sentivo_errors.h"

class ClIpFilterBase : public ClProcessorBase
{
public:
    ClIpFilterBase();

    void SetDefaults() override;
    void DescribeInterface(ClParameterInterface& list) override;
    // "pInDyImage" is bound to the Dx member as "pInDxImage" is, so through
    // the parameters only the Dx image can be reached.
    void DefineParameters(ClParameterContainer& container) override;
    // "W[%ld] M[%s%s%s%s] S[%s]": width, mode letters, signedness of the input.
    void GetStatusText(char* szBuffer, uint32_t nSize) override;

    // Width 1 or less copies; several planes go through FilterPlanes; input
    // and output must be two objects (-10); otherwise FilterSinglePlane.
    int32_t Process() override;

    // Splits the input, filters planes 0 to 2 one by one and joins them.
    virtual int32_t FilterPlanes();
    // Selects the hook by mode and by the signed bit of the data type.
    virtual int32_t FilterSinglePlane();

    // The hooks; one that a filter does not supply returns -33. The XY hooks
    // default to the X hook followed by the Y hook.
    virtual int32_t FilterXUnsigned() { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }
    virtual int32_t FilterYUnsigned() { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }
    virtual int32_t FilterXYUnsigned();
    virtual int32_t FilterXSigned() { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }
    virtual int32_t FilterYSigned() { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }
    virtual int32_t FilterXYSigned();
    virtual int32_t FilterDirectedUnsigned(bool) { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }
    virtual int32_t FilterDirectedSigned(bool) { return ZRC_ERROR_FORMAT_NOTSUPPORTED; }

    ClImage* m_pInImage;
    ClImage* m_pOutImage;
    int32_t m_nFilterWidth;
    int32_t m_nMode;
    ClImage* m_pInDxImage;
    ClImage* m_pInDyImage;

protected:
    // Runs passX from the input into the output, then passY from that
    // result into the output. The caller's input image is not touched; the
    // input member points at the intermediate result for the second pass.
    template <typename FX, typename FY> int32_t FilterXThenY(FX&& passX, FY&& passY);
};

template <typename FX, typename FY> int32_t ClIpFilterBase::FilterXThenY(FX&& passX, FY&& passY)
{
    int32_t nResult = passX();
    if (nResult != 0)
        return nResult;

    ClImage firstPass;
    firstPass.Swap(*m_pOutImage);
    ClImage* pInput = m_pInImage;
    m_pInImage = &firstPass;
    try
    {
        nResult = passY();
    }
    catch (...)
    {
        m_pInImage = pInput;
        throw;
    }
    m_pInImage = pInput;
    return nResult;
}
