// The exception tree: texts built from the table's sentence and the remark,
// copies that own their text, one base that catches every kind.
#include <cerrno>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "sdk/Exception.h"

TEST(ClException, EveryKindIsCaughtAsTheBaseWithTheTableSentenceThenTheRemark)
{
    // errno is set before each kind is raised; the system kinds lead with
    // the system's sentence for it.
    const std::tuple<std::function<void()>, int, int32_t, std::string> kCases[] = {
        {[] { throw ClException("Bitmap invalid", -10); }, EACCES, -10,
         "The input image is not valid.\nBitmap invalid"},
        // A code without a row leads with the unknown text.
        {[] { SENTIVO_THROW("filter", -6); }, EACCES, -6, "Unknown error code.\nfilter"},
        // A bare code repeats its sentence.
        {[] { SENTIVO_THROW_CODE(-44); }, EACCES, -44,
         "One(or more) parameter(s) is(are) invalid.\nOne(or more) parameter(s) is(are) invalid."},
        {[] { SENTIVO_THROW_BAD_ALLOC(); }, EACCES, -102,
         "Memory allocation failed or given mem-block too small.\nMemory allocation failed"},
        {[] { throw ClExStreamUnexpectedEnd("end", -201); }, EACCES, -201,
         "Unexpected end of file.\nend"},
        {[] { throw ClExSystem("Conversions Error"); }, EACCES, -105,
         std::string(std::strerror(EACCES)) + "\nConversions Error"},
        {[] { throw ClExDynamicLibraryLoadFail("libVlm.so", -200); }, ENOENT, -200,
         std::string(std::strerror(ENOENT)) + "\nlibVlm.so"},
    };
    for (const auto& [raise, nErrno, nCode, text] : kCases)
    {
        try
        {
            errno = nErrno;
            raise();
            ADD_FAILURE() << text;
        }
        catch (const ClException& e)
        {
            EXPECT_EQ(e.GetCode(), nCode);
            EXPECT_EQ(e.GetMessage(), text);
            EXPECT_STREQ(e.what(), e.GetMessage());
        }
    }
    EXPECT_THROW(SENTIVO_THROW_BAD_ALLOC(), ClExBadAlloc);
    EXPECT_THROW(throw ClExStreamUnexpectedEnd("end", -201), ClExStream);
    EXPECT_THROW(throw ClExDynamicLibraryLoadFail("lib", -200), ClExSystem);
    const Vlm::CXSystemSpecificException specific(ENOMEM);
    EXPECT_EQ(specific.GetError(), ENOMEM);
    EXPECT_STREQ(specific.what(), std::strerror(ENOMEM));
}

TEST(ClException, CopiesOwnTheirTextAndOutliveTheOriginal)
{
    auto* pOriginal = new ClExRange("Value out of range", -35, false, "Unit.cpp", 7);
    const ClException copy(*pOriginal);
    ClException assigned("old", -10);
    assigned = *pOriginal;
    EXPECT_TRUE(copy.GetMessage() != pOriginal->GetMessage() &&
                assigned.GetMessage() != pOriginal->GetMessage());
    delete pOriginal;
    ClException& self = assigned;
    assigned = self;
    for (const ClException* p : {&copy, static_cast<const ClException*>(&assigned)})
    {
        EXPECT_STREQ(p->GetMessage(), "One of the parameters is out of range.\nValue out of range");
        EXPECT_EQ(p->GetCode(), -35);
        EXPECT_STREQ(p->GetFile(), "Unit.cpp");
    }
}
