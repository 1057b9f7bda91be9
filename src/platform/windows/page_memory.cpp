#include "platform/windows/page_memory.h"

#include <windows.h>

namespace captionfx {

void* VirtualMemory::Reserve(size_t bytes) noexcept {
    return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void VirtualMemory::Release(void* block, size_t /*bytes*/) noexcept {
    VirtualFree(block, 0, MEM_RELEASE);
}

}  // namespace captionfx
