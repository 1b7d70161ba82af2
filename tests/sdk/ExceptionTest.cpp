#include <cerrno>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "sdk/Exception.h"

namespace
{

// The C library's sentence for an error number, as the system exceptions
// must show it.
std::string SystemSentence(int nError)
{
    return std::strerror(nError);
}

} // namespace

TEST(ClException, TextIsTheTableSentenceThenTheRemark)
{
    const ClException noFinger("x", -15);
    EXPECT_STREQ(noFinger.GetMessage(), "No Finger found in the image.\nx");
    EXPECT_EQ(noFinger.GetCode(), -15);
    EXPECT_STREQ(noFinger.GetFile(), "Unknown");
    EXPECT_EQ(noFinger.GetLine(), -1);

    const ClException bitmap("Bitmap invalid", ZRC_ERROR_BITMAP_PTR, false, "Bitmap.cpp", 17);
    EXPECT_STREQ(bitmap.what(), "The input image is not valid.\nBitmap invalid");
    EXPECT_STREQ(bitmap.GetFile(), "Bitmap.cpp");
    EXPECT_EQ(bitmap.GetLine(), 17);

    // A code without a row still builds a text, headed by the unknown sentence.
    const ClException filter("Filter failed", -6);
    EXPECT_STREQ(filter.GetMessage(), "Unknown error code.\nFilter failed");
    EXPECT_EQ(filter.GetCode(), -6);
}

TEST(ClException, WhatAndGetMessageGiveTheSameTextThroughEveryBase)
{
    const ClExRange range("Value out of range", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    const std::exception& asStd = range;
    const ClVelmoranException& asVelmoran = range;
    EXPECT_STREQ(asStd.what(), "One of the parameters is out of range.\nValue out of range");
    EXPECT_EQ(asStd.what(), range.GetMessage());
    EXPECT_EQ(asVelmoran.GetMessage(), range.GetMessage());
}

TEST(ClExVelmoran, RepeatsTheRowsSentenceOnTwoLines)
{
    const ClExVelmoran invalid(ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_STREQ(invalid.GetMessage(), "One(or more) parameter(s) is(are) invalid.\n"
                                       "One(or more) parameter(s) is(are) invalid.");
    EXPECT_EQ(invalid.GetCode(), -44);

    const ClExVelmoran unknown(-6, "Filter.h", 3);
    EXPECT_STREQ(unknown.GetMessage(), "Unknown error code.\nUnknown error code.");
    EXPECT_STREQ(unknown.GetFile(), "Filter.h");
    EXPECT_EQ(unknown.GetLine(), 3);
}

TEST(ClException, CopyOwnsItsTextAndOutlivesTheOriginal)
{
    auto original = std::make_unique<ClException>("remark", -15, false, "Unit.cpp", 5);
    const ClException copy(*original);
    EXPECT_NE(copy.GetMessage(), original->GetMessage());
    original.reset();
    EXPECT_STREQ(copy.GetMessage(), "No Finger found in the image.\nremark");
    EXPECT_EQ(copy.GetCode(), -15);
    EXPECT_STREQ(copy.GetFile(), "Unit.cpp");
    EXPECT_EQ(copy.GetLine(), 5);

    // Derived classes copy through the same constructor.
    auto velmoran = std::make_unique<ClExVelmoran>(-701);
    const ClExVelmoran velmoranCopy(*velmoran);
    velmoran.reset();
    EXPECT_STREQ(velmoranCopy.GetMessage(),
                 "The pointer is bad or invalid.\nThe pointer is bad or invalid.");
}

TEST(ClException, AssignmentTakesAPrivateCopyOfEverything)
{
    ClException target("old", -10);
    {
        const ClException source("new", -43, false, "Handle.cpp", 99);
        target = source;
        EXPECT_NE(target.GetMessage(), source.GetMessage());
    }
    EXPECT_STREQ(target.GetMessage(),
                 "The handle parameter is not a valid handle for that function.\nnew");
    EXPECT_EQ(target.GetCode(), -43);
    EXPECT_STREQ(target.GetFile(), "Handle.cpp");
    EXPECT_EQ(target.GetLine(), 99);

    ClException& self = target;
    target = self;
    EXPECT_STREQ(target.GetMessage(),
                 "The handle parameter is not a valid handle for that function.\nnew");
    EXPECT_EQ(target.GetCode(), -43);
}

TEST(ClExSystem, LeadsWithTheSystemsSentenceForErrno)
{
    for (int nError : {ENOENT, EACCES, ENOMEM})
    {
        errno = nError;
        const ClExSystem failure("Conversions Error");
        EXPECT_EQ(failure.GetCode(), ZRC_ERROR_FROM_SYSTEM_FUNCTION);
        EXPECT_EQ(std::string(failure.GetMessage()),
                  SystemSentence(nError) + "\nConversions Error");
    }
}

TEST(ClExDynamicLibraryLoadFail, CarriesItsOwnCodeAndTheNameAsRemark)
{
    for (int32_t nCode : {ZRC_ERROR_FILE_OPEN_FAIL, ZRC_ERROR_IO, ZRC_ERROR_UNKNOWN_PARAMETER})
    {
        errno = ENOENT;
        const ClExDynamicLibraryLoadFail failure("libVelmoranLoggingFacility.so", nCode);
        EXPECT_EQ(failure.GetCode(), nCode);
        EXPECT_EQ(std::string(failure.GetMessage()),
                  SystemSentence(ENOENT) + "\nlibVelmoranLoggingFacility.so");
    }
}

TEST(ClException, EveryDerivedClassIsCaughtAsTheBase)
{
    const auto codeCaught = [](auto&& raise) -> int32_t
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
    EXPECT_EQ(codeCaught([] { throw ClException("x", -15); }), -15);
    EXPECT_EQ(codeCaught([] { SENTIVO_THROW("x", -37); }), -37);
    EXPECT_EQ(codeCaught([] { SENTIVO_THROW_CODE(-42); }), -42);
    EXPECT_EQ(codeCaught([] { SENTIVO_THROW_BAD_ALLOC(); }), -102);
    EXPECT_EQ(codeCaught([] { throw ClExRange("Value out of range", -35); }), -35);
    EXPECT_EQ(codeCaught([] { throw ClExSystem("call"); }), -105);
    EXPECT_EQ(codeCaught([] { throw ClExDynamicLibraryLoadFail("lib", -206); }), -206);
    EXPECT_EQ(codeCaught([] { throw ClExStream("stream", -39); }), -39);
    EXPECT_EQ(codeCaught([] { throw ClExStreamUnexpectedEnd("Unexpected end of stream", -201); }),
              -201);

    // The narrower handlers tell the kinds apart.
    EXPECT_THROW(throw ClExStreamUnexpectedEnd("end", -201), ClExStream);
    EXPECT_THROW(throw ClExDynamicLibraryLoadFail("lib", -200), ClExSystem);
}

TEST(ClException, ThrowHelpersRecordTheSourcePosition)
{
    bool bCaught = false;
    int32_t nLine = 0;
    try
    {
        nLine = __LINE__ + 1;
        SENTIVO_THROW_BAD_ALLOC();
    }
    catch (const ClExBadAlloc& e)
    {
        bCaught = true;
        EXPECT_STREQ(e.GetMessage(), "Memory allocation failed or given mem-block too small.\n"
                                     "Memory allocation failed");
        EXPECT_STREQ(e.GetFile(), __FILE__);
        EXPECT_EQ(e.GetLine(), nLine);
    }
    EXPECT_TRUE(bCaught);
}

TEST(CXSystemException, DescribesItsErrorNumberWithTheSystemsSentence)
{
    const Vlm::CXSystemException failure(EACCES);
    EXPECT_EQ(failure.GetError(), EACCES);
    EXPECT_EQ(std::string(failure.GetDescription()), SystemSentence(EACCES));
    EXPECT_STREQ(failure.what(), failure.GetDescription());
    EXPECT_STREQ(failure.GetMessage(), failure.GetDescription());

    const Vlm::CXSystemSpecificException specific(ENOMEM);
    const Vlm::CXSystemException& asBase = specific;
    EXPECT_EQ(asBase.GetError(), ENOMEM);
    EXPECT_EQ(std::string(asBase.what()), SystemSentence(ENOMEM));
}
