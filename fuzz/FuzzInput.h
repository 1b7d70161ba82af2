#pragma once
// Shared by the fuzz targets: one initialised SDK and one handle for the
// whole run, as a long-lived scanner application holds them.
#include <cstdlib>

#include "sentivo/sentivo.h"

namespace SentivoFuzz
{

inline SentivoHandle Handle()
{
    static SentivoHandle hHandle = []
    {
        SentivoHandle h = nullptr;
        if (SentivoInitialize(nullptr) != ZRC_SUCCESS || SentivoCreateHandle(&h) != ZRC_SUCCESS)
            std::abort();
        return h;
    }();
    return hHandle;
}

} // namespace SentivoFuzz
