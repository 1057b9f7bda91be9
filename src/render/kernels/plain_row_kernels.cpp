#include "render/kernels/pixel_rules.h"
#include "render/kernels/row_kernels.h"

namespace captionfx {
namespace {

void PlaceRow(uint32_t* target, const uint8_t* upper, const uint8_t* lower, const CoverageRows& rows,
              const CoveragePlacement& p) {
    for (int32_t u = rows.Left; u < rows.Right; ++u) {
        const uint32_t a = PlacedCoverage(upper + u, lower + u, p);
        uint32_t& pixel = target[rows.Column + u];
        if (a != 0) pixel = PlacedOver(pixel, ColorTimesCoverage(p.Color, a), a);
    }
}

void PlaceCoverage(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows, const CoveragePlacement& p) {
    const uint8_t* samples = rows.Samples;
    for (int32_t v = 0; v < rows.Count; ++v, target += pitch, samples += rows.Pitch) {
        PlaceRow(target, samples, samples + rows.Pitch, rows, p);
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
