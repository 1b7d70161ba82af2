#pragma once
// ClIpSubtract: first image minus second, clamped to a range chosen by the
// range type. Large 8-bit pairs go through a table of all byte pairs.
#include "processing/Ip2To1Base.h"

class ClIpSubtract : public ClIp2to1Base
{
public:
    enum EDataRangeType : int32_t
    {
        // The output's own bounds.
        eDataDependent = 0,
        // first upper − second lower down to first lower − second upper.
        eInputDependent = 1,
        // The two bound fields; the output's bounds are set to them.
        eUserDependent = 2
    };

    // More overlap samples than this, on one-byte inputs, and the table of all
    // 65536 byte pairs is cheaper than the loop.
    static constexpr int64_t kTableBreakEven = 90000;

    ClIpSubtract() { SetDefaults(); }

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpSubtract"; }
    int32_t Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                     int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                     uint32_t nSecondPlanes, int64_t nFirstStart, int64_t nFirstPitch,
                     int64_t nSecondStart, int64_t nSecondPitch, int64_t nOutStart,
                     int64_t nOutPitch) override;
    // a − b clamped to the output's bounds, the smaller bound first: the
    // function of the table path, which thus behaves as range type 0. The
    // table path rests on its depending on a − b alone, hence final.
    double PixelOp(const ClImage& first, const ClImage& second, const ClImage& out, double dFirst,
                   double dSecond) final;

    double m_dLowerBound;
    double m_dUpperBound;
    EDataRangeType m_eRangeType;
};
