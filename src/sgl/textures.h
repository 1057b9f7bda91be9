// The texture records of one pipeline.
#pragma once

#include <cstdint>
#include <list>

namespace sgl {

/// A picture of the caller's: 32-bit words 0xAARRGGBB, rows of exactly `width` pixels. Pixels are read when a triangle
/// is drawn, so a change of them shows without a call. Sides may be anything; those of 0 or less draw nothing.
struct SGLTexture {
    int32_t height, width;
    int32_t log2Height, log2Width;  ///< For powers of two from 1 to 1024, else 0.
    const uint32_t* pixels;
};

/// Owns the records. Their names are the pipeline's matter.
class TextureManager {
public:
    /// A new record; null for null `pixels` and when memory runs out.
    const SGLTexture* Add(const uint32_t* pixels, int32_t width, int32_t height);

    /// Frees a record; null and unknown ones are ignored.
    void Remove(const SGLTexture* record);

private:
    std::list<SGLTexture> records_;
};

}  // namespace sgl
