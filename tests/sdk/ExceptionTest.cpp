// The exception tree: texts built from the table's sentence and the remark,
// copies that own their text, and one base that catches every kind.
#include <cerrno>
#include <cstring>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "sdk/Exception.h"

TEST(ClException, EveryKindIsCaughtAsTheBaseWithTheTableSentenceThenTheRemark)
{
    // errno is set before each kind is raised; the system kinds lead with
    // the system's sentence for it.
    const struct
    {
        std::function<void()> raise;
        int nErrno;
        int32_t nCode;
        std::string text;
    } kCases[] = {
        {[] { throw ClException("Bitmap invalid", -10); }, EACCES, -10,
         "The input image is not valid.\nBitmap invalid"},
        // A code without a row leads with the unknown text.
        {[] { SENTIVO_THROW("filter", -6); }, EACCES, -6, "Unknown error code.\nfilter"},
        // A bare code repeats its sentence.
        {[] { SENTIVO_THROW_CODE(-44); }, EACCES, -44,
         "One(or more) parameter(s) is(are) invalid.\nOne(or more) parameter(s) is(are) invalid."},
        {[] { throw ClExStreamUnexpectedEnd("end", -201); }, EACCES, -201,
         "Unexpected end of file.\nend"},
        {[] { throw ClExSystem("Conversions Error"); }, EACCES, -105,
         std::string(std::strerror(EACCES)) + "\nConversions Error"},
        {[] { throw ClExDynamicLibraryLoadFail("libVlm.so", -200); }, ENOENT, -200,
         std::string(std::strerror(ENOENT)) + "\nlibVlm.so"},
    };
    for (const auto& expected : kCases)
    {
        try
        {
            errno = expected.nErrno;
            expected.raise();
            ADD_FAILURE() << expected.text;
        }
        catch (const ClException& e)
        {
            EXPECT_EQ(e.GetCode(), expected.nCode);
            EXPECT_EQ(e.GetMessage(), expected.text);
            EXPECT_STREQ(e.what(), e.GetMessage());
        }
    }
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

TEST(ClException, CopiesOwnTheirTextAndOutliveTheOriginal)
{
    ClException* pOriginal = new ClExRange("Value out of range", -35, false, "Unit.cpp", 7);
    const ClException copy(*pOriginal);
    ClException assigned("old", -10);
    assigned = *pOriginal;
    EXPECT_NE(copy.GetMessage(), pOriginal->GetMessage());
    EXPECT_NE(assigned.GetMessage(), pOriginal->GetMessage());
    delete pOriginal;
    ClException& self = assigned;
    assigned = self;
    for (const ClException* p : {&copy, static_cast<const ClException*>(&assigned)})
    {
        EXPECT_STREQ(p->GetMessage(), "One of the parameters is out of range.\nValue out of range");
        EXPECT_EQ(p->GetCode(), -35);
        EXPECT_STREQ(p->GetFile(), "Unit.cpp");
        EXPECT_EQ(p->GetLine(), 7);
    }
}

TEST(ClException, SystemSpecificKindCarriesItsErrorNumber)
{
    const Vlm::CXSystemSpecificException specific(ENOMEM);
    EXPECT_EQ(specific.GetError(), ENOMEM);
    EXPECT_STREQ(specific.what(), std::strerror(ENOMEM));
}
