// ImageUtilityOps: the image operations behind a frame. The library carries them; a host may put a module of its own
// beside the library, "ImageUtility.dll" or "libImageUtility.so", whose export `GetImageUtility` takes nothing and
// returns an object with this table, and whose export `ReleaseImageUtility` is given that object at the end of the
// title.
//
// Pixels are 32 bits, blue, green, red, alpha in memory. Each pointer names the first pixel of a rectangle; width and
// height are the rectangle's, pitch is the distance of its rows in bytes. Source and destination do not overlap. With
// MaxThreads of 2 and more the operations are called on several threads at once, on pixels that do not overlap;
// composites and the changes by alpha then get a rectangle in pieces.
#pragma once

#include <cstdint>

namespace captionfx {

class ImageUtilityOps {
public:
    /// The first call, once.
    virtual void AttachImageUtility() noexcept = 0;

    /// Source of straight alpha over a destination of straight alpha.
    virtual void CompositeStraight(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                   int32_t pitch) noexcept = 0;

    /// Premultiplied source over a destination of straight alpha.
    virtual void CompositePremultiplied(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                        int32_t pitch) noexcept = 0;

    /// Premultiplied source over a premultiplied destination.
    virtual void CompositePremultipliedOnto(uint32_t* destination, const uint32_t* source, int32_t width,
                                            int32_t height, int32_t pitch) noexcept = 0;

    /// Converts a colour for AYUV pixels: luma and the two colour differences.
    virtual void RgbToYuv(uint8_t red, uint8_t green, uint8_t blue, uint8_t* first, uint8_t* second,
                          uint8_t* third) noexcept = 0;

    /// Divides colour by alpha.
    virtual void Unpremultiply(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept = 0;

    /// Multiplies colour by alpha.
    virtual void Premultiply(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept = 0;

    /// The quick blur of a layer without row padding, straight alpha; `radius` in pixels, whole or not. Pixels farther
    /// than the radius rounded up have no say.
    virtual void BlurFast(uint32_t* pixels, int32_t width, int32_t height, float radius) noexcept = 0;

    /// A filter in place, straight alpha.
    virtual void PlaneFilter(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept = 0;

    /// The smooth blur of a layer; as BlurFast.
    virtual void BlurSmooth(uint32_t* pixels, int32_t width, int32_t height, float radius) noexcept = 0;

protected:
    ~ImageUtilityOps() = default;  // not virtual: the table must be the same for all compilers
};

}  // namespace captionfx
