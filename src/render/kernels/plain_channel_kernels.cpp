#include "render/kernels/channel_kernels.h"
#include "render/kernels/pixel_placement.h"
#include "render/kernels/pixel_rules.h"

namespace captionfx {
namespace {

void Place(const ChannelPlane& plane, const CoverageRows& rows, const CoveragePlacement& p) {
    const uint8_t* upper = rows.Samples;
    for (int32_t v = 0; v < rows.Count; ++v, upper += rows.Pitch) {
        const ChannelPlane row = plane.From(v, rows.Column);
        for (int32_t u = rows.Left; u < rows.Right; ++u) {
            const uint32_t a = PlacedCoverage(upper + u, upper + rows.Pitch + u, p);
            if (a != 0) row.SetPixel(u, PlacedOver(row.Pixel(u), ColorTimesCoverage(p.Color, a), a));
        }
    }
}

void Resample(uint8_t* out, size_t pitch, const CoverageRows& rows, const CoveragePlacement& p) {
    const uint8_t* upper = rows.Samples;
    for (int32_t v = 0; v < rows.Count; ++v, upper += rows.Pitch, out += pitch) {
        for (int32_t u = rows.Left; u < rows.Right; ++u)
            out[u] = static_cast<uint8_t>(PlacedCoverage(upper + u, upper + rows.Pitch + u, p));
    }
}

/// Calls use(x, merged pixel) for each pixel of a row and leaves the planes 0.
template <class Use>
void MergeRow(const ChannelPlanes& row, int32_t count, Use use) {
    for (int32_t x = 0; x < count; ++x) {
        const uint32_t body = FaceOverBorder(row.Face.Pixel(x), row.Border.Pixel(x));
        use(x, OverPremultiplied(body, row.Shadow.Pixel(x)));
        for (const ChannelPlane* plane : {&row.Face, &row.Border, &row.Shadow}) plane->SetPixel(x, 0);
    }
}

template <uint32_t (*Blend)(uint32_t, uint32_t)>
void Finish(uint32_t* destination, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows, int32_t count) {
    for (int32_t y = 0; y < rows; ++y, destination += pitch) {
        MergeRow(planes.From(y, 0), count,
                 [&](int32_t x, uint32_t pixel) { destination[x] = Blend(pixel, destination[x]); });
    }
}

void Merge(uint32_t* image, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows, int32_t count) {
    for (int32_t y = 0; y < rows; ++y, image += pitch)
        MergeRow(planes.From(y, 0), count, [&](int32_t x, uint32_t pixel) { image[x] = pixel; });
}

}  // namespace

void PlacePixelsPlain(const ChannelPlane& plane, const PixelRows& rows, const CoveragePlacement& placement) {
    ForSamples(rows, [&](int32_t y, int32_t u, auto... samples) {
        const ChannelPlane pixel = plane.From(y, rows.Column + u);
        pixel.SetPixel(0, PlacedPixel(pixel.Pixel(0), placement, samples...));
    });
}

const ChannelKernels& PlainChannelKernels() {
    static constexpr ChannelKernels kPlain{.Place = Place,
                                           .Resample = Resample,
                                           .FinishStraight = Finish<OverStraight<true>>,
                                           .FinishPremultiplied = Finish<OverPremultiplied>,
                                           .Merge = Merge};
    return kPlain;
}

}  // namespace captionfx
