#include "render/frame_bands.h"

#include <algorithm>

#include "paths/path_manager.h"
#include "render/rect.h"

namespace captionfx {
namespace {

/// The layers of one string, dealt out to the bands that they touch; in each band they keep their order.
class BandedLayers {
public:
    BandedLayers(const PlacedString& string, const TitleRect& rect, int32_t bandCount)
        : string_(string.String()), layers_(string.Layers()), starts_(static_cast<size_t>(bandCount) + 1) {
        const auto bandsOf = [&](const PlaneLayer& layer, const auto& visit) {
            const TitleRect seen = Intersection(layer.Layer.Rect, rect);
            if (IsEmpty(seen)) return;
            const int32_t last = (seen.bottom - 1 - rect.top) / kBandRows;
            for (int32_t band = (seen.top - rect.top) / kBandRows; band <= last; ++band)
                visit(static_cast<size_t>(band));
        };
        for (const PlaneLayer& layer : layers_) bandsOf(layer, [&](size_t band) { ++starts_[band + 1]; });
        for (size_t band = 1; band < starts_.size(); ++band) starts_[band] += starts_[band - 1];
        ofBands_.resize(starts_.back());
        std::vector<size_t> next(starts_.begin(), starts_.end() - 1);
        for (const PlaneLayer& layer : layers_) bandsOf(layer, [&](size_t band) { ofBands_[next[band]++] = &layer; });
    }

    [[nodiscard]] const MetaString& String() const { return string_; }

    template <class Visit>
    void ForBand(int32_t band, Visit visit) const {
        const auto i = static_cast<size_t>(band);
        for (size_t n = starts_[i]; n < starts_[i + 1]; ++n) visit(*ofBands_[n]);
    }

private:
    const MetaString& string_;
    std::vector<PlaneLayer> layers_;
    std::vector<size_t> starts_;  // of each band in ofBands_, and the end of the last one
    std::vector<const PlaneLayer*> ofBands_;
};

/// The planes of one band while a string is in them. Between strings all is 0.
class Band {
public:
    Band(const FrameTitle& title, const TitleRect& rect, uint32_t* planes)
        : title_(title), rect_(rect), planes_(planes), pitch_(title.Settings.Width + kPixelPadding) {}

    static size_t PixelsOf(const FrameTitle& title) {
        return static_cast<size_t>(title.Settings.Width + kPixelPadding) * kBandRows * kPlaneCount;
    }

    void Draw(const PlaneLayer& layer) const {
        DrawLayer({.Pixels = Plane(layer.Plane),
                   .Width = title_.Settings.Width,
                   .Height = rect_.bottom - rect_.top,
                   .Top = rect_.top,
                   .Padding = kPixelPadding},
                  layer.Layer, title_.Kernels());
    }

    /// Composites what was drawn, all of it within `dirty`, and leaves the planes 0.
    void Finish(const TitleRect& dirty, uint32_t* destination) const {
        const RowKernels& kernels = title_.Kernels();
        const auto finish = HasAlpha() ? kernels.FinishPremultiplied : kernels.FinishStraight;
        ForRows(dirty, [&](size_t at, std::ptrdiff_t inFrame, size_t count) {
            finish(destination + inFrame, Plane(kFacePlane) + at, Plane(kBorderPlane) + at, Plane(kShadowPlane) + at,
                   count);
        });
    }

    /// The same for an image that is also wanted: it is copied to `kept` for the whole band.
    void Keep(const TitleRect& dirty, uint32_t* destination, uint32_t* kept) const {
        const RowKernels& kernels = title_.Kernels();
        const auto composite = HasAlpha() ? kernels.CompositePremultipliedOnto : kernels.CompositePremultiplied;
        ForRows(dirty, [&](size_t at, std::ptrdiff_t /*inFrame*/, size_t count) {
            kernels.MergePlanes(Plane(kFacePlane) + at, Plane(kBorderPlane) + at, Plane(kShadowPlane) + at, count);
        });
        ForRows(rect_, [&](size_t at, std::ptrdiff_t inFrame, size_t count) {
            uint32_t* const image = Plane(kShadowPlane) + at;
            composite(destination + inFrame, image, count);
            std::copy_n(image, count, kept + inFrame);
            std::fill_n(image, count, 0U);
        });
    }

private:
    [[nodiscard]] uint32_t* Plane(PlaneIndex plane) const {
        return planes_ + size_t{plane} * kBandRows * static_cast<size_t>(pitch_);
    }

    [[nodiscard]] bool HasAlpha() const { return title_.Settings.DestinationAlpha != 0; }

    /// Calls use(index in a plane, index in the frame, count) for each row of `rect` that is the band's.
    template <class Use>
    void ForRows(const TitleRect& rect, Use use) const {
        const TitleRect here = Intersection(rect, rect_);
        for (int32_t y = here.top; y < here.bottom; ++y) {
            use(static_cast<size_t>(y - rect_.top) * static_cast<size_t>(pitch_) + static_cast<size_t>(here.left),
                std::ptrdiff_t{y} * title_.Settings.Width + here.left, static_cast<size_t>(here.right - here.left));
        }
    }

    const FrameTitle& title_;
    TitleRect rect_;
    uint32_t* planes_;
    int32_t pitch_;
};

/// All strings of a frame in one band.
class BandDrawing {
public:
    BandDrawing(const FrameTitle& title, const std::vector<BandedLayers>& strings, uint32_t* destination,
                uint32_t* kept)
        : title_(title), strings_(strings), destination_(destination), kept_(kept) {}

    void Draw(const TitleRect& rect, int32_t index) const {
        BandPlanes::Loan planes = title_.Cache.Planes.Borrow(Band::PixelsOf(title_));
        const Band band(title_, rect, planes.Pixels());
        const bool hasAlpha = title_.Settings.DestinationAlpha != 0;
        const RowKernels& kernels = title_.Kernels();
        if (hasAlpha) ForDestination(rect, kernels.Premultiply);
        for (const BandedLayers& string : strings_) {
            string.ForBand(index, [&](const PlaneLayer& layer) { band.Draw(layer); });
            const bool isKept = kept_ != nullptr && &string == &strings_.back();
            if (isKept) {
                band.Keep(string.String().DirtyRect, destination_, kept_);
            } else {
                band.Finish(string.String().DirtyRect, destination_);
            }
        }
        if (hasAlpha) ForDestination(rect, kernels.Unpremultiply);
    }

private:
    void ForDestination(const TitleRect& rect, void (*change)(uint32_t*, size_t)) const {
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            change(destination_ + std::ptrdiff_t{y} * title_.Settings.Width + rect.left,
                   static_cast<size_t>(rect.right - rect.left));
        }
    }

    const FrameTitle& title_;
    const std::vector<BandedLayers>& strings_;
    uint32_t* destination_;
    uint32_t* kept_;
};

}  // namespace

bool CanDrawInBands(const FrameTitle& title) {
    return title.HasBuiltInOps() && title.Settings.PostFilter == 0 &&
           std::ranges::none_of(title.Strings, [&](const MetaString& string) { return IsImageStage(title, string); });
}

void DrawInBands(const FrameTitle& title, const std::vector<PlacedString>& strings, uint32_t* destination,
                 uint32_t* kept) {
    const TitleRect rect = title.Cache.FrameDirtyRect;
    if (IsEmpty(rect)) return;
    const int32_t bandCount = (rect.bottom - rect.top + kBandRows - 1) / kBandRows;
    std::vector<BandedLayers> banded;
    banded.reserve(strings.size());
    for (const PlacedString& string : strings) banded.emplace_back(string, rect, bandCount);
    const BandDrawing drawing(title, banded, destination, kept);
    title.Workers().ForBands(rect, [&](const TitleRect& band, int32_t index) { drawing.Draw(band, index); });
}

}  // namespace captionfx
