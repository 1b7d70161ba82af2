#pragma once
// Access to the caller's handle memory that reports a bad address instead of
// faulting: the kernel copies the bytes and answers EFAULT for memory that is
// unmapped or protected.
#include <cstddef>

namespace Sentivo
{

// Copies nSize bytes from pSource to pTarget (our own memory); false when
// pSource cannot be read.
bool ProbeRead(const void* pSource, void* pTarget, size_t nSize);
// Copies nSize bytes from pSource (our own memory) to pTarget; false when
// pTarget cannot be written.
bool ProbeWrite(void* pTarget, const void* pSource, size_t nSize);

} // namespace Sentivo
