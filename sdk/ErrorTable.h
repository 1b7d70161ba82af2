#pragma once
// The error table: every code a caller of the library can meet, with its
// description in narrow and wide text. Searched linearly from the first row,
// as the order of the rows is neither that of the codes nor sorted.
#include <cstdint>

namespace Sentivo
{

struct ErrorTableRow
{
    int32_t nCode;
    const char* szDescription;
    const char16_t* wszDescription;
    const char* szName;
    const char16_t* wszName;
};

extern const ErrorTableRow g_ErrorTable[];
extern const uint32_t g_nErrorTableSize;

// Texts given for a code that no row holds.
extern const char* const g_szUnknownError;
extern const char16_t* const g_wszUnknownError;

// Description of the first row with this code, or the unknown-code text.
const char* ErrorDescription(int32_t nCode);
const char16_t* ErrorDescriptionW(int32_t nCode);

} // namespace Sentivo

using Sentivo::ErrorDescription;
using Sentivo::ErrorDescriptionW;
