// The three frame-sized planes of a string, in one block of page-granular memory.
#pragma once

#include <cstdint>

#include "platform/page_memory.h"

namespace captionfx {

/// Planes of width times height pixels, row pitch width times 4, colour multiplied by alpha, each aligned to 32 bytes.
struct StringPlanes {
    PageBlock Block;
    uint32_t* ShadowPlane = nullptr;
    uint32_t* BorderPlane = nullptr;
    uint32_t* FacePlane = nullptr;
};

/// Makes planes of new, zeroed memory. Without a block when the size is not above 0 or the memory cannot be had.
[[nodiscard]] StringPlanes ReserveStringPlanes(PageMemory& memory, int32_t width, int32_t height);

}  // namespace captionfx
