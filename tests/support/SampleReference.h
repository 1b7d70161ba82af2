#pragma once
// The reference harness of the sample-by-sample operators, with what the
// processor tests need besides.
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "processing/ProcessorBase.h"
#include "processing/SelectDataTypes.h"
#include "support/OperatorTestImages.h"

namespace TestImages
{

// A processor of the given base under test; the tests never clone it.
template <typename Base> struct TpTestProcessor : Base
{
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "test"; }
};

// Counts samples of out (width × planes per row) not bit-equal to
// expected(s, i, y, TOut()), s being the input's sample i of row y.
template <typename F> int CountWrong(const ClImage& in, const ClImage& out, F expected)
{
    auto count = [&](auto inTag, auto outTag)
    {
        using TIn = typename decltype(inTag)::Type;
        using TOut = typename decltype(outTag)::Type;
        const int32_t nSamples = in.Width() * static_cast<int32_t>(in.Planes());
        int nWrong = 0;
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t i = 0; i < nSamples; ++i)
                nWrong += !BitEqual(out.Row<TOut>(y)[i],
                                    static_cast<TOut>(expected(in.Row<TIn>(y)[i], i, y, TOut())));
        return nWrong;
    };
    return SelectDataTypes(in.DataType(), out.DataType(), count);
}

// Runs op in place on random images of every type, one and three planes,
// against expected(s, i, a, b), a and b being the image's bounds.
template <typename Op, typename F> void ExpectOnEveryType(Op& op, F expected)
{
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " " + std::to_string(nPlanes));
            const ClImage source = RandomImage(eType, 9, 5, nPlanes, 81, 1.0);
            ClImage image;
            image.Assign(source);
            ASSERT_EQ(op.Run(&image), 0);
            const double a = source.LowerBound(), b = source.UpperBound();
            EXPECT_EQ(CountWrong(source, image,
                                 [&](auto s, int32_t i, int32_t, auto)
                                 { return expected(s, i, a, b); }),
                      0);
        }
}

// One sample of any type, as a double.
inline double SampleAt(const ClImage& image, int32_t x, int32_t y, uint32_t p = 0)
{
    double d = 0;
    (void)SelectDataType(image.DataType(),
                         [&](auto tag)
                         {
                             d = static_cast<double>(
                                 At<typename decltype(tag)::Type>(image, x, y, p));
                             return 0;
                         });
    return d;
}

// A one-row image of the given type holding the values.
inline ClImage OneRow(ClImage::EDataType eType, std::initializer_list<double> values)
{
    ClImage image;
    image.Create(eType, static_cast<int32_t>(values.size()), 1);
    auto fill = [&](auto tag)
    {
        using T = typename decltype(tag)::Type;
        int32_t x = 0;
        for (double d : values)
            At<T>(image, x++, 0) = static_cast<T>(d);
        return 0;
    };
    (void)SelectDataType(eType, fill);
    return image;
}

// The samples of row 0 (plane 0), as doubles.
inline std::vector<double> RowOf(const ClImage& image)
{
    std::vector<double> values;
    for (int32_t x = 0; x < image.Width(); ++x)
        values.push_back(SampleAt(image, x, 0));
    return values;
}

} // namespace TestImages
