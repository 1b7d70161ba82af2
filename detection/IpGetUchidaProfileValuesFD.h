#pragma once
// ClIpGetUchidaProfileValuesFD: describes the grey-level profile of the ridges
// by two surfaces joined by triangles, one through the darkest and one through
// the brightest masked pixel of each block. Its eleven values, the means and
// deviations of the two surfaces, of the image between them and of the
// distances from the image to each, scaled to 0..1, are features 20 to 30.
#include <cstdint>

#include "processing/IpStageBase.h"

class ClIpGetUchidaProfileValuesFD : public NewIpBase::ClIpStageBase
{
public:
    static constexpr int kValues = 11;

    // A corner of a surface triangle: an image position and its grey value.
    struct StVertex
    {
        int32_t nX;
        int32_t nY;
        int32_t nValue;
    };

    ClIpGetUchidaProfileValuesFD();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpGetUchidaProfileValuesFD"; }
    int32_t Process() override;

    // Draws the triangle P0, P1, P2 into destination with the value
    // interpolated in 16.16 fixed point, and ORs nTag into workMask wherever
    // it draws. The corners are expected clockwise (y down); rows of a
    // triangle the other way round draw nothing. Destination and workMask are
    // 8-bit images of one size.
    static void FillTriangle(ClImage& destination, ClImage& workMask, const StVertex& P0,
                             const StVertex& P1, const StVertex& P2, uint8_t nTag);

    ClImage* pInImage = nullptr;
    ClImage* pInMask = nullptr; // non-zero on the finger
    // After a run: the surfaces through the block maxima and minima, 0
    // outside the pixels that both cover under the mask.
    ClImage UpperProfile;
    ClImage LowerProfile;
    double dInBlockSize = 8.0; // edge of a block in pixels
    double* m_pdInBlockSize = &dInBlockSize;
    // The results in feature order; the pointer publishes the array.
    double m_adProfileValues[kValues] = {};
    double* m_pdOutProfileValues = m_adProfileValues;
};
