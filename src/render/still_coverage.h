// A layer that does not move lies between the same pixels in every frame: its coverage of them is kept.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "render/coverage_layer.h"

namespace captionfx {

struct PlacedLayer;

/// Of one layer of a character.
class StillCoverage {
public:
    /// What a frame may keep in all, in bytes.
    static constexpr size_t kMostBytes = size_t{16} << 20U;

    /// Notes how the layer is placed in this frame. If it was so in the last one, its coverage of pixels takes the
    /// place of its samples, as long as that is within what is `left` to keep. Memory that runs out only keeps nothing.
    void Note(PlacedLayer& layer, size_t& left);

    /// To be called when the layer is not seen.
    void Forget() { pixels_.reset(); }

private:
    std::array<uint32_t, 4> weights_{};
    std::shared_ptr<const CoverageLayer> pixels_;
};

}  // namespace captionfx
