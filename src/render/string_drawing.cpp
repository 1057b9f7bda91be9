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

/// Layers of one character to be built.
struct GlyphBuildJob {
    const MetaString* String;
    int32_t Character;
    GlyphLayers* Layers;
    GlyphTransform Transform;
};

/// Builds, and notes a character that only memory was missing for: one without a shape comes out clean, one of a scale
/// that is not above 0 was never to be seen.
void Build(const FrameTitle& title, const GlyphBuildJob& job) {
    BuildGlyphLayers(title.Glyphs(), title.Ops, *job.String, job.Character, *job.Layers, job.Transform);
    const bool isBuildable = job.Transform.ScaleX > 0 && job.Transform.ScaleY > 0;
    if (isBuildable && job.Layers->DirtyMask != 0) title.Cache.HasLostLayers = true;
}

void BuildAll(const FrameTitle& title, const std::vector<GlyphBuildJob>& jobs) {
    title.Workers().Run(CountOf(jobs), [&](int32_t i) { Build(title, At(jobs, i)); });
}

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

/// A character that is seen in this frame. One that is transformed has layers of its own, for this frame alone.
struct PlacedCharacter {
    int32_t Character;
    CharPlacement Placement;  // turned with the string
    bool IsTransformed;
    GlyphLayers Fresh;
};

/// One string in one frame: placed in order, its characters are then drawn in that order, all at once or in bands of
/// rows.
class StringDrawing {
public:
    StringDrawing(const FrameTitle& title, MetaString& string, const TitleRect& clip)
        : title_(title), string_(string), clip_(clip) {}

    /// On the title's thread: effects draw random numbers, in order.
    void PlacePass(int32_t pass) {
        SeedPathRandom(1);
        for (int32_t i = 0; i < CountOf(string_.Characters); ++i) {
            CharPlacement placement = PlacementOf(title_, string_, pass, i);
            const bool isTransformed = IsTransformed(title_, placement);
            Turn(string_, placement);
            if (IsSeen(placement)) placed_.push_back({i, placement, isTransformed, {}});
        }
    }

    /// The layers that this frame needs besides the cached ones. Placing must be done.
    void CollectBuilds(std::vector<GlyphBuildJob>& jobs) {
        for (PlacedCharacter& placed : placed_) {
            if (placed.IsTransformed) jobs.push_back(BuildOf(placed));
        }
    }

    /// Draws the rows of `band`, once the layers are built.
    void DrawBand(const TitleRect& band) const {
        for (const PlacedCharacter& placed : placed_) DrawLayers(LayersOf(placed), placed.Placement, band);
    }

    /// Unites what the characters touch into DirtyRect.
    void MarkDirty() {
        for (const PlacedCharacter& placed : placed_) MarkDirty(LayersOf(placed), placed.Placement);
    }

    /// The road of one thread: each character's layers live only while it is drawn.
    void DrawOneByOne() {
        for (PlacedCharacter& placed : placed_) {
            if (placed.IsTransformed) Build(title_, BuildOf(placed));
            DrawLayers(LayersOf(placed), placed.Placement, clip_);
            MarkDirty(LayersOf(placed), placed.Placement);
            placed.Fresh.FreePixels();
        }
    }

private:
    [[nodiscard]] GlyphBuildJob BuildOf(PlacedCharacter& placed) const {
        const float widthScale = At(string_.Characters, placed.Character).WidthScale;
        return {.String = &string_,
                .Character = placed.Character,
                .Layers = &placed.Fresh,
                .Transform = {.ScaleX = placed.Placement.ScaleX * widthScale,
                              .ScaleY = placed.Placement.ScaleY,
                              .RotationDeg = string_.RotateDegree + placed.Placement.Rotation}};
    }

    [[nodiscard]] const GlyphLayers& LayersOf(const PlacedCharacter& placed) const {
        return placed.IsTransformed ? placed.Fresh : At(string_.GlyphLayersList, placed.Character);
    }

    void DrawLayers(const GlyphLayers& layers, const CharPlacement& placement, const TitleRect& band) const {
        const auto draw = [&](uint32_t* plane, const GlyphBitmap& layer) {
            DrawGlyphBitmap({plane, title_.Settings.Width, title_.Settings.Height}, band, layer, placement.X + layer.X,
                            placement.Y + layer.Y, placement.Alpha);
        };
        draw(string_.StringPlanes.ShadowPlane, layers.Shadow);
        draw(string_.StringPlanes.BorderPlane, layers.Border);
        draw(string_.StringPlanes.FacePlane, layers.Face);
    }

    void MarkDirty(const GlyphLayers& layers, const CharPlacement& placement) {
        for (const GlyphBitmap* layer : {&layers.Shadow, &layers.Border, &layers.Face}) {
            if (!layer->Pixels) continue;
            const TitleRect touched = Touched(placement.X + layer->X, placement.Y + layer->Y, *layer);
            string_.DirtyRect = Union(string_.DirtyRect, Intersection(touched, clip_));
        }
    }

    const FrameTitle& title_;
    MetaString& string_;
    const TitleRect& clip_;
    std::vector<PlacedCharacter> placed_;
};

/// Zeroes the planes where they may hold anything.
void ClearPlanes(const FrameTitle& title, MetaString& string) {
    const PlaneOps planes(title.Ops, title.Settings.Width);
    title.Workers().RunBands(string.DrawnRect, [&](const TitleRect& band) {
        planes.Clear(string.StringPlanes.ShadowPlane, band);
        planes.Clear(string.StringPlanes.BorderPlane, band);
        planes.Clear(string.StringPlanes.FacePlane, band);
    });
    string.DrawnRect = {};
    string.DirtyRect = {};
}

/// Clears, binds and places: all that must be done on the title's thread.
StringDrawing Placed(const FrameTitle& title, MetaString& string, const TitleRect& clip) {
    ClearPlanes(title, string);
    StringDrawing drawing(title, string, clip);
    if (TextOf(string.PathID).empty()) return drawing;
    EnsureStringPath(title.Paths, title.Settings, string);
    string.DrawnRect = title.Frame();  // until it is known where: a frame that ends early leaves pixels behind
    const int32_t passCount = title.Paths.GetPassCount(TextOf(string.PathID));
    for (int32_t pass = 0; pass < passCount; ++pass) drawing.PlacePass(pass);
    return drawing;
}

}  // namespace

void RefreshCachedLayers(const FrameTitle& title) {
    std::vector<GlyphBuildJob> jobs;
    for (MetaString& string : title.Strings) {
        for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
            GlyphLayers& layers = At(string.GlyphLayersList, i);
            if (layers.DirtyMask == 0) continue;
            jobs.push_back({.String = &string,
                            .Character = i,
                            .Layers = &layers,
                            .Transform = {.ScaleX = At(string.Characters, i).WidthScale,
                                          .ScaleY = 1.0F,
                                          .RotationDeg = string.RotateDegree}});
        }
    }
    BuildAll(title, jobs);
}

void DrawStrings(const FrameTitle& title, const TitleRect& clip) {
    std::vector<StringDrawing> drawings;
    drawings.reserve(title.Strings.size());
    for (MetaString& string : title.Strings) drawings.push_back(Placed(title, string, clip));

    if (!title.Workers().AreSeveral()) {
        for (StringDrawing& drawing : drawings) drawing.DrawOneByOne();
        return;
    }
    std::vector<GlyphBuildJob> jobs;
    for (StringDrawing& drawing : drawings) drawing.CollectBuilds(jobs);
    BuildAll(title, jobs);
    for (StringDrawing& drawing : drawings) drawing.MarkDirty();
    title.Workers().RunBands(clip, [&](const TitleRect& band) {
        for (const StringDrawing& drawing : drawings) drawing.DrawBand(band);
    });
}

}  // namespace captionfx
