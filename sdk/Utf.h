#pragma once
// The strict UTF-8 / UTF-16 converter of the wide exported functions. Invalid
// UTF-8 or an unpaired surrogate is a conversion failure: ClExSystem
// "Conversions Error" (-105).
#include <memory>

namespace Sentivo
{

// Null in, null out; otherwise a new NUL-terminated text.
std::unique_ptr<char[]> WideToNarrow(const char16_t* szWide);
std::unique_ptr<char16_t[]> NarrowToWide(const char* szNarrow);

// Length in UTF-16 code units, without the terminator.
size_t WideLength(const char16_t* szWide);

} // namespace Sentivo
