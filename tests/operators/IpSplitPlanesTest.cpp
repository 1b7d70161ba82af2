// Splitting planes and joining them again, every type and plane count.
#include "operators/IpSplitPlanes.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpJoinPlanes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpSplitPlanes, RoundTripOfEveryTypeAndPlaneCount)
{
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes = 1; nPlanes <= 4; ++nPlanes)
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " " + std::to_string(nPlanes));
            const ClImage source = RandomImage(eType, 7, 5, nPlanes, 11 + nPlanes);
            ClImage parts[4], input(source), joined;
            ClImage* p[4] = {};
            for (uint32_t i = 0; i < nPlanes; ++i)
                p[i] = &parts[i];
            ASSERT_EQ(ClIpSplitPlanes().Run(&input, p[0], p[1], p[2], p[3]), 0);
            for (uint32_t i = 0; i < nPlanes; ++i)
                ASSERT_TRUE(parts[i].Planes() == 1 && parts[i].DataType() == eType &&
                            parts[i].Width() == 7 && parts[i].Height() == 5);
            ClIpJoinPlanes join;
            join.m_nPlanes = nPlanes;
            ASSERT_EQ(join.Run(&joined, p[0], p[1], p[2], p[3]), 0);
            EXPECT_TRUE(SameSamples(joined, source) &&
                        joined.Content() == ClImage::ContentOfPlanes(nPlanes));
        }
}
