#include "sdk/DynamicLibraryLoader.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <new>

ClDynamicLibrary::~ClDynamicLibrary()
{
    try
    {
        Unload();
    }
    catch (const ClException&)
    {
        // A destructor must not throw; the module stays mapped.
    }
    delete[] m_szName;
}

void ClDynamicLibrary::Load(const char* szName)
{
    const char* szShown = szName != nullptr ? szName : "(process)";
    void* hModule = dlopen(szName, szName != nullptr ? RTLD_NOW | RTLD_LOCAL : RTLD_NOW);
    if (hModule == nullptr)
    {
        errno = ENOENT;
        throw ClExDynamicLibraryLoadFail(szShown, ZRC_ERROR_FILE_OPEN_FAIL, __FILE__, __LINE__);
    }
    const size_t nSize = std::strlen(szShown) + 1;
    char* szCopy = new (std::nothrow) char[nSize];
    if (szCopy == nullptr)
    {
        dlclose(hModule);
        SENTIVO_THROW_BAD_ALLOC();
    }
    std::memcpy(szCopy, szShown, nSize);
    Unload();
    m_hModule = hModule;
    delete[] m_szName;
    m_szName = szCopy;
}

void* ClDynamicLibrary::LookUp(const char* szSymbol) const
{
    return m_hModule != nullptr ? dlsym(m_hModule, szSymbol) : nullptr;
}

void ClDynamicLibrary::Unload()
{
    if (m_hModule == nullptr)
        return;
    if (dlclose(m_hModule) != 0)
    {
        errno = EINVAL;
        throw ClExDynamicLibraryLoadFail(m_szName, ZRC_ERROR_IO, __FILE__, __LINE__);
    }
    m_hModule = nullptr;
    delete[] m_szName;
    m_szName = nullptr;
}
