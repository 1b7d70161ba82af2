#pragma once
// NewIpBase::ClIpStageBase: what every detection stage shares, so that a
// stage file reads as its own algorithm.
//
// - Declared inputs. A stage declares its image and result pointers once, in
//   its constructor, with the parameter name, the text and the code of a
//   missing pointer. The base registers the images as parameters, in the
//   order declared, and checks them before each run: first every pointer in
//   order, then the stage's own geometry test, then the pixel type of every
//   image declared as typed.
// - Source unit. Exceptions of the stage carry its unit text (STAGE_THROW).
// - Operators into scratch images: one short call per operator, the log
//   state passed on, the operator's result code returned. The stage tests
//   that code only where its algorithm says so.
#include <cstdint>

#include "image/FpImage.h"
#include "processing/FilterMode.h"
#include "processing/IpProcessorBase.h"
#include "sdk/Exception.h"

// Throws a ClException of this stage: the text, the code and the stage's unit.
#define STAGE_THROW(szText, nCode)                                                                 \
    throw ClException((szText), (nCode), false, SourceUnit(), __LINE__)

namespace NewIpBase
{

class ClIpStageBase : public ClIpProcessorBase
{
public:
    ClIpStageBase(const ClIpStageBase&) = delete;
    ClIpStageBase& operator=(const ClIpStageBase&) = delete;

    void DefineParameters(ClParameterContainer& container) override;
    // Pointers in declared order, then CheckGeometry, then the pixel types.
    void CheckInputImages() override;

    // The unit text that the stage's exceptions carry.
    const char* SourceUnit() const { return m_szSourceUnit; }

protected:
    enum ETypeCheck : uint8_t
    {
        eTyped,  // the image passes CheckDataType
        eUntyped // only its presence is tested
    };

    // szUnit: the source unit text; eUInt8 becomes the one accepted type
    // unless bAcceptsUInt8 is false (stages that check no type).
    explicit ClIpStageBase(const char* szUnit, bool bAcceptsUInt8 = true);

    // An input image pointer: registered as parameter szName and tested
    // before the run.
    void DeclareInput(const char* szName, ClImage*& pImage, const char* szMissing, int32_t nCode,
                      ETypeCheck eCheck = eTyped);
    // An output image pointer: registered and tested for presence only.
    void DeclareOutput(const char* szName, ClImage*& pImage, const char* szMissing, int32_t nCode);
    // A result pointer that must be set: tested in declared order, never
    // registered.
    void DeclareResult(double*& pValues, const char* szMissing, int32_t nCode);
    // Tests beyond presence and type, between the two (sizes, for example).
    virtual void CheckGeometry() {}

    // A scratch image of the stage: its buffer goes back when the stage's
    // work is done, so that stages that run one after another do not hold
    // their scratch at once. Process opens a ClScratchScope for that.
    void DeclareScratch(ClImage& image);
    void ReleaseScratch();
    class ClScratchScope
    {
    public:
        explicit ClScratchScope(ClIpStageBase& stage) : m_Stage(stage) {}
        ~ClScratchScope() { m_Stage.ReleaseScratch(); }
        ClScratchScope(const ClScratchScope&) = delete;
        ClScratchScope& operator=(const ClScratchScope&) = delete;

    private:
        ClIpStageBase& m_Stage;
    };

    // Operators, each run into its output with this stage's log state.
    // In and out must be different objects unless the operator says
    // otherwise. Each returns the operator's result code.
    int32_t MaxFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode = eModeXY);
    int32_t MinFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode = eModeXY);
    // ClIpFilterMid, the box mean.
    int32_t MeanFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode = eModeXY);
    int32_t MedianFilter(ClImage& in, ClImage& out, int32_t nWidth, int32_t nMode = eModeXY);
    // first - second, clamped to the output type's range.
    int32_t Subtract(ClImage& first, ClImage& second, ClImage& out,
                     ClImage::EDataType eOutType = ClImage::eDefaultType);
    int32_t And(ClImage& first, ClImage& second, ClImage& out);
    // 255 where the sample is at least dThreshold, 0 elsewhere.
    int32_t Binarize(ClImage& in, ClImage& out, double dThreshold);
    int32_t Invert(ClImage& image);
    // Labels of the 4-connected regions of zero samples; nCount their number.
    int32_t Label(ClImage& in, ClImage& labels, int32_t& nCount);
    // Converts the samples; bRound adds 0.5 before the truncation.
    int32_t Convert(ClImage& in, ClImage& out, ClImage::EDataType eType, bool bRound);

private:
    struct StDeclared
    {
        const char* szName; // parameter name; null for a result pointer
        bool bOutput;
        ClImage** ppImage;  // an image, or
        double** ppValues;  // a result pointer
        const char* szMissing;
        int32_t nCode;
        ETypeCheck eCheck;
    };
    static constexpr int kMaxDeclared = 4;
    static constexpr int kMaxScratch = 8;

    void Declare(const StDeclared& entry);

    const char* m_szSourceUnit;
    StDeclared m_Declared[kMaxDeclared] = {};
    int m_nDeclared = 0;
    ClImage* m_apScratch[kMaxScratch] = {};
    int m_nScratch = 0;
};

} // namespace NewIpBase
