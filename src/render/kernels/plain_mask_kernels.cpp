#include <algorithm>

#include "render/kernels/mask_kernels.h"

namespace captionfx {
namespace {

void ScaleMask(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha) {
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(mask[i] * (alpha + 1) / 256);
}

void StampMax(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha) {
    for (size_t i = 0; i < count; ++i) out[i] = std::max(out[i], static_cast<uint8_t>(mask[i] * (alpha + 1) / 256));
}

void CoverageOfLevels(uint8_t* out, const uint8_t* mask, size_t count, uint32_t factor) {
    for (size_t i = 0; i < count; ++i) out[i] = mask[i] == 0 ? uint8_t{0} : static_cast<uint8_t>(mask[i] * factor - 1);
}

void TakeMask(uint8_t* out, const uint8_t* mask, size_t count) {
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(out[i] - mask[i]);
}

void AddMask(uint8_t* out, const uint8_t* mask, size_t count) {
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(std::min(out[i] + mask[i], 255));
}

}  // namespace

const MaskKernels& PlainMaskKernels() {
    static constexpr MaskKernels kPlain{.ScaleMask = ScaleMask,
                                        .StampMax = StampMax,
                                        .CoverageOfLevels = CoverageOfLevels,
                                        .TakeMask = TakeMask,
                                        .AddMask = AddMask};
    return kPlain;
}

}  // namespace captionfx
