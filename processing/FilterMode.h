#pragma once
// The directions in which a neighbourhood filter's window extends, shared by
// the functor line and the filter line of filters.
#include <cstdint>

enum EFilterMode : int32_t
{
    eModeX = 1,             // along the row
    eModeY = 2,             // down the column
    eModeXY = 3,            // both, as a separable box
    eModeDirected = 8,      // along the per-pixel step (Dx, Dy)
    eModeDirectedOrtho = 16 // along (Dx, -Dy)
};

// Texts of the mode values in the "nMode" enumeration parameters.
struct ClFilterModeEntry
{
    int32_t nValue;
    const char* szText;
};
inline constexpr ClFilterModeEntry kFilterModeEntries[] = {
    {eModeX, "Mode X"},
    {eModeY, "Mode Y"},
    {eModeXY, "Mode XY"},
    {eModeDirected, "MODE_DIRECTED"},
    {eModeDirectedOrtho, "MODE_DIRECTED_ORTHO"}};

// Code of an unknown mode. It has no row in the error table, so its text is
// that of an unknown code.
inline constexpr int32_t kErrorUnknownFilterMode = -6;
