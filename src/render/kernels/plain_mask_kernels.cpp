#include <algorithm>

#include "render/kernels/mask_kernels.h"

namespace captionfx {
namespace {

/// out = combine(out, mask) for all bytes.
template <class Combine>
void ForBytes(const MaskRows& rows, Combine combine) {
    for (ptrdiff_t y = 0; y < rows.Height; ++y) {
        uint8_t* const out = rows.Out + y * rows.OutPitch;
        const uint8_t* const mask = rows.Mask + y * rows.MaskPitch;
        for (size_t x = 0; x < rows.Width; ++x) out[x] = static_cast<uint8_t>(combine(out[x], mask[x]));
    }
}

void ScaleMask(const MaskRows& rows, uint32_t alpha) {
    ForBytes(rows, [=](uint32_t /*out*/, uint32_t mask) { return mask * (alpha + 1) / 256; });
}

void StampMax(const MaskRows& rows, uint32_t alpha) {
    ForBytes(rows, [=](uint32_t out, uint32_t mask) { return std::max(out, mask * (alpha + 1) / 256); });
}

void CoverageOfLevels(const MaskRows& rows, uint32_t factor) {
    ForBytes(rows, [=](uint32_t /*out*/, uint32_t mask) { return mask == 0 ? 0 : mask * factor - 1; });
}

void TakeMask(const MaskRows& rows) {
    ForBytes(rows, [](uint32_t out, uint32_t mask) { return out - mask; });
}

void AddMask(const MaskRows& rows) {
    ForBytes(rows, [](uint32_t out, uint32_t mask) { return std::min(out + mask, 255U); });
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
