#pragma once
// A shared library found by name at run time, with its entry points.
#include "sdk/Exception.h"

class ClDynamicLibrary
{
public:
    ClDynamicLibrary() = default;
    ClDynamicLibrary(const ClDynamicLibrary&) = delete;
    ClDynamicLibrary& operator=(const ClDynamicLibrary&) = delete;
    virtual ~ClDynamicLibrary();

    // A null name stands for the process itself (its executable and the
    // libraries it loaded globally). Failure: ClExDynamicLibraryLoadFail -200.
    void Load(const char* szName);
    // The entry point goes to *ppfn first; a missing one throws -206.
    template <typename F> void GetSymbol(F* ppfn, const char* szSymbol)
    {
        *ppfn = reinterpret_cast<F>(LookUp(szSymbol));
        if (*ppfn == nullptr)
            throw ClExDynamicLibraryLoadFail(szSymbol, ZRC_ERROR_UNKNOWN_PARAMETER, __FILE__,
                                             __LINE__);
    }
    // Failure to release: -204.
    void Unload();
    bool IsLoaded() const { return m_hModule != nullptr; }

private:
    void* LookUp(const char* szSymbol) const;

    void* m_hModule = nullptr;
    char* m_szName = nullptr;
};
