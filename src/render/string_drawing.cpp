#include "render/string_drawing.h"

#include <cmath>

#include "layout/line_ends.h"
#include "layout/read_back.h"
#include "paths/path_random.h"
#include "platform/conversions.h"
#include "render/glyph_layers.h"
#include "render/path_binding.h"
#include "render/plane_drawing.h"
#include "render/plane_ops.h"

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

/// The pixels that a picture at (x, y) may touch.
TitleRect Touched(float x, float y, const GlyphBitmap& bitmap) {
    const auto floored = [](float v) { return ToInt32(std::floor(static_cast<double>(v))); };
    const auto raised = [](float v) { return ToInt32(std::ceil(static_cast<double>(v))); };
    return {floored(x), floored(y), raised(x + static_cast<float>(bitmap.Width)),
            raised(y + static_cast<float>(bitmap.Height))};
}

/// One string in one frame.
class StringDrawing {
public:
    StringDrawing(const FrameTitle& title, MetaString& string, const TitleRect& clip)
        : title_(title), string_(string), clip_(clip) {}

    void DrawPass(int32_t pass) {
        SeedPathRandom(1);
        for (int32_t i = 0; i < CountOf(string_.Characters); ++i) {
            CharPlacement placement = PlacementOf(title_, string_, pass, i);
            const bool isTransformed = IsTransformed(title_, placement);
            Turn(string_, placement);
            const bool isSeen = placement.Alpha > 0 && std::isfinite(placement.X) && std::isfinite(placement.Y);
            if (!isSeen) continue;
            if (isTransformed) {
                DrawFresh(i, placement);
            } else {
                DrawLayers(At(string_.GlyphLayersList, i), placement);
            }
        }
    }

private:
    /// Layers for this frame alone.
    void DrawFresh(int32_t i, const CharPlacement& placement) {
        const float widthScale = At(string_.Characters, i).WidthScale;
        GlyphLayers layers;
        BuildGlyphLayers(title_.Glyphs(), title_.Ops, string_, i, layers,
                         {.ScaleX = placement.ScaleX * widthScale,
                          .ScaleY = placement.ScaleY,
                          .RotationDeg = string_.RotateDegree + placement.Rotation});
        DrawLayers(layers, placement);
    }

    void DrawLayers(const GlyphLayers& layers, const CharPlacement& placement) {
        DrawLayer(string_.StringPlanes.ShadowPlane, layers.Shadow, placement);
        DrawLayer(string_.StringPlanes.BorderPlane, layers.Border, placement);
        DrawLayer(string_.StringPlanes.FacePlane, layers.Face, placement);
    }

    void DrawLayer(uint32_t* plane, const GlyphBitmap& layer, const CharPlacement& placement) {
        if (!layer.Pixels) return;
        const float x = placement.X + layer.X, y = placement.Y + layer.Y;
        DrawGlyphBitmap({plane, title_.Settings.Width, title_.Settings.Height}, clip_, layer, x, y, placement.Alpha);
        string_.DirtyRect = Union(string_.DirtyRect, Intersection(Touched(x, y, layer), clip_));
    }

    const FrameTitle& title_;
    MetaString& string_;
    const TitleRect& clip_;
};

/// Zeroes the planes where they may hold anything.
void ClearPlanes(const FrameTitle& title, MetaString& string) {
    const PlaneOps planes(title.Ops, title.Settings.Width);
    for (uint32_t* const plane :
         {string.StringPlanes.ShadowPlane, string.StringPlanes.BorderPlane, string.StringPlanes.FacePlane}) {
        planes.Clear(plane, string.DrawnRect);
    }
    string.DrawnRect = {};
    string.DirtyRect = {};
}

}  // namespace

void RefreshCachedLayers(const FrameTitle& title, MetaString& string) {
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
        BuildGlyphLayers(
            title.Glyphs(), title.Ops, string, i, At(string.GlyphLayersList, i),
            {.ScaleX = At(string.Characters, i).WidthScale, .ScaleY = 1.0F, .RotationDeg = string.RotateDegree});
    }
}

void DrawString(const FrameTitle& title, MetaString& string, const TitleRect& clip) {
    ClearPlanes(title, string);
    if (TextOf(string.PathID).empty()) return;
    EnsureStringPath(title.Paths, title.Settings, string);
    string.DrawnRect = title.Frame();  // until it is known where: a frame that ends early leaves pixels behind
    const int32_t passCount = title.Paths.GetPassCount(TextOf(string.PathID));
    for (int32_t pass = 0; pass < passCount; ++pass) StringDrawing(title, string, clip).DrawPass(pass);
}

}  // namespace captionfx
