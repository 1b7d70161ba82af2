// The strict converter behind the wide exported functions.
#include <string>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "sdk/Utf.h"

using Sentivo::NarrowToWide;
using Sentivo::WideToNarrow;

TEST(Utf, RoundTripsEveryPlaneAndCallsIllFormedInputAConversionError)
{
    // ASCII, two-byte, three-byte and a four-byte character (a surrogate pair).
    const std::u16string wide = u"nSecurityLevel \u00e9\u20ac\U0001F600";
    const std::string narrow = "nSecurityLevel \xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(std::string(WideToNarrow(wide.c_str()).get()), narrow);
    EXPECT_EQ(std::u16string(NarrowToWide(narrow.c_str()).get()), wide);
    EXPECT_EQ(std::string(WideToNarrow(u"").get()), "");
    EXPECT_TRUE(WideToNarrow(nullptr) == nullptr && NarrowToWide(nullptr) == nullptr);

    // A lone continuation byte, a cut sequence, overlong two- and three-byte
    // forms, an encoded surrogate, a value beyond U+10FFFF, a byte never used.
    for (const char* szBad :
         {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"})
        ExpectThrows<ClExSystem>([&] { NarrowToWide(szBad); }, ZRC_ERROR_FROM_SYSTEM_FUNCTION,
                                 "Conversions Error");
    const char16_t loneHigh[] = {u'a', 0xD800, u'b', 0}, loneLow[] = {0xDC00, 0},
                   highAtEnd[] = {u'x', 0xDBFF, 0};
    for (const char16_t* szBad : {loneHigh, loneLow, highAtEnd})
        EXPECT_THROW(WideToNarrow(szBad), ClExSystem);
}
