// Initialisation of the exported functions: counted, balanced, and -2 for
// every call outside it.
#include <gtest/gtest.h>

#include "sentivo/sentivo.h"

TEST(Exports, InitialisationIsCountedAndBalanced)
{
    SentivoHandle hHandle = reinterpret_cast<SentivoHandle>(0x1234);
    EXPECT_EQ(SentivoUninitialize(), ZRC_ERROR_NOT_INITIALIZED);
    // The initialise check comes before the pointer check.
    EXPECT_EQ(SentivoCreateHandle(nullptr), ZRC_ERROR_NOT_INITIALIZED);
    ASSERT_EQ(SentivoInitialize(reinterpret_cast<void*>(0x77)), ZRC_SUCCESS);
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
    // Still usable after one of two releases.
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
    // The live handle fails with -2 until a new initialisation, then works again.
    EXPECT_EQ(SentivoReset(hHandle), ZRC_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_ERROR_NOT_INITIALIZED);
    SentivoHandle hUntouched = reinterpret_cast<SentivoHandle>(0x5678);
    EXPECT_EQ(SentivoCreateHandle(&hUntouched), ZRC_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(hUntouched, reinterpret_cast<SentivoHandle>(0x5678));
    EXPECT_EQ(SentivoUninitialize(), ZRC_ERROR_NOT_INITIALIZED);
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
}
