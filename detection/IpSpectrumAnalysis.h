#pragma once
// ClIpSpectrumAnalysis: how the energy of the ridge pattern spreads over
// spatial frequencies. A 256 by 256 window around the centre of the finger
// is stretched, windowed and transformed; the magnitude summed over rings
// around zero frequency gives a curve of 128 entries, the share of the
// spectrum at or beyond each ring. The feature driver takes six of them.
#include <cstdint>

#include "processing/IpStageBase.h"

class ClIpSpectrumAnalysis : public NewIpBase::ClIpStageBase
{
public:
    static constexpr int32_t kSize = 256; // the window and the transform
    static constexpr int32_t kHalf = kSize / 2;
    static constexpr int32_t kRings = 128; // entries of the curve

    ClIpSpectrumAnalysis();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpSpectrumAnalysis"; }
    // Returns -15 (no text, the output partly kept) when the mask has no
    // pixel of 255.
    int32_t Process() override;

    // The ring of each position of a spectrum whose zero frequency lies at
    // (128, 128): the distance truncated and capped at 127. 256 rows of 256.
    static const int32_t* RingTable();
    // The radial raised cosine over the window, 1.0 at the centre and almost
    // 0 from ring 127 on. 256 rows of 256.
    static const double* WindowTable();

    ClImage* pInImage = nullptr;
    ClImage* pInMaskImage = nullptr; // 255 marks the finger
    // Where the curve goes: the own array unless the caller redirects it.
    double* m_pdOutSpectrum = m_adSpectrum;
    double m_adSpectrum[kRings] = {};

protected:
    // Both images at least 256 by 256, and of one size (-14).
    void CheckGeometry() override;

private:
    // Scratch images of a run, kept with the object.
    ClImage m_CutImage;      // the window, 8-bit
    ClImage m_MedianImage;   // its 3 by 3 median, for the grey limits only
    ClImage m_WindowedImage; // stretched and windowed, then the magnitude
    ClImage m_Spectrum;      // the half spectrum
};
