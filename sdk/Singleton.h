#pragma once
// The counted process-wide instance of the SDK: the first initialisation
// creates it, the last release deletes it.
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

#include "sdk/Exception.h"

template <typename T> class TpSingleton
{
public:
    virtual ~TpSingleton() = default;

    static T* CreateInstance()
    {
        std::lock_guard<std::mutex> lock(s_Mutex);
        ++s_nInitCount;
        if (s_pInstance == nullptr)
        {
            try
            {
                s_pInstance = new T();
                RegisterAtExit();
                s_pInstance->OnInitialize();
            }
            catch (const ClException& e)
            {
                // Undo the count, then pass on a copy of the exception.
                ReleaseLocked();
                throw ClException(e);
            }
        }
        return s_pInstance;
    }

    static void ReleaseInstance()
    {
        std::lock_guard<std::mutex> lock(s_Mutex);
        ReleaseLocked();
    }

    // Read without the lock: a caller must not race the last release against
    // other calls.
    static uint32_t GetInitCount() { return s_nInitCount.load(std::memory_order_relaxed); }
    static T* GetInstance() { return s_pInstance; }

private:
    static void ReleaseLocked()
    {
        if (s_nInitCount == 0)
            SENTIVO_THROW("No Singleton Instance exist multible delete.",
                          ZRC_ERROR_NOT_INITIALIZED);
        if (--s_nInitCount == 0 && s_pInstance != nullptr)
        {
            s_pInstance->OnUninitialize();
            delete s_pInstance;
            s_pInstance = nullptr;
        }
    }

    // Runs when the process or the library goes away with initialisations
    // still unbalanced.
    static void DestroyAtExit()
    {
        std::lock_guard<std::mutex> lock(s_Mutex);
        if (s_pInstance != nullptr)
        {
            try
            {
                s_pInstance->OnUninitialize();
            }
            catch (...)
            {
                // Nothing can be reported at exit.
            }
            delete s_pInstance;
            s_pInstance = nullptr;
            s_nInitCount = 0;
        }
    }

    static void RegisterAtExit()
    {
        if (!s_bAtExitRegistered)
        {
            s_bAtExitRegistered = std::atexit(&TpSingleton::DestroyAtExit) == 0;
        }
    }

    static inline std::atomic<uint32_t> s_nInitCount{0};
    static inline T* s_pInstance = nullptr;
    static inline std::mutex s_Mutex;
    static inline bool s_bAtExitRegistered = false;
};
