// The exception tree: texts built from the table's sentence and the remark,
// copies that own their text, and one base that catches every kind.
#include <cerrno>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "sdk/Exception.h"

TEST(ClException, TextIsTheTableSentenceThenTheRemark)
{
    EXPECT_STREQ(ClException("x", -15).GetMessage(), "No Finger found in the image.\nx");
    EXPECT_STREQ(ClException("Bitmap invalid", -10).what(),
                 "The input image is not valid.\nBitmap invalid");
    // A code without a row leads with the unknown text.
    EXPECT_STREQ(ClException("filter", -6).GetMessage(), "Unknown error code.\nfilter");
    // A bare code repeats its sentence.
    EXPECT_STREQ(
        ClExVelmoran(-44).GetMessage(),
        "One(or more) parameter(s) is(are) invalid.\nOne(or more) parameter(s) is(are) invalid.");
    const ClException plain("x", -1);
    EXPECT_STREQ(plain.GetFile(), "Unknown");
    EXPECT_EQ(plain.GetLine(), -1);
}

TEST(ClException, CopiesOwnTheirTextAndOutliveTheOriginal)
{
    ClException* pOriginal = new ClExRange("Value out of range", -35, false, "Unit.cpp", 7);
    const ClException copy(*pOriginal);
    ClException assigned("old", -10);
    assigned = *pOriginal;
    EXPECT_NE(copy.GetMessage(), pOriginal->GetMessage());
    EXPECT_NE(assigned.GetMessage(), pOriginal->GetMessage());
    delete pOriginal;
    for (const ClException* p : {&copy, static_cast<const ClException*>(&assigned)})
    {
        EXPECT_STREQ(p->GetMessage(), "One of the parameters is out of range.\nValue out of range");
        EXPECT_EQ(p->GetCode(), -35);
        EXPECT_STREQ(p->GetFile(), "Unit.cpp");
        EXPECT_EQ(p->GetLine(), 7);
    }
    ClException& self = assigned;
    assigned = self;
    EXPECT_STREQ(assigned.GetMessage(),
                 "One of the parameters is out of range.\nValue out of range");
}

TEST(ClException, SystemKindsLeadWithTheSystemsSentence)
{
    errno = EACCES;
    const ClExSystem failure("Conversions Error");
    EXPECT_EQ(failure.GetCode(), ZRC_ERROR_FROM_SYSTEM_FUNCTION);
    EXPECT_EQ(std::string(failure.GetMessage()),
              std::string(std::strerror(EACCES)) + "\nConversions Error");

    for (int32_t nCode : {ZRC_ERROR_FILE_OPEN_FAIL, ZRC_ERROR_IO, ZRC_ERROR_UNKNOWN_PARAMETER})
    {
        errno = ENOENT;
        const ClExDynamicLibraryLoadFail load("libVelmoranLoggingFacility.so", nCode);
        EXPECT_EQ(load.GetCode(), nCode);
        EXPECT_EQ(std::string(load.GetMessage()),
                  std::string(std::strerror(ENOENT)) + "\nlibVelmoranLoggingFacility.so");
    }
    const Vlm::CXSystemSpecificException specific(ENOMEM);
    EXPECT_EQ(specific.GetError(), ENOMEM);
    EXPECT_STREQ(specific.what(), std::strerror(ENOMEM));
}

TEST(ClException, EveryKindIsCaughtAsTheBaseWithItsCodeAndPlace)
{
    const auto caught = [](auto&& raise) -> int32_t
    {
        try
        {
            raise();
        }
        catch (const ClException& e)
        {
            EXPECT_STREQ(e.what(), e.GetMessage());
            return e.GetCode();
        }
        return 1;
    };
    EXPECT_EQ(caught([] { SENTIVO_THROW("x", -37); }), -37);
    EXPECT_EQ(caught([] { SENTIVO_THROW_CODE(-42); }), -42);
    EXPECT_EQ(caught([] { throw ClExSystem("call"); }), -105);
    EXPECT_EQ(caught([] { throw ClExStreamUnexpectedEnd("Unexpected end of stream", -201); }),
              -201);
    EXPECT_THROW(throw ClExStreamUnexpectedEnd("end", -201), ClExStream);
    EXPECT_THROW(throw ClExDynamicLibraryLoadFail("lib", -200), ClExSystem);

    const int32_t nLine = __LINE__ + 3;
    try
    {
        SENTIVO_THROW_BAD_ALLOC();
    }
    catch (const ClExBadAlloc& e)
    {
        EXPECT_STREQ(
            e.GetMessage(),
            "Memory allocation failed or given mem-block too small.\nMemory allocation failed");
        EXPECT_STREQ(e.GetFile(), __FILE__);
        EXPECT_EQ(e.GetLine(), nLine);
    }
}
