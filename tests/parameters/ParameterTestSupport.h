#pragma once
// Helpers of the parameter tests: the text forms of a parameter and a numeric
// parameter with a member of its own; the headers all of them use.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"

// The value text, or the default text; it must fit, and the reported size
// must count the terminator.
inline std::string Text(const ClParameter& parameter, bool bDefault = false)
{
    char szBuffer[400] = "";
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(bDefault ? parameter.GetDefaultText(szBuffer, nSize)
                         : parameter.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, std::strlen(szBuffer) + 1);
    return szBuffer;
}

template <typename T> struct TpBound : TpParameterNumeric<T>
{
    explicit TpBound(T initial = T()) : value(initial) { this->Bind(value); }
    T value;
};
