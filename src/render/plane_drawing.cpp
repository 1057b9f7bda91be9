#include "render/plane_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "platform/conversions.h"
#include "render/kernels/pixel_placement.h"
#include "render/rect.h"

namespace captionfx {
namespace {

/// A coordinate as the placement uses it: the pixel that it lies in, how far from the pixel before it (above 0, at most
/// 1), and where a picture of some length ends.
struct Placement {
    explicit Placement(float at, int32_t length) {
        const auto whole = static_cast<float>(ToInt32(static_cast<double>(at)));
        const bool isWhole = at == whole;
        First = static_cast<int64_t>(whole) - (at < 0 && !isWhole ? 1 : 0);
        End = First + length + (isWhole ? 0 : 1);
        Fraction = at > 0 ? at - whole : at + 1 - whole;
    }

    int64_t First, End;
    float Fraction;
};

/// A weight, 16.16, cut. The sum of a pixel's four is 65356 at most, not 65536.
uint32_t Weight(float product) {
    return static_cast<uint32_t>(static_cast<double>(product) * 65356.0);
}

/// Where a layer comes to lie in `rect`, in a plane whose first column is the frame's `left`.
PixelRows PixelRowsOf(const PlacedLayer& layer, const TitleRect& rect, int32_t left) {
    return {.Pixels = layer.Bitmap->Pixels.get(),
            .Width = layer.Bitmap->Width,
            .Height = layer.Bitmap->Height,
            .First = static_cast<int32_t>(rect.top - layer.Row),
            .Count = rect.bottom - rect.top,
            .Left = static_cast<int32_t>(rect.left - layer.Column),
            .Right = static_cast<int32_t>(rect.right - layer.Column),
            .Column = static_cast<std::ptrdiff_t>(layer.Column - left)};
}

/// The rows of a layer's coverage that come to lie in `rect`, for a plane whose first column is the frame's `left`.
CoverageRows RowsOf(const PlacedLayer& layer, const TitleRect& rect, int32_t left) {
    const CoverageLayer& coverage = *layer.Coverage;
    const auto v = static_cast<int32_t>(rect.top - layer.Row);
    return {.Samples = coverage.Row(v - 1),
            .Spans = coverage.PlacedSpans(v),
            .Pitch = coverage.Pitch(),
            .Count = rect.bottom - rect.top,
            .Left = static_cast<int32_t>(rect.left - layer.Column),
            .Right = static_cast<int32_t>(rect.right - layer.Column),
            .Column = static_cast<std::ptrdiff_t>(layer.Column - left)};
}

CoveragePlacement PlacementOf(const PlacedLayer& layer) {
    return {.W00 = layer.W00,
            .W10 = layer.W10,
            .W01 = layer.W01,
            .W11 = layer.W11,
            .Alpha = layer.Alpha,
            .Color = layer.Bitmap->Color};
}

void DrawLayer(const PlaneView& plane, const PlacedLayer& layer, const RowKernels& kernels) {
    if (layer.Coverage != nullptr) {
        kernels.PlaceCoverage(plane.Row(layer.Rect.top), plane.Width, RowsOf(layer, layer.Rect, 0), PlacementOf(layer));
        return;
    }
    const CoveragePlacement placement = PlacementOf(layer);
    ForSamples(PixelRowsOf(layer, layer.Rect, 0), [&](int32_t y, int32_t u, auto... samples) {
        uint32_t& pixel = plane.Row(layer.Rect.top + y)[layer.Column + u];
        pixel = PlacedPixel(pixel, placement, samples...);
    });
}

}  // namespace

bool MayTouch(const GlyphBitmap& bitmap, float x, float y, const TitleRect& limit) {
    // As doubles, in which the limits are exact and sums of a float do not lose the margin of 2.
    const auto mayTouch = [](float at, int32_t length, int32_t first, int32_t end) {
        const auto start = static_cast<double>(at);
        return start - 2 < end && start + length + 2 > first;
    };
    return mayTouch(x, bitmap.Width, limit.left, limit.right) && mayTouch(y, bitmap.Height, limit.top, limit.bottom);
}

std::optional<PlacedLayer> PlaceLayer(const GlyphBitmap& bitmap, float x, float y, uint32_t alpha,
                                      const TitleRect& limit) {
    if (bitmap.IsAbsent() || bitmap.Width < 1 || bitmap.Height < 1 || alpha < 1) return std::nullopt;
    if (!std::isfinite(x) || !std::isfinite(y) || !MayTouch(bitmap, x, y, limit)) return std::nullopt;
    const Placement px(x, bitmap.Width), py(y, bitmap.Height);
    const int64_t left = std::max<int64_t>(px.First, limit.left), right = std::min<int64_t>(px.End, limit.right);
    const int64_t top = std::max<int64_t>(py.First, limit.top), bottom = std::min<int64_t>(py.End, limit.bottom);
    if (left >= right || top >= bottom) return std::nullopt;  // far outside not even the fractions make sense
    const auto side = [](int64_t v) { return static_cast<int32_t>(v); };
    const float fx = px.Fraction, fy = py.Fraction;
    return PlacedLayer{.Bitmap = &bitmap,
                       .Coverage = bitmap.Coverage.get(),
                       .Column = px.First,
                       .Row = py.First,
                       .Rect = {side(left), side(top), side(right), side(bottom)},
                       .W00 = Weight(fx * fy),
                       .W10 = Weight((1 - fx) * fy),
                       .W01 = Weight(fx * (1 - fy)),
                       .W11 = Weight((1 - fx) * (1 - fy)),
                       .Alpha = alpha};
}

void DrawLayer(const TileView& tile, const PlacedLayer& layer) {
    const TitleRect rect = Intersection(layer.Rect, tile.Rect);
    if (IsEmpty(rect)) return;
    const ChannelPlane plane = tile.Plane.From(rect.top - tile.Rect.top, 0);
    if (layer.Coverage != nullptr) {
        BestChannelKernels().Place(plane, RowsOf(layer, rect, tile.Rect.left), PlacementOf(layer));
    } else {
        BestPixelPlacement()(plane, PixelRowsOf(layer, rect, tile.Rect.left), PlacementOf(layer));
    }
}

std::shared_ptr<const CoverageLayer> ResampledCoverage(const PlacedLayer& layer) {
    const CoverageLayer& samples = *layer.Coverage;
    const auto pixels = std::make_shared<CoverageLayer>(samples.Width() + 1, samples.Height() + 1);
    CoveragePlacement placement = PlacementOf(layer);
    placement.Alpha = 255;
    BestChannelKernels().Resample(pixels->Row(0), pixels->Pitch(),
                                  {.Samples = samples.Row(-1),
                                   .Spans = samples.PlacedSpans(0),
                                   .Pitch = samples.Pitch(),
                                   .Count = pixels->Height(),
                                   .Left = 0,
                                   .Right = pixels->Width(),
                                   .Column = 0},
                                  placement);
    pixels->FindSpans();
    return pixels;
}

int32_t DrawGlyphBitmap(const PlaneView& plane, const TitleRect& clip, const GlyphBitmap& bitmap, float x, float y,
                        uint32_t alpha, const RowKernels& kernels) {
    if (plane.Pixels == nullptr || bitmap.IsAbsent()) return 0;
    if (plane.Width < 1 || plane.Height < 1 || bitmap.Width < 1 || bitmap.Height < 1 || alpha < 1) return 0;
    const TitleRect limit = Intersection(clip, {0, 0, plane.Width, plane.Height});
    const std::optional<PlacedLayer> layer = PlaceLayer(bitmap, x, y, alpha, limit);
    if (layer) DrawLayer(plane, *layer, kernels);
    return 1;
}

void MergeFaceOverBorder(const PlaneView& border, const PlaneView& face, const TitleRect& rect,
                         const RowKernels& kernels) {
    if (IsEmpty(rect)) return;
    for (int32_t y = rect.top; y < rect.bottom; ++y) {
        kernels.MergeFaceOverBorder(border.Row(y) + rect.left, face.Row(y) + rect.left,
                                    static_cast<size_t>(rect.right - rect.left));
    }
}

}  // namespace captionfx
