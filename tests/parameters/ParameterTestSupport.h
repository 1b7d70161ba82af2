#pragma once
// Assertion helper: runs a statement and checks the ClException it throws,
// its class, its code and the remark line of its text.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "sdk/Exception.h"

// The place-specific remark: the text behind the first line break.
inline std::string Remark(const ClException& e)
{
    const char* szNewLine = std::strchr(e.GetMessage(), '\n');
    return szNewLine != nullptr ? std::string(szNewLine + 1) : std::string();
}

// A null remark is not checked (a bare-code exception repeats its description).
inline void ExpectRemark(const ClException& e, const char* szRemark)
{
    if (szRemark != nullptr)
    {
        EXPECT_EQ(Remark(e), std::string(szRemark));
    }
}

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
            ExpectRemark(e, (szRemark));                                                           \
        }                                                                                          \
        EXPECT_TRUE(bThrown) << "expected " #ExceptionClass " from " #statement;                   \
    } while (false)
