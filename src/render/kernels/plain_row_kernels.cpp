#include "render/kernels/pixel_rules.h"
#include "render/kernels/row_kernels.h"

namespace captionfx {
namespace {

void PlaceCoverage(uint32_t* target, const uint8_t* upper, const uint8_t* lower, size_t count,
                   const CoveragePlacement& p) {
    for (size_t i = 0; i < count; ++i) {
        const uint8_t *const above = upper + i, *const here = lower + i;
        const uint32_t coverage = (above[-1] * p.W00 + above[0] * p.W10 + here[-1] * p.W01 + here[0] * p.W11) >> 16U;
        const uint32_t a = coverage * (p.Alpha + 1) >> 8U;
        if (a != 0) target[i] = PlacedOver(target[i], ColorTimesCoverage(p.Color, a), a);
    }
}

/// Replaces each destination pixel by Blend(source pixel, destination pixel).
template <uint32_t (*Blend)(uint32_t, uint32_t)>
void BlendRow(uint32_t* destination, const uint32_t* source, size_t count) {
    for (size_t i = 0; i < count; ++i) destination[i] = Blend(source[i], destination[i]);
}

template <uint32_t (*Change)(uint32_t)>
void ChangeRow(uint32_t* pixels, size_t count) {
    for (size_t i = 0; i < count; ++i) pixels[i] = Change(pixels[i]);
}

}  // namespace

const RowKernels& PlainRowKernels() {
    static constexpr RowKernels kPlain{.PlaceCoverage = PlaceCoverage,
                                       .MergeFaceOverBorder = BlendRow<FaceOverBorder>,
                                       .CompositeStraight = BlendRow<OverStraight<false>>,
                                       .CompositePremultiplied = BlendRow<OverStraight<true>>,
                                       .CompositePremultipliedOnto = BlendRow<OverPremultiplied>,
                                       .Premultiply = ChangeRow<Premultiplied>,
                                       .Unpremultiply = ChangeRow<Unpremultiplied>};
    return kPlain;
}

}  // namespace captionfx
