#include "sdk/MemoryProbe.h"

#include <cerrno>
#include <sys/uio.h>
#include <unistd.h>

namespace Sentivo
{

namespace
{

// Where the kernel refuses process_vm_* on the own process (a sandbox's
// system-call filter), a pipe does the same job: write() and read() also
// answer EFAULT instead of faulting.
bool PipeCopy(const void* pSource, void* pTarget, size_t nSize)
{
    int fds[2];
    if (pipe(fds) != 0)
        return false;
    bool bOk = write(fds[1], pSource, nSize) == static_cast<ssize_t>(nSize) &&
               read(fds[0], pTarget, nSize) == static_cast<ssize_t>(nSize);
    close(fds[0]);
    close(fds[1]);
    return bOk;
}

bool KernelCopy(const void* pSource, void* pTarget, size_t nSize, bool bRemoteIsSource)
{
    iovec local{bRemoteIsSource ? pTarget : const_cast<void*>(pSource), nSize};
    iovec remote{bRemoteIsSource ? const_cast<void*>(pSource) : pTarget, nSize};
    const int nSavedErrno = errno;
    const ssize_t n = bRemoteIsSource ? process_vm_readv(getpid(), &local, 1, &remote, 1, 0)
                                      : process_vm_writev(getpid(), &local, 1, &remote, 1, 0);
    const int nError = errno;
    errno = nSavedErrno;
    if (n == static_cast<ssize_t>(nSize))
        return true;
    if (n < 0 && nError != EFAULT)
        return PipeCopy(pSource, pTarget, nSize);
    return false;
}

} // namespace

bool ProbeRead(const void* pSource, void* pTarget, size_t nSize)
{
    return KernelCopy(pSource, pTarget, nSize, true);
}

bool ProbeWrite(void* pTarget, const void* pSource, size_t nSize)
{
    return KernelCopy(pSource, pTarget, nSize, false);
}

} // namespace Sentivo
