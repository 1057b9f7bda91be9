// The pixels of one character: its face, border and shadow, each a small picture that knows where it lies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "render/still_coverage.h"

namespace captionfx {

/// How layers of one colour are kept.
enum class LayerForm { kPixels, kCoverage };

/// A picture, as 32-bit pixels or, of one colour, as coverage. Without either the layer is absent.
struct GlyphBitmap {
    std::shared_ptr<uint32_t[]> Pixels;  ///< Straight alpha, row pitch Width times 4. Once built, they are only read.
    int32_t Width = 0, Height = 0;
    float X = 0, Y = 0;  ///< Upper left corner from the character's position, pixels.
    std::shared_ptr<const CoverageLayer> Coverage{};
    uint32_t Color = 0;     ///< Of the coverage, alpha 0.
    StillCoverage Still{};  ///< What the frames of a title keep of it.

    [[nodiscard]] bool IsAbsent() const { return !Pixels && !Coverage; }
    void Free() {
        Pixels.reset();
        Coverage.reset();
        Still.Forget();
    }

    /// Bytes of memory that it takes.
    [[nodiscard]] size_t Size() const {
        return Pixels ? PixelCount() * sizeof(uint32_t) : (Coverage ? Coverage->Size() : 0);
    }
    [[nodiscard]] size_t PixelCount() const { return static_cast<size_t>(Width) * static_cast<size_t>(Height); }
};

inline constexpr uint8_t kFaceDirty = 1;
inline constexpr uint8_t kBorderDirty = 2;
inline constexpr uint8_t kShadowDirty = 4;
inline constexpr uint8_t kAllLayersDirty = kFaceDirty | kBorderDirty | kShadowDirty;

/// The layers of one character, and which of them have to be built anew.
struct GlyphLayers {
    GlyphBitmap Face, Border, Shadow;
    uint8_t DirtyMask = kAllLayersDirty;

    void FreePixels() {
        Face.Free();
        Border.Free();
        Shadow.Free();
    }
};

}  // namespace captionfx
