#include "processing/IpStageBase.h"

#include "operators/IpAnd.h"
#include "operators/IpBinarizeGlobal.h"
#include "operators/IpConvertDataType.h"
#include "operators/IpFilterMax.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "operators/IpFilterMin.h"
#include "operators/IpInvert.h"
#include "operators/IpLabeling.h"
#include "operators/IpSubtract.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterEnumPointer.h"

namespace NewIpBase
{

namespace
{

// Passes the stage's log state on to an operator it runs.
template <typename Op> Op& Inner(Op& op, bool bLog)
{
    op.EnableLog(bLog);
    return op;
}

} // namespace

ClIpStageBase::ClIpStageBase(const char* szUnit, bool bAcceptsUInt8) : m_szSourceUnit(szUnit)
{
    if (bAcceptsUInt8)
        AddDataType(ClImage::eUInt8);
}

void ClIpStageBase::Declare(const StDeclared& entry)
{
    // A fixed table: a stage has at most four declared pointers, and the
    // declarations are written in the stage's constructor.
    if (m_nDeclared == kMaxDeclared)
        STAGE_THROW("Too many declared inputs", ZRC_ERROR_INTERNAL);
    m_Declared[m_nDeclared++] = entry;
}

void ClIpStageBase::DeclareInput(const char* szName, ClImage*& pImage, const char* szMissing,
                                 int32_t nCode, ETypeCheck eCheck)
{
    Declare({szName, false, &pImage, nullptr, szMissing, nCode, eCheck});
}

void ClIpStageBase::DeclareOutput(const char* szName, ClImage*& pImage, const char* szMissing,
                                  int32_t nCode)
{
    Declare({szName, true, &pImage, nullptr, szMissing, nCode, eUntyped});
}

void ClIpStageBase::DeclareResult(double*& pValues, const char* szMissing, int32_t nCode)
{
    Declare({nullptr, false, nullptr, &pValues, szMissing, nCode, eUntyped});
}

void ClIpStageBase::DeclareScratch(ClImage& image)
{
    if (m_nScratch == kMaxScratch)
        STAGE_THROW("Too many scratch images", ZRC_ERROR_INTERNAL);
    m_apScratch[m_nScratch++] = &image;
}

void ClIpStageBase::ReleaseScratch()
{
    for (int i = 0; i < m_nScratch; ++i)
        m_apScratch[i]->Clear();
}

void ClIpStageBase::DefineParameters(ClParameterContainer& container)
{
    ClIpProcessorBase::DefineParameters(container);
    for (int i = 0; i < m_nDeclared; ++i)
    {
        const StDeclared& entry = m_Declared[i];
        if (entry.szName != nullptr)
            container.AddImage(entry.szName)
                ->Bind(*entry.ppImage,
                       entry.bOutput ? ClParameter::eFlagOutput : ClParameter::eFlagInput);
    }
}

void ClIpStageBase::CheckInputImages()
{
    for (int i = 0; i < m_nDeclared; ++i)
    {
        const StDeclared& entry = m_Declared[i];
        const bool bMissing =
            entry.ppImage != nullptr ? *entry.ppImage == nullptr : *entry.ppValues == nullptr;
        if (bMissing)
            STAGE_THROW(entry.szMissing, entry.nCode);
    }
    CheckGeometry();
    for (int i = 0; i < m_nDeclared; ++i)
    {
        const StDeclared& entry = m_Declared[i];
        if (entry.ppImage != nullptr && entry.eCheck == eTyped)
            CheckDataType(**entry.ppImage);
    }
}

int32_t ClIpStageBase::MaxFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode)
{
    ClIpFilterMax filter;
    return Inner(filter, IsLogEnabled()).Run(&in, &out, nWidth, nMode);
}

int32_t ClIpStageBase::MinFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode)
{
    ClIpFilterMin filter;
    return Inner(filter, IsLogEnabled()).Run(&in, &out, nWidth, nMode);
}

int32_t ClIpStageBase::MeanFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode)
{
    ClIpFilterMid filter;
    filter.m_nMode = nMode;
    return Inner(filter, IsLogEnabled()).Run(&in, &out, nWidth);
}

int32_t ClIpStageBase::MedianFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode)
{
    ClIpFilterMedian filter;
    return Inner(filter, IsLogEnabled()).Run(&in, &out, nWidth, nMode);
}

int32_t ClIpStageBase::Subtract(ClImage& first, ClImage& second, ClImage& out,
                                ClImage::EDataType eOutType)
{
    ClIpSubtract subtract;
    return Inner(subtract, IsLogEnabled()).Run(&first, &second, &out, eOutType);
}

int32_t ClIpStageBase::And(ClImage& first, ClImage& second, ClImage& out)
{
    ClIpAnd combine;
    return Inner(combine, IsLogEnabled()).Run(&first, &second, &out);
}

int32_t ClIpStageBase::Binarize(ClImage& in, ClImage& out, double dThreshold)
{
    ClIpBinarizeGlobal binarize;
    return Inner(binarize, IsLogEnabled()).Run(&in, &out, dThreshold);
}

int32_t ClIpStageBase::Invert(ClImage& image)
{
    ClIpInvert invert;
    return Inner(invert, IsLogEnabled()).Run(&image);
}

int32_t ClIpStageBase::Label(ClImage& in, ClImage& labels, int32_t& nCount)
{
    ClIpLabeling labeling;
    const int32_t nResult = Inner(labeling, IsLogEnabled()).Run(&in, &labels);
    nCount = labeling.GetRegionCount();
    return nResult;
}

int32_t ClIpStageBase::Convert(ClImage& in, ClImage& out, ClImage::EDataType eType, bool bRound)
{
    ClIpConvertDataType convert;
    convert.m_bRound = bRound;
    return Inner(convert, IsLogEnabled()).Run(&in, &out, eType);
}

} // namespace NewIpBase
