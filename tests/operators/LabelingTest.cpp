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

ClImage Mask(const std::vector<std::string>& rows)
{
    ClImage mask;
    mask.Create(ClImage::eUInt8, static_cast<int32_t>(rows[0].size()),
                static_cast<int32_t>(rows.size()));
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

std::vector<int32_t> FloodFill(const ClImage& mask, int32_t& nCount)
{
    const int32_t w = mask.Width(), h = mask.Height();
    std::vector<int32_t> labels(size_t(w) * h, 0);
    nCount = 0;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            if (At<uint8_t>(mask, x, y) != 0 || labels[size_t(y) * w + x] != 0)
                continue;
            ++nCount;
            std::deque<std::pair<int32_t, int32_t>> queue{{x, y}};
            labels[size_t(y) * w + x] = nCount;
            while (!queue.empty())
            {
                auto [cx, cy] = queue.front();
                queue.pop_front();
                const int32_t dx[] = {1, -1, 0, 0}, dy[] = {0, 0, 1, -1};
                for (int k = 0; k < 4; ++k)
                {
                    const int32_t nx = cx + dx[k], ny = cy + dy[k];
                    if (nx < 0 || ny < 0 || nx >= w || ny >= h || At<uint8_t>(mask, nx, ny) != 0 ||
                        labels[size_t(ny) * w + nx] != 0)
                        continue;
                    labels[size_t(ny) * w + nx] = nCount;
                    queue.emplace_back(nx, ny);
                }
            }
        }
    return labels;
}

// Runs the labeling on a drawn mask ('#' is a zero sample) and returns the
// labels, row by row.
std::vector<int32_t> Label(ClIpLabeling& labeling, const std::vector<std::string>& rows)
{
    ClImage mask = Mask(rows), out;
    EXPECT_EQ(0, labeling.Run(&mask, &out));
    EXPECT_EQ(ClImage::eInt32, out.DataType());
    return Labels(out);
}

} // namespace

TEST(IpLabeling, StatedShapes)
{
    ClIpLabeling labeling;
    EXPECT_EQ((std::vector<int32_t>{0, 0, 0, 0, 0, 0}), Label(labeling, {"...", "..."}));
    EXPECT_EQ(0, labeling.m_nRegionCount);

    EXPECT_EQ((std::vector<int32_t>(6, 1)), Label(labeling, {"###", "###"}));
    EXPECT_EQ(1, labeling.m_nRegionCount);

    // Corner contact does not join.
    EXPECT_EQ((std::vector<int32_t>{1, 0, 0, 2}), Label(labeling, {"#.", ".#"}));
    EXPECT_EQ(2, labeling.m_nRegionCount);

    // A U whose arms are separate on the first rows is one region; the
    // order follows the first pixel of each region.
    EXPECT_EQ((std::vector<int32_t>{1, 0, 1, 0, 2, 1, 0, 1, 0, 0, 1, 1, 1, 0, 3}),
              Label(labeling, {"#.#.#", "#.#..", "###.#"}));
    EXPECT_EQ(3, labeling.GetRegionCount());

    // One row: each run of zeros is a region.
    EXPECT_EQ((std::vector<int32_t>{1, 1, 0, 2, 0, 0, 3}), Label(labeling, {"##.#..#"}));
    EXPECT_EQ(3, labeling.m_nRegionCount);
    // One column.
    EXPECT_EQ((std::vector<int32_t>{0, 1, 1, 0, 2}), Label(labeling, {".", "#", "#", ".", "#"}));
}

TEST(IpLabeling, KeepsTheInputsMeasuresAndRefusesMissingImages)
{
    ClImage mask = Mask({"#..", ".##"}), out;
    mask.SetResolution(500, 400);
    mask.SetContent(ClImage::eGrayscale);
    ClIpLabeling labeling;
    ASSERT_EQ(0, labeling.Run(&mask, &out));
    EXPECT_EQ(3, out.Width());
    EXPECT_EQ(400, out.YResolution());
    EXPECT_EQ(ClImage::eGrayscale, out.Content());
    EXPECT_EQ(255.0, out.UpperBound());

    // A label image that is the input gets its own buffer.
    ASSERT_EQ(0, labeling.Run(&mask, &mask));
    EXPECT_EQ((std::vector<int32_t>{1, 0, 0, 0, 2, 2}), Labels(mask));

    auto remark = [&](ClImage* pIn, ClImage* pOut) -> std::string
    {
        try
        {
            labeling.Run(pIn, pOut);
            return "";
        }
        catch (const ClException& e)
        {
            return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
        }
    };
    EXPECT_EQ("-37 Inputimage is missing", remark(nullptr, &out));
    EXPECT_EQ("-37 Outputimage is missing", remark(&out, nullptr));
}

TEST(IpLabeling, MatchesAFloodFillOnRandomMasks)
{
    const struct
    {
        int32_t w, h;
    } sizes[] = {{1, 1}, {1, 9}, {9, 1}, {2, 2}, {17, 5}, {37, 23}, {64, 48}};
    std::mt19937 rng(12);
    for (const auto& size : sizes)
        for (double dZeros : {0.2, 0.5, 0.6, 0.8, 1.0})
        {
            ClImage mask;
            mask.Create(ClImage::eUInt8, size.w, size.h);
            std::bernoulli_distribution zero(dZeros);
            for (int32_t y = 0; y < size.h; ++y)
                for (int32_t x = 0; x < size.w; ++x)
                    At<uint8_t>(mask, x, y) = zero(rng) ? 0 : static_cast<uint8_t>(1 + rng() % 255);
            int32_t nCount = 0;
            const std::vector<int32_t> expected = FloodFill(mask, nCount);
            ClIpLabeling labeling;
            ClImage out;
            ASSERT_EQ(0, labeling.Run(&mask, &out));
            EXPECT_EQ(nCount, labeling.m_nRegionCount) << size.w << "x" << size.h << " " << dZeros;
            EXPECT_EQ(expected, Labels(out)) << size.w << "x" << size.h << " " << dZeros;
        }
}
