// ClIpLabeling against a breadth-first flood fill that numbers 4-connected
// regions of zero samples in the row-major order of their first pixel.
#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "operators/IpLabeling.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

// A drawn mask: '#' is a zero sample, anything else 255.
ClImage Mask(const std::vector<std::string>& rows)
{
    ClImage mask;
    mask.Create(ClImage::eUInt8, int32_t(rows[0].size()), int32_t(rows.size()));
    for (int32_t y = 0; y < mask.Height(); ++y)
        for (int32_t x = 0; x < mask.Width(); ++x)
            At<uint8_t>(mask, x, y) = rows[y][x] == '#' ? 0 : 255;
    return mask;
}

std::vector<int32_t> Labels(const ClImage& labels)
{
    std::vector<int32_t> v;
    for (int32_t y = 0; y < labels.Height(); ++y)
        for (int32_t x = 0; x < labels.Width(); ++x)
            v.push_back(At<int32_t>(labels, x, y));
    return v;
}

std::vector<int32_t> Label(ClIpLabeling& labeling, const std::vector<std::string>& rows)
{
    ClImage mask = Mask(rows), out;
    EXPECT_EQ(0, labeling.Run(&mask, &out));
    EXPECT_EQ(ClImage::eInt32, out.DataType());
    return Labels(out);
}

std::vector<int32_t> FloodFill(const ClImage& mask, int32_t& nCount)
{
    const int32_t w = mask.Width(), h = mask.Height();
    std::vector<int32_t> labels(size_t(w) * h, 0);
    auto free = [&](int32_t x, int32_t y)
    {
        return x >= 0 && y >= 0 && x < w && y < h && At<uint8_t>(mask, x, y) == 0 &&
               labels[size_t(y) * w + x] == 0;
    };
    nCount = 0;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            if (!free(x, y))
                continue;
            labels[size_t(y) * w + x] = ++nCount;
            std::deque<std::pair<int32_t, int32_t>> queue{{x, y}};
            for (; !queue.empty(); queue.pop_front())
                for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
                {
                    const int32_t nx = queue.front().first + dx, ny = queue.front().second + dy;
                    if (free(nx, ny))
                    {
                        labels[size_t(ny) * w + nx] = nCount;
                        queue.emplace_back(nx, ny);
                    }
                }
        }
    return labels;
}

} // namespace

TEST(IpLabeling, StatedShapes)
{
    ClIpLabeling labeling;
    EXPECT_EQ(std::vector<int32_t>(6, 0), Label(labeling, {"...", "..."}));
    EXPECT_EQ(0, labeling.m_nRegionCount);
    EXPECT_EQ(std::vector<int32_t>(6, 1), Label(labeling, {"###", "###"}));
    EXPECT_EQ(1, labeling.m_nRegionCount);
    // Corner contact does not join.
    EXPECT_EQ((std::vector<int32_t>{1, 0, 0, 2}), Label(labeling, {"#.", ".#"}));
    // A U whose arms are apart on the first rows is one region; numbers
    // follow the first pixel of each region.
    EXPECT_EQ((std::vector<int32_t>{1, 0, 1, 0, 2, 1, 0, 1, 0, 0, 1, 1, 1, 0, 3}),
              Label(labeling, {"#.#.#", "#.#..", "###.#"}));
    EXPECT_EQ(3, labeling.GetRegionCount());
    // One row: each run of zeros is a region; the count starts again.
    EXPECT_EQ((std::vector<int32_t>{1, 1, 0, 2, 0, 0, 3}), Label(labeling, {"##.#..#"}));
    EXPECT_EQ((std::vector<int32_t>{0, 1, 1, 0, 2}), Label(labeling, {".", "#", "#", ".", "#"}));
    EXPECT_EQ(2, labeling.m_nRegionCount);
}

TEST(IpLabeling, LabelsItsOwnInputAndRefusesMissingImages)
{
    ClImage mask = Mask({"#..", ".##"}), out;
    mask.SetResolution(500, 400);
    ClIpLabeling labeling;
    ASSERT_EQ(0, labeling.Run(&mask, &out));
    EXPECT_EQ(400, out.YResolution());
    EXPECT_EQ(ClImage::eGrayscale, out.Content());
    EXPECT_EQ(255.0, out.UpperBound());       // the bounds are the input's
    ASSERT_EQ(0, labeling.Run(&mask, &mask)); // the labels get a buffer of their own
    EXPECT_EQ((std::vector<int32_t>{1, 0, 0, 0, 2, 2}), Labels(mask));

    auto refusal = [&](ClImage* pIn, ClImage* pOut) -> std::string
    {
        try
        {
            return std::to_string(labeling.Run(pIn, pOut));
        }
        catch (const ClException& e)
        {
            return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
        }
    };
    EXPECT_EQ("-37 Inputimage is missing", refusal(nullptr, &out));
    EXPECT_EQ("-37 Outputimage is missing", refusal(&out, nullptr));
}

TEST(IpLabeling, MatchesAFloodFillOnRandomMasks)
{
    std::mt19937 rng(12);
    for (auto [w, h] : {std::pair{1, 1}, {1, 9}, {9, 1}, {2, 2}, {17, 5}, {37, 23}, {64, 48}})
        for (double dZeros : {0.2, 0.5, 0.6, 0.8, 1.0})
        {
            ClImage mask;
            mask.Create(ClImage::eUInt8, w, h);
            std::bernoulli_distribution zero(dZeros);
            for (int32_t y = 0; y < h; ++y)
                for (int32_t x = 0; x < w; ++x)
                    At<uint8_t>(mask, x, y) = zero(rng) ? 0 : uint8_t(1 + rng() % 255);
            int32_t nCount = 0;
            const std::vector<int32_t> expected = FloodFill(mask, nCount);
            ClIpLabeling labeling;
            ClImage out;
            ASSERT_EQ(0, labeling.Run(&mask, &out));
            EXPECT_EQ(nCount, labeling.m_nRegionCount) << w << "x" << h << " " << dZeros;
            EXPECT_EQ(expected, Labels(out)) << w << "x" << h << " " << dZeros;
        }
}
