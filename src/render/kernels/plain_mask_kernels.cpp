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

ColumnSpan FindSpan(const uint8_t* row, int32_t width) {
    const auto isFilled = [](uint8_t sample) { return sample != 0; };
    const uint8_t* const first = std::find_if(row, row + width, isFilled);
    if (first == row + width) return {};
    const uint8_t* last = row + width - 1;
    while (*last == 0) --last;
    return {static_cast<int32_t>(first - row), static_cast<int32_t>(last - row) + 1};
}

}  // namespace

const MaskKernels& PlainMaskKernels() {
    static constexpr MaskKernels kPlain{.ScaleMask = ScaleMask,
                                        .StampMax = StampMax,
                                        .CoverageOfLevels = CoverageOfLevels,
                                        .TakeMask = TakeMask,
                                        .AddMask = AddMask,
                                        .FindSpan = FindSpan};
    return kPlain;
}

}  // namespace captionfx
