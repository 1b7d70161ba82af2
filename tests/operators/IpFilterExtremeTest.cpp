// Min and max filters against the extreme of each window, or the running rule.
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "operators/IpFilterMax.h"
#include "operators/IpFilterMin.h"
#include "WindowReference.h"

using namespace TestImages;
using namespace WindowReference;

namespace
{
// Rows, then columns, each the extreme of its cut-off window of 2 (w / 2) + 1.
template <typename T> ClImage CutOffExtreme(bool bMax, const ClImage& in, int32_t nMode, int32_t w)
{
    auto extreme = [bMax](const std::vector<T>& v) {
        return bMax ? *std::max_element(v.begin(), v.end()) : *std::min_element(v.begin(), v.end());
    };
    ClImage result = in;
    for (int32_t nPass : {eModeX, eModeY})
        if (w > 1 && (nMode & nPass))
            result = Walk<T>(result, CutOffBox(nPass, in.Width(), in.Height(), w / 2), extreme);
    return result;
}

// The running rule on a line: an entering sample at least as extreme replaces
// the extreme; else a leaving one equal to it makes a rescan (earlier wins ties).
template <typename T> void RunningLine(bool bMax, const T* x, T* out, long nStep, long n, long h)
{
    h = std::min(h, n - 1);
    auto scan = [&](long a, long b)
    {
        T m = x[a * nStep];
        for (long j = a + 1; j <= b; ++j)
            if (bMax ? x[j * nStep] > m : x[j * nStep] < m)
                m = x[j * nStep];
        return m;
    };
    T m = out[0] = scan(0, h);
    for (long i = 1; i < n; ++i)
    {
        const long nEnter = i + h, nLeave = i - h - 1;
        if (nEnter < n && (bMax ? x[nEnter * nStep] >= m : x[nEnter * nStep] <= m))
            m = x[nEnter * nStep];
        else if (nLeave >= 0 && x[nLeave * nStep] == m)
            m = scan(i - h, std::min(nEnter, n - 1));
        out[i * nStep] = m;
    }
}

template <typename T> ClImage RunningRule(bool bMax, const ClImage& in, int32_t nMode, int32_t w)
{
    ClImage result = in;
    const long W = in.Width(), H = in.Height(), P = in.Planes(), R = in.RowPitch();
    for (bool bX : {true, false})
        if (w > 1 && (nMode & (bX ? eModeX : eModeY)))
        {
            ClImage source = result;
            result.Assign(source);
            for (long p = 0; p < P; ++p)
                for (long j = 0; j < (bX ? H : W); ++j)
                {
                    const long nStart = (bX ? j * R : j * P) + p;
                    RunningLine(bMax, source.Row<T>(0) + nStart, result.Row<T>(0) + nStart,
                                bX ? P : R, bX ? W : H, long(w / 2));
                }
        }
    return result;
}

// Both filters, one object each for all runs; bHook gives the planes to the
// hook itself (the base splits them before it).
template <typename T, typename R>
void ExpectAllWidths(const ClImage& in, R reference,
                     const std::vector<int32_t>& widths = Widths({INT32_MIN, 0, 40, 127,
                                                                  INT32_MAX}),
                     bool bHook = false)
{
    ClIpFilterMin min;
    ClIpFilterMax max;
    auto run = [&](auto& f, ClImage& input, ClImage& out, int32_t nMode, int32_t nWidth)
    {
        if (!bHook)
            return f.Run(&input, &out, nWidth, nMode);
        f.m_pInImage = &input, f.m_pOutImage = &out, f.m_nFilterWidth = nWidth, f.m_nMode = nMode;
        return f.FilterSinglePlane();
    };
    for (bool bMax : {false, true})
        for (int32_t nMode : {eModeX, eModeY, eModeXY})
            for (int32_t nWidth : widths)
            {
                SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " max "
                                                << bMax << " mode " << nMode << " " << nWidth);
                ClImage input = in, out;
                ASSERT_EQ(0, bMax ? run(max, input, out, nMode, nWidth)
                                  : run(min, input, out, nMode, nWidth));
                ASSERT_TRUE(SameSamples(reference(bMax, in, nMode, nWidth), out));
            }
}

} // namespace

TEST(IpFilterExtreme, EveryTypeMatchesTheCutOffWindowOrTheRunningRule)
{
    // Random samples, a tall image; integer limits (the fast scheme's padding)
    // and ties; NaN and signed zeros, where the order of comparisons tells.
    uint32_t nSeed = 1;
    ForEveryImage(nSeed, [](auto t, const ClImage& in)
                  { ExpectAllWidths<decltype(t)>(in, CutOffExtreme<decltype(t)>); });
    for (ClImage::EDataType eType : AllTypes())
        ForType(
            eType,
            [&](auto t)
            {
                using T = decltype(t);
                using L = std::numeric_limits<T>;
                ExpectAllWidths<T>(RandomImage(eType, 101, 300, 1, nSeed++), CutOffExtreme<T>,
                                   {3, 8, 21, 127});
                const T lo = L::lowest(), hi = L::max(), nan = L::quiet_NaN(), inf = L::infinity();
                const std::vector<T> values =
                    std::is_integral_v<T>
                        ? std::vector<T>{lo, T(lo + 1), T(0), T(1), T(hi - 1), hi}
                        : std::vector<T>{nan, nan, T(-inf), T(-1), T(-0.0), T(0), T(2), inf};
                for (auto [w, h] : kSizes)
                    ExpectAllWidths<T>(ImageOf<T>(eType, w, h, values, nSeed++),
                                       std::is_integral_v<T> ? CutOffExtreme<T> : RunningRule<T>);
                ExpectAllWidths<T>(RandomImage(eType, 11, 7, 3, nSeed++), CutOffExtreme<T>,
                                   {3, 8, 31}, true);
            });
}
