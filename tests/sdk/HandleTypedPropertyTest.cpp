// The typed property facility of the handle base: numbers by name as integer
// or double, with the type test before the read-only test.
#include <gtest/gtest.h>

#include "sdk/SafeHandle.h"
#include "sdk/SentivoSDKHandle.h"

namespace
{
int32_t CodeOf(void (*pfn)(ClSentivoSDKHandle&), ClSentivoSDKHandle& handle)
{
    try
    {
        pfn(handle);
        return ZRC_SUCCESS;
    }
    catch (const ClException& e)
    {
        return e.GetCode();
    }
}
} // namespace

TEST(HandleTypedProperty, NumbersByKindWithTypeAndDirectionChecks)
{
    ClSentivoSDKHandle handle;
    int32_t nValue = 0;
    handle.GetPropertyInt("NSECURITYLEVEL", &nValue);
    EXPECT_EQ(nValue, 1);
    handle.SetPropertyInt("nSecurityLevel", 4);
    EXPECT_EQ(handle.Detection().nSecurityLevel, 4);

    // A rate of 0 is met first by the last row, whose score is 100.
    handle.SetPropertyDouble("dQueryFAR", 0.0);
    double dScore = 0.0;
    handle.GetPropertyDouble("dQueryScore", &dScore);
    EXPECT_NEAR(dScore, 100.0, 1e-12);

    // Integer access to a double, double access to an integer, numbers of a
    // text or an enumeration: all -44; an unknown name -206.
    EXPECT_EQ(CodeOf(
                  [](ClSentivoSDKHandle& h)
                  {
                      int32_t n;
                      h.GetPropertyInt("dQueryFAR", &n);
                  },
                  handle),
              ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        CodeOf([](ClSentivoSDKHandle& h) { h.SetPropertyDouble("nSecurityLevel", 2.0); }, handle),
        ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CodeOf([](ClSentivoSDKHandle& h) { h.SetPropertyInt("Version", 1); }, handle),
              ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CodeOf(
                  [](ClSentivoSDKHandle& h)
                  {
                      double d;
                      h.GetPropertyDouble("bMovementDetection", &d);
                  },
                  handle),
              ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CodeOf([](ClSentivoSDKHandle& h) { h.SetPropertyInt("nNoSuchThing", 1); }, handle),
              ZRC_ERROR_UNKNOWN_PARAMETER);
    EXPECT_EQ(handle.Detection().nSecurityLevel, 4);
}
