#include "render/placed_string.h"

#include <cmath>

#include "layout/line_ends.h"
#include "layout/read_back.h"
#include "paths/path_random.h"
#include "platform/conversions.h"
#include "render/path_binding.h"

namespace captionfx {
namespace {

/// Where a character stands, in the string's own frame.
CharPlacement PlacementOf(const FrameTitle& title, const MetaString& string, int32_t pass, int32_t character) {
    CharPlacement placement{.X = 0, .Y = 0, .ScaleX = 1, .ScaleY = 1, .Rotation = 0, .Alpha = 0};
    if (IsLineEnd(string.Characters, character)) return placement;
    if (string.PathObject) {
        string.PathObject->CalcCharacter(pass, character, string.PathProgress, &placement);
        return placement;
    }
    const TitleRectF rect = CharRect(string, character, ScaleOf(title.Settings));
    placement.X = rect.x;
    placement.Y = rect.y;
    placement.Alpha = 255;
    return placement;
}

/// Turns a position about the string's centre of rotation.
void Turn(const MetaString& string, CharPlacement& placement) {
    if (string.RotateDegree == 0) return;
    const float c = string.RotateCos, s = string.RotateSin, cx = string.OriginX, cy = string.OriginY;
    const float x = placement.X, y = placement.Y;
    placement.X = (x - cx) * c + (y - cy) * s + cx;
    placement.Y = (y - cy) * c - (x - cx) * s + cy;
}

bool IsTransformed(const FrameTitle& title, const CharPlacement& placement) {
    return title.Settings.GlyphCacheEnabled == 0 || placement.ScaleX != 1 || placement.ScaleY != 1 ||
           placement.Rotation != 0;
}

bool IsSeen(const CharPlacement& placement) {
    return placement.Alpha > 0 && std::isfinite(placement.X) && std::isfinite(placement.Y);
}

/// The pixels that a picture at (x, y) may touch.
TitleRect Touched(float x, float y, const GlyphBitmap& bitmap) {
    const auto floored = [](float v) { return ToInt32(std::floor(static_cast<double>(v))); };
    const auto raised = [](float v) { return ToInt32(std::ceil(static_cast<double>(v))); };
    return {floored(x), floored(y), raised(x + static_cast<float>(bitmap.Width)),
            raised(y + static_cast<float>(bitmap.Height))};
}

}  // namespace

PlacedString::PlacedString(const FrameTitle& title, MetaString& string, const TitleRect& clip)
    : title_(title), string_(string), clip_(clip) {}

void PlacedString::PlacePass(int32_t pass) {
    SeedPathRandom(1);
    for (int32_t i = 0; i < CountOf(string_.Characters); ++i) {
        CharPlacement placement = PlacementOf(title_, string_, pass, i);
        const bool isTransformed = IsTransformed(title_, placement);
        Turn(string_, placement);
        if (!IsSeen(placement)) continue;
        if (!isTransformed && IsOutside(At(string_.GlyphLayersList, i), placement)) continue;
        placed_.push_back({i, placement, isTransformed, {}});
    }
}

bool PlacedString::IsOutside(GlyphLayers& layers, const CharPlacement& placement) const {
    for (const GlyphBitmap* layer : {&layers.Shadow, &layers.Border, &layers.Face}) {
        if (layer->IsAbsent()) continue;
        if (MayTouch(*layer, placement.X + layer->X, placement.Y + layer->Y, clip_)) return false;
    }
    for (GlyphBitmap* layer : {&layers.Shadow, &layers.Border, &layers.Face}) layer->Still.Forget();
    return true;
}

void PlacedString::CollectBuilds(std::vector<LayerBuild>& builds) {
    for (PlacedCharacter& placed : placed_) {
        if (placed.IsTransformed) builds.push_back(BuildOf(placed));
    }
}

void PlacedString::MarkDirty() {
    for (const PlacedCharacter& placed : placed_) MarkDirty(LayersOf(placed), placed.Placement);
}

std::vector<PlaneLayer> PlacedString::Layers(size_t& stillBytes) {
    std::vector<PlaneLayer> all;
    all.reserve(placed_.size() * kPlaneCount);
    for (PlacedCharacter& placed : placed_) {
        GlyphLayers& layers = LayersOf(placed);
        const CharPlacement& at = placed.Placement;
        const auto add = [&](GlyphBitmap& layer, PlaneIndex plane) {
            std::optional<PlacedLayer> seen = PlaceLayer(layer, at.X + layer.X, at.Y + layer.Y, at.Alpha, clip_);
            if (!seen) return layer.Still.Forget();
            if (!placed.IsTransformed) layer.Still.Note(*seen, stillBytes);
            all.push_back({*seen, plane});
        };
        add(layers.Shadow, kShadowPlane);
        add(layers.Border, kBorderPlane);
        add(layers.Face, kFacePlane);
    }
    return all;
}

void PlacedString::DrawBand(const TitleRect& band) const {
    for (const PlacedCharacter& placed : placed_) DrawLayers(LayersOf(placed), placed.Placement, band);
}

void PlacedString::DrawOneByOne() {
    for (PlacedCharacter& placed : placed_) {
        if (placed.IsTransformed) Build(title_, BuildOf(placed));
        DrawLayers(LayersOf(placed), placed.Placement, clip_);
        MarkDirty(LayersOf(placed), placed.Placement);
        placed.Fresh.FreePixels();
    }
}

LayerBuild PlacedString::BuildOf(PlacedCharacter& placed) const {
    const float widthScale = At(string_.Characters, placed.Character).WidthScale;
    return {.String = &string_,
            .Character = placed.Character,
            .Layers = &placed.Fresh,
            .Transform = {.ScaleX = placed.Placement.ScaleX * widthScale,
                          .ScaleY = placed.Placement.ScaleY,
                          .RotationDeg = string_.RotateDegree + placed.Placement.Rotation},
            .Use = CacheUse::kPassing};
}

const GlyphLayers& PlacedString::LayersOf(const PlacedCharacter& placed) const {
    return placed.IsTransformed ? placed.Fresh : At(string_.GlyphLayersList, placed.Character);
}

GlyphLayers& PlacedString::LayersOf(PlacedCharacter& placed) {
    return placed.IsTransformed ? placed.Fresh : At(string_.GlyphLayersList, placed.Character);
}

void PlacedString::DrawLayers(const GlyphLayers& layers, const CharPlacement& placement, const TitleRect& band) const {
    const auto draw = [&](uint32_t* plane, const GlyphBitmap& layer) {
        DrawGlyphBitmap({plane, title_.Settings.Width, title_.Settings.Height}, band, layer, placement.X + layer.X,
                        placement.Y + layer.Y, placement.Alpha, title_.Kernels());
    };
    draw(string_.StringPlanes.ShadowPlane, layers.Shadow);
    draw(string_.StringPlanes.BorderPlane, layers.Border);
    draw(string_.StringPlanes.FacePlane, layers.Face);
}

void PlacedString::MarkDirty(const GlyphLayers& layers, const CharPlacement& placement) {
    for (const GlyphBitmap* layer : {&layers.Shadow, &layers.Border, &layers.Face}) {
        const float x = placement.X + layer->X, y = placement.Y + layer->Y;
        if (layer->IsAbsent() || !MayTouch(*layer, x, y, clip_)) continue;
        const TitleRect touched = Touched(x, y, *layer);
        string_.DirtyRect = Union(string_.DirtyRect, Intersection(touched, clip_));
    }
}

std::vector<PlacedString> PlaceStrings(const FrameTitle& title, const TitleRect& clip) {
    std::vector<PlacedString> placed;
    placed.reserve(title.Strings.size());
    for (MetaString& string : title.Strings) {
        string.DirtyRect = {};
        PlacedString& here = placed.emplace_back(title, string, clip);
        if (TextOf(string.PathID).empty()) continue;
        EnsureStringPath(title.Paths, title.Settings, string);
        const int32_t passCount = title.Paths.GetPassCount(TextOf(string.PathID));
        for (int32_t pass = 0; pass < passCount; ++pass) here.PlacePass(pass);
    }
    return placed;
}

void BuildLayers(const FrameTitle& title, std::vector<PlacedString>& strings) {
    std::vector<LayerBuild> builds;
    for (PlacedString& string : strings) string.CollectBuilds(builds);
    BuildAll(title, builds);
    for (PlacedString& string : strings) string.MarkDirty();
}

}  // namespace captionfx
