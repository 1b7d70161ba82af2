// The backlight profile: refusals in order and the profile written behind
// its pointer.
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpSimpleBacklightCheck.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpSimpleBacklightCheck, RefusesMissingOrForeignImagesInOrderAndWritesBehindItsPointer)
{
    ClImage five = Filled(320, 480, 5), seven = Filled(320, 480, 7),
            wide = Blank(ClImage::eInt16, 320, 480);
    ClIpSimpleBacklightCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input backlight image not assigned");
    check.pInBacklightImage = &five;
    ExpectThrows([&] { check.Run(); }, -701, "Input dark image not assigned");
    check.pInDarkImage = &wide;
    ExpectThrows([&] { check.Run(); }, -33,
                 "Input pixel type \"int16\" not supported by processor.");
    // Every band of two constant images is the dark value less the
    // backlight's; a redirected pointer receives them, not the own profile.
    double adOut[28] = {};
    check.pInDarkImage = &seven;
    check.m_pdOutProfile = adOut;
    ASSERT_EQ(check.Run(), 0);
    EXPECT_EQ(std::vector<double>(adOut, adOut + 28), std::vector<double>(28, 2.0));
    EXPECT_EQ(std::vector<double>(check.m_adProfile, check.m_adProfile + 28),
              std::vector<double>(28, 0.0));
}
