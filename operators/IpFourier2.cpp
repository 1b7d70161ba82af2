#include "operators/IpFourier2.h"

#include <cstring>
#include <limits>
#include <mutex>

#include <rfftw.h>

#include "image/ArrayStatic.h"
#include "parameters/ParameterContainer.h"
#include "sdk/Exception.h"

namespace Fourier
{

namespace
{

// The transform planner may not run concurrently: plans are made and
// destroyed under this one process-wide lock, the transforms run outside it.
std::mutex s_PlanMutex;

// A plan made for one transform and destroyed right after it, also when the
// work between throws.
class ClPlan
{
public:
    ClPlan(int nRows, int nColumns, fftw_direction eDirection)
    {
        std::lock_guard<std::mutex> lock(s_PlanMutex);
        m_Plan = rfftw2d_create_plan(nRows, nColumns, eDirection, 0);
    }
    ClPlan(const ClPlan&) = delete;
    ClPlan& operator=(const ClPlan&) = delete;
    ~ClPlan() { Destroy(); }

    rfftwnd_plan Get() const { return m_Plan; }
    void Destroy()
    {
        if (m_Plan == nullptr)
            return;
        std::lock_guard<std::mutex> lock(s_PlanMutex);
        rfftwnd_destroy_plan(m_Plan);
        m_Plan = nullptr;
    }

private:
    rfftwnd_plan m_Plan = nullptr;
};

// Rows of eight-byte samples carry no padding, so an eDouble64 image's rows
// lie one after another and the transform reads and writes its buffer as one
// array.
fftw_real* Samples(ClImage& image)
{
    return reinterpret_cast<fftw_real*>(image.Data());
}

} // namespace

ClIpFourier2::ClIpFourier2() : m_bScaleNorm(true)
{
    AddDataType(ClImage::eDouble64);
}

void ClIpFourier2::DefineParameters(ClParameterContainer& container)
{
    ClIp1to1Base::DefineParameters(container);
    container.AddBool("bScaleNorm")->Bind(m_bScaleNorm, ClParameter::eFlagInput);
}

ClProcessorBase* ClIpFourier2::NewInstance() const
{
    return NewProcessor<ClIpFourier2>();
}

bool ClIpFourier2::CheckInput()
{
    if (m_pInImage == nullptr || m_pOutImage != nullptr || !ClIp1to1Base::CheckInput())
        return false;
    return m_pInImage->Content() == ClImage::eComplexSpectrum || m_pInImage->Planes() == 1;
}

int32_t ClIpFourier2::Dispatch(const ClImage& in, ClImage& out)
{
    // Run checks the type first; this keeps a direct call from reading other
    // samples as doubles.
    if (in.DataType() != ClImage::eDouble64)
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    if (in.Content() == ClImage::eComplexSpectrum)
        return Inverse(in, out);
    if (in.Planes() != 1)
        return ZRC_ERROR_WSQ_GRAYSCALE_ONLY;
    return Forward(in, out);
}

int32_t ClIpFourier2::Forward(const ClImage& in, ClImage& out)
{
    const int32_t w = in.Width();
    const int32_t h = in.Height();
    LogBegin("creation plan");
    ClPlan plan(h, w, FFTW_REAL_TO_COMPLEX);
    LogEnd("creation plan");
    if (plan.Get() == nullptr)
        return ZRC_ERROR_INTERNAL;

    out.Create(ClImage::eDouble64, w / 2 + 1, h, 2, in.XResolution(), in.YResolution());
    out.SetContent(ClImage::eComplexSpectrum);
    // The low bit keeps the source width's parity: widths 2m and 2m + 1 have
    // the same spectrum width.
    out.SetOrigin(static_cast<uint32_t>(in.DataType()) * 256 + static_cast<uint32_t>(w % 2));

    LogBegin("real -> complex");
    // The real-to-complex transform leaves its input as it is.
    rfftwnd_one_real_to_complex(plan.Get(), Samples(const_cast<ClImage&>(in)),
                                reinterpret_cast<fftw_complex*>(out.Data()));
    LogEnd("real -> complex");
    plan.Destroy();
    return 0;
}

int32_t ClIpFourier2::Inverse(const ClImage& in, ClImage& out)
{
    // Only a two-plane image holds the complex values the transform reads.
    if (in.Planes() != 2)
        return ZRC_ERROR_WSQ_GRAYSCALE_ONLY;
    const int32_t nSpectrumWidth = in.Width();
    const int32_t h = in.Height();
    const int64_t n64 = 2 * static_cast<int64_t>(nSpectrumWidth) - 2 + (in.Origin() & 1);
    // No plan exists for an empty or oversized width.
    if (n64 < 1 || n64 > std::numeric_limits<int32_t>::max())
        return ZRC_ERROR_INTERNAL;
    const int32_t n = static_cast<int32_t>(n64);

    LogBegin("creation plan");
    ClPlan plan(h, n, FFTW_COMPLEX_TO_REAL);
    LogEnd("creation plan");
    if (plan.Get() == nullptr)
        return ZRC_ERROR_INTERNAL;

    out.Create(ClImage::eDouble64, n, h, 1, in.XResolution(), in.YResolution());

    // The complex-to-real transform overwrites its input in more than one
    // dimension: it works on a copy, so the caller's spectrum stays intact.
    const uint64_t nValues = static_cast<uint64_t>(nSpectrumWidth) * static_cast<uint64_t>(h);
    if (nValues > std::numeric_limits<uint32_t>::max())
        SENTIVO_THROW_BAD_ALLOC();
    TpArrayStatic<fftw_complex> spectrum(static_cast<uint32_t>(nValues));
    std::memcpy(static_cast<void*>(spectrum.Data()), in.Data(), nValues * sizeof(fftw_complex));

    LogBegin("complex -> real");
    rfftwnd_one_complex_to_real(plan.Get(), spectrum.Data(), Samples(out));
    LogEnd("complex -> real");
    plan.Destroy();

    if (m_bScaleNorm)
    {
        const double s = 1.0 / static_cast<double>(static_cast<int64_t>(n) * h);
        double* pSamples = Samples(out);
        const int64_t nSamples = static_cast<int64_t>(n) * h;
        for (int64_t i = 0; i < nSamples; ++i)
            pSamples[i] *= s;
    }
    return 0;
}

} // namespace Fourier
