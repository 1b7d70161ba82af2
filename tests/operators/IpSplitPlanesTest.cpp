#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpSplitJoinPlanes, RoundTripOfEveryTypeAndPlaneCount)
{
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes = 1; nPlanes <= 4; ++nPlanes)
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " " + std::to_string(nPlanes));
            const ClImage source = RandomImage(eType, 7, 5, nPlanes, 11 + nPlanes);
            ClImage parts[4], input(source), joined;
            ClImage* pParts[4] = {};
            for (uint32_t p = 0; p < nPlanes; ++p)
                pParts[p] = &parts[p];
            ASSERT_EQ(ClIpSplitPlanes().Run(&input, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
            for (uint32_t p = 0; p < nPlanes; ++p)
                ASSERT_TRUE(parts[p].Planes() == 1 && parts[p].DataType() == eType &&
                            parts[p].Width() == 7 && parts[p].Height() == 5);
            ClIpJoinPlanes join;
            join.m_nPlanes = nPlanes;
            ASSERT_EQ(join.Run(&joined, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
            EXPECT_TRUE(SameSamples(joined, source));
            EXPECT_EQ(joined.Content(), ClImage::ContentOfPlanes(nPlanes));
        }
}
