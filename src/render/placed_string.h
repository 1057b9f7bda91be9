// One string in one frame: where its characters stand, and the layers that are drawn there.
#pragma once

#include <vector>

#include "paths/path_records.h"
#include "render/frame_title.h"
#include "render/layer_builds.h"
#include "render/plane_drawing.h"

namespace captionfx {

/// A character that is seen in this frame. One that is transformed has layers of its own, for this frame alone.
struct PlacedCharacter {
    int32_t Character;
    CharPlacement Placement;  // turned with the string
    bool IsTransformed;
    GlyphLayers Fresh;
};

/// The planes of a string, in the order in which its layers are drawn.
enum PlaneIndex : uint8_t { kShadowPlane, kBorderPlane, kFacePlane, kPlaneCount };

/// A layer and the plane that it belongs to.
struct PlaneLayer {
    PlacedLayer Layer;
    PlaneIndex Plane;
};

/// Placed in order, characters are then drawn in that order, all at once or in bands of rows.
class PlacedString {
public:
    /// All three outlive this object.
    PlacedString(const FrameTitle& title, MetaString& string, const TitleRect& clip);

    /// On the title's thread: effects draw random numbers, in order.
    void PlacePass(int32_t pass);

    /// The layers that this frame needs besides the cached ones. Placing must be done.
    void CollectBuilds(std::vector<LayerBuild>& builds);

    /// Unites what the characters touch into DirtyRect, once the layers are built.
    void MarkDirty();

    /// The layers that are seen, in the order in which they are drawn. Those of a frame share `stillBytes` of memory
    /// for what is kept of layers that do not move.
    [[nodiscard]] std::vector<PlaneLayer> Layers(size_t& stillBytes);

    /// Draws the rows of `band` into the string's planes, once the layers are built.
    void DrawBand(const TitleRect& band) const;

    /// The road of one thread: each character's layers are built, drawn, marked, and live only that long.
    void DrawOneByOne();

    [[nodiscard]] MetaString& String() const { return string_; }

private:
    /// Whether a character of a long title is out of the frame; it keeps nothing for it then.
    [[nodiscard]] bool IsOutside(GlyphLayers& layers, const CharPlacement& placement) const;
    [[nodiscard]] LayerBuild BuildOf(PlacedCharacter& placed) const;
    [[nodiscard]] const GlyphLayers& LayersOf(const PlacedCharacter& placed) const;
    [[nodiscard]] GlyphLayers& LayersOf(PlacedCharacter& placed);
    void DrawLayers(const GlyphLayers& layers, const CharPlacement& placement, const TitleRect& band) const;
    void MarkDirty(const GlyphLayers& layers, const CharPlacement& placement);

    const FrameTitle& title_;
    MetaString& string_;
    const TitleRect& clip_;
    std::vector<PlacedCharacter> placed_;
};

/// Binds the effects of all strings and places their characters, within `clip`, which lies in the frame. A string
/// without PathID has none. DirtyRect of each is empty then.
[[nodiscard]] std::vector<PlacedString> PlaceStrings(const FrameTitle& title, const TitleRect& clip);

/// Builds all layers of this frame, and marks what they touch.
void BuildLayers(const FrameTitle& title, std::vector<PlacedString>& strings);

}  // namespace captionfx
