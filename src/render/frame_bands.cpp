#include "render/frame_bands.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "paths/path_manager.h"
#include "render/rect.h"

namespace captionfx {
namespace {

/// The tiles that make up the rectangle of a frame, in rows and columns of them.
class TileGrid {
public:
    explicit TileGrid(const TitleRect& rect) : rect_(rect) {}

    [[nodiscard]] int32_t Columns() const { return TilesOf(rect_.right - rect_.left, kTileColumns); }
    [[nodiscard]] int32_t Rows() const { return TilesOf(rect_.bottom - rect_.top, kBandRows); }
    [[nodiscard]] size_t Count() const { return static_cast<size_t>(Columns()) * static_cast<size_t>(Rows()); }

    /// The pixels of column `column` in a band.
    [[nodiscard]] TitleRect Tile(const TitleRect& band, int32_t column) const {
        const int32_t left = band.left + column * kTileColumns;
        return {left, band.top, std::min(left + kTileColumns, band.right), band.bottom};
    }

    /// Calls visit(index) for each tile that `rect` touches.
    template <class Visit>
    void ForTouched(const TitleRect& rect, Visit visit) const {
        const TitleRect seen = Intersection(rect, rect_);
        if (IsEmpty(seen)) return;
        const int32_t lastRow = (seen.bottom - 1 - rect_.top) / kBandRows,
                      lastColumn = (seen.right - 1 - rect_.left) / kTileColumns;
        for (int32_t row = (seen.top - rect_.top) / kBandRows; row <= lastRow; ++row) {
            for (int32_t column = (seen.left - rect_.left) / kTileColumns; column <= lastColumn; ++column)
                visit(IndexOf(row, column));
        }
    }

    [[nodiscard]] size_t IndexOf(int32_t row, int32_t column) const {
        return static_cast<size_t>(row) * static_cast<size_t>(Columns()) + static_cast<size_t>(column);
    }

private:
    static int32_t TilesOf(int32_t length, int32_t side) { return (length + side - 1) / side; }

    TitleRect rect_;
};

/// The layers of one string, dealt out to the tiles that they touch; in each tile they keep their order.
class TiledLayers {
public:
    TiledLayers(PlacedString& string, const TileGrid& grid, size_t& stillBytes)
        : layers_(string.Layers(stillBytes)), starts_(grid.Count() + 1) {
        for (const PlaneLayer& layer : layers_) grid.ForTouched(layer.Layer.Rect, [&](size_t i) { ++starts_[i + 1]; });
        for (size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
        ofTiles_.resize(starts_.back());
        std::vector<size_t> next(starts_.begin(), starts_.end() - 1);
        ColorSurvey surveys[kPlaneCount];
        for (const PlaneLayer& layer : layers_) {
            grid.ForTouched(layer.Layer.Rect, [&](size_t i) { ofTiles_[next[i]++] = &layer; });
            const GlyphBitmap& bitmap = *layer.Layer.Bitmap;
            bitmap.Coverage ? surveys[layer.Plane].Add(bitmap.Color) : surveys[layer.Plane].AddAnyColor();
        }
        for (size_t plane = 0; plane < kPlaneCount; ++plane) colors_[plane] = surveys[plane].Stored();
    }

    /// What the string's planes store.
    [[nodiscard]] const StoredColors& ColorsOf(PlaneIndex plane) const { return colors_[plane]; }
    [[nodiscard]] bool IsEmpty(size_t tile) const { return starts_[tile] == starts_[tile + 1]; }

    template <class Visit>
    void ForTile(size_t tile, Visit visit) const {
        for (size_t n = starts_[tile]; n < starts_[tile + 1]; ++n) visit(*ofTiles_[n]);
    }

private:
    std::vector<PlaneLayer> layers_;
    std::vector<size_t> starts_;  // of each tile in ofTiles_, and the end of the last one
    std::vector<const PlaneLayer*> ofTiles_;
    StoredColors colors_[kPlaneCount];
};

/// The rows and columns of a tile that layers touch. Between the lines of a text there are rows that none does.
struct TouchedPart {
    static_assert(kBandRows <= 32, "a bit for each row");

    uint32_t Rows = 0;
    int32_t Left = kTileColumns, Right = 0;

    /// `rect` is within the tile, and not empty.
    void Add(const TitleRect& rect) {
        Rows |= (~0U >> static_cast<uint32_t>(32 - (rect.bottom - rect.top))) << static_cast<uint32_t>(rect.top);
        Left = std::min(Left, rect.left);
        Right = std::max(Right, rect.right);
    }

    /// Calls visit(first row, count) for each run of rows.
    template <class Visit>
    void ForRuns(Visit visit) const {
        int32_t row = 0;
        for (uint32_t rest = Rows; rest != 0;) {
            const int32_t empty = std::countr_zero(rest);
            rest >>= static_cast<uint32_t>(empty);
            const int32_t count = std::countr_one(rest);
            visit(row + empty, count);
            row += empty + count;
            rest = count == 32 ? 0 : rest >> static_cast<uint32_t>(count);
        }
    }
};

/// The planes of one tile while a string is in them. Between strings all is 0.
class Tile {
public:
    Tile(const FrameTitle& title, const TitleRect& rect, uint16_t* numbers)
        : title_(title), rect_(rect), numbers_(numbers) {}

    /// Of all planes of a string.
    static size_t NumbersOf(const TiledLayers& string) {
        size_t channels = 0;
        for (const PlaneIndex plane : {kFacePlane, kBorderPlane, kShadowPlane})
            channels += size_t{string.ColorsOf(plane).Count} + 1;
        return channels * size_t{kChannelPitch};
    }

    /// Draws the string's layers that lie here, composites them, and leaves the planes 0.
    void Show(const TiledLayers& string, size_t index, uint32_t* destination) const {
        if (string.IsEmpty(index)) return;
        const ChannelPlanes planes = PlanesOf(string);
        const TouchedPart touched = Draw(string, index, planes);
        const auto finish = HasAlpha() ? BestChannelKernels().FinishPremultiplied : BestChannelKernels().FinishStraight;
        const std::ptrdiff_t pitch = title_.Settings.Width;
        const int32_t left = touched.Left / kPixelPadding * kPixelPadding,
                      columns =
                          std::min(Columns(), touched.Right + kPixelPadding) - left;  // whole vectors, if they fit
        touched.ForRuns([&](int32_t row, int32_t count) {
            finish(destination + FirstPixel() + row * pitch + left, pitch, planes.From(row, left), count, columns);
        });
        ClearOverrun(planes);
    }

    /// The same for an image that is also wanted: it becomes all of the tile in `kept`.
    void Keep(const TiledLayers& string, size_t index, uint32_t* destination, uint32_t* kept) const {
        const ChannelPlanes planes = PlanesOf(string);
        Draw(string, index, planes);
        const std::ptrdiff_t pitch = title_.Settings.Width;
        BestChannelKernels().Merge(kept + FirstPixel(), pitch, planes, Rows(), Columns());
        ClearOverrun(planes);
        const RowKernels& kernels = title_.Kernels();
        const auto composite = HasAlpha() ? kernels.CompositePremultipliedOnto : kernels.CompositePremultiplied;
        for (std::ptrdiff_t at = FirstPixel(), y = 0; y < Rows(); ++y, at += pitch)
            composite(destination + at, kept + at, static_cast<size_t>(Columns()));
    }

private:
    [[nodiscard]] int32_t Rows() const { return rect_.bottom - rect_.top; }
    [[nodiscard]] int32_t Columns() const { return rect_.right - rect_.left; }
    [[nodiscard]] std::ptrdiff_t FirstPixel() const {
        return std::ptrdiff_t{rect_.top} * title_.Settings.Width + rect_.left;
    }
    [[nodiscard]] bool HasAlpha() const { return title_.Settings.DestinationAlpha != 0; }

    [[nodiscard]] ChannelPlanes PlanesOf(const TiledLayers& string) const {
        uint16_t* next = numbers_;
        const auto plane = [&](PlaneIndex i) {
            const StoredColors& colors = string.ColorsOf(i);
            return ChannelPlane{std::exchange(next, next + (colors.Count + 1) * kChannelPitch), kPitch, kChannelPitch,
                                colors};
        };
        return {plane(kFacePlane), plane(kBorderPlane), plane(kShadowPlane)};
    }

    /// Returns what was drawn on.
    TouchedPart Draw(const TiledLayers& string, size_t index, const ChannelPlanes& planes) const {
        TouchedPart touched;
        string.ForTile(index, [&](const PlaneLayer& layer) {
            DrawLayer({PlaneOf(planes, layer.Plane), rect_}, layer.Layer);
            const TitleRect here = Intersection(layer.Layer.Rect, rect_);
            touched.Add(
                {here.left - rect_.left, here.top - rect_.top, here.right - rect_.left, here.bottom - rect_.top});
        });
        return touched;
    }

    static const ChannelPlane& PlaneOf(const ChannelPlanes& planes, PlaneIndex plane) {
        return plane == kFacePlane ? planes.Face : plane == kBorderPlane ? planes.Border : planes.Shadow;
    }

    /// In a tile that is not full, what was written behind its rows lies where the next one has pixels.
    void ClearOverrun(const ChannelPlanes& planes) const {
        if (Columns() == kTileColumns) return;
        for (const ChannelPlane* plane : {&planes.Face, &planes.Border, &planes.Shadow}) {
            for (std::ptrdiff_t channel = 0; channel <= plane->Colors.Count; ++channel) {
                uint16_t* row = plane->Alpha + channel * kChannelPitch;
                for (int32_t y = 0; y < Rows(); ++y, row += kPitch)
                    std::fill_n(row + Columns(), kPixelPadding, uint16_t{0});
            }
        }
    }

    static constexpr std::ptrdiff_t kPitch = kTileColumns + kPixelPadding, kChannelPitch = kPitch * kBandRows;

    const FrameTitle& title_;
    TitleRect rect_;
    uint16_t* numbers_;
};

/// All strings of a frame in one band.
class BandDrawing {
public:
    BandDrawing(const FrameTitle& title, const TileGrid& grid, const std::vector<TiledLayers>& strings,
                uint32_t* destination, uint32_t* kept)
        : title_(title), grid_(grid), strings_(strings), destination_(destination), kept_(kept) {}

    void Draw(const TitleRect& band, int32_t row) const {
        BandPlanes::Loan planes = title_.Cache.Planes.Borrow(MostNumbers());
        for (int32_t column = 0; column < grid_.Columns(); ++column) {
            DrawTile(grid_.Tile(band, column), grid_.IndexOf(row, column), planes.Numbers());
        }
    }

private:
    [[nodiscard]] size_t MostNumbers() const {
        size_t most = 0;
        for (const TiledLayers& string : strings_) most = std::max(most, Tile::NumbersOf(string));
        return most;
    }

    void DrawTile(const TitleRect& rect, size_t index, uint16_t* planes) const {
        const Tile tile(title_, rect, planes);
        const bool hasAlpha = title_.Settings.DestinationAlpha != 0;
        const RowKernels& kernels = title_.Kernels();
        if (hasAlpha) ForDestination(rect, kernels.Premultiply);
        for (const TiledLayers& string : strings_) {
            const bool isKept = kept_ != nullptr && &string == &strings_.back();
            if (isKept) {
                tile.Keep(string, index, destination_, kept_);
            } else {
                tile.Show(string, index, destination_);
            }
        }
        if (hasAlpha) ForDestination(rect, kernels.Unpremultiply);
    }

    void ForDestination(const TitleRect& rect, void (*change)(uint32_t*, size_t)) const {
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            change(destination_ + std::ptrdiff_t{y} * title_.Settings.Width + rect.left,
                   static_cast<size_t>(rect.right - rect.left));
        }
    }

    const FrameTitle& title_;
    const TileGrid& grid_;
    const std::vector<TiledLayers>& strings_;
    uint32_t* destination_;
    uint32_t* kept_;
};

}  // namespace

bool CanDrawInBands(const FrameTitle& title) {
    return title.HasBuiltInOps() && title.Settings.PostFilter == 0 &&
           std::ranges::none_of(title.Strings, [&](const MetaString& string) { return IsImageStage(title, string); });
}

void DrawInBands(const FrameTitle& title, std::vector<PlacedString>& strings, uint32_t* destination, uint32_t* kept) {
    const TitleRect rect = title.Cache.FrameDirtyRect;
    if (IsEmpty(rect)) return;
    const TileGrid grid(rect);
    std::vector<TiledLayers> tiled;
    tiled.reserve(strings.size());
    size_t stillBytes = StillCoverage::kMostBytes;
    for (PlacedString& string : strings) tiled.emplace_back(string, grid, stillBytes);
    const BandDrawing drawing(title, grid, tiled, destination, kept);
    title.Workers().ForBands(rect, [&](const TitleRect& band, int32_t row) { drawing.Draw(band, row); });
}

}  // namespace captionfx
