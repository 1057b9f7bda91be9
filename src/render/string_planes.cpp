#include "render/string_planes.h"

#include <limits>
#include <memory>

namespace captionfx {
namespace {

constexpr size_t kPlaneAlignment = 32;

/// The next aligned place at or behind `start` in untyped memory, where pixels begin their life.
uint32_t* AlignedUp(uint8_t* start) {
    void* place = start;
    size_t space = 2 * kPlaneAlignment;
    return static_cast<uint32_t*>(std::align(kPlaneAlignment, kPlaneAlignment, place, space));
}

}  // namespace

StringPlanes ReserveStringPlanes(PageMemory& memory, int32_t width, int32_t height) {
    StringPlanes planes;
    constexpr int32_t kWidest = std::numeric_limits<int32_t>::max() / 4;  // pitches are 32-bit numbers of bytes
    if (width <= 0 || height <= 0 || width > kWidest) return planes;
    const uint64_t pixels = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
    const size_t planeBytes = pixels * 4;
    const auto behind = [&](uint32_t* plane) { return AlignedUp(reinterpret_cast<uint8_t*>(plane) + planeBytes); };
    planes.Block = PageBlock(memory, pixels * 12 + 96);
    if (!planes.Block) return planes;
    planes.ShadowPlane = AlignedUp(planes.Block.data());
    planes.BorderPlane = behind(planes.ShadowPlane);
    planes.FacePlane = behind(planes.BorderPlane);
    return planes;
}

}  // namespace captionfx
