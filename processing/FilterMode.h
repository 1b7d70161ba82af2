#pragma once
// The directions in which a neighbourhood filter's window extends, shared by
// the functor line and the filter line of filters.
#include <cstdint>

#include "parameters/ParameterContainer.h"

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

// Creates the "nMode" enumeration with the texts of the modes and binds it.
inline void AddFilterModeParameter(ClParameterContainer& container, int32_t& nMode)
{
    TpParameterEnumPointer<int>* pMode = container.AddEnum<int>("nMode");
    for (const ClFilterModeEntry& entry : kFilterModeEntries)
        pMode->AddEntry(entry.nValue, entry.szText);
    pMode->Bind(nMode, ClParameter::eFlagInput);
}
