#pragma once
// Helpers of the parameter tests: a check of a thrown exception's class, code
// and remark, and the text forms of a parameter.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "parameters/ParameterNumeric.h"
#include "sdk/Exception.h"

// The remark of an exception: the text behind the first line break.
inline std::string Remark(const ClException& e)
{
    const char* szNewLine = std::strchr(e.GetMessage(), '\n');
    return szNewLine != nullptr ? szNewLine + 1 : "";
}

// Expects the statement to throw ExceptionClass with nCode; a null szRemark
// is not compared.
#define EXPECT_THROWS_CODE(statement, ExceptionClass, nCode, szRemark)                             \
    do                                                                                             \
    {                                                                                              \
        bool bThrown = false;                                                                      \
        try                                                                                        \
        {                                                                                          \
            statement;                                                                             \
        }                                                                                          \
        catch (const ExceptionClass& e)                                                            \
        {                                                                                          \
            bThrown = true;                                                                        \
            EXPECT_EQ(e.GetCode(), (nCode));                                                       \
            const char* szExpected = (szRemark);                                                   \
            EXPECT_TRUE(szExpected == nullptr || Remark(e) == szExpected) << Remark(e);            \
        }                                                                                          \
        EXPECT_TRUE(bThrown) << "expected " #ExceptionClass " from " #statement;                   \
    } while (false)

// The value text, or the default text, of a parameter; it must fit and the
// reported size must count the terminator.
inline std::string Text(const ClParameter& parameter, bool bDefault = false)
{
    char szBuffer[400] = "";
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(bDefault ? parameter.GetDefaultText(szBuffer, nSize)
                         : parameter.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, std::strlen(szBuffer) + 1);
    return szBuffer;
}

// A numeric parameter bound to a member of its own.
template <typename T> struct TpBound : TpParameterNumeric<T>
{
    explicit TpBound(T initial = T()) : value(initial) { this->Bind(value); }
    T value;
};
