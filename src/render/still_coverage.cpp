#include "render/still_coverage.h"

#include <new>

#include "render/plane_drawing.h"

namespace captionfx {

void StillCoverage::Note(PlacedLayer& layer, size_t& left) try {
    if (layer.Coverage == nullptr) return;
    const std::array<uint32_t, 4> weights{layer.W00, layer.W10, layer.W01, layer.W11};
    if (weights != weights_) {
        weights_ = weights;
        pixels_.reset();
        return;
    }
    if (!pixels_ && layer.Coverage->Size() <= left) pixels_ = ResampledCoverage(layer);
    if (!pixels_ || pixels_->Size() > left) return pixels_.reset();
    left -= pixels_->Size();
    layer.Owner = pixels_;
    layer.Coverage = pixels_.get();
    layer.W00 = layer.W10 = layer.W01 = 0;
    layer.W11 = kWholeSample;
} catch (const std::bad_alloc&) {
}

}  // namespace captionfx
