#include "render/frame_renderer.h"

#include <algorithm>
#include <new>

#include "paths/keyframes.h"
#include "render/border.h"
#include "render/frame_bands.h"
#include "render/plane_drawing.h"
#include "render/plane_ops.h"
#include "render/string_drawing.h"

namespace captionfx {
namespace {

bool AllAtRest(const std::vector<MetaString>& strings) {
    return std::ranges::all_of(strings, [](const MetaString& string) { return string.PathProgress == 1.0F; });
}

/// One frame. The steps stand in the order in which they run.
class Frame {
public:
    Frame(const FrameTitle& title, uint32_t* destination, const TitleRect& clip)
        : title_(title),
          settings_(title.Settings),
          planes_(title.Ops, title.Settings.Width),
          workers_(title.Workers()),
          destination_(destination),
          clip_(clip) {}

    /// Composites the kept frame.
    void ShowSavedFrame() {
        const TitleRect& rect = title_.Cache.SavedDirtyRect;
        CompositeOnto(rect, [&](const TitleRect& band) { Composite(title_.Cache.SavedFrame.get(), band, false); });
        title_.Cache.FrameDirtyRect = rect;
    }

    void Draw() {
        std::vector<PlacedString> strings = PlaceStrings(title_, clip_);
        if (CanDrawInBands(title_)) {
            DrawBands(strings);
        } else {
            DrawPlanes(strings);
        }
    }

private:
    void DrawBands(std::vector<PlacedString>& strings) {
        BuildLayers(title_, strings);
        for (MetaString& string : title_.Strings) CloseDirtyRect(string);
        UniteDirtyRects();
        const bool isKept = MayKeep() && ReserveSavedFrame();
        DrawInBands(title_, strings, destination_, isKept ? title_.Cache.SavedFrame.get() : nullptr);
        if (isKept) NoteSavedFrame();
    }

    void DrawPlanes(std::vector<PlacedString>& strings) {
        DrawOnPlanes(title_, strings, clip_);
        for (MetaString& string : title_.Strings) MergePlanes(string);
        for (MetaString& string : title_.Strings) {
            if (IsImageStage(title_, string)) {
                RunImageStage(string);
            } else {
                FilterImage(string);
            }
        }
        UniteDirtyRects();
        CompositeOnto(title_.Cache.FrameDirtyRect, [&](const TitleRect& band) {
            for (const MetaString& string : title_.Strings) Composite(ImageOf(string), band, IsStraight(string));
        });
        if (MayKeep() && ReserveSavedFrame()) SaveFrame(title_.Strings.back());
    }

    /// What a string's characters touched, and a little more, in which all further steps work.
    void CloseDirtyRect(MetaString& string) const {
        string.DirtyRect = Intersection(Inflated(string.DirtyRect, 2), clip_);
    }

    void UniteDirtyRects() const {
        TitleRect touched{};
        for (const MetaString& string : title_.Strings) touched = Union(touched, string.DirtyRect);
        title_.Cache.FrameDirtyRect = Intersection(touched, clip_);
    }

    [[nodiscard]] bool MayKeep() const { return AllAtRest(title_.Strings) && !title_.Cache.HasLostLayers; }

    /// The plane that holds the string's finished image.
    [[nodiscard]] uint32_t* ImageOf(const MetaString& string) const {
        return IsImageStage(title_, string) ? string.StringPlanes.FacePlane : string.StringPlanes.ShadowPlane;
    }

    /// Whether that image has straight alpha, which filter and image effects work on. A destination with alpha of its
    /// own wants all images premultiplied.
    [[nodiscard]] bool IsStraight(const MetaString& string) const {
        return settings_.DestinationAlpha == 0 && (settings_.PostFilter != 0 || IsImageStage(title_, string));
    }

    /// Merges face, border and shadow into ShadowPlane.
    void MergePlanes(MetaString& string) {
        CloseDirtyRect(string);
        string.DrawnRect = string.DirtyRect;
        const StringPlanes& planes = string.StringPlanes;
        workers_.RunBands(string.DirtyRect, [&](const TitleRect& band) {
            MergeFaceOverBorder({planes.BorderPlane, settings_.Width, settings_.Height},
                                {planes.FacePlane, settings_.Width, settings_.Height}, band, title_.Kernels());
            planes_.CompositePremultipliedOnto(planes.ShadowPlane, planes.BorderPlane, band);
        });
    }

    /// The road of a string without an image effect.
    void FilterImage(const MetaString& string) {
        if (settings_.PostFilter == 0) return;
        uint32_t* const image = string.StringPlanes.ShadowPlane;
        planes_.Unpremultiply(image, string.DirtyRect);
        planes_.PlaneFilter(image, string.DirtyRect);
        if (settings_.DestinationAlpha != 0) planes_.Premultiply(image, string.DirtyRect);
    }

    /// Hands the string's image to its effect, which writes FacePlane. That plane is not cleared for it.
    void RunImageStage(MetaString& string) {
        CPathBase& effect = *string.PathObject;
        const int32_t stride = settings_.Width * 4;
        const auto bytesOf = [](uint32_t* plane) { return reinterpret_cast<uint8_t*>(plane); };
        effect.SetSourceImage(bytesOf(string.StringPlanes.ShadowPlane), settings_.Width, settings_.Height, stride);
        effect.SetTargetImage(bytesOf(string.StringPlanes.FacePlane), settings_.Width, settings_.Height, stride);
        effect.SetPixelFormat(settings_.PixelFormat);
        TitleRect bounds{};
        effect.GetImageBounds(&bounds, &string.DirtyRect);
        const TitleRect inFrame = Intersection(bounds, title_.Frame());
        planes_.Unpremultiply(string.StringPlanes.ShadowPlane, inFrame);  // effects work on straight alpha
        string.DrawnRect = title_.Frame();                                // an effect may write anywhere
        effect.ProcessImage(string.PathProgress);
        if (settings_.PostFilter != 0) planes_.PlaneFilter(string.StringPlanes.FacePlane, inFrame);
        if (settings_.DestinationAlpha != 0) planes_.Premultiply(string.StringPlanes.FacePlane, inFrame);
        string.DirtyRect = Union(string.DirtyRect, bounds);
    }

    /// Runs `composite` for bands of `rect`, with the destination in the form that it works on: premultiplied where it
    /// has alpha of its own.
    template <class Compositing>
    void CompositeOnto(const TitleRect& rect, Compositing composite) {
        workers_.RunBands(rect, [&](const TitleRect& band) {
            if (settings_.DestinationAlpha != 0) planes_.Premultiply(destination_, band);
            composite(band);
            if (settings_.DestinationAlpha != 0) planes_.Unpremultiply(destination_, band);
        });
    }

    void Composite(const uint32_t* image, const TitleRect& rect, bool isStraight) {
        if (settings_.DestinationAlpha != 0) {
            planes_.CompositePremultipliedOnto(destination_, image, rect);
        } else if (isStraight) {
            planes_.CompositeStraight(destination_, image, rect);
        } else {
            planes_.CompositePremultiplied(destination_, image, rect);
        }
    }

    /// False when there is no memory for a frame at rest to be kept; it is still good.
    [[nodiscard]] bool ReserveSavedFrame() const try {
        FrameCache& cache = title_.Cache;
        if (!cache.SavedFrame) {
            const size_t pixels = static_cast<size_t>(settings_.Width) * static_cast<size_t>(settings_.Height);
            cache.SavedFrame = std::make_unique_for_overwrite<uint32_t[]>(pixels);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }

    /// Keeps the image of a frame at rest. It holds the last string alone, which is all that later frames show.
    void SaveFrame(const MetaString& last) {
        FrameCache& cache = title_.Cache;
        if (IsStraight(last)) planes_.Premultiply(ImageOf(last), cache.FrameDirtyRect);
        planes_.Copy(cache.SavedFrame.get(), ImageOf(last), cache.FrameDirtyRect);  // nobody reads beyond
        NoteSavedFrame();
    }

    void NoteSavedFrame() const {
        title_.Cache.SavedDirtyRect = title_.Cache.FrameDirtyRect;
        title_.Cache.SavedFrameValid = true;
    }

    const FrameTitle& title_;
    const TitleRenderSettings& settings_;
    PlaneOps planes_;
    FrameWorkers workers_;
    uint32_t* destination_;
    TitleRect clip_;
};

bool HasSize(const TitleRenderSettings& settings) {
    return settings.Width > 0 && settings.Height > 0;
}

}  // namespace

int32_t RenderFrame(const FrameTitle& title, uint32_t* destination, float time) {
    title.Cache.FrameDirtyRect = {};
    title.Cache.HasLostLayers = false;
    if (destination == nullptr) return kTitleInvalidArgument;
    for (MetaString& string : title.Strings) {
        if (string.StringPlanes.Block || !HasSize(title.Settings)) continue;
        string.StringPlanes = ReserveStringPlanes(title.Pages, title.Settings.Width, title.Settings.Height);
        string.DrawnRect = {};
        if (!string.StringPlanes.Block) return kTitleOutOfMemory;
    }
    title.Cache.Glyphs.BeginFrame();
    RefreshCachedLayers(title);

    const TitleRect clip = Intersection(title.Settings.ClipRect, title.Frame());
    if (title.Strings.empty() || IsEmpty(clip)) return kTitleOk;

    for (MetaString& string : title.Strings) UpdateStringPath(string, time);
    Frame frame(title, destination, clip);
    if (title.Cache.SavedFrameValid && AllAtRest(title.Strings)) {
        frame.ShowSavedFrame();
    } else {
        frame.Draw();
    }
    return kTitleOk;
}

void FlushRenderCaches(const FrameTitle& title) {
    for (MetaString& string : title.Strings) {
        string.StringPlanes = {};
        string.PathObject.reset();
        for (GlyphLayers& layers : string.GlyphLayersList) {
            layers.FreePixels();
            layers.DirtyMask = kAllLayersDirty;
        }
    }
    title.Cache.FreeSavedFrame();
    title.Cache.Planes.Clear();
    title.Cache.Glyphs.Clear();
    SharedBorder().ClearKernels();
    title.Pool.ClearIdleThreads();
}

}  // namespace captionfx
