#include "render/string_planes.h"

#include <limits>

namespace captionfx {
namespace {

constexpr uintptr_t kPlaneAlignment = 32;

uint32_t* AlignedUp(uintptr_t address) {
    // The block is untyped memory; its pixels begin their life here.
    return reinterpret_cast<uint32_t*>((address + kPlaneAlignment - 1) / kPlaneAlignment * kPlaneAlignment);
}

}  // namespace

StringPlanes ReserveStringPlanes(PageMemory& memory, int32_t width, int32_t height) {
    StringPlanes planes;
    if (width <= 0 || height <= 0) return planes;
    const uint64_t pixels = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
    if (pixels > (std::numeric_limits<uint64_t>::max() - 96) / 12) return planes;
    const uintptr_t planeBytes = pixels * 4;
    planes.Block = PageBlock(memory, pixels * 12 + 96);
    if (!planes.Block) return planes;
    planes.ShadowPlane = AlignedUp(reinterpret_cast<uintptr_t>(planes.Block.data()));
    planes.BorderPlane = AlignedUp(reinterpret_cast<uintptr_t>(planes.ShadowPlane) + planeBytes);
    planes.FacePlane = AlignedUp(reinterpret_cast<uintptr_t>(planes.BorderPlane) + planeBytes);
    return planes;
}

}  // namespace captionfx
