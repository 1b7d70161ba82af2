// The error table: every public code once, in the public header's order, with
// its sentence in both widths, also through the exported functions.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <set>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "sdk/ErrorTable.h"
#include "sentivo/sentivo.h"

TEST(ErrorTable, FollowsThePublicHeaderRowForRow)
{
    auto widen = [](const char* sz) { return std::u16string(sz, sz + std::strlen(sz)); };
    // The header lists every code in the table's order; read it as a user's
    // compiler sees it, so that table and header cannot drift apart.
    std::ifstream header(SENTIVO_SOURCE_DIR "/include/sentivo/sentivo_errors.h");
    uint32_t nRow = 0;
    std::set<int32_t> codes;
    for (std::string line; std::getline(header, line);)
    {
        char szName[80];
        long long nValue = 0;
        if (std::sscanf(line.c_str(), "#define %79s (%lld)", szName, &nValue) != 2 &&
            std::sscanf(line.c_str(), "#define %79s %lld", szName, &nValue) != 2)
            continue;
        ASSERT_LT(nRow, Sentivo::g_nErrorTableSize);
        const Sentivo::ErrorTableRow& row = Sentivo::g_ErrorTable[nRow++];
        EXPECT_STREQ(row.szName, szName);
        EXPECT_EQ(row.nCode, nValue) << row.szName;
        EXPECT_TRUE(codes.insert(row.nCode).second) << row.szName << " twice";
        // A sentence of its own in both widths, and the look-up finds this row.
        EXPECT_EQ(std::string(row.szDescription).back(), '.') << row.szName;
        EXPECT_EQ(std::u16string(row.wszDescription), widen(row.szDescription)) << row.szName;
        EXPECT_EQ(std::u16string(row.wszName), widen(row.szName)) << row.szName;
        EXPECT_EQ(SentivoGetErrorDescriptionA(row.nCode), row.szDescription) << row.szName;
        EXPECT_EQ(SentivoGetErrorDescriptionW(row.nCode), row.wszDescription) << row.szName;
    }
    EXPECT_EQ(nRow, 146u);
    EXPECT_EQ(Sentivo::g_nErrorTableSize, 146u);
    EXPECT_EQ(E_INVALIDARG, static_cast<int32_t>(0x80070057u));
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, static_cast<int32_t>(0x8002000Du));
}

TEST(ErrorTable, KeepsTheFixedWordingOfTheCodesCallersMeet)
{
    for (auto [nCode, szText] : std::initializer_list<std::pair<int32_t, const char*>>{
             {-2, "Prior initialization is necessary."},
             {-21, "The size of the finger template is not valid."},
             {-49, "An error occurred in the log function, maybe log full."},
             {-105, "A error has occurred in a system function call. use the system errorfunction "
                    "to get more info."},
             {-769, "Lower scanning region must be covered by the fingerprint. Move finger down."},
             {-799, "Overexposured images have been captured. Reduce ambient illumination."}})
        EXPECT_STREQ(Sentivo::ErrorDescription(nCode), szText) << nCode;

    // -6 is raised by the filter operators yet deliberately has no row.
    for (int32_t nCode : {-6, 1, 424242, INT32_MIN, INT32_MAX})
    {
        EXPECT_STREQ(SentivoGetErrorDescriptionA(nCode), "Unknown error code.") << nCode;
        EXPECT_EQ(std::u16string(SentivoGetErrorDescriptionW(nCode)), u"Unknown error code.")
            << nCode;
    }
}
